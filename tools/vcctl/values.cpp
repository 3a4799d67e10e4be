#include "values.h"

#include <cerrno>
#include <cstdlib>
#include <limits>

namespace vcctl {

using DtCmdLine::Type;

namespace {

struct NamedColor {
  const char* name;
  const DtVdcColor* color;
};

const NamedColor kNamedColors[] = {
    {"white", &DtVdcColor::DtVdcWhite},   {"black", &DtVdcColor::DtVdcBlack},
    {"red", &DtVdcColor::DtVdcRed},       {"green", &DtVdcColor::DtVdcGreen},
    {"blue", &DtVdcColor::DtVdcBlue},     {"yellow", &DtVdcColor::DtVdcYellow},
    {"purple", &DtVdcColor::DtVdcPurple}, {"orange", &DtVdcColor::DtVdcOrange},
};

bool parseReal(const std::string& word, double& value) {
  if (word.empty()) return false;
  char* end = nullptr;
  errno = 0;
  value = std::strtod(word.c_str(), &end);
  return errno == 0 && end && *end == '\0';
}

bool parseWhole(const std::string& word, unsigned long max, unsigned long& value) {
  if (word.empty() || word[0] == '-' || word[0] == '+') return false;
  char* end = nullptr;
  errno = 0;
  value = std::strtoul(word.c_str(), &end, 10);
  return errno == 0 && end && *end == '\0' && value <= max;
}

[[noreturn]] void badWord(const Args& args, const std::string& name, const std::string& why) {
  args.fail("option '--" + name + "': '" + args.text(name) + "' " + why);
}

}  // namespace

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  size_t start = 0;
  for (;;) {
    size_t end = text.find(separator, start);
    parts.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
    if (end == std::string::npos) return parts;
    start = end + 1;
  }
}

DtCmdLine::Option positionOption(Command& command, const std::string& name,
                                 const std::string& help) {
  return command.option(name, Type::Vector, help).placeholder("X,Y,Z").size(3);
}

DtCmdLine::Option screenOption(Command& command, const std::string& name, const std::string& help) {
  return command.option(name, Type::Vector, help).placeholder("X,Y").size(2);
}

DtCmdLine::Option anglesOption(Command& command, const std::string& name, const std::string& help) {
  return command.option(name, Type::Vector, help + " (heading, pitch, roll in radians)")
      .placeholder("H,P,R")
      .size(3);
}

DtCmdLine::Option colorOption(Command& command, const std::string& fallback) {
  return command
      .option("color", Type::Text,
              "white, black, red, green, blue, yellow, purple, orange, or R,G,B[,A] from 0 to 255")
      .placeholder("COLOR")
      .defaultValue(fallback);
}

DtCmdLine::Option anchorOption(Command& command, const std::string& name, const std::string& help) {
  return command
      .option(
          name, Type::Text,
          help + ": a position X,Y,Z, an entity id, or object:ID[@PERCENT] along another drawing")
      .placeholder("ANCHOR");
}

DtCmdLine::Option idOption(Command& command, const std::string& what) {
  return command
      .option("id", Type::Integer,
              "object id of the " + what + ", chosen by you; later commands name it by this id")
      .placeholder("N")
      .range(0, 4294967295.0)
      .required();
}

DtCmdLine::Option switchArgument(Command& command, const std::string& help) {
  return command.argument("value", Type::Text, help).choices({"on", "off", "true", "false"});
}

std::optional<DtVector64> position(const Args& args, const std::string& name) {
  if (!args.has(name)) return std::nullopt;
  std::vector<double> v = args.vector(name);
  return DtVector64(v[0], v[1], v[2]);
}

DtVector64 positionOr(const Args& args, const std::string& name, const DtVector64& fallback) {
  std::optional<DtVector64> given = position(args, name);
  return given ? *given : fallback;
}

std::optional<DtTaitBryan> angles(const Args& args, const std::string& name) {
  if (!args.has(name)) return std::nullopt;
  std::vector<double> v = args.vector(name);
  return DtTaitBryan(v[0], v[1], v[2]);
}

DtVdcVector2D screen(const Args& args, const std::string& name, size_t index) {
  std::vector<double> v = args.vector(name, index);
  return DtVdcVector2D(v[0], v[1]);
}

std::optional<float> real32(const Args& args, const std::string& name) {
  if (!args.has(name)) return std::nullopt;
  double value = args.real(name);
  if (value > std::numeric_limits<float>::max() || value < -std::numeric_limits<float>::max())
    badWord(args, name, "does not fit the 32-bit float the PDU carries (at most 3.4e38)");
  return static_cast<float>(value);
}

bool parseColor(const std::string& word, DtVdcColor& color, std::string& why) {
  for (const NamedColor& named : kNamedColors) {
    if (word == named.name) {
      color = *named.color;
      return true;
    }
  }
  std::vector<std::string> parts = split(word, ',');
  unsigned long channel[4] = {0, 0, 0, 255};
  bool ok = parts.size() == 3 || parts.size() == 4;
  for (size_t i = 0; ok && i < parts.size(); ++i) ok = parseWhole(parts[i], 255, channel[i]);
  if (!ok) {
    why = "is not a colour (a name such as red, or R,G,B[,A] from 0 to 255)";
    return false;
  }
  color = DtVdcColor(static_cast<unsigned int>(channel[0]), static_cast<unsigned int>(channel[1]),
                     static_cast<unsigned int>(channel[2]), static_cast<unsigned int>(channel[3]));
  return true;
}

