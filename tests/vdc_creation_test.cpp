// Draw-control PDUs from received bytes (createFromNet always current, create by the
// parameter version) and from draw types, with the folding of segmented lines.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using PduPtr = std::unique_ptr<DtVistrelControlPdu>;

std::vector<unsigned char> bytesOf(const DtVistrelControlPdu& pdu) {
  return std::vector<unsigned char>(pdu.packet(), pdu.packet() + pdu.length());
}
// The dynamic class of a PDU (null: no class at all).
const std::type_info& classOf(const PduPtr& pdu) {
  const DtVistrelControlPdu* p = pdu.get();
  return p ? typeid(*p) : typeid(void);
}
const DtNetPduHeader* header(const std::vector<unsigned char>& b) {
  return reinterpret_cast<const DtNetPduHeader*>(b.data());
}

struct TypeCase {
  int type;
  const std::type_info& current;
  const std::type_info* v0;  // null: no version-0 PDU of this type
  int currentType;
  int command;
  int v0Command;
};

const TypeCase kCases[] = {
    {2511, typeid(DtVdcCommandPdu), &typeid(DtVdcCommandPduV0), 2511, 2510, 2510},
    {2515, typeid(DtVdcCommandPdu), &typeid(DtVdcCommandPduV0), 2515, 2510, 2510},
    {2521, typeid(DtVdcLinePdu), &typeid(DtVdcLinePduV0), 2521, 2520, 2520},
    {2522, typeid(DtVdcLinePdu), &typeid(DtVdcLinePduV0), 2522, 2520, 2520},
    {2531, typeid(DtVdcLinePdu), &typeid(DtVdcSegmentedLinePduV0), 2521, 2520, 2530},
    {2532, typeid(DtVdcLinePdu), &typeid(DtVdcSegmentedLinePduV0), 2522, 2520, 2530},
    {2541, typeid(DtVdcPolyObjectPdu), &typeid(DtVdcPolyObjectPduV0), 2541, 2540, 2540},
    {2545, typeid(DtVdcPolyObjectPdu), &typeid(DtVdcPolyObjectPduV0), 2545, 2540, 2540},
    {2551, typeid(DtVdcTrianglePdu), &typeid(DtVdcTrianglePduV0), 2551, 2550, 2550},
    {2552, typeid(DtVdcTrianglePdu), &typeid(DtVdcTrianglePduV0), 2552, 2550, 2550},
    {2555, typeid(DtVdcAreaPdu), nullptr, 2555, 2553, 0},
    {2561, typeid(DtVdcTextPdu), &typeid(DtVdcTextPduV0), 2561, 2560, 2560},
    {2562, typeid(DtVdcTextPdu), &typeid(DtVdcTextPduV0), 2562, 2560, 2560},
    {2571, typeid(DtVdcAttributePdu), &typeid(DtVdcAttributePduV0), 2571, 2570, 2570},
    {2577, typeid(DtVdcAttributePdu), &typeid(DtVdcAttributePduV0), 2577, 2570, 2570},
    {2581, typeid(DtVdcAttributeUpdatePdu), &typeid(DtVdcAttributeUpdatePduV0), 2581, 2580, 2580},
    {2583, typeid(DtVdcAttributeUpdatePdu), &typeid(DtVdcAttributeUpdatePduV0), 2583, 2580, 2580},
    {2590, typeid(DtVdcLayerPdu), &typeid(DtVdcLayerPduV0), 2590, 2590, 2590},
};

TEST(NewDrawControl, EveryTypeInBothLayouts) {
  for (const TypeCase& c : kCases) {
    PduPtr pdu(DtNewDrawControlPdu(static_cast<DtViewerCommand>(c.type)));
    ASSERT_NE(pdu, nullptr) << c.type;
    EXPECT_EQ(classOf(pdu), c.current) << c.type;
    auto* draw = dynamic_cast<DtVistrelDrawControlPdu*>(pdu.get());
    EXPECT_EQ(draw->type(), static_cast<unsigned>(c.currentType)) << c.type;
    EXPECT_EQ(draw->paramVersion(), 1u);
    EXPECT_EQ(pdu->viewerCommand(), c.command);

    PduPtr v0(DtNewDrawControlPduV0(static_cast<DtViewerCommand>(c.type)));
    if (!c.v0) {
      EXPECT_EQ(v0, nullptr) << c.type;
      continue;
    }
    ASSERT_NE(v0, nullptr) << c.type;
    EXPECT_EQ(classOf(v0), *c.v0) << c.type;
    EXPECT_EQ(wire::u32(v0->packet(), 156), static_cast<unsigned>(c.type));  // unfolded
    EXPECT_EQ(v0->viewerCommand(), c.v0Command);
  }
}

