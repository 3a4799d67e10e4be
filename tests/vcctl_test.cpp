// vcctl without a federation: the command lines it refuses and what it says about them,
// the help of every command, decoding known bytes, and the exact bytes that dry runs of
// representative commands would send.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "vcctlRun.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using vctest::runVcctl;
using vctest::VcctlRun;
using Words = std::vector<std::string>;

Words with(const Words& head, const Words& tail) {
  Words all = head;
  all.insert(all.end(), tail.begin(), tail.end());
  return all;
}

std::string hexOf(const DtPdu& pdu) {
  static const char digits[] = "0123456789abcdef";
  std::string text;
  for (int i = 0; i < pdu.length(); ++i) {
    unsigned char b = static_cast<unsigned char>(pdu.packet()[i]);
    text += digits[b >> 4];
    text += digits[b & 15];
  }
  return text;
}

std::vector<unsigned char> bytesOf(const std::string& hex) {
  std::vector<unsigned char> bytes;
  for (size_t i = 0; i + 1 < hex.size(); i += 2)
    bytes.push_back(static_cast<unsigned char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  return bytes;
}

// The PDUs a dry run shows, in order, from its "hex" lines.
std::vector<std::vector<unsigned char>> pdusOf(const VcctlRun& run) {
  std::vector<std::vector<unsigned char>> pdus;
  for (const std::string& line : run.lines)
    if (line.rfind("hex ", 0) == 0) pdus.push_back(bytesOf(line.substr(4)));
  return pdus;
}

TEST(Vcctl, BadCommandLinesNameTheirMistakeAndExit2) {
  struct Case {
    Words args;
    std::string message;
    std::string helpOf;
  };
  const Words line2d = {"draw", "line2d", "--id", "1", "--from", "0,0", "--to", "1,1"};
  const Case cases[] = {
      {{"orbt"}, "unknown command 'orbt'", "vcctl"},
      {{"orbit", "--radius"}, "option '--radius' needs a value", "vcctl orbit"},
      {{"orbit", "--radius", "far"}, "option '--radius': 'far' is not a number", "vcctl orbit"},
      {{"hide", "x"}, "argument <object>: 'x' is not an integer", "vcctl hide"},
      {{"orbit", "1:1:1", "--viewer", "v-1"},
       "option '--viewer' must come before 'orbit'",
       "vcctl orbit"},
      {{"move", "sideways"},
       "argument <direction>: 'sideways' is not one of: backwards, down, forwards, left, right, up",
       "vcctl move"},
      {{"option", "fog", "maybe"},
       "argument <value>: 'maybe' is not one of: on, off, true, false",
       "vcctl option fog"},
      {{"option"}, "missing command", "vcctl option"},
      {{"draw", "text2d", "--id", "3", "Hello"},
       "missing required option '--at'",
       "vcctl draw text2d"},
      {with(line2d, {"--colors", "red/pink"}),
       "option '--colors': 'pink' is not a colour (a name such as red, or R,G,B[,A] from 0 to 255)",
       "vcctl draw line2d"},
      {with(line2d, {"--segments", "3", "--colors", "red/blue"}),
       "option '--colors' names 2 colours for 3 segments", "vcctl draw line2d"},
      {with(line2d, {"--color", "256,0,0"}),
       "option '--color': '256,0,0' is not a colour (a name such as red, or R,G,B[,A] from 0 to "
       "255)",
       "vcctl draw line2d"},
      {{"draw", "text3d", "--id", "1", "--attach", "1,2", "T"},
       "option '--attach': '1,2' is not a position X,Y,Z",
       "vcctl draw text3d"},
      {{"draw", "text3d", "--id", "1", "--attach", "object:7@150", "T"},
       "option '--attach': 'object:7@150' is not a drawing anchor object:ID[@PERCENT] (percent "
       "from 0 to 100)",
       "vcctl draw text3d"},
      {{"draw", "template", "--id", "20", "--name", "S", "1:Fuel:bar:0"},
       "argument <attributes>: '1:Fuel:bar:0' needs its range: ID:NAME:bar:MIN:MAX",
       "vcctl draw template"},
      {{"draw", "template", "--id", "20", "--name", "S", "1:Speed", "20:Fuel"},
       "argument <attributes>: '20:Fuel' has the template's own id 20: give it another",
       "vcctl draw template"},
      {{"value", "21", "1"},
       "give exactly one of --number, --graph, --bitmap and --reset",
       "vcctl value"},
      {{"set"}, "give --at, --orientation or both", "vcctl set"},
      {{"stepsize", "fast"},
       "argument <value>: 'fast' is neither up, down nor a number",
       "vcctl stepsize"},
      {{"state", "--timeout", "-1"},
       "option '--timeout': '-1' is not between 0 and 3600",
       "vcctl state"},
      {{"listen"}, "there is nothing to listen to in a dry run", "vcctl listen"},
      {{"decode", "ca0"},
       "argument <hex>: an odd number of hexadecimal digits (3)",
       "vcctl decode"},
      {{"decode", "ca", "zz"}, "argument <hex>: 'z' is not a hexadecimal digit", "vcctl decode"},
      // Values a viewer cannot use are refused before anything is sent.
      {{"orbit", "foo"},
       "argument <entity>: 'foo' is not an entity id site:host:entity (three whole numbers up "
       "to 65535)",
       "vcctl orbit"},
      {{"primary", "1:1"},
       "argument <entity>: '1:1' is not an entity id site:host:entity (three whole numbers up "
       "to 65535)",
       "vcctl primary"},
      {{"tether-track", "1:1:1", "--track", "1:1:65536"},
       "option '--track': '1:1:65536' is not an entity id site:host:entity (three whole numbers "
       "up to 65535)",
       "vcctl tether-track"},
      {{"add-to-group", "1:1:1", "2:x:2"},
       "argument <entities>: '2:x:2' is not an entity id site:host:entity (three whole numbers "
       "up to 65535)",
       "vcctl add-to-group"},
      {{"draw", "text3d", "--id", "1", "--attach", "tank", "T"},
       "option '--attach': 'tank' is neither a position X,Y,Z, an entity id site:host:entity nor "
       "object:ID[@PERCENT]",
       "vcctl draw text3d"},
      {{"orbit", "1:1:1", "--radius", "-5"},
       "option '--radius': '-5' is not between 0 and 3.4e+38",
       "vcctl orbit"},
      {{"orbit", "1:1:1", "--radius", "1e40"},
       "option '--radius': '1e40' is not between 0 and 3.4e+38",
       "vcctl orbit"},
      {{"orbit", "1:1:1", "--rate", "-1e39"},
       "option '--rate': '-1e39' does not fit the 32-bit float the PDU carries (at most 3.4e38)",
       "vcctl orbit"},
      {{"option", "date", "99/99/9999"},
       "argument <value>: '99/99/9999' is not a date MM/DD/YYYY",
       "vcctl option date"},
      {{"option", "date", "02/29/2023"},
       "argument <value>: '02/29/2023' is not a date MM/DD/YYYY",
       "vcctl option date"},
      {{"option", "time-of-day", "25"},
       "argument <value>: '25' is not between 0 and 24",
       "vcctl option time-of-day"},
      {{"option", "model-set", std::string(33, 'm')},
       "'value' is 33 bytes long, but the PDU holds at most 32 and would cut it short",
       "vcctl option model-set"},
      {{"stepsize", "-1"},
       "argument <value>: '-1' is not a number above 0 that fits a 32-bit float",
       "vcctl stepsize"},
      {{"turnrate", "0"},
       "argument <value>: '0' is not a number above 0 that fits a 32-bit float",
       "vcctl turnrate"},
      {{"draw", "area", "--id", "1", "--texture", std::string(257, 't'), "0,0,0", "1,0,0", "0,1,0"},
       "'texture' is 257 bytes long, but the PDU holds at most 256 and would cut it short",
       "vcctl draw area"},
  };
  for (const Case& c : cases) {
    // A dry run joins nothing, even if a mistake were let through.
    VcctlRun run = runVcctl(with({"--dry-run"}, c.args));
    EXPECT_EQ(run.code, 2) << run.output;
    EXPECT_EQ(run.ownLines(), (Words{"vcctl: " + c.message, "Try '" + c.helpOf + " --help'."}))
        << c.args[0];
  }
}

// Every command listed in a help text, with the commands nested under it.
void collectCommands(const std::string& path, const Words& prefix, std::vector<Words>& found) {
  VcctlRun run = runVcctl(with(prefix, {"--help"}));
  ASSERT_EQ(run.code, 0) << run.output;
  ASSERT_FALSE(run.lines.empty());
  EXPECT_EQ(run.lines[0].rfind("Usage: " + path + " ", 0), 0u) << run.lines[0];
  bool inCommands = false;
  for (const std::string& line : run.lines) {
    if (line == "Commands:")
      inCommands = true;
    else if (line.empty())
      inCommands = false;
    // "  name   summary"; wrapped summaries continue further in.
    else if (inCommands && line.size() > 2 && line[2] != ' ') {
      std::string name = line.substr(2, line.find(' ', 2) - 2);
      const Words command = with(prefix, {name});
      found.push_back(command);
      collectCommands(path + " " + name, command, found);
    }
  }
}

TEST(Vcctl, EveryCommandHasItsHelp) {
  std::vector<Words> commands;
  collectCommands("vcctl", {}, commands);
  auto listed = [&](const Words& path) {
    for (const Words& c : commands)
      if (c == path) return true;
    return false;
  };
  // A few from each family, so that a family lost from the help shows.
  for (const Words& path : std::vector<Words>{{"orbit"},
                                              {"mimic-track"},
                                              {"remove-from-group"},
                                              {"turnrate"},
                                              {"option", "exit"},
                                              {"option", "video-start"},
                                              {"draw", "cylinder"},
                                              {"draw", "template"},
                                              {"value"},
                                              {"state"},
                                              {"listen"},
                                              {"decode"}})
    EXPECT_TRUE(listed(path)) << path.back();
  EXPECT_GT(commands.size(), 100u);
}

TEST(Vcctl, DecodePrintsTheFieldsOfKnownBytes) {
  DtOrbitVCPdu answer;
  answer.setStatusCommand(true);
  answer.setViewerId("v-1");
  answer.setSenderId("viewer-v-1");
  answer.setRadius(250.0f);
  answer.setAttachId("1:1:1");
  const std::string hex = hexOf(answer);
  const Words expected = {"DtVcOrbitStatus, 312 bytes, read as DtOrbitVCPdu", "ViewerId v-1",
                          "SenderId viewer-v-1", "Command DtVcOrbitStatus (505)"};

  // As one word, as words with blanks between them, as a hex dump on stdin, as raw bytes.
  VcctlRun oneWord = runVcctl({"decode", hex});
  VcctlRun words = runVcctl({"decode", hex.substr(0, 100), hex.substr(100, 101), hex.substr(201)});
  VcctlRun dump = runVcctl({"decode", "--file", "-"}, hex);
  const std::string file = testing::TempDir() + "vcctl_orbit.pdu";
  std::ofstream(file, std::ios::binary).write(answer.packet(), answer.length());
  VcctlRun raw = runVcctl({"decode", "--file", file});
  for (const VcctlRun* run : {&oneWord, &words, &dump, &raw}) {
    EXPECT_EQ(run->code, 0) << run->output;
    Words own = run->ownLines();
    ASSERT_GE(own.size(), expected.size()) << run->output;
    EXPECT_EQ(Words(own.begin(), own.begin() + 4), expected) << run->output;
    EXPECT_EQ(run->lineWith("Radius"), "Radius: 250.000000");
    EXPECT_EQ(run->lineWith("AttachTo:"), "AttachTo: 1:1:1");
  }

  // Fewer bytes than the header claims are read as zeros, and said so.
  VcctlRun cut = runVcctl({"decode", hex.substr(0, 200)});
  EXPECT_EQ(cut.code, 0);
  EXPECT_EQ(cut.lineWith("note"),
            "vcctl: note: the header claims 312 bytes, 100 given: the rest read as zero");

  // Version-0 draw-control bytes are read right either way; --v0 has the version-0
  // classes read them.
  DtVdcCommandPduV0 hide;
  hide.setType(DtVdcCommandHide);
  hide.setObjectId(40);
  for (bool v0 : {true, false}) {
    VcctlRun run =
        runVcctl(v0 ? Words{"decode", "--v0", hexOf(hide)} : Words{"decode", hexOf(hide)});
    EXPECT_EQ(run.code, 0) << run.output;
    EXPECT_EQ(run.ownLines().at(0),
              std::string("DtVdcCommandHide object 40, 176 bytes, layout version 0, read as ") +
                  (v0 ? "DtVdcCommandPduV0" : "DtVdcCommandPdu"));
    EXPECT_EQ(run.lineWith("ObjectId"), "ObjectId 40");
    EXPECT_EQ(run.lineWith("Type "), "Type DtVdcCommandHide (2512)");
  }

  VcctlRun foreign = runVcctl({"decode", "0601010000000000000c0000"});
  EXPECT_EQ(foreign.code, 1);
  EXPECT_EQ(foreign.ownLines(),
            Words{"vcctl: not a control PDU: its PDU kind (byte 2) is 1, control PDUs have 202"});
  VcctlRun missing = runVcctl({"decode", "--file", "/nonexistent/pdu"});
  EXPECT_EQ(missing.code, 1);
  EXPECT_EQ(missing.ownLines(),
            Words{"vcctl: cannot read /nonexistent/pdu: No such file or directory"});
}

TEST(Vcctl, DryRunsShowTheBytesEachCommandSends) {
  const Words base = {"--dry-run", "--viewer", "v-9", "--name", "ctl"};

  VcctlRun orbit = runVcctl(with(base, {"orbit", "1:1:1", "--radius", "500", "--rate", "0.1"}));
  ASSERT_EQ(orbit.code, 0) << orbit.output;
  EXPECT_EQ(orbit.lineWith("would send"), "would send DtVcOrbit to v-9, 312 bytes");
  auto pdus = pdusOf(orbit);
  ASSERT_EQ(pdus.size(), 1u);
  const unsigned char* p = pdus[0].data();
  EXPECT_EQ(wire::u16(p, 146), 5u);
  EXPECT_EQ(wire::text(p, 12, 64), "v-9");
  EXPECT_EQ(wire::text(p, 76, 64), "ctl");
  EXPECT_EQ(wire::u32(p, 152), 0xFFEBFDFFu);  // attach id, radius and rate given
  EXPECT_EQ(wire::f32(p, 156), 500.0f);
  EXPECT_EQ(wire::f32(p, 160), 0.1f);
  EXPECT_EQ(wire::text(p, 184, 64), "1:1:1");

  // Drawings carry --name as their sender and are addressed to --viewer.
  VcctlRun text = runVcctl(with(base, {"draw", "text2d", "--id", "3", "--at", "0.5,0.5", "Hello"}));
  ASSERT_EQ(text.code, 0) << text.output;
  pdus = pdusOf(text);
  ASSERT_EQ(pdus.size(), 1u);
  p = pdus[0].data();
  EXPECT_EQ(wire::u16(p, 146), 2560u);
  EXPECT_EQ(wire::u32(p, 152), 0x600DF00Du);
  EXPECT_EQ(wire::u32(p, 160), 3u);
  EXPECT_EQ(wire::u32(p, 164), 2561u);
  EXPECT_EQ(wire::text(p, 12, 64), "v-9");
  EXPECT_EQ(wire::text(p, 76, 64), "ctl");
  EXPECT_EQ(std::string(pdus[0].end() - 5, pdus[0].end()), "Hello");

  VcctlRun value = runVcctl(with(base, {"value", "21", "1", "--number", "88"}));
  pdus = pdusOf(value);
  ASSERT_EQ(pdus.size(), 1u) << value.output;
  p = pdus[0].data();
  EXPECT_EQ(wire::u32(p, 164), 2581u);
  EXPECT_EQ(wire::u32(p, 160), 1u);
  EXPECT_EQ(wire::u32(p, 184), 21u);
  EXPECT_EQ(wire::f64(p, 168), 88.0);

  VcctlRun remove = runVcctl(with(base, {"remove", "7"}));
  pdus = pdusOf(remove);
  ASSERT_EQ(pdus.size(), 1u) << remove.output;
  EXPECT_EQ(wire::u16(pdus[0].data(), 146), 2510u);
  EXPECT_EQ(wire::u32(pdus[0].data(), 164), 2511u);
  EXPECT_EQ(wire::u32(pdus[0].data(), 160), 7u);

  // A template goes out with each of its attributes, and nothing else follows: what
  // vcctl drew is not taken back when it exits.
  VcctlRun panel = runVcctl(with(
      base, {"draw", "template", "--id", "20", "--name", "Status", "1:Speed", "2:Fuel:bar:0:100"}));
  pdus = pdusOf(panel);
  ASSERT_EQ(pdus.size(), 3u) << panel.output;
  EXPECT_EQ(wire::u32(pdus[0].data(), 164), 2571u);
  EXPECT_EQ(wire::u32(pdus[1].data(), 164), 2574u);
  EXPECT_EQ(wire::u32(pdus[2].data(), 164), 2575u);
  EXPECT_EQ(wire::u32(pdus[2].data(), 160), 2u);

  // The option's presence bit is the whole message: exit is option 47.
  VcctlRun exit = runVcctl(with(base, {"option", "exit"}));
  pdus = pdusOf(exit);
  ASSERT_EQ(pdus.size(), 1u) << exit.output;
  EXPECT_EQ(wire::u16(pdus[0].data(), 146), 11u);
  EXPECT_EQ(wire::u8(pdus[0].data(), 152 + 47 / 8), 1u << (47 % 8));

  // Switching mode by name sends the mode, then the placement.
  VcctlRun mode = runVcctl(with(base, {"mode", "pivot", "--at", "1,2,3"}));
  pdus = pdusOf(mode);
  ASSERT_EQ(pdus.size(), 2u) << mode.output;
  EXPECT_EQ(wire::u16(pdus[0].data(), 146), 12u);
  EXPECT_EQ(wire::u16(pdus[1].data(), 146), 13u);
  EXPECT_EQ(wire::u32(pdus[1].data(), 152), 0xFFFFFFF8u);
}

// The largest lists and texts that fit one PDU go out whole; one more is refused, where
// the PDU would otherwise carry a count its entries do not match, or a cut text.
TEST(Vcctl, WhatFillsAPduIsSentWholeAndOneMoreIsRefused) {
  auto entities = [](size_t n) {
    Words ids;
    for (size_t i = 0; i < n; ++i) ids.push_back("1:1:" + std::to_string(i));
    return ids;
  };
  // Group: 188 bytes, then 64 per entity, up to the 16-bit length.
  VcctlRun group = runVcctl(with({"--dry-run", "group"}, entities(1021)));
  ASSERT_EQ(group.code, 0) << group.lineWith("vcctl:");
  auto pdus = pdusOf(group);
  ASSERT_EQ(pdus.size(), 1u);
  EXPECT_EQ(pdus[0].size(), 188u + 64 * 1021);
  EXPECT_EQ(wire::u16(pdus[0].data(), 8), 188u + 64 * 1021);
  EXPECT_EQ(wire::i32(pdus[0].data(), 184), 1021);
  EXPECT_EQ(wire::text(pdus[0].data(), 188 + 64 * 1020, 64), "1:1:1020");
  VcctlRun tooMany = runVcctl(with({"--dry-run", "group"}, entities(1022)));
  EXPECT_EQ(tooMany.code, 2);
  EXPECT_EQ(tooMany.lineWith("vcctl:"),
            "vcctl: argument <entities>: 1022 entities, but one PDU holds at most 1021: send them "
            "in several commands");
  EXPECT_TRUE(pdusOf(tooMany).empty());

  // Group membership: 292 bytes before the list.
  VcctlRun set = runVcctl(with({"--dry-run", "set-group"}, entities(1019)));
  ASSERT_EQ(set.code, 0) << set.lineWith("vcctl:");
  pdus = pdusOf(set);
  ASSERT_EQ(pdus.size(), 1u);
  EXPECT_EQ(pdus[0].size(), 292u + 64 * 1019);
  VcctlRun setTooMany = runVcctl(with({"--dry-run", "set-group"}, entities(1020)));
  EXPECT_EQ(setTooMany.code, 2);
  EXPECT_NE(setTooMany.lineWith("at most 1019"), "") << setTooMany.lineWith("vcctl:");

  // A text PDU: 388 bytes, then the text, up to 65535.
  const std::string longest(65535 - 388, 'x');
  VcctlRun text = runVcctl({"--dry-run", "draw", "text2d", "--id", "1", "--at", "0,0", longest});
  ASSERT_EQ(text.code, 0) << text.lineWith("vcctl:");
  pdus = pdusOf(text);
  ASSERT_EQ(pdus.size(), 1u);
  EXPECT_EQ(pdus[0].size(), 65535u);
  EXPECT_EQ(wire::u32(pdus[0].data(), 384), 65535u - 388);
  VcctlRun cut =
      runVcctl({"--dry-run", "draw", "text2d", "--id", "1", "--at", "0,0", longest + "y"});
  EXPECT_EQ(cut.code, 2);
  EXPECT_EQ(cut.lineWith("vcctl:"),
            "vcctl: 'text' is 65148 bytes long, but the PDU holds at most 65147 and would cut it "
            "short");
  // A layer's name has 172 bytes before it.
  VcctlRun layer =
      runVcctl({"--dry-run", "draw", "layer", "--id", "4", std::string(65535 - 172 + 1, 'n')});
  EXPECT_EQ(layer.code, 2);
  EXPECT_NE(layer.lineWith("at most 65363"), "") << layer.lineWith("vcctl:");
  // The last day of February exists in leap years only.
  EXPECT_EQ(runVcctl({"--dry-run", "option", "date", "02/29/2024"}).code, 0);
}

// Every tool names its own version, the library's and the RTI's, and exits 0; the help
// says what each exit status means.
TEST(Tools, VersionAndExitStatusAreStated) {
  for (const std::string tool : {"vcctl", "vcviewer", "vcbench", "rtihub"}) {
    // The hub serves both flavours: it is checked with the 1516-2000 flavour's tools.
    if (tool == "rtihub" && (!vctest::hubAvailable() || !std::string(VC_TOOL_SUFFIX).empty()))
      continue;
    vctest::ChildProcess version(vctest::binaryPath(tool), {"--version"}, true);
    Words lines;
    std::string line;
    while (version.readLine(line, std::chrono::seconds(10))) lines.push_back(line);
    EXPECT_EQ(version.wait(std::chrono::seconds(10)), 0) << tool;
    ASSERT_EQ(lines.size(), 3u) << version.transcript();
    EXPECT_EQ(lines[0], tool + " 54.0.0");
    bool library = false, rti = false;
    for (const std::string& l : lines) {
      // Each flavour's tools name their own library: ...HLA1516 or ...HLA1516e.
      library = library || l.rfind("library lib" VC_LIBRARY_NAME ".so.54, version 54.0.0", 0) == 0;
      rti =
          rti || (l.rfind("RTI: ", 0) == 0 && l.size() > 5 &&
                  (std::string(VC_TOOL_SUFFIX).empty() || l.find("rti1516e") != std::string::npos));
    }
    EXPECT_TRUE(library) << version.transcript();
    EXPECT_TRUE(rti) << version.transcript();

    vctest::ChildProcess help(vctest::binaryPath(tool), {"--help"}, true);
    std::string exitLine;
    EXPECT_TRUE(help.waitForLine("Exit status", exitLine, std::chrono::seconds(10)))
        << help.transcript();
    EXPECT_EQ(help.wait(std::chrono::seconds(10)), 0);
    if (tool != "rtihub") {
      EXPECT_NE(help.transcript().find("--version"), std::string::npos) << tool;
    }
  }
  VcctlRun timeOfDay = runVcctl({"option", "time-of-day", "--help"});
  EXPECT_NE(timeOfDay.lineWith("hours since midnight"), "") << timeOfDay.output;
}

// Federation addresses a lone tool cannot use are command-line mistakes: exit 2, and no
// connection is tried.
TEST(Tools, FederationAddressesTheyCannotUseAreBadCommandLines) {
  struct Case {
    std::string tool;
    Words args;
    std::string message;
  };
  const std::string thread =
      "option '--federation': 'thread://X' is a federation inside this one process, where no "
      "other federate can join: use rti://HOST:PORT/NAME or NAME";
  const Case cases[] = {
      {"vcctl", {"--federation", "thread://X", "orbit"}, "vcctl: " + thread},
      {"vcviewer", {"--id", "v", "--federation", "thread://X"}, "vcviewer: " + thread},
      {"vcctl",
       {"--federation", "rti://127.0.0.1:99999/X", "orbit"},
       "vcctl: option '--federation': 'rti://127.0.0.1:99999/X' is not rti://HOST[:PORT]/NAME: "
       "port '99999' (1 to 65535)"},
      {"vcctl",
       {"--federation", "rti://127.0.0.1:15160", "orbit"},
       "vcctl: option '--federation': 'rti://127.0.0.1:15160' is not rti://HOST[:PORT]/NAME: no "
       "'/' before the federation name"},
      {"vcctl",
       {"--federation", "rti://:15160/X", "orbit"},
       "vcctl: option '--federation': 'rti://:15160/X' is not rti://HOST[:PORT]/NAME: no host"},
      {"vcctl",
       {"--federation", "rti://h/", "orbit"},
       "vcctl: option '--federation': 'rti://h/' is not rti://HOST[:PORT]/NAME: no federation "
       "name"},
      {"vcctl",
       {"--federation", "http://h/X", "orbit"},
       "vcctl: option '--federation': 'http://h/X' has an unknown scheme: use "
       "rti://HOST:PORT/NAME or NAME"},
      {"vcbench",
       {"--federation", "thread://X", "--role", "send"},
       "vcbench: --role send needs the other end in another process, which cannot join a "
       "thread:// federation: use rti://HOST:PORT/NAME"},
  };
  for (const Case& c : cases) {
    vctest::ChildProcess tool(vctest::binaryPath(c.tool), c.args, true);
    std::string line;
    EXPECT_TRUE(tool.readLine(line, std::chrono::seconds(10))) << c.message;
    EXPECT_EQ(line, c.message);
    EXPECT_EQ(tool.wait(std::chrono::seconds(10)), 2) << c.message;
  }
}

// Files no PDU can come from end in one line and exit 1, not in an abort or a read that
// never ends.
TEST(Vcctl, DecodeRefusesFilesThatHoldNoPdu) {
  struct Case {
    std::string file;
    std::string message;
  };
  const Case cases[] = {
      {"/", "vcctl: cannot read /: it is a directory"},
      {"/dev/zero",
       "vcctl: cannot read /dev/zero: more than 1048576 bytes, far longer than any control PDU "
       "(at most 65535 bytes) or its hex dump"},
      {"/proc/self/mem", "vcctl: cannot read /proc/self/mem: Input/output error"},
      {"/nonexistent/pdu", "vcctl: cannot read /nonexistent/pdu: No such file or directory"},
  };
  for (const Case& c : cases) {
    VcctlRun run = runVcctl({"decode", "--file", c.file});
    EXPECT_EQ(run.code, 1) << run.output;
    EXPECT_EQ(run.ownLines(), Words{c.message});
  }
}

}  // namespace