DtVdcColor color(const Args& args, const std::string& name) {
  DtVdcColor result;
  std::string why;
  if (!parseColor(args.text(name), result, why)) badWord(args, name, why);
  return result;
}

bool parseEntityId(const std::string& word, std::string& why) {
  std::vector<std::string> parts = split(word, ':');
  unsigned long number = 0;
  bool ok = parts.size() == 3;
  for (size_t i = 0; ok && i < parts.size(); ++i) ok = parseWhole(parts[i], 65535, number);
  if (!ok) why = "is not an entity id site:host:entity (three whole numbers up to 65535)";
  return ok;
}

bool parseAnchor(const std::string& word, DtVdc3DAttachPoint& anchor, std::string& why) {
  static const std::string kObject = "object:";
  if (word.compare(0, kObject.size(), kObject) == 0) {
    std::string rest = word.substr(kObject.size());
    std::string percentText = "0";
    size_t at = rest.find('@');
    if (at != std::string::npos) {
      percentText = rest.substr(at + 1);
      rest = rest.substr(0, at);
    }
    unsigned long id = 0;
    double percent = 0;
    if (!parseWhole(rest, 4294967295UL, id) || !parseReal(percentText, percent) || percent < 0 ||
        percent > 100) {
      why = "is not a drawing anchor object:ID[@PERCENT] (percent from 0 to 100)";
      return false;
    }
    anchor = DtVdc3DAttachPoint(static_cast<unsigned int>(id), percent);
    return true;
  }
  if (word.find(',') != std::string::npos) {
    std::vector<std::string> parts = split(word, ',');
    double xyz[3] = {0, 0, 0};
    bool ok = parts.size() == 3;
    for (size_t i = 0; ok && i < 3; ++i) ok = parseReal(parts[i], xyz[i]);
    if (!ok) {
      why = "is not a position X,Y,Z";
      return false;
    }
    anchor = DtVdc3DAttachPoint(DtVector64(xyz[0], xyz[1], xyz[2]));
    return true;
  }
  if (word.empty()) {
    why = "is empty: give a position X,Y,Z, an entity id or object:ID[@PERCENT]";
    return false;
  }
  if (!parseEntityId(word, why)) {
    why = "is neither a position X,Y,Z, an entity id site:host:entity nor object:ID[@PERCENT]";
    return false;
  }
  anchor = DtVdc3DAttachPoint(DtString(word));
  return true;
}

DtVdc3DAttachPoint anchor(const Args& args, const std::string& name) {
  DtVdc3DAttachPoint result;
  if (args.count(name) == 0) return result;
  std::string why;
  if (!parseAnchor(args.text(name), result, why)) badWord(args, name, why);
  return result;
}

bool switchValue(const Args& args) {
  std::string word = args.text("value");
  return word == "on" || word == "true";
}

unsigned int objectId(const Args& args, const std::string& name) {
  return static_cast<unsigned int>(args.integer(name));
}

namespace {

[[noreturn]] void badArgument(const Args& args, const std::string& name, const std::string& why) {
  args.fail("argument <" + name + ">: " + why);
}

}  // namespace

std::optional<DtString> entity(const Args& args, const std::string& name) {
  if (!args.has(name)) return std::nullopt;
  std::string why;
  const std::string word = args.text(name);
  if (!parseEntityId(word, why)) {
    // The trackers take theirs as an option, every other command as an argument.
    if (name == "track") badWord(args, name, why);
    badArgument(args, name, "'" + word + "' " + why);
  }
  return DtString(word);
}

DtGlobalObjectDesignatorList entityList(const Args& args, const std::string& name,
                                        int fixedLength) {
  // Each entry is one 64-byte designator; the PDU's length field ends the list.
  const size_t room = static_cast<size_t>(DtBaseMsg::kMaxLength - fixedLength) / 64;
  if (args.count(name) > room)
    badArgument(args, name,
                std::to_string(args.count(name)) + " entities, but one PDU holds at most " +
                    std::to_string(room) + ": send them in several commands");
  DtGlobalObjectDesignatorList list;
  std::string why;
  for (size_t i = 0; i < args.count(name); ++i) {
    const std::string word = args.text(name, i);
    if (!parseEntityId(word, why)) badArgument(args, name, "'" + word + "' " + why);
    list.add(DtString(word));
  }
  return list;
}

DtString fittingText(const Args& args, const std::string& name, size_t room) {
  const std::string text = args.text(name);
  if (text.size() > room)
    args.fail("'" + name + "' is " + std::to_string(text.size()) +
              " bytes long, but the PDU holds at most " + std::to_string(room) +
              " and would cut it short");
  return DtString(text);
}

}  // namespace vcctl
