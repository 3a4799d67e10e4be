// Malformed control PDUs as they may arrive from a network: bytes that claim more or less
// than they are, counts and lengths far past the end, negative counts, texts without a
// terminator, empty values and interactions without their parameter. Each is taken in by
// every entry point (the sized one in both layouts and the decoder's padded copy), then
// read, printed, turned into text and copied; the same shapes also travel through a real
// connection. Under the sanitizer and valgrind runs any read or write outside the PDU's
// memory fails the test; here the results must stay bounded and the connection usable.
#include <gtest/gtest.h>

#include <algorithm>

#include <RTI/Exception.h>

#include <chrono>
#include <climits>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dtRtiSession.h"
#include "outputCapture.h"
#include "process.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using Bytes = std::vector<unsigned char>;
using PduPtr = std::unique_ptr<DtVistrelControlPdu>;

// ------------------------------------------------------------------ taking bytes in

// The ways received bytes become a PDU object.
enum class Entry { SizedCurrent, SizedByVersion, DecoderCopyFromNet, DecoderCopyCreate };

PduPtr take(const Bytes& b, Entry entry) {
  switch (entry) {
    case Entry::SizedCurrent:
      return PduPtr(DtVistrelControlPdu::createFromBytes(b.data(), b.size(), true));
    case Entry::SizedByVersion:
      return PduPtr(DtVistrelControlPdu::createFromBytes(b.data(), b.size(), false));
    case Entry::DecoderCopyFromNet:
    case Entry::DecoderCopyCreate: {
      // An exact-size heap copy, so that reading past the value is caught.
      std::unique_ptr<unsigned char[]> exact(new unsigned char[b.size() ? b.size() : 1]);
      if (!b.empty()) std::memcpy(exact.get(), b.data(), b.size());
      dtrti::VariableLengthData value(exact.get(), static_cast<unsigned long>(b.size()));
      auto* header =
          reinterpret_cast<const DtNetPduHeader*>(DtInteractionDecoder::pduBuffer(value));
      return PduPtr(entry == Entry::DecoderCopyFromNet ? DtVistrelControlPdu::createFromNet(header)
                                                       : DtVistrelControlPdu::create(header));
    }
  }
  return nullptr;
}

// The first `n` bytes of a control PDU header stating `length`, as a sender cut short
// would send them.
Bytes headerPrefix(size_t n, uint32_t length) {
  Bytes full = wire::controlPdu(0, 12);
  wire::put16(full, 8, length);
  return Bytes(full.begin(), full.begin() + static_cast<long>(n));
}

// Reads everything a receiver reads; returns the dump, which must stay bounded.
std::string readEverything(const DtVistrelControlPdu& pdu) {
  OutputCapture dump(DtDumpOut);
  pdu.print();
  std::string text = pdu.string();
  // The options text is the whole PDU in hexadecimal; every other one fits the text area.
  if (!dynamic_cast<const DtOptionsPdu*>(&pdu)) {
    EXPECT_LT(text.size(), DtVistrelControlPdu::kTextSize) << "the text form outgrew its area";
  }
  pdu.viewerId();
  pdu.senderId();
  // A copy holds the same bytes and reads the same.
  PduPtr copy(DtVistrelControlPdu::create(reinterpret_cast<const DtNetPduHeader*>(pdu.packet())));
  if (copy) {
    EXPECT_EQ(copy->length(), pdu.length());
    EXPECT_EQ(std::memcmp(copy->packet(), pdu.packet(), static_cast<size_t>(pdu.length())), 0);
    EXPECT_EQ(std::string(copy->string()), std::string(pdu.string()));
  }
  return dump.text();
}

size_t lines(const std::string& text) {
  size_t n = 0;
  for (char c : text) n += c == '\n';
  return n;
}

class Malformed : public ::testing::TestWithParam<Entry> {
 protected:
  PduPtr in(const Bytes& b) { return take(b, GetParam()); }
};

TEST_P(Malformed, TooFewBytesForAnyHeaderGiveNothingOrAnEmptyPdu) {
  for (size_t n : {0u, 1u, 2u, 3u, 8u}) {
    Bytes b(n, 0);
    if (n > 2) b[2] = DtVistrelControlPdu::kPduKind;
    PduPtr pdu = in(b);
    if (pdu) {
      EXPECT_EQ(pdu->viewerCommand(), 0) << n;
      readEverything(*pdu);
    }
  }
}

