#pragma once
// DtCmdLine reads a tool's command line: long and short options with typed values,
// positional arguments, sub-commands, and a help text generated from what was declared.
//
//   using DtCmdLine::Type;
//   DtCmdLine::Command cli("vcctl", "Steers viewers from the shell.");
//   cli.option("federation", Type::Text, "federation to join")
//       .shortName('f').placeholder("URL").defaultValue("thread://vc");
//   cli.option("verbose", Type::Flag, "print every PDU sent").shortName('v');
//   DtCmdLine::Command& orbit = cli.command("orbit", "orbit the eyepoint around an entity");
//   orbit.option("radius", Type::Real, "distance in metres").defaultValue("100");
//   orbit.option("offset", Type::Vector, "look-at offset").size(3);
//   orbit.argument("entity", Type::Text, "entity id, site:host:entity");
//
//   DtCmdLine::Args args = cli.parseOrExit(argc, argv);  // exits on --help and on errors
//   const DtCmdLine::Args& cmd = args.leaf();             // the chosen sub-command
//   if (args.command() == "orbit")                        // cmd also reads --federation
//     orbitAround(cmd.text("federation"), cmd.text("entity"), cmd.real("radius"));
//
// Accepted forms: "--name value", "--name=value", "-n value", "-nvalue", grouped short
// flags ("-vq"), "--no-name" for any flag, and "--" after which every word is positional.
// A value may start with '-' ("--radius -5") but not with "--"; write "--name=--x" for
// that. A word such as "-5" or "-.5,1" is positional, never a short option. "--help" and
// "-h" are reserved at every level. A repeated option keeps its last value.
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "dtExport.h"

namespace DtCmdLine {

/// What a value is. Numbers are decimal ("0x" hexadecimal for integers); a vector is
/// reals separated by commas ("1,2.5,-3").
enum class Type { Text, Integer, Real, Flag, Vector };

/// A mistake on the command line. what() is the one-line message, without the program
/// name; command() names the (sub-)command whose --help explains it ("vcctl orbit").
class DT_EXPORT Error : public std::exception {
 public:
  explicit Error(std::string message, std::string command = std::string());
  const char* what() const noexcept override { return message_.c_str(); }
  const std::string& command() const { return command_; }

 private:
  std::string message_;
  std::string command_;
};

/// A mistake of the program using the parser: contradictory declarations, or reading a
/// name that was never declared, reading it as another type, or reading a value that was
/// neither given nor defaulted. Never caused by what the user typed.
class DT_EXPORT ProgramError : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

namespace detail {
struct Decl;
struct CommandData;
struct ArgsData;
}  // namespace detail

/// A handle on one declared option or positional argument, for refining it. It stays
/// valid as long as its Command; keep it by value. Constraints are checked against the
/// default at once, so a default that does not fit throws ProgramError.
class DT_EXPORT Option {
 public:
  /// Also accepted as "-c". Letters only; 'h' is taken by help. Options only.
  Option& shortName(char c);
  /// Shown in the help for an option's value ("URL" in "--federation URL"); arguments
  /// are shown by their names.
  Option& placeholder(const std::string& text);
  /// Read as the option's type now; the help shows it as written. Flags take "true" or
  /// "false"; a flag that defaults to true is shown as "--[no-]name". An argument with a
  /// default is optional.
  Option& defaultValue(const std::string& text);
  /// The command line must give it. Positional arguments are required unless optional().
  Option& required();
  /// A positional argument that may be left out; later ones must be optional as well.
  Option& optional();
  /// Vectors: exactly `n` numbers.
  Option& size(size_t n);
  /// Vectors: at least `n` numbers (one, unless said otherwise).
  Option& minSize(size_t n);
  /// Trailing argument lists: at least `n` words (none, unless said otherwise).
  Option& minCount(size_t n);
  /// Integers, reals and every number of a vector must lie within [lo, hi].
  Option& range(double lo, double hi);
  /// Text: one of these words exactly.
  Option& choices(const std::vector<std::string>& words);

