// vcctl without a federation: the command lines it refuses and what it says about them,
// the help of every command, decoding known bytes, and the exact bytes that dry runs of
// representative commands would send.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
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

}  // namespace
