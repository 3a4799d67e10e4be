#pragma once
// What vcctl, vcviewer and vcbench share about being a process of their own on a
// federation: what --version says, which federation addresses make sense for them, and
// whether the federation's object model can carry control PDUs at all; and, for the tools
// that run until told to stop, how they are told and how they talk.
#include <string>

class DtExerciseConn;

namespace vctools {

/// The lines "--version" prints before the library's: the tool with the package version,
/// and the RTI the build uses.
std::string versionLines(const std::string& tool);

/// Why `url` cannot name the federation a tool joins, or "" when it can. A thread://
/// federation exists inside one process only: a tool running alone there reaches no one,
/// so it is refused unless `inProcessAllowed`.
std::string federationUrlProblem(const std::string& url, bool inProcessAllowed);

/// Why the joined federation's object model cannot carry control PDUs (no "ViewControl"
/// class, or no "ViewControlPdu" parameter in it), or "" when it can. `fdd` is the file
/// this process named, for the message: the model in force is whichever the federation
/// was created with.
std::string viewControlProblem(DtExerciseConn& conn, const std::string& fdd);

/// Makes SIGINT and SIGTERM ask the tool to stop (see stopSignal()) instead of ending it
/// on the spot, so that it can leave the federation cleanly; a closed pipe is no reason to
/// die either.
void installStopSignals();
/// The signal that asked the tool to stop, or 0; and the word for it ("interrupted",
/// "terminated").
int stopSignal();
const char* stopReason();
/// One line of the tool's own on standard output, flushed at once: whoever reads it (a
/// script, a test) acts on each line as it comes. What the library says through DtInfo
/// goes to standard error instead, from infoToStderr() on.
void printLine(const std::string& line);
void infoToStderr();

}  // namespace vctools
