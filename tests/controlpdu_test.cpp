// The common control header, status commands, the number test, creation from bytes and
// the memory-safety promise for short received PDUs.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using PduPtr = std::unique_ptr<DtVistrelControlPdu>;

const DtNetPduHeader* header(const std::vector<unsigned char>& bytes) {
  return reinterpret_cast<const DtNetPduHeader*>(bytes.data());
}

TEST(ControlHeader, FieldsSitAtTheirOffsets) {
  DtAbsoluteVCPdu pdu;
  pdu.setViewerId("viewer:1:2");
  pdu.setSenderId("controller-7");
  pdu.setIgnoreFlags(0xFFFFFDFFul);
  const char* b = pdu.packet();
  EXPECT_EQ(wire::u8(b, 2), 202u);
  EXPECT_EQ(wire::text(b, 12, 64), "viewer:1:2");
  EXPECT_TRUE(wire::zero(b, 22, 54));
  EXPECT_EQ(wire::text(b, 76, 64), "controller-7");
  EXPECT_EQ(wire::u16(b, 146), 0u);
  EXPECT_EQ(wire::u32(b, 152), 0xFFFFFDFFu);
  EXPECT_TRUE(wire::zero(b, 140, 6));
  EXPECT_TRUE(wire::zero(b, 148, 4));
  pdu.setViewerCommand(static_cast<DtViewerCommand>(0x12345));
  EXPECT_EQ(wire::u16(b, 146), 0x2345u);  // low 16 bits only
}

TEST(ControlHeader, IgnoreFlagsAreThirtyTwoBitsReadSignExtended) {
  DtAbsoluteVCPdu pdu;
  pdu.setIgnoreFlags(0x1FFFFFFFFul);
  EXPECT_EQ(wire::u32(pdu.packet(), 152), 0xFFFFFFFFu);
  EXPECT_EQ(pdu.ignoreFlags(), ~0ul);
  pdu.setIgnoreFlags(0x80000000ul);
  EXPECT_EQ(pdu.ignoreFlags(), 0xFFFFFFFF80000000ul);
  pdu.setIgnoreFlags(0x7FFFFFFFul);
  EXPECT_EQ(pdu.ignoreFlags(), 0x7FFFFFFFul);
}

TEST(ControlHeader, IdsShareOneCache) {
  DtAbsoluteVCPdu pdu;
  pdu.setViewerId("v");
  pdu.setSenderId("s");
  const DtString& viewer = pdu.viewerId();
  EXPECT_EQ(viewer, "v");
  pdu.senderId();
  EXPECT_EQ(viewer, "s");  // the second call overwrote the first's text
}

TEST(StatusCommands, RangeAndArithmetic) {
  DtAbsoluteVCPdu pdu;
  struct Case {
    int command;
    bool status;
  } cases[] = {{505, true}, {600, true}, {500, true}, {499, false}, {601, false}, {0, false}};
  for (const Case& c : cases) {
    pdu.setViewerCommand(static_cast<DtViewerCommand>(c.command));
    EXPECT_EQ(pdu.statusCommand(), c.status) << c.command;
  }
  pdu.setViewerCommand(DtVcOrbitStatus);
  pdu.setStatusCommand(true);
  EXPECT_EQ(pdu.viewerCommand(), 505);
  pdu.setViewerCommand(DtVcOrbit);
  pdu.setStatusCommand(false);
  EXPECT_EQ(pdu.viewerCommand(), 5);
  pdu.setStatusCommand(true);
  EXPECT_EQ(pdu.viewerCommand(), 505);
  pdu.setViewerCommand(static_cast<DtViewerCommand>(2521));
  pdu.setStatusCommand(false);  // draw-control commands lose 500 too
  EXPECT_EQ(pdu.viewerCommand(), 2021);
}

TEST(NumberTest, AcceptsPlainDecimalsOnly) {
  for (const char* yes : {"-12.5", ".5", "5.", "0", "101", "-0.0"})
    EXPECT_TRUE(DtVistrelControlPdu::isNumber(yes)) << yes;
  for (const char* no : {"", "-", "1-2", "1.2.3", "+1", "1e3", "abc", " 1", "--1", "."})
    EXPECT_FALSE(DtVistrelControlPdu::isNumber(no)) << no;
  EXPECT_FALSE(DtVistrelControlPdu::isNumber(nullptr));
}

