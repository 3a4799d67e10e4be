// Names travel as UTF-8 on the wire and are std::wstring in the API.
#ifndef VCRTI_TEXT_H
#define VCRTI_TEXT_H

#include <string>
#include <string_view>

namespace vcrti {

std::string toUtf8(std::wstring_view text);
// Invalid sequences become U+FFFD: names from the wire are never trusted to be valid.
std::wstring fromUtf8(std::string_view text);

}  // namespace vcrti

#endif
