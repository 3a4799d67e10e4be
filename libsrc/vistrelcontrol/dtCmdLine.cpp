#include "dtCmdLine.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <locale>
#include <sstream>

namespace DtCmdLine {
namespace detail {

struct Value {
  std::string word;  // as typed, or the default as written: text() gives it back unchanged
  long long integer = 0;
  double real = 0;
  bool flag = false;
  std::vector<double> vector;
};

struct Decl {
  std::string name;
  Type type = Type::Text;
  std::string help;
  char shortName = 0;
  std::string placeholder;
  bool positional = false;
  bool list = false;
  bool required = false;
  bool hasDefault = false;
  Value defaultValue;
  size_t size = 0;  // exact count of a vector's numbers; 0 leaves it to minSize
  size_t minSize = 1;
  size_t minCount = 0;
  bool ranged = false;
  double lo = 0;
  double hi = 0;
  std::vector<std::string> choices;
};

struct CommandData {
  std::string name;
  std::string summary;
  std::string details;
  std::string version;  // a program's own version lines; empty: no --version
  const CommandData* parent = nullptr;
  std::vector<std::unique_ptr<Decl>> decls;  // declaration order, which the help follows
  std::vector<std::unique_ptr<Command>> subs;
  std::vector<const CommandData*> subData;  // the same commands, seen from here
};

struct ArgsData {
  const CommandData* cmd = nullptr;
  const ArgsData* parent = nullptr;
  std::vector<std::vector<Value>> values;  // per decl; empty when not on the command line
  std::vector<std::string> positionals;
  std::string command;
  Args sub;
  const CommandData* help = nullptr;
  bool version = false;

