// Words -> DtCmdLine, the parser of the shell tools' command lines. The input is split at
// NUL bytes into words and parsed by a command that declares every kind of option,
// argument and sub-command; every value that parsed is then read back.
#include <cstdlib>
#include <string>
#include <vector>

#include "dtCmdLine.h"

using DtCmdLine::Type;

namespace {

volatile std::size_t sink;

DtCmdLine::Command makeCommand() {
  DtCmdLine::Command cli("fuzz", "every kind of declaration");
  cli.option("text", Type::Text, "a text").shortName('t').defaultValue("x");
  cli.option("count", Type::Integer, "an integer").shortName('c').range(-5, 1e6);
  cli.option("real", Type::Real, "a real").shortName('r');
  cli.option("flag", Type::Flag, "a flag").shortName('f');
  cli.option("on", Type::Flag, "a flag that is on").defaultValue("true");
  cli.option("vec", Type::Vector, "three numbers").size(3);
  cli.option("some", Type::Vector, "two or more numbers").minSize(2).range(-1, 1);
  cli.option("word", Type::Text, "one of three").choices({"a", "bb", "ccc"});
  DtCmdLine::Command& run = cli.command("run", "positional arguments");
  run.argument("first", Type::Text, "a word");
  run.argument("second", Type::Integer, "a number").optional();
  DtCmdLine::Command& list = cli.command("list", "a trailing list");
  list.option("deep", Type::Real, "a real of the sub-command").defaultValue("1.5");
  list.arguments("items", Type::Vector, "vectors").size(2).minCount(1);
  DtCmdLine::Command& nested = cli.command("nested", "sub-commands of its own");
  nested.command("leaf", "the end").argument("all", Type::Real, "a real").defaultValue("0");
  return cli;
}

void readBack(const DtCmdLine::Args& args) {
  std::size_t n = args.helpRequested() ? args.helpText().size() : 0;
  for (const char* name : {"text", "count", "real", "flag", "on", "vec", "some", "word", "first",
                           "second", "items", "deep", "all"}) {
    try {
      n += args.count(name) + args.has(name);
      for (std::size_t i = 0; i < args.count(name); ++i) n += args.text(name, i).size();
    } catch (const DtCmdLine::ProgramError&) {
      // Not declared at this level: the parser says so rather than guess.
    }
  }
  try {
    n += static_cast<std::size_t>(args.integer("count"));
  } catch (const DtCmdLine::ProgramError&) {
  }
  try {
    n += static_cast<std::size_t>(args.real("real") != 0);
  } catch (const DtCmdLine::ProgramError&) {
  }
  try {
    n += args.flag("flag");
  } catch (const DtCmdLine::ProgramError&) {
  }
  try {
    n += args.vector("vec").size();
  } catch (const DtCmdLine::ProgramError&) {
  }
  try {
    n += args.vector("some").size();
  } catch (const DtCmdLine::ProgramError&) {
  }
  try {
    for (std::size_t i = 0; i < args.count("items"); ++i) n += args.vector("items", i).size();
  } catch (const DtCmdLine::ProgramError&) {
  }
  n += args.positionals().size() + args.command().size() + args.name().size();
  sink = n;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const DtCmdLine::Command cli = makeCommand();
  std::vector<std::string> words(1);
  for (size_t i = 0; i < size; ++i) {
    if (data[i] == 0)
      words.emplace_back();
    else
      words.back() += static_cast<char>(data[i]);
  }
  try {
    DtCmdLine::Args args = cli.parse(words);
    readBack(args);
    const DtCmdLine::Args* level = &args;
    while (!level->command().empty()) {
      level = &level->sub();
      readBack(*level);
    }
    readBack(args.leaf());
  } catch (const DtCmdLine::Error& e) {
    sink = std::string(e.what()).size() + e.command().size();
  }
  return 0;
}