// ------------------------------------------------------------------ one test per mode
// Each mode's command line with a distinct value for every option it offers, read back
// through the mode's own class, and the ignore flags worked out by hand from the bits of
// the fields given: an option that stopped setting the field it names, set another, or
// cleared the wrong bit reads back wrong here.
namespace {

std::unique_ptr<DtVistrelControlPdu> dryRun(const Words& args) {
  VcctlRun run = runVcctl(with({"--dry-run", "--viewer", "v"}, args));
  EXPECT_EQ(run.code, 0) << run.output;
  auto pdus = pdusOf(run);
  if (pdus.size() != 1) {
    ADD_FAILURE() << run.output;
    return nullptr;
  }
  return std::unique_ptr<DtVistrelControlPdu>(
      DtVistrelControlPdu::createFromBytes(pdus[0].data(), pdus[0].size()));
}

template <class P>
const P& as(const std::unique_ptr<DtVistrelControlPdu>& pdu) {
  static const P none;
  const P* p = dynamic_cast<const P*>(pdu.get());
  EXPECT_NE(p, nullptr) << "not a " << typeid(P).name();
  return p ? *p : none;
}

uint32_t flagsOf(const std::unique_ptr<DtVistrelControlPdu>& pdu) {
  return pdu ? static_cast<uint32_t>(pdu->ignoreFlags()) : 0;
}

const DtTaitBryan kTurn(0.5, 0.25, 0.125);

}  // namespace