TEST(ControlDump, HeaderLinesWithFlagsInHostOrder) {
  DtAbsoluteVCPdu pdu;
  pdu.setViewerId("v1");
  pdu.setSenderId("c1");
  pdu.setViewerCommand(DtVcOrbitStatus);
  pdu.setIgnoreFlags(0xFFFFFDFFul);
  OutputCapture cap(DtDumpOut);
  pdu.DtVistrelControlPdu::printData();
  EXPECT_EQ(cap.text(),
            "ViewerId v1\n"
            "SenderId c1\n"
            "Command DtVcOrbitStatus (505)\n"
            "IgnoreFlags ff fd ff ff\n");
}

TEST(CommandNames, RequestsReportsAndUnknown) {
  EXPECT_STREQ(DtEnumString(DtVcAbsolute), "DtVcAbsolute");
  EXPECT_STREQ(DtEnumString(DtVcRequestState), "DtVcRequestState");
  EXPECT_STREQ(DtEnumString(DtVcModelessStatus), "DtVcModelessStatus");
  EXPECT_STREQ(DtEnumString(DtVcPivotStatus), "DtVcPivotStatus");
  EXPECT_STREQ(DtEnumString(static_cast<DtViewerCommand>(511)), "UnknownEnum");
  EXPECT_STREQ(DtEnumString(static_cast<DtViewerCommand>(2590)), "DtVdcLayer");
  EXPECT_STREQ(DtEnumString(static_cast<DtViewerCommand>(-1)), "UnknownEnum");
}

TEST(BaseTextForm, EmptyAndIgnored) {
  std::vector<unsigned char> bytes = wire::controlPdu(999, 160);
  PduPtr pdu(DtVistrelControlPdu::createFromNet(header(bytes)));
  ASSERT_TRUE(pdu);
  pdu->setFromString("1 2 3");
  EXPECT_STREQ(pdu->string(), "");
}

TEST(Creation, KindAndCommandChooseTheClass) {
  std::vector<unsigned char> absolute = wire::controlPdu(0, 196);
  PduPtr a(DtVistrelControlPdu::createFromNet(header(absolute)));
  EXPECT_NE(dynamic_cast<DtAbsoluteVCPdu*>(a.get()), nullptr);
  EXPECT_FALSE(a->statusCommand());

  std::vector<unsigned char> status = wire::controlPdu(500, 196);
  PduPtr s(DtVistrelControlPdu::create(header(status)));
  ASSERT_NE(dynamic_cast<DtAbsoluteVCPdu*>(s.get()), nullptr);
  EXPECT_EQ(s->viewerCommand(), 500);

  std::vector<unsigned char> request = wire::controlPdu(14, 152);
  PduPtr r(DtVistrelControlPdu::createFromNet(header(request)));
  EXPECT_NE(dynamic_cast<DtRequestStateVCPdu*>(r.get()), nullptr);

  for (int unknown : {15, 499, 511, 513, 514, 999, 65535}) {
    std::vector<unsigned char> bytes = wire::controlPdu(static_cast<uint32_t>(unknown), 160);
    PduPtr u(DtVistrelControlPdu::createFromNet(header(bytes)));
    EXPECT_NE(dynamic_cast<DtUnknownVistrelControlPdu*>(u.get()), nullptr) << unknown;
    EXPECT_EQ(u->viewerCommand(), unknown);
    EXPECT_EQ(u->length(), 160);
  }

  std::vector<unsigned char> other = wire::controlPdu(0, 196);
  other[2] = 1;  // an entity state PDU, not ours
  EXPECT_EQ(DtVistrelControlPdu::createFromNet(header(other)), nullptr);
  EXPECT_EQ(DtVistrelControlPdu::create(header(other)), nullptr);
  EXPECT_EQ(DtVistrelControlPdu::createFromNet(nullptr), nullptr);
}

TEST(Creation, ByCommand) {
  PduPtr a(DtNewViewControlPdu(DtVcAbsolute));
  ASSERT_NE(dynamic_cast<DtAbsoluteVCPdu*>(a.get()), nullptr);
  EXPECT_EQ(a->length(), 196);
  PduPtr s(DtNewViewControlPdu(DtVcAbsoluteStatus));
  ASSERT_TRUE(s);
  EXPECT_EQ(wire::u16(s->packet(), 146), 500u);
  PduPtr r(DtNewVistrelControlPdu(DtVcRequestState));
  ASSERT_NE(dynamic_cast<DtRequestStateVCPdu*>(r.get()), nullptr);
  EXPECT_EQ(r->length(), 152);
  for (int none : {15, 510, 511, 513, 514, -1})
    EXPECT_EQ(DtNewViewControlPdu(static_cast<DtViewerCommand>(none)), nullptr) << none;
  EXPECT_EQ(DtNewVistrelControlPdu(static_cast<DtViewerCommand>(15)), nullptr);
}

