// The hub protocol's frames and the object model blob: exact bytes, and rejection of
// truncated, oversized and corrupt input without reading outside it. Buffers are sized
// exactly, so that the sanitizer build catches any read past them.
#if __has_include("protocol.h")
#include "fdd_model.h"
#include "protocol.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace vcrti;
using namespace vcrti::wire;

namespace {

using Bytes = std::vector<unsigned char>;

Bytes take(const ByteBuffer& b) {
  return Bytes(b.data(), b.data() + b.size());
}

// Decodes from a fresh allocation of exactly the input's size, kept alive (the decoded
// views point into it) until the next call.
DecodeResult decode(const Bytes& b, Message& m) {
  static std::unique_ptr<unsigned char[]> exact;
  exact.reset(new unsigned char[b.size() ? b.size() : 1]);
  std::copy(b.begin(), b.end(), exact.get());
  return decodeFrame(exact.get(), b.size(), m);
}

// The Interaction layout written out by hand: class 7, tag "ab", two parameters.
const Bytes kInteraction = {
    0x20, 0x00, 0x00, 0x00,                                // body length 32
    0x07,                                                  // Interaction
    0x07, 0x00, 0x00, 0x00,                                // class
    0x02, 0x00, 0x00, 0x00, 'a',  'b',                     // tag
    0x02, 0x00, 0x00, 0x00,                                // two parameters
    0x03, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0xEE,  // handle 3, one byte
    0x04, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,        // handle 4, empty
};

Bytes createFrame() {
  ByteBuffer b;
  FrameWriter w(b, MsgType::Create);
  w.u32(42).str("Fed").str("/x/fom.xml").bytes("\x01\x02\x03", 3);
  EXPECT_TRUE(w.finish());
  return take(b);
}

TEST(WireFrames, InteractionDecodesFieldByField) {
  Message m;
  const DecodeResult d = decode(kInteraction, m);
  ASSERT_EQ(d.status, DecodeStatus::Complete) << (d.error ? d.error : "");
  EXPECT_EQ(d.frameSize, kInteraction.size());
  EXPECT_EQ(m.type, MsgType::Interaction);
  EXPECT_EQ(m.handle, 7u);
  EXPECT_EQ(m.tag.str(), "ab");
  ASSERT_EQ(m.paramCount, 2u);
  ParamReader r(m);
  std::uint32_t h;
  wire::Bytes v;
  ASSERT_TRUE(r.next(h, v));
  EXPECT_EQ(h, 3u);
  ASSERT_EQ(v.size, 1u);
  EXPECT_EQ(v.data[0], 0xEE);
  ASSERT_TRUE(r.next(h, v));
  EXPECT_EQ(h, 4u);
  EXPECT_EQ(v.size, 0u);
  EXPECT_FALSE(r.next(h, v));
}

TEST(WireFrames, WriterProducesTheDocumentedLayout) {
  ByteBuffer b;
  FrameWriter w(b, MsgType::Subscribe);
  w.u32(0x01020304).u32(9);
  ASSERT_TRUE(w.finish());
  EXPECT_EQ(take(b), (Bytes{9, 0, 0, 0, 5, 4, 3, 2, 1, 9, 0, 0, 0}));

  Message m;
  const Bytes create = createFrame();
  ASSERT_EQ(decode(create, m).status, DecodeStatus::Complete);
  EXPECT_EQ(m.type, MsgType::Create);
  EXPECT_EQ(m.requestId, 42u);
  EXPECT_EQ(m.name, "Fed");
  EXPECT_EQ(m.text, "/x/fom.xml");
  EXPECT_EQ(m.blob.str(), std::string("\x01\x02\x03", 3));

  // The hub's parting reason: type 21, then the text, as a federate of any build reads it.
  const Bytes goodbye = {9, 0, 0, 0, 21, 4, 0, 0, 0, 'g', 'o', 'n', 'e'};
  ByteBuffer g;
  FrameWriter gw(g, MsgType::Goodbye);
  gw.str("gone");
  ASSERT_TRUE(gw.finish());
  EXPECT_EQ(take(g), goodbye);
  ASSERT_EQ(decode(goodbye, m).status, DecodeStatus::Complete);
  EXPECT_EQ(m.type, MsgType::Goodbye);
  EXPECT_EQ(m.text, "gone");
}

TEST(WireFrames, AJoinMayBringModulesAndAGrownModelGoesToEveryMember) {
  // A join of the 2000 API ends after the federate type; one of the 2010 API adds its
  // modules as one blob.
  const Bytes bare = {15, 0, 0, 0, 3, 1, 0, 0, 0, 1, 0, 0, 0, 'F', 1, 0, 0, 0, 't'};
  Bytes modules = bare;
  modules[0] = 21;
  modules.insert(modules.end(), {2, 0, 0, 0, 'm', 'd'});
  Message m;
  ASSERT_EQ(decode(bare, m).status, DecodeStatus::Complete);
  EXPECT_EQ(m.type, MsgType::Join);
  EXPECT_EQ(m.text, "t");
  EXPECT_EQ(m.blob.size, 0u);
  ASSERT_EQ(decode(modules, m).status, DecodeStatus::Complete);
  EXPECT_EQ(m.name, "F");
  EXPECT_EQ(m.blob.str(), "md");

  const Bytes grown = {7, 0, 0, 0, 22, 2, 0, 0, 0, 'm', 'd'};
  ByteBuffer g;
  FrameWriter w(g, MsgType::ModelGrown);
  w.bytes("md", 2);
  ASSERT_TRUE(w.finish());
  EXPECT_EQ(take(g), grown);
  ASSERT_EQ(decode(grown, m).status, DecodeStatus::Complete);
  EXPECT_EQ(m.type, MsgType::ModelGrown);
  EXPECT_EQ(m.blob.str(), "md");

  Bytes cut = modules;
  cut.resize(cut.size() - 1);
  cut[0] = 20;
  for (const Bytes& bad : {cut, Bytes{1, 0, 0, 0, 22}, Bytes{6, 0, 0, 0, 22, 9, 0, 0, 0, 'x'}}) {
    EXPECT_EQ(decode(bad, m).status, DecodeStatus::Malformed);
  }
}

TEST(WireFrames, BackToBackFramesDecodeOneAtATime) {
  Bytes two = kInteraction;
  const Bytes create = createFrame();
  two.insert(two.end(), create.begin(), create.end());
  Message m;
  const DecodeResult first = decodeFrame(two.data(), two.size(), m);
  ASSERT_EQ(first.status, DecodeStatus::Complete);
  EXPECT_EQ(m.type, MsgType::Interaction);
  const DecodeResult second =
      decodeFrame(two.data() + first.frameSize, two.size() - first.frameSize, m);
  ASSERT_EQ(second.status, DecodeStatus::Complete);
  EXPECT_EQ(m.type, MsgType::Create);
  EXPECT_EQ(first.frameSize + second.frameSize, two.size());
}

TEST(WireFrames, EveryPrefixOfAFrameAsksForMore) {
  for (const Bytes& frame : {kInteraction, createFrame()}) {
    for (std::size_t n = 0; n < frame.size(); ++n) {
      Message m;
      EXPECT_EQ(decode(Bytes(frame.begin(), frame.begin() + n), m).status, DecodeStatus::Incomplete)
          << n;
    }
  }
}

TEST(WireFrames, CorruptFramesAreRejectedWithAReason) {
  struct Case {
    const char* what;
    Bytes frame;
  };
  auto patched = [](std::size_t at, std::initializer_list<unsigned char> with) {
    Bytes b = kInteraction;
    std::copy(with.begin(), with.end(), b.begin() + at);
    return b;
  };
  Bytes trailing = kInteraction;
  trailing[0] += 1;
  trailing.push_back(0);
  const Case cases[] = {
      {"zero length", {0, 0, 0, 0}},
      {"length over the cap", {0x01, 0x00, 0x10, 0x00}},
      {"huge length", {0xFF, 0xFF, 0xFF, 0xFF}},
      {"unknown type", {1, 0, 0, 0, 0x63}},
      {"type only", {1, 0, 0, 0, 0x07}},
      {"tag longer than frame", patched(9, {0xFF, 0xFF, 0x00, 0x00})},
      {"parameter count beyond frame", patched(15, {0xFF, 0xFF, 0xFF, 0x0F})},
      {"one parameter too many", patched(15, {0x03})},
      {"parameter longer than frame", patched(23, {0x09})},
      {"trailing bytes", trailing},
      {"reply without fields", {1, 0, 0, 0, 0x08}},
      {"goodbye without a reason", {1, 0, 0, 0, 21}},
      {"goodbye reason longer than frame", {6, 0, 0, 0, 21, 2, 0, 0, 0, 'x'}},
      {"goodbye with trailing bytes", {7, 0, 0, 0, 21, 1, 0, 0, 0, 'x', 'y'}},
  };
  for (const Case& c : cases) {
    Message m;
    const DecodeResult d = decode(c.frame, m);
    EXPECT_EQ(d.status, DecodeStatus::Malformed) << c.what;
    EXPECT_NE(d.error, nullptr) << c.what;
  }
}

TEST(WireFrames, WriterRefusesFramesOverTheCapAndLeavesTheBufferAsItWas) {
  ByteBuffer b;
  b.append("x", 1);
  FrameWriter w(b, MsgType::Create);
  std::vector<char> big(kMaxFrameBody, 'a');
  w.u32(1).bytes(big.data(), big.size());
  EXPECT_FALSE(w.finish());
  EXPECT_EQ(b.size(), 1u);
}

TEST(WireFrames, RandomInputNeverDecodesOutsideItsBytes) {
  std::mt19937 rng(12345);
  for (int i = 0; i < 20000; ++i) {
    Bytes b(rng() % 64);
    for (auto& x : b) x = static_cast<unsigned char>(rng());
    if (b.size() >= 5 && (i & 1)) {
      // Plausible headers reach deeper into the decoder.
      const std::uint32_t body = static_cast<std::uint32_t>(b.size() - 4);
      storeU32(b.data(), body);
      b[4] = static_cast<unsigned char>(1 + rng() % 8);
    }
    Message m;
    const DecodeResult d = decode(b, m);
    if (d.status == DecodeStatus::Complete) {
      ASSERT_LE(d.frameSize, b.size());
      if (m.type == MsgType::Interaction) {
        ParamReader r(m);
        std::uint32_t h;
        wire::Bytes v;
        std::size_t total = 0;
        while (r.next(h, v)) total += v.size;
        EXPECT_LE(total, b.size());
      }
    }
  }
}

// ---------------------------------------------------------------- Object model blob

FddClass cls(std::wstring name, std::uint32_t parent, std::vector<std::uint32_t> declared = {}) {
  FddClass c;
  c.name = std::move(name);
  c.parent = parent;
  c.declared = std::move(declared);
  return c;
}

FddMember member(std::wstring name, std::uint32_t owner) {
  FddMember m;
  m.name = std::move(name);
  m.owner = owner;
  return m;
}

FddModel sampleModel() {
  FddModel m;
  auto addClass = [](FddTree& t, const wchar_t* name, std::uint32_t parent,
                     std::vector<const wchar_t*> members) {
    FddClass c;
    c.name = name;
    c.parent = parent;
    for (const wchar_t* n : members) {
      c.declared.push_back(static_cast<std::uint32_t>(t.members.size()));
      t.members.push_back(member(n, static_cast<std::uint32_t>(t.classes.size())));
    }
    t.classes.push_back(std::move(c));
  };
  addClass(m.interactions, L"HLAinteractionRoot", kNoClass, {});
  addClass(m.interactions, L"ViewControl", 0, {L"ViewControlPdu"});
  addClass(m.interactions, L"Sub", 1, {L"extra", L"\u00e9t\u00e9"});
  addClass(m.objects, L"HLAobjectRoot", kNoClass, {L"HLAprivilegeToDeleteObject"});
  EXPECT_EQ(m.index(), "");
  return m;
}

TEST(FddBlob, RoundTripKeepsTreeNamesAndHandles) {
  const FddModel in = sampleModel();
  ByteBuffer blob;
  encodeFdd(in, blob);
  FddModel out;
  std::string err;
  ASSERT_TRUE(decodeFdd(blob.data(), blob.size(), out, err)) << err;
  ASSERT_EQ(out.interactions.classes.size(), 3u);
  EXPECT_EQ(out.interactions.classes[2].qualified, L"HLAinteractionRoot.ViewControl.Sub");
  EXPECT_EQ(out.interactions.classes[2].all, (std::vector<std::uint32_t>{0, 1, 2}));
  EXPECT_EQ(out.interactions.members[2].name, L"\u00e9t\u00e9");
  EXPECT_EQ(out.interactions.findClass(L"Sub"), 2u);
  EXPECT_EQ(out.interactions.findMember(2, L"ViewControlPdu"), 0u);
  EXPECT_TRUE(out.interactions.memberAvailable(2, 0));
  EXPECT_FALSE(out.interactions.memberAvailable(1, 1));
  EXPECT_EQ(out.objects.members[0].name, L"HLAprivilegeToDeleteObject");
}

TEST(FddBlob, ANameNoFrameCanCarryIsRefusedAtTheEncoder) {
  FddModel m = sampleModel();
  m.interactions.members[0].name.assign(wire::kMaxFrameBody + 1, L'n');
  ByteBuffer blob;
  blob.append("x", 1);
  EXPECT_FALSE(encodeFdd(m, blob));
  EXPECT_EQ(blob.size(), 1u);  // nothing appended
  m.interactions.members[0].name.assign(1000, L'n');
  EXPECT_TRUE(encodeFdd(m, blob));
  EXPECT_GT(blob.size(), 1000u);
}

TEST(FddBlob, TruncatedOrCorruptBlobsAreRefused) {
  ByteBuffer blob;
  encodeFdd(sampleModel(), blob);
  const Bytes full = take(blob);
  for (std::size_t n = 0; n < full.size(); ++n) {
    Bytes cut(full.begin(), full.begin() + n);
    std::unique_ptr<unsigned char[]> exact(new unsigned char[n ? n : 1]);
    std::copy(cut.begin(), cut.end(), exact.get());
    FddModel out;
    std::string err;
    EXPECT_FALSE(decodeFdd(exact.get(), n, out, err)) << n;
  }
  // A class whose parent comes after it would make a cycle.
  FddModel bad = sampleModel();
  bad.interactions.classes[1].parent = 2;
  EXPECT_NE(bad.index(), "");
  std::mt19937 rng(7);
  for (int i = 0; i < 5000; ++i) {
    Bytes b = full;
    b[rng() % b.size()] = static_cast<unsigned char>(rng());
    FddModel out;
    std::string err;
    decodeFdd(b.data(), b.size(), out, err);  // must simply not crash or overread
  }
}

// A model whose classes form one chain `depth` deep, each declaring one member.
FddModel chainModel(std::uint32_t depth) {
  FddModel m;
  m.interactions.classes.push_back(cls(L"HLAinteractionRoot", kNoClass, {}));
  for (std::uint32_t i = 1; i <= depth; ++i) {
    m.interactions.classes.push_back(cls(L"c" + std::to_wstring(i), i - 1, {i - 1}));
    m.interactions.members.push_back(member(L"p" + std::to_wstring(i), i));
  }
  m.objects.classes.push_back(cls(L"HLAobjectRoot", kNoClass, {}));
  return m;
}

bool decodes(const FddModel& model, std::string& err) {
  ByteBuffer blob;
  encodeFdd(model, blob);
  FddModel out;
  return decodeFdd(blob.data(), blob.size(), out, err);
}

TEST(FddBlob, ModelsThatExpandFarBeyondTheirBytesAreRefusedQuickly) {
  // Every class inherits every member and the full name above it, so a chain costs the
  // square of its length: refused at the depth limit, whatever the blob's size.
  std::string err;
  EXPECT_TRUE(decodes(chainModel(kMaxClassDepth), err)) << err;
  EXPECT_FALSE(decodes(chainModel(kMaxClassDepth + 1), err));
  EXPECT_NE(err.find("nested"), std::string::npos) << err;
  const auto t0 = std::chrono::steady_clock::now();
  EXPECT_FALSE(decodes(chainModel(40000), err));  // about a megabyte, the frame cap
  EXPECT_LT(std::chrono::steady_clock::now() - t0, std::chrono::seconds(5));

  // Wide instead of deep: many members at the root, inherited by many classes.
  FddModel wide;
  wide.interactions.classes.push_back(cls(L"HLAinteractionRoot", kNoClass, {}));
  for (std::uint32_t m = 0; m < 20000; ++m) {
    wide.interactions.classes[0].declared.push_back(m);
    wide.interactions.members.push_back(member(L"m" + std::to_wstring(m), 0));
  }
  for (std::uint32_t c = 1; c <= 100; ++c)
    wide.interactions.classes.push_back(cls(L"k" + std::to_wstring(c), 0, {}));
  wide.objects.classes.push_back(cls(L"HLAobjectRoot", kNoClass, {}));
  EXPECT_FALSE(decodes(wide, err));
  EXPECT_NE(err.find("too large"), std::string::npos) << err;

  // Long names, repeated in the full name of every class below them.
  FddModel named = chainModel(1);
  named.interactions.classes[1].name = std::wstring(500000, L'n');
  for (std::uint32_t c = 0; c < 10; ++c)
    named.interactions.classes.push_back(cls(L"x" + std::to_wstring(c), 1, {}));
  EXPECT_FALSE(decodes(named, err));
  EXPECT_NE(err.find("too large"), std::string::npos) << err;
}

TEST(FddBlob, AMemberDeclaredAgainFarDownAChainIsFound) {
  FddModel m = chainModel(kMaxClassDepth);
  m.interactions.members.back().name = L"p1";  // the first class's member, again
  std::string err;
  EXPECT_FALSE(decodes(m, err));
  EXPECT_NE(err.find("'p1' declared twice"), std::string::npos) << err;
}

}  // namespace
#endif
