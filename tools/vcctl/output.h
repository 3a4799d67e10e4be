#pragma once
// vcctl's own lines and the library's dumps share stdout. The dumps normally write to
// the descriptor directly, past stdio's buffer, which would shuffle the two; routing
// them through stdio keeps every line in the order it was produced.
namespace vcctl {

/// Sends the library's dump lines through stdout's buffer and its information lines
/// (the banner) to stderr, so that stdout holds only results.
void routeLibraryOutput();

/// printf to stdout, flushed: a test or a script reading vcctl's output line by line
/// sees each line as soon as it is written.
void out(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// "vcctl: " and the message on stderr.
void complain(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace vcctl