  static std::shared_ptr<ArgsData>& of(Args& args) { return args.data_; }
};

}  // namespace detail

using detail::ArgsData;
using detail::CommandData;
using detail::Decl;
using detail::Value;

namespace {

std::string pathOf(const CommandData& cmd) {
  return cmd.parent ? pathOf(*cmd.parent) + " " + cmd.name : cmd.name;
}

const CommandData& rootOf(const CommandData& cmd) {
  return cmd.parent ? rootOf(*cmd.parent) : cmd;
}

// Where a mistake on the command line is reported, and how: the program's name, the
// message, and the help that explains it.
[[noreturn]] void exitWithError(const CommandData& cmd, const std::string& message,
                                const std::string& helpPath) {
  std::cerr << rootOf(cmd).name << ": " << message << "\nTry '" << helpPath << " --help'.\n"
            << std::flush;
  std::exit(2);
}

std::string number(double v) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out.precision(15);
  out << v;
  return out.str();
}

const char* readerOf(Type type) {
  switch (type) {
    case Type::Text:
      return "text";
    case Type::Integer:
      return "integer";
    case Type::Real:
      return "real";
    case Type::Flag:
      return "flag";
    case Type::Vector:
      return "vector";
  }
  return "?";
}

std::string trimmed(const std::string& s) {
  size_t b = s.find_first_not_of(" \t");
  if (b == std::string::npos) return std::string();
  return s.substr(b, s.find_last_not_of(" \t") - b + 1);
}

// Number readers return an empty string on success, else the complaint about the word.
// from_chars rather than strtod: a tool that sets a locale must still read "1.5".
std::string readInteger(const std::string& word, long long& out) {
  const std::string s = trimmed(word);
  const std::string bad = "'" + word + "' is not an integer";
  size_t p = 0;
  bool negative = false;
  if (p < s.size() && (s[p] == '+' || s[p] == '-')) negative = s[p++] == '-';
  int base = 10;
  if (s.compare(p, 2, "0x") == 0 || s.compare(p, 2, "0X") == 0) {
    base = 16;
    p += 2;
  }
  if (p == s.size()) return bad;
  unsigned long long magnitude = 0;
  const char* end = s.data() + s.size();
  auto [stop, ec] = std::from_chars(s.data() + p, end, magnitude, base);
  if (ec == std::errc::invalid_argument || stop != end) return bad;
  const unsigned long long limit =
      static_cast<unsigned long long>(std::numeric_limits<long long>::max()) + (negative ? 1 : 0);
  if (ec == std::errc::result_out_of_range || magnitude > limit)
    return "'" + word + "' is out of range";
  out = negative ? static_cast<long long>(0 - magnitude) : static_cast<long long>(magnitude);
  return std::string();
}

std::string readReal(const std::string& word, double& out) {
  const std::string s = trimmed(word);
  const std::string bad = "'" + word + "' is not a number";
  size_t p = s.size() > 1 && s[0] == '+' && s[1] != '-' ? 1 : 0;
  if (p == s.size()) return bad;
  const char* end = s.data() + s.size();
  auto [stop, ec] = std::from_chars(s.data() + p, end, out, std::chars_format::general);
  if (ec == std::errc::invalid_argument || stop != end) return bad;
  if (ec == std::errc::result_out_of_range) return "'" + word + "' is out of range";
  if (!std::isfinite(out)) return bad;
  return std::string();
}

std::string outsideRange(const Decl& decl, const std::string& word, double v) {
  if (!decl.ranged || (v >= decl.lo && v <= decl.hi)) return std::string();
  return "'" + word + "' is not between " + number(decl.lo) + " and " + number(decl.hi);
}

std::string readVector(const Decl& decl, const std::string& word, std::vector<double>& out) {
  std::vector<std::string> parts;
  for (size_t start = 0;;) {
    size_t comma = word.find(',', start);
    parts.push_back(word.substr(start, comma - start));
    if (comma == std::string::npos) break;
    start = comma + 1;
  }
  for (const std::string& part : parts) {
    double v = 0;
    std::string why = readReal(part, v);
    if (why.empty()) why = outsideRange(decl, part, v);
    if (!why.empty()) return why + " (in '" + word + "')";
    out.push_back(v);
  }
  const size_t n = decl.size ? decl.size : decl.minSize;
  if (decl.size ? out.size() != n : out.size() < n) {
    return std::string("expected ") + (decl.size ? "" : "at least ") + std::to_string(n) +
           (n == 1 ? " number" : " numbers separated by commas") + ", got '" + word + "'";
  }
  return std::string();
}

std::string readValue(const Decl& decl, const std::string& word, Value& out) {
  out = Value();
  out.word = word;
  std::string why;
  switch (decl.type) {
    case Type::Text:
      if (decl.choices.empty()) return std::string();
      for (const std::string& choice : decl.choices)
        if (choice == word) return std::string();
      why = "'" + word + "' is not one of:";
      for (size_t i = 0; i < decl.choices.size(); ++i) why += (i ? ", " : " ") + decl.choices[i];
      return why;
    case Type::Integer:
      why = readInteger(word, out.integer);
      return why.empty() ? outsideRange(decl, word, static_cast<double>(out.integer)) : why;
    case Type::Real:
      why = readReal(word, out.real);
      return why.empty() ? outsideRange(decl, word, out.real) : why;
    case Type::Flag:
      if (word != "true" && word != "false") return "'" + word + "' is not true or false";
      out.flag = word == "true";
      return std::string();
    case Type::Vector:
      return readVector(decl, word, out.vector);
  }
  return why;
}

bool validName(const std::string& name) {
  if (name.empty() || !std::isalnum(static_cast<unsigned char>(name[0]))) return false;
  for (char c : name)
    if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-' && c != '_') return false;
  return true;
}

Decl* findDecl(const CommandData& cmd, const std::string& name) {
  for (const auto& decl : cmd.decls)
    if (decl->name == name) return decl.get();
  return nullptr;
}

Decl* findOption(const CommandData& cmd, const std::string& name) {
  Decl* decl = findDecl(cmd, name);
  return decl && !decl->positional ? decl : nullptr;
}

// "--no-x" names the flag x, turned off.
const Decl* findLong(const CommandData& cmd, const std::string& name, bool& negated) {
  const Decl* decl = findOption(cmd, name);
  negated = !decl && name.compare(0, 3, "no-") == 0;
  if (negated) decl = findOption(cmd, name.substr(3));
  return decl && (!negated || decl->type == Type::Flag) ? decl : nullptr;
}

Decl* findShort(const CommandData& cmd, char c) {
  for (const auto& decl : cmd.decls)
    if (decl->shortName == c) return decl.get();
  return nullptr;
}

// ----------------------------------------------------------------------------- help text

std::string placeholderOf(const Decl& decl) {
  if (!decl.placeholder.empty()) return decl.placeholder;
  if (!decl.choices.empty()) {
    std::string all;
    for (const std::string& choice : decl.choices) all += (all.empty() ? "{" : "|") + choice;
    return all + "}";
  }
  switch (decl.type) {
    case Type::Text:
      return "TEXT";
    case Type::Integer:
      return "N";
    case Type::Real:
      return "X";
    case Type::Flag:
      return std::string();
    case Type::Vector:
      break;
  }
  static const char* const kAxes[] = {"X", "X,Y", "X,Y,Z", "X,Y,Z,W"};
  if (decl.size >= 1 && decl.size <= 4) return kAxes[decl.size - 1];
  if (decl.size) return "X1,...,X" + std::to_string(decl.size);
  if (decl.minSize <= 1) return "X[,...]";
  std::string text;
  for (size_t i = 1; i <= decl.minSize; ++i) text += (i > 1 ? ",X" : "X") + std::to_string(i);
  return text + "[,...]";
}

std::string optionLeft(const Decl& decl) {
  std::string left = decl.shortName ? std::string("-") + decl.shortName + ", " : "    ";
  if (decl.type == Type::Flag) {
    left += decl.defaultValue.flag ? "--[no-]" + decl.name : "--" + decl.name;
  } else {
    left += "--" + decl.name + " " + placeholderOf(decl);
  }
  return left;
}

std::string describe(const Decl& decl) {
  std::string text = decl.help;
  auto note = [&text](const std::string& more) {
    text += (text.empty() ? "(" : " (") + more + ")";
  };
  if (decl.required && !decl.positional) note("required");
  if (decl.hasDefault && decl.type != Type::Flag) note("default: " + decl.defaultValue.word);
  return text;
}

constexpr size_t kWidth = 79;
constexpr size_t kMaxColumn = 30;

// Descriptions wrap under themselves; a left part too wide for the column gets its own line.
void entry(std::string& out, const std::string& left, const std::string& text, size_t column) {
  std::string line = "  " + left;
  if (line.size() + 2 > column) {
    out += line + "\n";
    line.clear();
  }
  line.resize(column, ' ');
  std::istringstream words(text);
  bool first = true;
  for (std::string word; words >> word; first = false) {
    if (!first && line.size() + 1 + word.size() > kWidth) {
      out += line + "\n";
      line.assign(column, ' ');
      first = true;
    }
    line += (first ? "" : " ") + word;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  out += line + "\n";
}

std::string helpOf(const CommandData& cmd) {
  const std::string path = pathOf(cmd);
  std::vector<const Decl*> options;
  std::vector<const Decl*> positionals;
  for (const auto& decl : cmd.decls)
    (decl->positional ? positionals : options).push_back(decl.get());

  std::string out = "Usage: " + path;
  for (const Decl* decl : options)
    if (decl->required) out += " --" + decl->name + " " + placeholderOf(*decl);
  out += " [options]";
  for (const Decl* decl : positionals) {
    const std::string shown = "<" + decl->name + ">" + (decl->list ? "..." : "");
    out += decl->list ? (decl->minCount ? " " + shown : " [" + shown + "]")
                      : (decl->required ? " " + shown : " [" + shown + "]");
  }
  if (!cmd.subs.empty()) out += " <command> [<args>]";
  out += "\n";
  if (!cmd.summary.empty()) out += "\n" + cmd.summary + "\n";

  size_t column = std::string("  -h, --help").size() + 2;
  for (const Decl* decl : options) column = std::max(column, optionLeft(*decl).size() + 4);
  for (const Decl* decl : positionals) column = std::max(column, decl->name.size() + 6);
  for (const CommandData* sub : cmd.subData) column = std::max(column, sub->name.size() + 4);
  column = std::min(column, kMaxColumn);

  if (!positionals.empty()) {
    out += "\nArguments:\n";
    for (const Decl* decl : positionals)
      entry(out, "<" + decl->name + ">", describe(*decl), column);
  }
  out += "\nOptions:\n";
  for (const Decl* decl : options) entry(out, optionLeft(*decl), describe(*decl), column);
  entry(out, "-h, --help", "show this help and exit", column);
  if (!cmd.version.empty()) entry(out, "--version", "show the versions and exit", column);
  if (!cmd.subs.empty()) {
    out += "\nCommands:\n";
    for (const CommandData* sub : cmd.subData) entry(out, sub->name, sub->summary, column);
    out += "\nRun '" + path + " <command> --help' for the options of a command.\n";
  }
  // Users reach a sub-command's help first and would not learn of the global options.
  if (cmd.parent && !cmd.parent->decls.empty()) {
    const std::string parent = pathOf(*cmd.parent);
    out += "\nThe options of '" + parent + "' go before '" + cmd.name + "': see '" + parent +
           " --help'.\n";
  }
  if (!cmd.details.empty()) {
    out += "\n" + cmd.details;
    if (out.back() != '\n') out += "\n";
  }
  return out;
}

// ----------------------------------------------------------------------------- parsing

// Declarations that only make sense as a whole are checked once the command is used.
void validate(const CommandData& cmd) {
  bool optionalSeen = false;
  for (const auto& decl : cmd.decls) {
    if (!decl->positional) continue;
    const bool needed = decl->list ? decl->minCount > 0 : decl->required;
    if (needed && optionalSeen)
      throw ProgramError("argument '" + decl->name + "' of '" + pathOf(cmd) +
                         "' is required but follows an optional one");
    optionalSeen = optionalSeen || !needed;
  }
  for (const CommandData* sub : cmd.subData) validate(*sub);
}

class Parser {
 public:
  explicit Parser(const std::vector<std::string>& words) : words_(words) {}

  void level(const CommandData& cmd, ArgsData& out, bool endOfOptions) {
    out.cmd = &cmd;
    out.values.assign(cmd.decls.size(), std::vector<Value>());
    std::vector<const Decl*> positionals;
    for (const auto& decl : cmd.decls)
      if (decl->positional) positionals.push_back(decl.get());
    size_t nextPositional = 0;

    while (pos_ < words_.size()) {
      const std::string& word = words_[pos_++];
      if (!endOfOptions) {
        if (word == "--") {
          endOfOptions = true;
          continue;
        }
        if (word == "--help" || word == "-h") {
          out.help = &cmd;
          return;
        }
        if (word == "--version" && !cmd.version.empty()) {
          out.version = true;
          return;
        }
        if (word.size() > 2 && word.compare(0, 2, "--") == 0) {
          longOption(cmd, out, word);
          continue;
        }
        if (word.size() > 1 && word[0] == '-' && !looksNumeric(word)) {
          if (shortOptions(cmd, out, word)) {
            out.help = &cmd;
            return;
          }
          continue;
        }
      }
      if (!cmd.subs.empty()) {
        subCommand(cmd, out, word, endOfOptions);
        if (out.help) return;
        break;
      }
      out.positionals.push_back(word);
      if (nextPositional == positionals.size())
        throw Error("unexpected argument '" + word + "'", pathOf(cmd));
      const Decl& decl = *positionals[nextPositional];
      store(cmd, out, decl, word, "argument <" + decl.name + ">");
      if (!decl.list) ++nextPositional;
    }
    complete(cmd, out);
  }

 private:
  // "-5" and "-.5,2" are numbers for a positional argument, never option letters.
  static bool looksNumeric(const std::string& word) {
    auto digit = [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; };
    return digit(word[1]) || (word[1] == '.' && word.size() > 2 && digit(word[2]));
  }

  // A following word that starts with "--" is an option (or the end of options), so the
  // value is missing rather than that word.
  bool nextValue(std::string& value) {
    if (pos_ == words_.size() || words_[pos_].compare(0, 2, "--") == 0) return false;
    value = words_[pos_++];
    return true;
  }

  void longOption(const CommandData& cmd, ArgsData& out, const std::string& word) {
    std::string name = word.substr(2);
    std::string value;
    const size_t eq = name.find('=');
    const bool attached = eq != std::string::npos;
    if (attached) {
      value = name.substr(eq + 1);
      name.erase(eq);
    }
    const std::string shown = "--" + name;
    if (name == "help") throw Error("option '--help' takes no value", pathOf(cmd));
    bool negated = false;
    const Decl* decl = findLong(cmd, name, negated);
    if (!decl)
      unknown(cmd, shown, [&name](const CommandData& c) {
        bool ignored = false;
        return findLong(c, name, ignored) != nullptr;
      });
    if (decl->type == Type::Flag) {
      if (attached) throw Error("option '" + shown + "' takes no value", pathOf(cmd));
      store(cmd, out, *decl, negated ? "false" : "true", "option '" + shown + "'");
      return;
    }
    if (!attached && !nextValue(value))
      throw Error("option '" + shown + "' needs a value", pathOf(cmd));
    store(cmd, out, *decl, value, "option '" + shown + "'");
  }

  // Returns true when the group asks for help.
  bool shortOptions(const CommandData& cmd, ArgsData& out, const std::string& word) {
    for (size_t k = 1; k < word.size(); ++k) {
      const char c = word[k];
      const std::string shown = std::string("-") + c;
      const Decl* decl = findShort(cmd, c);
      if (!decl && c == 'h') return true;
      if (!decl)
        unknown(cmd, shown, [c](const CommandData& p) { return findShort(p, c) != nullptr; });
      if (decl->type == Type::Flag) {
        store(cmd, out, *decl, "true", "option '" + shown + "'");
        continue;
      }
      std::string value = word.substr(k + 1);
      if (!value.empty()) {
        if (value[0] == '=') value.erase(0, 1);
      } else if (!nextValue(value)) {
        throw Error("option '" + shown + "' needs a value", pathOf(cmd));
      }
      store(cmd, out, *decl, value, "option '" + shown + "'");
      return false;
    }
    return false;
  }

  // Options of an enclosing command given after its sub-command: say where they belong.
  template <typename Declares>
  [[noreturn]] static void unknown(const CommandData& cmd, const std::string& shown,
                                   Declares declares) {
    for (const CommandData* c = &cmd; c->parent; c = c->parent) {
      if (declares(*c->parent))
        throw Error("option '" + shown + "' must come before '" + c->name + "'", pathOf(cmd));
    }
    throw Error("unknown option '" + shown + "'", pathOf(cmd));
  }

  static void store(const CommandData& cmd, ArgsData& out, const Decl& decl,
                    const std::string& word, const std::string& what) {
    Value value;
    const std::string why = readValue(decl, word, value);
    if (!why.empty()) throw Error(what + ": " + why, pathOf(cmd));
    std::vector<Value>& slot = out.values[indexOf(cmd, decl)];
    if (!decl.list) slot.clear();
    slot.push_back(std::move(value));
  }

  static size_t indexOf(const CommandData& cmd, const Decl& decl) {
    for (size_t i = 0; i < cmd.decls.size(); ++i)
      if (cmd.decls[i].get() == &decl) return i;
    return 0;
  }

  void subCommand(const CommandData& cmd, ArgsData& out, const std::string& word,
                  bool endOfOptions) {
    const CommandData* chosen = nullptr;
    for (const CommandData* sub : cmd.subData)
      if (sub->name == word) chosen = sub;
    if (!chosen) throw Error("unknown command '" + word + "'", pathOf(cmd));
    out.command = word;
    auto child = std::make_shared<ArgsData>();
    child->parent = &out;
    level(*chosen, *child, endOfOptions);
    out.help = child->help;
    ArgsData::of(out.sub) = std::move(child);
  }

  static void complete(const CommandData& cmd, const ArgsData& out) {
    if (!cmd.subs.empty() && out.command.empty()) throw Error("missing command", pathOf(cmd));
    for (size_t i = 0; i < cmd.decls.size(); ++i) {
      const Decl& decl = *cmd.decls[i];
      const size_t given = out.values[i].size();
      if (!decl.positional) {
        if (decl.required && !given)
          throw Error("missing required option '--" + decl.name + "'", pathOf(cmd));
      } else if (decl.list ? given < decl.minCount : decl.required && !given) {
        if (!given) throw Error("missing argument <" + decl.name + ">", pathOf(cmd));
        throw Error("argument <" + decl.name + "> needs at least " + std::to_string(decl.minCount) +
                        " values, got " + std::to_string(given),
                    pathOf(cmd));
      }
    }
  }

  const std::vector<std::string>& words_;
  size_t pos_ = 0;
};

}  // namespace

// ------------------------------------------------------------------------------- Error

Error::Error(std::string message, std::string command)
    : message_(std::move(message)), command_(std::move(command)) {}

// ------------------------------------------------------------------------------ Option

namespace {

void readDefault(Decl& decl, const std::string& text) {
  Value value;
  const std::string why = readValue(decl, text, value);
  if (!why.empty()) throw ProgramError("default of '" + decl.name + "': " + why);
  decl.defaultValue = std::move(value);
}

// A constraint added after the default must hold for it too.
void recheckDefault(Decl& decl) {
  if (decl.hasDefault && decl.type != Type::Flag) readDefault(decl, decl.defaultValue.word);
}

void expect(bool condition, const Decl& decl, const std::string& complaint) {
  if (!condition) throw ProgramError("'" + decl.name + "' " + complaint);
}

}  // namespace

Option& Option::shortName(char c) {
  expect(!decl_->positional, *decl_, "is an argument and takes no short name");
  expect(std::isalpha(static_cast<unsigned char>(c)) && c != 'h', *decl_,
         std::string("cannot be -") + c + ": short names are letters other than h");
  decl_->shortName = c;
  return *this;
}

Option& Option::placeholder(const std::string& text) {
  decl_->placeholder = text;
  return *this;
}

Option& Option::defaultValue(const std::string& text) {
  expect(!decl_->list, *decl_, "is a list and takes no default");
  expect(!decl_->required || decl_->positional, *decl_, "is required and so takes no default");
  readDefault(*decl_, text);
  decl_->hasDefault = true;
  if (decl_->positional) decl_->required = false;  // an argument with a default may be left out
  return *this;
}

Option& Option::required() {
  expect(decl_->type != Type::Flag, *decl_, "is a flag and cannot be required");
  expect(!decl_->hasDefault, *decl_, "has a default and so cannot be required");
  decl_->required = true;
  if (decl_->list && decl_->minCount == 0) decl_->minCount = 1;
  return *this;
}

Option& Option::optional() {
  expect(decl_->positional && !decl_->list, *decl_, "is not a single argument");
  decl_->required = false;
  return *this;
}

Option& Option::size(size_t n) {
  expect(decl_->type == Type::Vector && n > 0, *decl_, "size needs a vector and a count above 0");
  decl_->size = n;
  recheckDefault(*decl_);
  return *this;
}

Option& Option::minSize(size_t n) {
  expect(decl_->type == Type::Vector, *decl_, "is not a vector");
  decl_->size = 0;
  decl_->minSize = n;
  recheckDefault(*decl_);
  return *this;
}

Option& Option::minCount(size_t n) {
  expect(decl_->list, *decl_, "is not a list");
  decl_->minCount = n;
  return *this;
}

Option& Option::range(double lo, double hi) {
  expect(decl_->type == Type::Integer || decl_->type == Type::Real || decl_->type == Type::Vector,
         *decl_, "is not numeric");
  expect(lo <= hi, *decl_, "has an empty range");
  decl_->ranged = true;
  decl_->lo = lo;
  decl_->hi = hi;
  recheckDefault(*decl_);
  return *this;
}

Option& Option::choices(const std::vector<std::string>& words) {
  expect(decl_->type == Type::Text && !words.empty(), *decl_, "choices need a text value");
  decl_->choices = words;
  recheckDefault(*decl_);
  return *this;
}

// ----------------------------------------------------------------------------- Command

Command::Command() : data_(new CommandData) {}

Command::Command(const std::string& name, const std::string& summary) : Command() {
  if (name.empty()) throw ProgramError("a command needs a name");
  data_->name = name;
  data_->summary = summary;
}

Command::~Command() = default;
Command::Command(Command&&) noexcept = default;
Command& Command::operator=(Command&&) noexcept = default;

namespace {

Decl& declare(CommandData& cmd, const std::string& name, Type type, const std::string& help) {
  if (!validName(name) || name == "help")
    throw ProgramError("'" + name + "' cannot name an option or argument of '" + pathOf(cmd) + "'");
  if (findDecl(cmd, name))
    throw ProgramError("'" + name + "' is declared twice in '" + pathOf(cmd) + "'");
  // "--no-x" negates the flag "x", so the two names cannot both be options.
  const bool clash = name.compare(0, 3, "no-") == 0 ? findDecl(cmd, name.substr(3)) != nullptr
                                                    : findDecl(cmd, "no-" + name) != nullptr;
  if (clash)
    throw ProgramError("'" + name + "' clashes with a negated flag in '" + pathOf(cmd) + "'");
  auto decl = std::make_unique<Decl>();
  decl->name = name;
  decl->type = type;
  decl->help = help;
  cmd.decls.push_back(std::move(decl));
  return *cmd.decls.back();
}

Decl& declarePositional(CommandData& cmd, const std::string& name, Type type,
                        const std::string& help) {
  if (!cmd.subs.empty())
    throw ProgramError("'" + pathOf(cmd) + "' has commands and so takes no arguments");
  if (type == Type::Flag) throw ProgramError("argument '" + name + "' cannot be a flag");
  for (const auto& decl : cmd.decls)
    if (decl->list) throw ProgramError("'" + name + "' follows the list '" + decl->name + "'");
  Decl& decl = declare(cmd, name, type, help);
  decl.positional = true;
  return decl;
}

}  // namespace

Option Command::option(const std::string& name, Type type, const std::string& help) {
  Decl& decl = declare(*data_, name, type, help);
  if (type == Type::Flag) {
    decl.hasDefault = true;
    decl.defaultValue.word = "false";
  }
  return Option(&decl);
}

Option Command::argument(const std::string& name, Type type, const std::string& help) {
  Decl& decl = declarePositional(*data_, name, type, help);
  decl.required = true;
  return Option(&decl);
}

Option Command::arguments(const std::string& name, Type type, const std::string& help) {
  Decl& decl = declarePositional(*data_, name, type, help);
  decl.list = true;
  return Option(&decl);
}

Command& Command::command(const std::string& name, const std::string& summary) {
  for (const auto& decl : data_->decls)
    if (decl->positional)
      throw ProgramError("'" + pathOf(*data_) + "' has arguments and so takes no commands");
  if (!validName(name)) throw ProgramError("'" + name + "' cannot name a command");
  for (const CommandData* sub : data_->subData)
    if (sub->name == name)
      throw ProgramError("command '" + name + "' is declared twice in '" + pathOf(*data_) + "'");
  std::unique_ptr<Command> sub(new Command());
  sub->data_->name = name;
  sub->data_->summary = summary;
  sub->data_->parent = data_.get();
  data_->subData.push_back(sub->data_.get());
  data_->subs.push_back(std::move(sub));
  return *data_->subs.back();
}

Command& Command::details(const std::string& text) {
  data_->details = text;
  return *this;
}

Command& Command::version(const std::string& lines) {
  data_->version = lines;
  if (!data_->version.empty() && data_->version.back() != '\n') data_->version += '\n';
  return *this;
}

std::string Command::path() const {
  return pathOf(*data_);
}

std::string Command::help() const {
  return helpOf(*data_);
}

Args Command::parse(const std::vector<std::string>& words) const {
  validate(*data_);
  Args args;
  args.data_ = std::make_shared<ArgsData>();
  Parser(words).level(*data_, *args.data_, false);
  return args;
}

Args Command::parse(int argc, const char* const* argv) const {
  std::vector<std::string> words;
  for (int i = 1; i < argc; ++i) words.emplace_back(argv[i]);
  return parse(words);
}

Args Command::parseOrExit(int argc, const char* const* argv) const {
  try {
    Args args = parse(argc, argv);
    if (args.helpRequested()) {
      std::cout << args.helpText() << std::flush;
      std::exit(0);
    }
    if (args.versionRequested()) {
      // The library line is written by the library itself, so it names the one that was
      // actually loaded, whatever the program was built with.
      std::cout << data_->version << "library lib" VC_LIBRARY_NAME ".so." << VC_LIBRARY_SOVERSION
                << ", version " << VC_LIBRARY_VERSION << "\n"
                << std::flush;
      std::exit(0);
    }
    return args;
  } catch (const Error& e) {
    exitWithError(*data_, e.what(), e.command().empty() ? path() : e.command());
  }
}

// -------------------------------------------------------------------------------- Args

Args::Args() = default;

namespace {

const ArgsData& dataOf(const std::shared_ptr<ArgsData>& data) {
  if (!data) throw ProgramError("these arguments were never parsed");
  return *data;
}

struct Found {
  const ArgsData* args;
  size_t index;
  const Decl& decl() const { return *args->cmd->decls[index]; }
  const std::vector<Value>& given() const { return args->values[index]; }
};

Found lookup(const ArgsData& args, const std::string& name) {
  for (const ArgsData* level = &args; level; level = level->parent) {
    for (size_t i = 0; i < level->cmd->decls.size(); ++i)
      if (level->cmd->decls[i]->name == name) return Found{level, i};
  }
  throw ProgramError("'" + name + "' is not declared for '" + pathOf(*args.cmd) + "'");
}

const Value& valueOf(const ArgsData& args, const std::string& name, size_t index,
                     const Type* wanted) {
  const Found found = lookup(args, name);
  const Decl& decl = found.decl();
  if (wanted && decl.type != *wanted) {
    throw ProgramError("'" + name + "' is read with " + readerOf(decl.type) + "(), not " +
                       readerOf(*wanted) + "()");
  }
  const std::vector<Value>& given = found.given();
  if (index < given.size()) return given[index];
  if (given.empty() && index == 0 && decl.hasDefault) return decl.defaultValue;
  if (given.empty() && index == 0)
    throw ProgramError("'" + name + "' was not given and has no default");
  throw ProgramError("'" + name + "' has no value " + std::to_string(index));
}

}  // namespace

bool Args::has(const std::string& name) const {
  return !lookup(dataOf(data_), name).given().empty();
}

size_t Args::count(const std::string& name) const {
  const Found found = lookup(dataOf(data_), name);
  if (!found.given().empty()) return found.given().size();
  return found.decl().hasDefault ? 1 : 0;
}

std::string Args::text(const std::string& name, size_t index) const {
  return valueOf(dataOf(data_), name, index, nullptr).word;
}

long long Args::integer(const std::string& name, size_t index) const {
  const Type type = Type::Integer;
  return valueOf(dataOf(data_), name, index, &type).integer;
}

double Args::real(const std::string& name, size_t index) const {
  const Type type = Type::Real;
  return valueOf(dataOf(data_), name, index, &type).real;
}

bool Args::flag(const std::string& name) const {
  const Type type = Type::Flag;
  return valueOf(dataOf(data_), name, 0, &type).flag;
}

std::vector<double> Args::vector(const std::string& name, size_t index) const {
  const Type type = Type::Vector;
  return valueOf(dataOf(data_), name, index, &type).vector;
}

const std::vector<std::string>& Args::positionals() const {
  return dataOf(data_).positionals;
}

const std::string& Args::command() const {
  return dataOf(data_).command;
}

const Args& Args::sub() const {
  const ArgsData& data = dataOf(data_);
  if (data.command.empty())
    throw ProgramError("no command was chosen in '" + pathOf(*data.cmd) + "'");
  return data.sub;
}

const Args& Args::leaf() const {
  const Args* args = this;
  while (!dataOf(args->data_).command.empty()) args = &args->data_->sub;
  return *args;
}

std::string Args::name() const {
  return pathOf(*dataOf(data_).cmd);
}

bool Args::versionRequested() const {
  return dataOf(data_).version;
}

bool Args::helpRequested() const {
  return dataOf(data_).help != nullptr;
}

std::string Args::helpText() const {
  const ArgsData& data = dataOf(data_);
  return data.help ? helpOf(*data.help) : std::string();
}

void Args::fail(const std::string& message) const {
  const ArgsData& data = dataOf(data_);
  exitWithError(*data.cmd, message, pathOf(*data.cmd));
}

}  // namespace DtCmdLine
