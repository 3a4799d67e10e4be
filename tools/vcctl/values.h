#pragma once
// The kinds of value that several commands take: positions, angles, colours, anchors,
// on/off words, entity lists. Each has a declaring helper (so that every command words
// its help the same way) and a reader. A reader that meets a word it cannot use reports
// it like any other command-line mistake: one line naming the option, exit 2.
#include <optional>
#include <string>
#include <vector>

#include "dtCmdLine.h"
#include "vistrelControl.h"

namespace vcctl {

using DtCmdLine::Args;
using DtCmdLine::Command;

// ---------------------------------------------------------------- declaring
/// "--name x,y,z".
DtCmdLine::Option positionOption(Command& command, const std::string& name,
                                 const std::string& help);
/// "--name x,y" (fractions 0..1 of the screen for positions).
DtCmdLine::Option screenOption(Command& command, const std::string& name, const std::string& help);
/// "--name H,P,R" in radians.
DtCmdLine::Option anglesOption(Command& command, const std::string& name, const std::string& help);
/// "--color" with a default.
DtCmdLine::Option colorOption(Command& command, const std::string& fallback);
/// "--name ANCHOR": a position x,y,z, an entity id or object:ID[@PERCENT].
DtCmdLine::Option anchorOption(Command& command, const std::string& name, const std::string& help);
/// "--id N", required.
DtCmdLine::Option idOption(Command& command, const std::string& what);
/// A positional on/off word.
DtCmdLine::Option switchArgument(Command& command, const std::string& help);

// ---------------------------------------------------------------- reading
/// The option's three numbers, if given.
std::optional<DtVector64> position(const Args& args, const std::string& name);
DtVector64 positionOr(const Args& args, const std::string& name, const DtVector64& fallback);
std::optional<DtTaitBryan> angles(const Args& args, const std::string& name);
DtVdcVector2D screen(const Args& args, const std::string& name, size_t index = 0);
/// A real option narrowed to the 32-bit float that view PDUs carry, if given; a value
/// beyond the float's range is refused rather than sent as infinity.
std::optional<float> real32(const Args& args, const std::string& name);
/// "red" and the other named colours of the library, or r,g,b[,a] from 0 to 255.
DtVdcColor color(const Args& args, const std::string& name = "color");
DtVdc3DAttachPoint anchor(const Args& args, const std::string& name);
/// The positional on/off word ("on", "off", "true", "false").
bool switchValue(const Args& args);
unsigned int objectId(const Args& args, const std::string& name = "id");
/// An entity id site:host:entity (three whole numbers up to 65535), if given: the
/// argument `name`, or the option "--track".
std::optional<DtString> entity(const Args& args, const std::string& name);
/// Every word of a trailing argument list, each an entity id; refused when the PDU that
/// carries the list, `fixedLength` bytes before its 64-byte entries, cannot hold them all.
DtGlobalObjectDesignatorList entityList(const Args& args, const std::string& name, int fixedLength);
/// The text of an option or argument, refused when longer than `room` bytes: the PDU
/// that carries it would cut it short. `what` names it in the message.
DtString fittingText(const Args& args, const std::string& name, size_t room);

/// The parts of `text` between the separators, empty ones included.
std::vector<std::string> split(const std::string& text, char separator);

/// The value an optional holds, or null: the form the controller takes its optional
/// parameters in.
template <typename T>
const T* given(const std::optional<T>& value) {
  return value ? &*value : nullptr;
}

/// Parses one colour word; false (with `why`) when it is not one.
bool parseColor(const std::string& word, DtVdcColor& color, std::string& why);
/// Checks one entity id site:host:entity; false (with `why`) when it is not one.
bool parseEntityId(const std::string& word, std::string& why);
/// Parses one anchor word; false (with `why`) when it is not one.
bool parseAnchor(const std::string& word, DtVdc3DAttachPoint& anchor, std::string& why);

}  // namespace vcctl