TEST(Creation, ParamVersionNeedsTheMarkerInsideThePdu) {
  std::vector<unsigned char> bytes = wire::controlPdu(2520, 408);
  EXPECT_EQ(DtVistrelControlPdu::drawControlParamVersion(
                reinterpret_cast<const DtNetViewControlPdu*>(bytes.data())),
            0u);
  wire::put32(bytes, 152, 0x600DF00Du);
  wire::put16(bytes, 156, 2);
  EXPECT_EQ(DtVistrelControlPdu::drawControlParamVersion(
                reinterpret_cast<const DtNetViewControlPdu*>(bytes.data())),
            2u);
  // The same bytes with a length that stops at the header: the marker is not the PDU's.
  wire::put16(bytes, 8, 152);
  EXPECT_EQ(DtVistrelControlPdu::drawControlParamVersion(
                reinterpret_cast<const DtNetViewControlPdu*>(bytes.data())),
            0u);
}

// Received PDUs far shorter than their class: every accessor stays inside memory the
// PDU owns (the sanitizer run checks this) and reads what is not there as zero.
TEST(ShortPdus, EveryAccessorStaysInsideItsMemory) {
  std::vector<unsigned char> bytes = wire::controlPdu(0, 20, 160);
  PduPtr pdu(DtVistrelControlPdu::createFromNet(header(bytes)));
  auto* absolute = dynamic_cast<DtAbsoluteVCPdu*>(pdu.get());
  ASSERT_NE(absolute, nullptr);
  EXPECT_EQ(absolute->length(), 20);
  EXPECT_EQ(absolute->worldLocation(), DtVector64(0, 0, 0));
  EXPECT_EQ(absolute->ignoreFlags(), 0ul);
  EXPECT_TRUE(absolute->viewerId().isNull());
  OutputCapture cap(DtDumpOut);
  absolute->printData();
  EXPECT_NE(std::string(absolute->string()).find("0.000000"), std::string::npos);
  absolute->setWorldLocation(DtVector64(1, 2, 3));
  EXPECT_EQ(absolute->worldLocation(), DtVector64(1, 2, 3));
}

TEST(ShortPdus, HeaderClaimingMoreThanArrivedIsPaddedWithZeros) {
  std::vector<unsigned char> bytes = wire::controlPdu(0, 196, 160);
  wire::putF64(bytes, 160 - 8, 0.0);
  PduPtr pdu(DtVistrelControlPdu::createFromBytes(bytes.data(), bytes.size()));
  auto* absolute = dynamic_cast<DtAbsoluteVCPdu*>(pdu.get());
  ASSERT_NE(absolute, nullptr);
  EXPECT_EQ(absolute->length(), 196);
  EXPECT_EQ(absolute->orientation(), DtTaitBryan(0, 0, 0));
  EXPECT_EQ(DtVistrelControlPdu::createFromBytes(bytes.data(), 2), nullptr);
  // A header whose command lies beyond its own length is read as command 0.
  std::vector<unsigned char> stub = wire::controlPdu(14, 12, 12);
  PduPtr s(DtVistrelControlPdu::createFromBytes(stub.data(), stub.size()));
  ASSERT_TRUE(s);
  EXPECT_EQ(s->viewerCommand(), 0);
}

TEST(Copies, CopyTheBytesAndTheTextArea) {
  DtAbsoluteVCPdu a;
  a.setWorldLocation(DtVector64(1, 2, 3));
  const char* text = a.string();
  DtAbsoluteVCPdu b(a);
  DtAbsoluteVCPdu c;
  c = a;
  a.setWorldLocation(DtVector64(9, 9, 9));
  EXPECT_EQ(b.worldLocation(), DtVector64(1, 2, 3));
  EXPECT_EQ(c.worldLocation(), DtVector64(1, 2, 3));
  EXPECT_STREQ(text, "1.000000 2.000000 3.000000 0.000000 0.000000 0.000000");
}

}  // namespace