TEST(VcctlModes, Absolute) {
  auto pdu = dryRun({"absolute", "--at", "1,2,3", "--orientation", "0.5,0.25,0.125"});
  EXPECT_EQ(as<DtAbsoluteVCPdu>(pdu).worldLocation(), DtVector64(1, 2, 3));
  EXPECT_EQ(as<DtAbsoluteVCPdu>(pdu).orientation(), kTurn);
  EXPECT_EQ(flagsOf(pdu), 0xFFFFFFC0u);
  EXPECT_EQ(flagsOf(dryRun({"absolute", "--at", "1,2,3"})), 0xFFFFFFF8u);
}

TEST(VcctlModes, Tether) {
  auto pdu = dryRun({"tether", "1:2:3", "--offset", "0,-50,10", "--orientation", "0.5,0.25,0.125"});
  const auto& p = as<DtTetherVCPdu>(pdu);
  EXPECT_EQ(p.attachId(), "1:2:3");
  EXPECT_EQ(p.topoUpOffset(), DtVector64(0, -50, 10));
  EXPECT_EQ(p.orientation(), kTurn);
  EXPECT_EQ(flagsOf(pdu), 0xFFEFFE07u);  // 0x100000, 0x1C0, 0x38 cleared
}

TEST(VcctlModes, Compass) {
  auto pdu =
      dryRun({"compass", "1:2:3", "--radius", "100", "--heading", "0.5", "--pitch", "-0.25"});
  const auto& p = as<DtCompassVCPdu>(pdu);
  EXPECT_EQ(p.attachId(), "1:2:3");
  EXPECT_EQ(p.radius(), 100.0f);
  EXPECT_EQ(p.bodyHeading(), 0.5f);  // the command line's heading is the body heading
  EXPECT_EQ(p.pitch(), -0.25f);
  EXPECT_EQ(p.headingOffset(), 0.0f);
  EXPECT_EQ(flagsOf(pdu), 0xFFEFF9EFu);  // 0x100000, 0x200, 0x400, 0x10
}

