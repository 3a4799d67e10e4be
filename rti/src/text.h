// Names travel as UTF-8 on the wire and are std::wstring in the API.
#ifndef VCRTI_TEXT_H
#define VCRTI_TEXT_H

#include <string>
#include <string_view>

namespace vcrti {

std::string toUtf8(std::wstring_view text);
// Invalid sequences become U+FFFD: names from the wire are never trusted to be valid.
std::wstring fromUtf8(std::string_view text);
// The text with every control character (C0, DEL, C1) written as \xNN, so that words
// from the wire cannot move a terminal's cursor or change its colours.
std::wstring printable(std::wstring_view text);

}  // namespace vcrti

#endif