TEST_P(Malformed, BytesEndingInsideTheHeaderStillHonourItsLength) {
  // Ten or eleven bytes hold the length field but not the whole header: the PDU gets the
  // length they state, and everything the sender did not send reads as zero.
  for (size_t n : {10u, 11u}) {
    PduPtr pdu = in(headerPrefix(n, 312));
    ASSERT_NE(pdu, nullptr) << n;
    EXPECT_EQ(pdu->length(), 312) << n;
    EXPECT_TRUE(wire::zero(pdu->packet(), 12, 300)) << n;
    readEverything(*pdu);
  }
}

TEST_P(Malformed, HeaderLengthLargerThanTheBytesGiven) {
  for (uint32_t command :
       {0u, 5u, 9u, 10u, 11u, 2520u, 2550u, 2553u, 2560u, 2570u, 2580u, 2590u, 777u}) {
    for (size_t given : {12u, 150u, 160u, 200u}) {
      Bytes b = wire::controlPdu(command, 65535, given);
      wire::putText(b, 12,
                    std::string(given - 12, 'x'));  // ids without terminators, as far as given
      if (given >= 148) wire::put16(b, 146, command);
      PduPtr pdu = in(b);
      ASSERT_NE(pdu, nullptr) << command << "/" << given;
      EXPECT_EQ(pdu->length(), 65535);
      EXPECT_TRUE(wire::zero(pdu->packet(), given, 65535 - given)) << "bytes that were never sent";
      readEverything(*pdu);
    }
  }
}

TEST_P(Malformed, HeaderLengthShorterThanTheHeader) {
  for (uint32_t stated : {0u, 5u, 11u, 12u, 100u, 151u}) {
    for (uint32_t command : {1u, 9u, 11u, 14u, 2520u, 2560u}) {
      Bytes b = wire::controlPdu(command, stated, 1539);
      wire::put16(b, 146, command);
      std::memset(b.data() + 152, 0xEE, b.size() - 152);
      PduPtr pdu = in(b);
      ASSERT_NE(pdu, nullptr);
      // The command lies beyond what the PDU claims: it is not read from the sender's bytes.
      EXPECT_EQ(pdu->viewerCommand() == static_cast<int>(command), stated >= 148) << stated;
      readEverything(*pdu);
    }
  }
}

TEST_P(Malformed, EntityCountsFarPastTheEndListOnlyWhatIsThere) {
  struct Lists {
    uint32_t command;
    size_t length, removeAt, addAt;
  };
  for (Lists l :
       {Lists{DtVcGroup, 188 + 2 * 64, 180, 184}, Lists{DtVcModeless, 292 + 2 * 64, 284, 288}}) {
    for (int32_t remove : {0, 1, 2, 3, 1000000, INT_MAX, -1, -2, INT_MIN}) {
      for (int32_t add : {0, 2, 5000, INT_MAX, -1, INT_MIN}) {
        Bytes b = wire::controlPdu(l.command, l.length);
        wire::put32(b, l.removeAt, static_cast<uint32_t>(remove));
        wire::put32(b, l.addAt, static_cast<uint32_t>(add));
        wire::putText(b, l.length - 128, "first");
        PduPtr pdu = in(b);
        ASSERT_NE(pdu, nullptr);
        const std::string dump = readEverything(*pdu);
        // Two slots fit: no more entry lines than that, whatever the counts say.
        EXPECT_LE(lines(dump), 40u) << remove << "/" << add;
        if (auto* group = dynamic_cast<DtGroupVCPdu*>(pdu.get())) {
          EXPECT_EQ(group->entityToAdd(INT_MAX), "");
          EXPECT_EQ(group->entityToRemove(-1), "");
          group->entityToAdd(add > 0 ? add - 1 : 0);
          group->setEntityToAdd(add > 0 ? add - 1 : 0, "written");
          group->setNumEntitiesToAdd(add);  // grows at most to the largest PDU length
          EXPECT_LE(group->length(), DtBaseMsg::kMaxLength);
        }
        if (auto* modeless = dynamic_cast<DtModelessVCPdu*>(pdu.get())) {
          EXPECT_EQ(modeless->entityToRemove(INT_MAX), "");
          modeless->setNumEntitiesToRemove(remove);
          EXPECT_LE(modeless->length(), DtBaseMsg::kMaxLength);
        }
        readEverything(*pdu);
      }
    }
  }
}