TEST(VcctlModes, MimicAndTurret) {
  for (const char* command : {"mimic", "turret"}) {
    SCOPED_TRACE(command);
    auto pdu = dryRun({command, "1:2:3", "--offset", "-50,0,-10"});
    const auto& p = as<DtMimicVCPdu>(pdu);
    EXPECT_EQ(p.viewerCommand(), command == std::string("mimic") ? DtVcMimic : DtVcOffsetMimic);
    EXPECT_EQ(p.attachId(), "1:2:3");
    EXPECT_EQ(p.offset(), DtVector64(-50, 0, -10));
    EXPECT_EQ(flagsOf(pdu), 0xFFEF1FFFu);  // 0x100000, 0xE000
  }
}

TEST(VcctlModes, Orbit) {
  auto pdu = dryRun({"orbit", "1:2:3", "--radius", "500", "--heading", "0.5", "--pitch", "-0.25",
                     "--rate", "0.125"});
  const auto& p = as<DtOrbitVCPdu>(pdu);
  EXPECT_EQ(p.attachId(), "1:2:3");
  EXPECT_EQ(p.radius(), 500.0f);
  EXPECT_EQ(p.azimuthRate(), 0.125f);
  EXPECT_EQ(p.heading(), 0.5f);
  EXPECT_EQ(p.pitch(), -0.25f);
  EXPECT_EQ(flagsOf(pdu), 0xFFEBFDE7u);  // 0x100000, 0x200, 0x8, 0x10, 0x40000
  EXPECT_EQ(flagsOf(dryRun({"orbit", "--rate", "1"})), 0xFFFBFFFFu);
}

