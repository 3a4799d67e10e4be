#pragma once
// How the viewer writes values in its lines and captions, so that a person can read them
// and a script can match them: numbers without trailing zeros, vectors in parentheses,
// texts quoted only when they need it.
#include <string>

#include "vistrelControl.h"

namespace vcviewer {

/// A number with the digits its wire form carries: values that are exactly single
/// precision (most angles and distances travel as 32-bit floats) print with the fewest
/// significant digits, 7 to 9, that give the float back, other doubles with 10, so 0.1f
/// prints as 0.1 and a geocentric x keeps its metres.
std::string number(double value);
/// "(x, y, z)".
std::string vector(const DtVector64& value);
/// A text between double quotes; quotes, backslashes and unprintable bytes escaped.
std::string quoted(const std::string& text);
/// An identifier as it is when it is a plain word, quoted when empty or when it holds
/// blanks or quotes.
std::string word(const std::string& text);
/// Length of the valid UTF-8 sequence at `s` (at least one byte, `left` in all), or 0 when
/// it is not one: overlong forms, surrogates and code points beyond U+10FFFF are not.
/// Texts come from the network, and every document we write must stay valid.
size_t utf8Sequence(const unsigned char* s, size_t left, unsigned int& codePoint);

}  // namespace vcviewer