TEST(NewDrawControl, UnknownTypesGiveNull) {
  for (int type : {0, 2489, 2510, 2516, 2520, 2530, 2540, 2546, 2550, 2553, 2554, 2560, 2570, 2578,
                   2580, 2584, 2591}) {
    EXPECT_EQ(PduPtr(DtNewDrawControlPdu(static_cast<DtViewerCommand>(type))), nullptr) << type;
    EXPECT_EQ(PduPtr(DtNewDrawControlPduV0(static_cast<DtViewerCommand>(type))), nullptr) << type;
  }
  PduPtr layer(DtNewVistrelControlPdu(static_cast<DtViewerCommand>(2590)));
  EXPECT_NE(dynamic_cast<DtVdcLayerPdu*>(layer.get()), nullptr);
  EXPECT_EQ(PduPtr(DtNewVistrelControlPdu(static_cast<DtViewerCommand>(15))), nullptr);
}

// Every type travels as bytes and comes back as the class of its family: create honours
// the layout, createFromNet always builds the current class.
TEST(CreateFromBytes, RoundTripOfEveryType) {
  for (const TypeCase& c : kCases) {
    PduPtr made(DtNewDrawControlPdu(static_cast<DtViewerCommand>(c.type)));
    auto* sent = dynamic_cast<DtVistrelDrawControlPdu*>(made.get());
    sent->setObjectId(4242);
    std::vector<unsigned char> b = bytesOf(*made);
    for (bool fromNet : {true, false}) {
      PduPtr got(fromNet ? DtVistrelControlPdu::createFromNet(header(b))
                         : DtVistrelControlPdu::create(header(b)));
      ASSERT_NE(got, nullptr) << c.type;
      EXPECT_EQ(classOf(got), c.current) << c.type << " " << fromNet;
      auto* draw = dynamic_cast<DtVistrelDrawControlPdu*>(got.get());
      EXPECT_EQ(draw->objectId(), 4242u);
      EXPECT_EQ(draw->type(), static_cast<unsigned>(c.currentType));
      EXPECT_EQ(got->length(), made->length());
    }
    if (!c.v0) continue;
    PduPtr old(DtNewDrawControlPduV0(static_cast<DtViewerCommand>(c.type)));
    dynamic_cast<DtVistrelDrawControlPdu*>(old.get())->setObjectId(77);
    std::vector<unsigned char> ob = bytesOf(*old);
    PduPtr viaCreate(DtVistrelControlPdu::create(header(ob)));
    ASSERT_NE(viaCreate, nullptr) << c.type;
    EXPECT_EQ(classOf(viaCreate), *c.v0) << c.type;
    EXPECT_EQ(dynamic_cast<DtVistrelDrawControlPdu*>(viaCreate.get())->objectId(), 77u);
    PduPtr viaNet(DtVistrelControlPdu::createFromNet(header(ob)));
    EXPECT_EQ(classOf(viaNet), c.current) << c.type;
  }
}

TEST(CreateFromBytes, LayoutChoiceAndCommandStamp) {
  std::vector<unsigned char> b = wire::controlPdu(2520, 408);
  PduPtr v0(DtVistrelControlPdu::create(header(b)));
  EXPECT_EQ(classOf(v0), typeid(DtVdcLinePduV0));
  PduPtr net(DtVistrelControlPdu::createFromNet(header(b)));
  EXPECT_EQ(classOf(net), typeid(DtVdcLinePdu));
  wire::put32(b, 152, 0x600DF00Du);  // marker, version 0: still version 0 for create
  EXPECT_EQ(classOf(PduPtr(DtVistrelControlPdu::create(header(b)))), typeid(DtVdcLinePduV0));
  wire::put16(b, 156, 7);  // any non-zero version picks the current class
  EXPECT_EQ(classOf(PduPtr(DtVistrelControlPdu::create(header(b)))), typeid(DtVdcLinePdu));

  // Received segmented lines are wrapped as current lines and restamped 2520.
  std::vector<unsigned char> seg = wire::controlPdu(2530, 400);
  PduPtr line(DtVistrelControlPdu::createFromNet(header(seg)));
  EXPECT_EQ(classOf(line), typeid(DtVdcLinePdu));
  EXPECT_EQ(line->viewerCommand(), 2520);
  EXPECT_EQ(wire::u16(line->packet(), 146), 2520u);
  PduPtr old(DtVistrelControlPdu::create(header(seg)));
  EXPECT_EQ(classOf(old), typeid(DtVdcSegmentedLinePduV0));

  std::vector<unsigned char> other = wire::controlPdu(2554, 200);
  EXPECT_EQ(classOf(PduPtr(DtVistrelControlPdu::create(header(other)))),
            typeid(DtUnknownVistrelControlPdu));
  EXPECT_EQ(DtVistrelControlPdu::createDrawControlCurrent(nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(DtVistrelControlPdu::createDrawControlV0(nullptr, nullptr, nullptr), nullptr);
}

TEST(CreateFromBytes, ShortReceivedBytesAreReadAsZero) {
  std::vector<unsigned char> b = wire::controlPdu(2560, 1312, 150);
  PduPtr text(DtVistrelControlPdu::createFromBytes(b.data(), b.size()));
  auto* t = dynamic_cast<DtVdcTextPdu*>(text.get());
  ASSERT_NE(t, nullptr);
  EXPECT_EQ(t->text(), "");
  EXPECT_EQ(t->length(), 1312);
}

}  // namespace