TEST(VcctlModes, Track) {
  auto pdu = dryRun({"track", "1:2:3", "--at", "1,2,3"});
  EXPECT_EQ(as<DtTrackVCPdu>(pdu).trackId(), "1:2:3");
  EXPECT_EQ(as<DtTrackVCPdu>(pdu).worldLocation(), DtVector64(1, 2, 3));
  EXPECT_EQ(flagsOf(pdu), 0xFFEFFFF8u);  // 0x100000, 0x7
}

TEST(VcctlModes, TetherTrackAndMimicTrack) {
  const Words fields = {"1:2:3", "--track", "4:5:6", "--offset", "1,2,3"};
  auto tether = dryRun(with({"tether-track"}, fields));
  EXPECT_EQ(as<DtTetherTrackVCPdu>(tether).attachId(), "1:2:3");
  EXPECT_EQ(as<DtTetherTrackVCPdu>(tether).trackId(), "4:5:6");
  EXPECT_EQ(as<DtTetherTrackVCPdu>(tether).offset(), DtVector64(1, 2, 3));
  EXPECT_EQ(flagsOf(tether), 0xFFCF1FFFu);  // the offset's bits are 0xE000
  auto mimic = dryRun(with({"mimic-track"}, fields));
  EXPECT_EQ(as<DtMimicTrackVCPdu>(mimic).attachId(), "1:2:3");
  EXPECT_EQ(as<DtMimicTrackVCPdu>(mimic).trackId(), "4:5:6");
  EXPECT_EQ(as<DtMimicTrackVCPdu>(mimic).offset(), DtVector64(1, 2, 3));
  EXPECT_EQ(flagsOf(mimic), 0xFFCFFFF8u);  // ... and 0x7 here
}