TEST_P(Malformed, SegmentAndPointCountsFarPastTheEnd) {
  for (uint32_t segments : {0u, 2u, 255u, 256u, 0xFFFFu, 0xFFFFFFFFu}) {
    Bytes b = wire::controlPdu(DtVdcLine, 400);
    wire::put32(b, 152, 0x600DF00D);
    wire::put16(b, 156, 1);
    wire::put32(b, 164, DtVdc3DSegmentedLine);
    wire::put32(b, 384, segments);
    PduPtr pdu = in(b);
    auto* line = dynamic_cast<DtVdcLinePdu*>(pdu.get());
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->numSegments(), segments);
    EXPECT_EQ(line->percentage(segments - 1), 0);
    EXPECT_EQ(line->color(0xFFFFFFFFu), nullptr);
    // The dump lists at most the 255 segments its one count byte can say.
    EXPECT_LE(lines(readEverything(*line)), 300u + 12 * 255);
  }
  for (unsigned points : {0u, 16u, 17u, 255u}) {
    // The whole area with any count, and one that stops long before its count byte.
    for (size_t given : {1312u, 420u}) {
      Bytes b = wire::controlPdu(DtVdcArea, 1312);
      b[1308] = static_cast<unsigned char>(points);
      b.resize(given);
      PduPtr pdu = in(b);
      auto* area = dynamic_cast<DtVdcAreaPduBase*>(pdu.get());
      ASSERT_NE(area, nullptr);
      EXPECT_EQ(area->numPoints(), given > 1308 ? static_cast<int>(points) : 0);
      EXPECT_EQ(area->point(static_cast<int>(points)).x(), 0.0);
      EXPECT_EQ(area->point(-1).x(), 0.0);
      readEverything(*area);
    }
  }
}

