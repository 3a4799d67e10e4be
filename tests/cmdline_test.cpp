// The command-line parser: option forms, typed values and their exact complaints,
// defaults, required options and arguments, sub-commands, "--", the help text and the
// exits of parseOrExit.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "dtCmdLine.h"

namespace {

using DtCmdLine::Args;
using DtCmdLine::Command;
using DtCmdLine::Type;
using Words = std::vector<std::string>;

// A tool shaped like the shell tools: global options, then a sub-command with its own.
Command makeTool() {
  Command cli("vcctl", "Steers viewers from the shell.");
  cli.option("federation", Type::Text, "federation to join")
      .shortName('f')
      .placeholder("URL")
      .defaultValue("thread://vc");
  cli.option("fdd", Type::Text, "object model file").placeholder("FILE").required();
  cli.option("verbose", Type::Flag, "print every PDU").shortName('v');
  cli.option("quiet", Type::Flag, "print nothing").shortName('q');
  cli.option("echo", Type::Flag, "show own echoes").defaultValue("true");
  cli.option("count", Type::Integer, "repetitions").shortName('c').defaultValue("1");

  Command& orbit = cli.command("orbit", "orbit the eyepoint around an entity");
  orbit.option("radius", Type::Real, "distance in metres").shortName('r').defaultValue("100");
  orbit.option("offset", Type::Vector, "look-at offset").size(3);
  orbit.option("port", Type::Integer, "hub port").range(1, 65535);
  orbit.option("mode", Type::Text, "how to turn").choices({"smooth", "snap"});
  orbit.argument("entity", Type::Text, "entity id, site:host:entity");
  orbit.argument("elevation", Type::Real, "degrees above the horizon").defaultValue("30");

  Command& draw = cli.command("draw", "draw in the viewer's scene");
  draw.option("layer", Type::Integer, "layer id").defaultValue("0");
  Command& line = draw.command("line", "draw a polyline");
  line.option("width", Type::Real, "in pixels");
  line.option("verbose", Type::Integer, "a sub-command may reuse a global name");
  line.argument("id", Type::Integer, "object id");
  line.arguments("points", Type::Vector, "vertices").minCount(2);
  return cli;
}

std::string errorOf(const Command& cli, const Words& words) {
  try {
    cli.parse(words);
  } catch (const DtCmdLine::Error& e) {
    return e.what();
  }
  return "(accepted)";
}

const Words kBase = {"--fdd", "vc.xml"};

Words with(Words more) {
  Words all = kBase;
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

TEST(CmdLine, OptionFormsAllMeanTheSame) {
  const Command cli = makeTool();
  for (const Words& form : {Words{"--count", "5"}, Words{"--count=5"}, Words{"-c", "5"},
                            Words{"-c5"}, Words{"-c=5"}, Words{"-vc", "5"}, Words{"-vc5"}}) {
    Words words = form;
    words.insert(words.end(), {"--fdd=vc.xml", "orbit", "e"});
    const Args args = cli.parse(words);
    EXPECT_EQ(args.integer("count"), 5) << form[0];
    EXPECT_TRUE(args.has("count"));
  }
  const Args grouped = cli.parse(with({"-vq", "orbit", "1:2:3"}));
  EXPECT_TRUE(grouped.flag("verbose"));
  EXPECT_TRUE(grouped.flag("quiet"));

  // The last of a repeated option wins; "--no-" turns any flag off.
  const Args repeated = cli.parse(with({"-c", "2", "--count", "3", "--no-echo", "orbit", "e"}));
  EXPECT_EQ(repeated.integer("count"), 3);
  EXPECT_FALSE(repeated.flag("echo"));
  EXPECT_TRUE(repeated.has("echo"));
  EXPECT_EQ(repeated.text("echo"), "false");
}

TEST(CmdLine, DefaultsAreReadButNotGiven) {
  const Command cli = makeTool();
  const Args args = cli.parse(with({"orbit", "1:2:3"}));
  EXPECT_EQ(args.text("federation"), "thread://vc");
  EXPECT_FALSE(args.has("federation"));
  EXPECT_EQ(args.count("federation"), 1u);
  EXPECT_TRUE(args.flag("echo"));
  EXPECT_FALSE(args.flag("verbose"));
  const Args& orbit = args.sub();
  EXPECT_DOUBLE_EQ(orbit.real("radius"), 100);
  EXPECT_DOUBLE_EQ(orbit.real("elevation"), 30);
  EXPECT_FALSE(orbit.has("elevation"));
  EXPECT_FALSE(orbit.has("offset"));
  EXPECT_EQ(orbit.count("offset"), 0u);
}

TEST(CmdLine, NumbersAndTheirComplaints) {
  const Command cli = makeTool();
  struct Case {
    std::string word;
    long long value;
    std::string error;
  };
  const Case integers[] = {
      {"12", 12, ""},
      {"+7", 7, ""},
      {" 8 ", 8, ""},
      {"010", 10, ""},  // decimal, not octal
      {"0x1F", 31, ""},
      {"-0x10", -16, ""},
      {"9223372036854775807", 9223372036854775807LL, ""},
      {"-9223372036854775808", -9223372036854775807LL - 1, ""},
      {"12x", 0, "option '--count': '12x' is not an integer"},
      {"1.5", 0, "option '--count': '1.5' is not an integer"},
      {"", 0, "option '--count': '' is not an integer"},
      {"--5", 0, "option '--count': '--5' is not an integer"},
      {"0x", 0, "option '--count': '0x' is not an integer"},
      {"9223372036854775808", 0, "option '--count': '9223372036854775808' is out of range"},
      {"-9223372036854775809", 0, "option '--count': '-9223372036854775809' is out of range"},
  };
  for (const Case& c : integers) {
    if (c.error.empty()) {
      EXPECT_EQ(cli.parse(with({"--count=" + c.word, "orbit", "e"})).integer("count"), c.value)
          << c.word;
    } else {
      EXPECT_EQ(errorOf(cli, with({"--count=" + c.word, "orbit", "e"})), c.error);
    }
  }

  const Args reals = cli.parse(with({"orbit", "-r", "-2.5e3", "e", "-.5"}));
  EXPECT_DOUBLE_EQ(reals.sub().real("radius"), -2500);
  EXPECT_DOUBLE_EQ(reals.sub().real("elevation"), -0.5);
  const std::pair<std::string, std::string> badReals[] = {
      {"abc", "option '--radius': 'abc' is not a number"},
      {"1.5m", "option '--radius': '1.5m' is not a number"},
      {"nan", "option '--radius': 'nan' is not a number"},
      {"inf", "option '--radius': 'inf' is not a number"},
      {"0x10", "option '--radius': '0x10' is not a number"},
      {"1e999", "option '--radius': '1e999' is out of range"},
  };
  for (const auto& [word, error] : badReals)
    EXPECT_EQ(errorOf(cli, with({"orbit", "--radius", word, "e"})), error);
  EXPECT_EQ(errorOf(cli, with({"orbit", "-r", "abc", "e"})), "option '-r': 'abc' is not a number");
  EXPECT_EQ(errorOf(cli, with({"orbit", "e", "high"})),
            "argument <elevation>: 'high' is not a number");

  EXPECT_EQ(cli.parse(with({"orbit", "--port", "65535", "e"})).sub().integer("port"), 65535);
  EXPECT_EQ(errorOf(cli, with({"orbit", "--port", "0", "e"})),
            "option '--port': '0' is not between 1 and 65535");
}

TEST(CmdLine, VectorsCountTheirNumbers) {
  const Command cli = makeTool();
  const Args args = cli.parse(with({"orbit", "--offset", "1, -2.5 ,3e1", "e"}));
  EXPECT_EQ(args.sub().vector("offset"), (std::vector<double>{1, -2.5, 30}));
  EXPECT_EQ(args.sub().text("offset"), "1, -2.5 ,3e1");

  const std::pair<std::string, std::string> bad[] = {
      {"1,2", "option '--offset': expected 3 numbers separated by commas, got '1,2'"},
      {"1,2,3,4", "option '--offset': expected 3 numbers separated by commas, got '1,2,3,4'"},
      {"1,x,3", "option '--offset': 'x' is not a number (in '1,x,3')"},
      {"1,,3", "option '--offset': '' is not a number (in '1,,3')"},
  };
  for (const auto& [word, error] : bad)
    EXPECT_EQ(errorOf(cli, with({"orbit", "--offset", word, "e"})), error);

  // A trailing list of vectors, each at least two numbers long, at least two of them.
  Command shape("shape");
  shape.arguments("points", Type::Vector, "vertices").minCount(2);
  shape.option("scale", Type::Vector, "per axis").minSize(2).range(0, 10);
  const Args pts = shape.parse(Words{"0,0", "-1,2.5,4", "--scale=1,2,3"});
  ASSERT_EQ(pts.count("points"), 2u);
  EXPECT_EQ(pts.vector("points", 1), (std::vector<double>{-1, 2.5, 4}));
  EXPECT_EQ(pts.vector("scale"), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(errorOf(shape, {"0,0", "1,1", "--scale", "1"}),
            "option '--scale': expected at least 2 numbers separated by commas, got '1'");
  EXPECT_EQ(errorOf(shape, {"0,0", "1,1", "--scale", "1,11"}),
            "option '--scale': '11' is not between 0 and 10 (in '1,11')");
  EXPECT_EQ(errorOf(shape, {"0,0"}), "argument <points> needs at least 2 values, got 1");
  EXPECT_EQ(errorOf(shape, {}), "missing argument <points>");
}

TEST(CmdLine, ValuesFlagsAndChoices) {
  const Command cli = makeTool();
  // A value may start with '-', but a word starting with "--" is the next option.
  EXPECT_DOUBLE_EQ(cli.parse(with({"orbit", "--radius", "-5", "e"})).sub().real("radius"), -5);
  EXPECT_EQ(errorOf(cli, with({"orbit", "e", "--radius"})), "option '--radius' needs a value");
  EXPECT_EQ(errorOf(cli, with({"orbit", "--radius", "--port", "2", "e"})),
            "option '--radius' needs a value");
  EXPECT_EQ(errorOf(cli, with({"orbit", "e", "-r"})), "option '-r' needs a value");
  EXPECT_EQ(errorOf(cli, {"--fdd"}), "option '--fdd' needs a value");
  EXPECT_EQ(cli.parse(Words{"--fdd=--odd", "orbit", "e"}).text("fdd"), "--odd");
  EXPECT_EQ(cli.parse(Words{"--fdd=", "orbit", "e"}).text("fdd"), "");

  EXPECT_EQ(errorOf(cli, with({"--verbose=yes", "orbit", "e"})),
            "option '--verbose' takes no value");
  EXPECT_EQ(errorOf(cli, with({"--no-echo=1", "orbit", "e"})), "option '--no-echo' takes no value");
  EXPECT_EQ(errorOf(cli, with({"--no-count", "orbit", "e"})), "unknown option '--no-count'");
  EXPECT_EQ(errorOf(cli, with({"orbit", "e", "--no-echo"})),
            "option '--no-echo' must come before 'orbit'");
  EXPECT_EQ(errorOf(cli, with({"orbit", "e", "--no-count"})), "unknown option '--no-count'");

  EXPECT_EQ(cli.parse(with({"orbit", "--mode", "snap", "e"})).sub().text("mode"), "snap");
  EXPECT_EQ(errorOf(cli, with({"orbit", "--mode", "Snap", "e"})),
            "option '--mode': 'Snap' is not one of: smooth, snap");
}

TEST(CmdLine, UnknownAndMissing) {
  const Command cli = makeTool();
  EXPECT_EQ(errorOf(cli, with({"--bogus", "orbit", "e"})), "unknown option '--bogus'");
  EXPECT_EQ(errorOf(cli, with({"-vx", "orbit", "e"})), "unknown option '-x'");
  EXPECT_EQ(errorOf(cli, with({"orbit", "e", "--bogus"})), "unknown option '--bogus'");
  // A global option after the sub-command is named for what it is.
  EXPECT_EQ(errorOf(cli, with({"orbit", "e", "--federation", "x"})),
            "option '--federation' must come before 'orbit'");
  EXPECT_EQ(errorOf(cli, with({"draw", "line", "-q"})), "option '-q' must come before 'draw'");
  EXPECT_EQ(errorOf(cli, with({"draw", "--layer", "2", "line", "--layer", "3"})),
            "option '--layer' must come before 'line'");

  EXPECT_EQ(errorOf(cli, {"orbit", "e"}), "missing required option '--fdd'");
  EXPECT_EQ(errorOf(cli, kBase), "missing command");
  EXPECT_EQ(errorOf(cli, with({"orbt"})), "unknown command 'orbt'");
  EXPECT_EQ(errorOf(cli, with({"orbit"})), "missing argument <entity>");
  EXPECT_EQ(errorOf(cli, with({"orbit", "e", "45", "extra"})), "unexpected argument 'extra'");
  EXPECT_EQ(errorOf(cli, with({"draw"})), "missing command");

  // The error knows whose --help explains it.
  try {
    cli.parse(with({"draw", "line", "x"}));
    FAIL() << "accepted";
  } catch (const DtCmdLine::Error& e) {
    EXPECT_STREQ(e.what(), "argument <id>: 'x' is not an integer");
    EXPECT_EQ(e.command(), "vcctl draw line");
  }
}

TEST(CmdLine, DoubleDashEndsOptions) {
  const Command cli = makeTool();
  const Args args = cli.parse(with({"orbit", "--", "--odd-entity", "-5"}));
  EXPECT_EQ(args.sub().text("entity"), "--odd-entity");
  EXPECT_DOUBLE_EQ(args.sub().real("elevation"), -5);
  EXPECT_EQ(args.sub().positionals(), (Words{"--odd-entity", "-5"}));
  // Before the sub-command it holds for the sub-command's words as well.
  const Args early = cli.parse(with({"--", "orbit", "--help"}));
  EXPECT_FALSE(early.helpRequested());
  EXPECT_EQ(early.sub().text("entity"), "--help");
  EXPECT_EQ(errorOf(cli, with({"orbit", "--", "e", "1", "-r"})), "unexpected argument '-r'");
  // A lone "-" is a word, as for standard input.
  EXPECT_EQ(cli.parse(with({"orbit", "-"})).sub().text("entity"), "-");
}

TEST(CmdLine, SubCommandsNestAndReadOutward) {
  const Command cli = makeTool();
  const Args args = cli.parse(with({"-v", "-f", "rti://h:1/x", "draw", "--layer", "4", "line",
                                    "--verbose", "9", "12", "0,0,0", "1,0,0", "1,1,0"}));
  EXPECT_EQ(args.command(), "draw");
  EXPECT_EQ(args.sub().command(), "line");
  const Args& line = args.leaf();
  EXPECT_EQ(&line, &args.sub().sub());
  EXPECT_EQ(line.name(), "vcctl draw line");
  EXPECT_EQ(line.command(), "");
  EXPECT_EQ(line.integer("id"), 12);
  EXPECT_EQ(line.count("points"), 3u);
  EXPECT_EQ(line.vector("points", 2), (std::vector<double>{1, 1, 0}));
  EXPECT_EQ(line.text("points", 0), "0,0,0");
  // Names not declared at this level come from the enclosing commands; the nearest wins.
  EXPECT_EQ(line.integer("layer"), 4);
  EXPECT_EQ(line.text("federation"), "rti://h:1/x");
  EXPECT_EQ(line.integer("verbose"), 9);
  EXPECT_TRUE(args.flag("verbose"));
  EXPECT_EQ(line.positionals(), (Words{"12", "0,0,0", "1,0,0", "1,1,0"}));
  EXPECT_TRUE(args.positionals().empty());
}

TEST(CmdLine, HelpWinsAtAnyLevel) {
  const Command cli = makeTool();
  const std::pair<Words, std::string> asked[] = {
      {{"--help"}, "Usage: vcctl --fdd FILE [options] <command> [<args>]\n"},
      {{"-vh"}, "Usage: vcctl --fdd FILE [options] <command> [<args>]\n"},
      {{"orbit", "-h"}, "Usage: vcctl orbit [options] <entity> [<elevation>]\n"},
      {{"draw", "line", "--help", "--bogus"},
       "Usage: vcctl draw line [options] <id> <points>...\n"},
  };
  for (const auto& [words, usage] : asked) {
    // Missing --fdd and missing arguments do not matter once help is asked for.
    const Args args = cli.parse(words);
    ASSERT_TRUE(args.helpRequested()) << words[0];
    EXPECT_EQ(args.helpText().substr(0, usage.size()), usage);
  }
  EXPECT_FALSE(cli.parse(with({"orbit", "e"})).helpRequested());
  // Words are read left to right: a mistake before --help is still reported.
  EXPECT_EQ(errorOf(cli, {"draw", "line", "--bogus", "--help"}), "unknown option '--bogus'");
}

TEST(CmdLine, HelpTextLayout) {
  const Command cli = makeTool();
  EXPECT_EQ(cli.help(),
            "Usage: vcctl --fdd FILE [options] <command> [<args>]\n"
            "\n"
            "Steers viewers from the shell.\n"
            "\n"
            "Options:\n"
            "  -f, --federation URL  federation to join (default: thread://vc)\n"
            "      --fdd FILE        object model file (required)\n"
            "  -v, --verbose         print every PDU\n"
            "  -q, --quiet           print nothing\n"
            "      --[no-]echo       show own echoes\n"
            "  -c, --count N         repetitions (default: 1)\n"
            "  -h, --help            show this help and exit\n"
            "\n"
            "Commands:\n"
            "  orbit                 orbit the eyepoint around an entity\n"
            "  draw                  draw in the viewer's scene\n"
            "\n"
            "Run 'vcctl <command> --help' for the options of a command.\n");

  EXPECT_EQ(cli.parse(Words{"orbit", "--help"}).helpText(),
            "Usage: vcctl orbit [options] <entity> [<elevation>]\n"
            "\n"
            "orbit the eyepoint around an entity\n"
            "\n"
            "Arguments:\n"
            "  <entity>                  entity id, site:host:entity\n"
            "  <elevation>               degrees above the horizon (default: 30)\n"
            "\n"
            "Options:\n"
            "  -r, --radius X            distance in metres (default: 100)\n"
            "      --offset X,Y,Z        look-at offset\n"
            "      --port N              hub port\n"
            "      --mode {smooth|snap}  how to turn\n"
            "  -h, --help                show this help and exit\n"
            "\n"
            "The options of 'vcctl' go before 'orbit': see 'vcctl --help'.\n");

  // Long descriptions wrap under themselves; details come last, as written.
  Command tool("tool");
  tool.option("name", Type::Text,
              "the name under which the viewer lists this drawing and shows it when the "
              "pointer rests on it");
  tool.option("points", Type::Vector, "").minSize(2);
  tool.details("Example:\n  tool --name x");
  EXPECT_EQ(tool.help(),
            "Usage: tool [options]\n"
            "\n"
            "Options:\n"
            "      --name TEXT           the name under which the viewer lists this drawing\n"
            "                            and shows it when the pointer rests on it\n"
            "      --points X1,X2[,...]\n"
            "  -h, --help                show this help and exit\n"
            "\n"
            "Example:\n"
            "  tool --name x\n");
}

TEST(CmdLine, ProgramMistakesAreNotUserErrors) {
  using DtCmdLine::ProgramError;
  const Command cli = makeTool();
  const Args args = cli.parse(with({"orbit", "e"}));
  const Args& orbit = args.sub();
  const std::pair<std::function<void()>, std::string> reads[] = {
      {[&] { orbit.real("altitude"); }, "'altitude' is not declared for 'vcctl orbit'"},
      {[&] { args.real("radius"); }, "'radius' is not declared for 'vcctl'"},
      {[&] { orbit.integer("radius"); }, "'radius' is read with real(), not integer()"},
      {[&] { orbit.flag("entity"); }, "'entity' is read with text(), not flag()"},
      {[&] { orbit.vector("offset"); }, "'offset' was not given and has no default"},
      {[&] { orbit.text("entity", 1); }, "'entity' has no value 1"},
      {[&] { orbit.sub(); }, "no command was chosen in 'vcctl orbit'"},
      {[&] { Args().flag("x"); }, "these arguments were never parsed"},
  };
  for (const auto& [read, message] : reads) {
    try {
      read();
      ADD_FAILURE() << "no error for: " << message;
    } catch (const ProgramError& e) {
      EXPECT_EQ(std::string(e.what()), message);
    }
  }

  Command c("c");
  c.option("x", Type::Integer, "").range(0, 9);
  c.option("flag", Type::Flag, "");
  EXPECT_THROW(c.option("x", Type::Text, ""), ProgramError);
  EXPECT_THROW(c.option("no-flag", Type::Flag, ""), ProgramError);
  EXPECT_THROW(c.option("y", Type::Flag, "").shortName('h'), ProgramError);
  EXPECT_THROW(c.option("z", Type::Integer, "").defaultValue("10").range(0, 9), ProgramError);
  EXPECT_THROW(c.option("w", Type::Integer, "").defaultValue("x"), ProgramError);
  c.command("sub", "");
  EXPECT_THROW(c.argument("a", Type::Text, ""), ProgramError);

  Command p("p");
  p.argument("a", Type::Text, "").optional();
  p.argument("b", Type::Text, "");
  EXPECT_THROW(p.parse(Words{"1", "2"}), ProgramError);
  Command q("q");
  q.arguments("rest", Type::Text, "");
  EXPECT_THROW(q.argument("after", Type::Text, ""), ProgramError);
}

TEST(CmdLine, ParseOrExitReportsAndExits) {
  const Command cli = makeTool();
  auto run = [&cli](Words words) {
    std::vector<const char*> argv{"/usr/local/bin/vcctl"};
    for (const std::string& w : words) argv.push_back(w.c_str());
    cli.parseOrExit(static_cast<int>(argv.size()), argv.data());
    std::exit(7);  // parsed without exiting
  };
  EXPECT_EXIT(run({"--fdd", "f", "--bogus"}), testing::ExitedWithCode(2),
              "^vcctl: unknown option '--bogus'\nTry 'vcctl --help'.\n$");
  EXPECT_EXIT(run({"--fdd", "f", "orbit", "e", "--radius", "abc"}), testing::ExitedWithCode(2),
              "^vcctl: option '--radius': 'abc' is not a number\nTry 'vcctl orbit --help'.\n$");
  EXPECT_EXIT(run({"draw", "line", "--help"}), testing::ExitedWithCode(0), "^$");
  EXPECT_EXIT(run({"--fdd", "f", "orbit", "e"}), testing::ExitedWithCode(7), "");
  EXPECT_EXIT(
      cli.parse(with({"draw", "line", "1", "0,0", "1,1"})).leaf().fail("no viewer answered"),
      testing::ExitedWithCode(2), "^vcctl: no viewer answered\nTry 'vcctl draw line --help'.\n$");
}

}  // namespace