TEST(VcctlModes, GroupAndWideGroup) {
  for (const char* command : {"group", "wide-group"}) {
    SCOPED_TRACE(command);
    auto pdu = dryRun(
        {command, "1:1:1", "2:2:2", "--radial", "40", "--heading", "0.5", "--pitch", "-0.25"});
    const auto& p = as<DtGroupVCPdu>(pdu);
    EXPECT_EQ(p.groupCmd(), command == std::string("group") ? 0u : 1u);
    EXPECT_EQ(p.radialOffset(), 40.0f);
    EXPECT_EQ(p.headingOffset(), 0.5f);  // the command line's heading is the offset
    EXPECT_EQ(p.pitchOffset(), -0.25f);
    EXPECT_EQ(p.heading(), 0.0f);
    EXPECT_EQ(p.numEntitiesToRemove(), -1);
    ASSERT_EQ(p.numEntitiesToAdd(), 2);
    EXPECT_EQ(p.entityToAdd(1), "2:2:2");
    EXPECT_EQ(flagsOf(pdu), 0xFFF7E7FFu);  // 0x80000, 0x800, 0x1000; the lists have none
  }
  auto keep = dryRun({"group", "--radial", "40"});
  EXPECT_EQ(as<DtGroupVCPdu>(keep).numEntitiesToRemove(), 0);
  EXPECT_EQ(as<DtGroupVCPdu>(keep).numEntitiesToAdd(), 0);
}