TEST_P(Malformed, TextLengthsFarPastTheEndAreCutToTheBytesThere) {
  struct Counted {
    uint32_t command;
    uint32_t type;
    size_t lengthAt, textAt;
  };
  for (Counted c :
       {Counted{DtVdcText, DtVdc2DText, 384, 388}, Counted{DtVdcLayer, DtVdcLayer, 168, 172},
        Counted{DtVdcAttributeUpdate, DtVdcAttributeValueSetText, 188, 192}}) {
    for (uint32_t stated : {1u, 64u, 65535u, 65536u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
      Bytes b = wire::controlPdu(c.command, c.textAt + 8);
      wire::put32(b, 152, 0x600DF00D);
      wire::put16(b, 156, 1);
      wire::put32(b, 164, c.type);
      wire::put32(b, c.lengthAt, stated);
      wire::putText(b, c.textAt, "abcdefgh");  // no terminator: the PDU ends here
      PduPtr pdu = in(b);
      ASSERT_NE(pdu, nullptr);
      std::string text;
      if (auto* t = dynamic_cast<DtVdcTextPduBase*>(pdu.get())) text = t->text().c_str();
      if (auto* l = dynamic_cast<DtVdcLayerPduBase*>(pdu.get())) text = l->name().c_str();
      if (auto* u = dynamic_cast<DtVdcAttributeUpdatePduBase*>(pdu.get())) text = u->text().c_str();
      EXPECT_EQ(text, std::string("abcdefgh").substr(0, stated)) << c.command << "/" << stated;
      readEverything(*pdu);
    }
  }
}

TEST_P(Malformed, SixtyFourByteTextsWithoutATerminator) {
  // Identifiers and marking texts that fill their fields, in PDUs that end right after
  // them: reading stops at the field's end, never at a NUL further on.
  for (uint32_t command : {DtVcTether, DtVcOrbit, DtVcTrack, DtVcTetherTrack, DtVcMimicTrack}) {
    PduPtr fresh(DtNewViewControlPdu(static_cast<DtViewerCommand>(command)));
    Bytes b = wire::controlPdu(command, static_cast<size_t>(fresh->length()));
    std::memset(b.data() + 12, 'v', 128);              // viewer and sender ids
    std::memset(b.data() + 156, 'i', b.size() - 156);  // everything after the ignore flags
    PduPtr pdu = in(b);
    ASSERT_NE(pdu, nullptr);
    EXPECT_EQ(pdu->viewerId(), std::string(64, 'v').c_str());
    EXPECT_EQ(pdu->senderId(), std::string(64, 'v').c_str());
    readEverything(*pdu);
    if (auto* tether = dynamic_cast<DtTetherVCPdu*>(pdu.get())) {
      EXPECT_EQ(tether->markingText().length(), 64u);
      tether->setMarkingText(std::string(300, 'n').c_str());
      EXPECT_EQ(tether->markingText().length(), 64u);
      EXPECT_EQ(tether->length(), fresh->length());
    }
    if (auto* track = dynamic_cast<DtTetherTrackVCPdu*>(pdu.get())) {
      EXPECT_EQ(track->trackMarkingText(), std::string(64, 'i').c_str());
    }
  }
}

TEST_P(Malformed, OptionsTextsAndNamesThatFillTheirFields) {
  Bytes b = wire::controlPdu(DtVcOptions, 1539);
  std::memset(b.data() + 152, 0xFF, b.size() - 152);  // every option present, every text full
  PduPtr pdu = in(b);
  auto* options = dynamic_cast<DtOptionsPdu*>(pdu.get());
  ASSERT_NE(options, nullptr);
  EXPECT_LE(options->databaseToLoad().length(), 256u);
  EXPECT_LE(options->featureFilename().length(), 256u);
  readEverything(*options);
}

std::string entryName(const ::testing::TestParamInfo<Entry>& info) {
  switch (info.param) {
    case Entry::SizedCurrent:
      return "SizedCurrent";
    case Entry::SizedByVersion:
      return "SizedByVersion";
    case Entry::DecoderCopyFromNet:
      return "DecoderCopyFromNet";
    case Entry::DecoderCopyCreate:
      return "DecoderCopyCreate";
  }
  return "Unknown";
}

INSTANTIATE_TEST_SUITE_P(EveryEntry, Malformed,
                         ::testing::Values(Entry::SizedCurrent, Entry::SizedByVersion,
                                           Entry::DecoderCopyFromNet, Entry::DecoderCopyCreate),
                         entryName);

// ------------------------------------------------------------------ text forms

TEST(MalformedText, OptionsHexEndingInsideTheHeaderHonoursItsLength) {
  // Twenty digits are ten bytes: the length field is there, the rest of the header is not.
  DtOptionsPdu options;
  options.setFromString("06010b810000000001fe");
  EXPECT_EQ(options.length(), 0x01fe);
  EXPECT_TRUE(wire::zero(options.packet(), 12, 0x01fe - 12));
  EXPECT_EQ(std::string(options.string()).size(), 2u * 0x01fe);
  for (const char* text :
       {"", "0", "06", "06010b8100000000ffff", "zz zz zz zz zz zz zz zz zz zz zz"}) {
    DtOptionsPdu again;
    again.setFromString(text);
    EXPECT_LE(again.length(), DtBaseMsg::kMaxLength) << text;
    again.printData();
  }
}

// ------------------------------------------------------------------ through a connection

// A raw federate beside a connection: it sends parameter maps the library never would,
// and the connection must hand each one on (empty where nothing is usable) and go on.
class RawSends : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    std::string url = GetParam();
    if (url == "hub") {
      if (!vctest::serverAvailable())
        GTEST_SKIP() << "built against an RTI without a server process";
      hub_ = vctest::startServer(port_);
      url = vctest::hubUrl(port_, "Malformed");
    }
    url_ = url;
    sender_ = std::make_unique<DtExerciseConn>(url.c_str(), "raw",
                                               static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
    receiver_ = std::make_unique<DtExerciseConn>(url.c_str(), "rx",
                                                 static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
    ASSERT_TRUE(sender_->connected()) << sender_->errorText();
    ASSERT_TRUE(receiver_->connected()) << receiver_->errorText();
    DtVistrelControlRegister(receiver_.get());
    DtVistrelControlInteraction::addCallback(receiver_.get(), &RawSends::take, this);
    desc_ = sender_->fomMapper()->interClassDesc("ViewControl");
    ASSERT_NE(desc_, nullptr);
    ASSERT_TRUE(desc_->parameterHandle("ViewControlPdu", &param_));
    sender_->rtiAmb()->publishInteractionClass(desc_->handle());
  }
  void TearDown() override {
    if (receiver_)
      DtVistrelControlInteraction::removeCallback(receiver_.get(), &RawSends::take, this);
    receiver_.reset();
    sender_.reset();
  }

  void send(const dtrti::ParameterHandleValueMap& values) {
    sender_->rtiAmb()->sendInteraction(desc_->handle(), values, dtrti::VariableLengthData());
  }
  void sendValue(const Bytes& value) {
    dtrti::ParameterHandleValueMap values;
    values[param_] =
        dtrti::VariableLengthData(value.data(), static_cast<unsigned long>(value.size()));
    send(values);
  }
  bool receive(size_t count) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (received_.size() < count && std::chrono::steady_clock::now() < deadline)
      receiver_->drainInput(0.02);
    return received_.size() >= count;
  }

  static void take(DtVistrelControlInteraction* inter, void* usr) {
    auto* self = static_cast<RawSends*>(usr);
    const DtVistrelControlPdu* pdu = inter->vcPdu();
    self->received_.push_back(
        pdu ? std::make_shared<Bytes>(pdu->packet(), pdu->packet() + pdu->length()) : nullptr);
    if (pdu) {
      OutputCapture quiet(DtDumpOut);
      pdu->print();
      pdu->string();
    }
  }

  std::unique_ptr<vctest::ChildProcess> hub_;
  std::uint16_t port_ = 0;
  std::string url_;
  std::unique_ptr<DtExerciseConn> sender_, receiver_;
  DtInterClassDesc* desc_ = nullptr;
  dtrti::ParameterHandle param_;
  std::vector<std::shared_ptr<Bytes>> received_;
};