 private:
  friend class Command;
  explicit Option(detail::Decl* decl) : decl_(decl) {}
  detail::Decl* decl_;
};

class Args;

/// A program or one of its sub-commands: its options, positional arguments or
/// sub-commands (not both), and its help text. Names of options and arguments share one
/// namespace per command. Declaration mistakes throw ProgramError.
class DT_EXPORT Command {
 public:
  /// `name` is the program's name as printed in help and error messages.
  explicit Command(const std::string& name, const std::string& summary = std::string());
  ~Command();
  Command(Command&&) noexcept;
  Command& operator=(Command&&) noexcept;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  /// Declares "--name" (a flag when `type` is Flag, else it takes a value).
  Option option(const std::string& name, Type type, const std::string& help);
  /// Declares the next positional argument, required unless made optional().
  Option argument(const std::string& name, Type type, const std::string& help);
  /// Declares a trailing list that takes every remaining positional word.
  Option arguments(const std::string& name, Type type, const std::string& help);
  /// Declares a sub-command; the first positional word picks one, and the words after it
  /// are its own. A command with sub-commands requires one.
  Command& command(const std::string& name, const std::string& summary);
  /// Text printed at the end of the help (examples, notes). Lines are kept as written.
  Command& details(const std::string& text);
  /// Gives a program "--version": `lines` (its own name and version, and what else it
  /// was built against) are printed, followed by the library's name and version.
  Command& version(const std::string& lines);

  /// "vcctl orbit" for a sub-command.
  std::string path() const;
  std::string help() const;

  /// Reads the words after the program name. Throws Error. When --help is met the result
  /// says so and nothing after it is checked.
  Args parse(const std::vector<std::string>& words) const;
  /// The same from main()'s arguments, skipping argv[0].
  Args parse(int argc, const char* const* argv) const;
  /// Prints the help (or the versions) to stdout and exits 0 on --help (--version); prints
  /// "<program>: <message>" and "Try '<command> --help'." to stderr and exits 2 on an error.
  Args parseOrExit(int argc, const char* const* argv) const;

 private:
  friend class Option;
  friend class Args;
  Command();
  std::unique_ptr<detail::CommandData> data_;
};

/// The values of one parse, valid while the Command lives. Reading a name first looks at
/// this level, then at the enclosing commands, so a sub-command's Args also reads the
/// options given before it.
class DT_EXPORT Args {
 public:
  Args();

  /// True when the option or argument was on the command line (a default does not count).
  bool has(const std::string& name) const;
  /// Values held: the words of a trailing list; 1 for anything given or defaulted; else 0.
  size_t count(const std::string& name) const;
  /// The word as given (or the default as written), for a value of any type.
  std::string text(const std::string& name, size_t index = 0) const;
  long long integer(const std::string& name, size_t index = 0) const;
  double real(const std::string& name, size_t index = 0) const;
  bool flag(const std::string& name) const;
  std::vector<double> vector(const std::string& name, size_t index = 0) const;
  /// Every positional word of this level, in order, without the sub-command's.
  const std::vector<std::string>& positionals() const;

  /// The sub-command chosen at this level; empty if none.
  const std::string& command() const;
  /// Its values; ProgramError when there is none.
  const Args& sub() const;
  /// The deepest chosen sub-command's values (this one when none was chosen).
  const Args& leaf() const;
  /// The path of the command these values belong to ("vcctl orbit").
  std::string name() const;

  /// --help (or -h) was met; helpText() is the help of the command it was given to.
  bool helpRequested() const;
  /// --version was met at a program that has a version(); nothing after it is checked.
  bool versionRequested() const;
  std::string helpText() const;

  /// For the tool's own checks after parsing: reports `message` the way parseOrExit
  /// reports an error for this command, and exits 2.
  [[noreturn]] void fail(const std::string& message) const;

 private:
  friend class Command;
  friend struct detail::ArgsData;
  std::shared_ptr<detail::ArgsData> data_;
};

}  // namespace DtCmdLine