TEST(VcctlModes, Pivot) {
  auto pdu = dryRun({"pivot", "--point", "6378137.25,0,0", "--radius", "10", "--heading", "0.5",
                     "--pitch", "-0.25"});
  const auto& p = as<DtPivotVCPdu>(pdu);
  EXPECT_EQ(p.pivotPoint(), DtVector64(6378137.25, 0, 0));
  EXPECT_EQ(p.radius(), 10.0f);
  EXPECT_EQ(p.bodyHeading(), 0.5f);
  EXPECT_EQ(p.pitch(), -0.25f);
  EXPECT_EQ(flagsOf(pdu), 0xFFFFF9E8u);  // 0x7, 0x200, 0x400, 0x10
}

// The help gives every option its unit, and the entity argument its form.
TEST(VcctlModes, HelpGivesEachOptionItsUnit) {
  VcctlRun orbit = runVcctl({"orbit", "--help"});
  EXPECT_NE(orbit.lineWith("--rate R"), "");
  EXPECT_NE(orbit.lineWith("--rate R").find("radians per second"), std::string::npos);
  EXPECT_NE(orbit.lineWith("--radius R").find("in metres"), std::string::npos);
  EXPECT_NE(orbit.lineWith("  <entity>").find("site:host:entity"), std::string::npos);
  VcctlRun tether = runVcctl({"tether", "--help"});
  EXPECT_NE(tether.lineWith("--offset X,Y,Z").find("in metres"), std::string::npos);
  EXPECT_NE(tether.lineWith("--orientation H,P,R").find("(heading, pitch, roll"),
            std::string::npos);
  VcctlRun track = runVcctl({"track", "--help"});
  EXPECT_NE(track.lineWith("--at X,Y,Z").find("geocentric"), std::string::npos);
}