TEST_P(RawSends, EmptyAndMissingParametersArriveEmptyAndNothingIsLost) {
  sendValue({});  // a zero-length value
  // No parameter at all: ours delivers such an interaction, other RTIs may drop it, so
  // there it is one more zero-length value.
  if (vctest::embeddedRti())
    send(dtrti::ParameterHandleValueMap());
  else
    sendValue({});
  sendValue(headerPrefix(9, 312));   // nine bytes: only the length's high byte (256)
  sendValue(headerPrefix(10, 312));  // the whole length field, and no more
  sendValue(wire::controlPdu(DtVcGroup, 65535, 12));  // claims the largest length there is
  Bytes counts = wire::controlPdu(DtVcGroup, 188);
  wire::put32(counts, 180, 0x7FFFFFFF);
  wire::put32(counts, 184, 0xFFFFFFFF);
  sendValue(counts);
  DtOrbitVCPdu good;
  good.setViewerId("still-here");
  sendValue(Bytes(good.packet(), good.packet() + good.length()));

  ASSERT_TRUE(receive(7)) << received_.size() << " of 7 arrived";
  EXPECT_EQ(received_[0], nullptr);
  EXPECT_EQ(received_[1], nullptr);
  ASSERT_NE(received_[2], nullptr);  // a PDU of kind 202 with nothing in it
  EXPECT_EQ(received_[2]->size(), 256u);
  EXPECT_TRUE(wire::zero(received_[2]->data(), 12, 256 - 12));
  ASSERT_NE(received_[3], nullptr);
  EXPECT_EQ(received_[3]->size(), 312u);
  EXPECT_TRUE(wire::zero(received_[3]->data(), 12, 300));
  ASSERT_NE(received_[4], nullptr);
  EXPECT_EQ(received_[4]->size(), 65535u);
  ASSERT_NE(received_[5], nullptr);
  EXPECT_EQ(received_[5]->size(), 188u);
  ASSERT_NE(received_[6], nullptr);
  EXPECT_EQ(wire::text(received_[6]->data(), 12, 64), "still-here");
  EXPECT_TRUE(receiver_->connected()) << receiver_->errorText();
}

TEST_P(RawSends, AParameterOfAnotherClassIsRefusedAtTheSender) {
  dtrti::ParameterHandleValueMap values;
  Bytes value = wire::controlPdu(DtVcOrbit, 312);
  values[param_] =
      dtrti::VariableLengthData(value.data(), static_cast<unsigned long>(value.size()));
  // A handle that no class of this object model has.
  const dtrti::ParameterHandle bogus = sender_->rtiAmb()->decodeParameterHandle(
      dtrti::VariableLengthData("\0\0\0\0\0\0\x7f\xff", 8));
  values[bogus] = dtrti::VariableLengthData("x", 1);
  EXPECT_THROW(send(values), dtrti::InteractionParameterNotDefined);
  sendValue(value);
  ASSERT_TRUE(receive(1));
  ASSERT_NE(received_[0], nullptr);
  EXPECT_EQ(received_[0]->size(), 312u);
}

std::string federationName(const ::testing::TestParamInfo<const char*>& info) {
  return std::string(info.param) == "hub" ? "Hub" : "Thread";
}

INSTANTIATE_TEST_SUITE_P(Federations, RawSends, ::testing::Values("thread://Malformed", "hub"),
                         federationName);

}  // namespace
