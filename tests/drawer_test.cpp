// The remote drawer through a recording custom sender: what each operation sends, in
// which order, the ids it stamps, and what it throws.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "dtExceptionCheck.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using Att = DtVdcAttributeTemplateObject;

class Recorder : public DtCustomRemoteControlSender {
 public:
  void send(const char* pdu, int length) override { sent.emplace_back(pdu, pdu + length); }
  const char* bytes(size_t i) const { return sent.at(i).data(); }
  // Command (at 146), object id and draw type of every PDU sent, as "2510:2511:7".
  std::vector<std::string> summary() const {
    std::vector<std::string> out;
    for (const auto& pdu : sent)
      out.push_back(std::to_string(wire::u16(pdu.data(), 146)) + ":" +
                    std::to_string(wire::u32(pdu.data(), 164)) + ":" +
                    std::to_string(wire::u32(pdu.data(), 160)));
    return out;
  }
  std::vector<std::vector<char>> sent;
};

// A layer that reports its destruction.
class Layer : public DtVdcDrawLayerObject {
 public:
  Layer(unsigned int id, std::vector<unsigned int>* deleted)
      : DtVdcDrawLayerObject(id, "L"), deleted_(deleted) {}
  ~Layer() override { deleted_->push_back(id()); }

 private:
  std::vector<unsigned int>* deleted_;
};

class DrawerTest : public ::testing::Test {
 protected:
  Recorder recorder;
  std::vector<unsigned int> deleted;
  DtVistrelRemoteDrawer drawer{&recorder, DtString("drawer-1"), DtString("viewer-9"), 100};
};

TEST_F(DrawerTest, IdsComeInSequenceAndAddingDoesNotUseThem) {
  EXPECT_EQ(drawer.nextId(), 100u);
  drawer.add(new Layer(5, &deleted));
  EXPECT_EQ(drawer.nextId(), 101u);
  EXPECT_EQ(drawer.nextId(), 102u);
  DtVistrelRemoteDrawer wrapping(&recorder, "x", DtVistrelRemoteDrawer::SEND_TO_ALL, 0xFFFFFFFFu);
  EXPECT_EQ(wrapping.nextId(), 0xFFFFFFFFu);
  EXPECT_EQ(wrapping.nextId(), 0u);
  EXPECT_EQ(DtVistrelRemoteDrawer::SEND_TO_ALL, "0:0:0");
}

TEST_F(DrawerTest, AddSendsTheUpdatedPduSignedButNotAddressed) {
  auto* text = new DtVdcText2DObject(7, "old", DtVdcVector2D(0.5, 0.5), DtVdcColor(), false);
  text->pdu().setViewerId("kept-viewer");
  text->setText("new");  // updatePdu runs before the send
  EXPECT_EQ(drawer.add(text), 7u);
  ASSERT_EQ(recorder.sent.size(), 1u);
  const char* b = recorder.bytes(0);
  EXPECT_EQ(recorder.sent[0].size(), 391u);
  EXPECT_EQ(wire::u16(b, 8), 391u);
  EXPECT_EQ(wire::text(b, 76, 64), "drawer-1");
  EXPECT_EQ(wire::text(b, 12, 64), "kept-viewer");  // never the drawer's target
  EXPECT_EQ(std::string(b + 388, 3), "new");
  EXPECT_EQ(drawer.lookup(7), text);
  EXPECT_EQ(text->pdu().senderId(), "drawer-1");  // stamped and left
}

TEST_F(DrawerTest, UpdateOfAnUnknownIdThrowsAndLeavesAnEmptyEntry) {
  EXPECT_TRUE(vctest::throwsDtException([&] { drawer.update(5u); }, "vdc object not found",
                                        "DtVistrelRemoteDrawer::update(unsigned int)",
                                        "vdcRemoteDrawer"));
  EXPECT_EQ(drawer.lookup(5), nullptr);
  EXPECT_THROW(drawer.update(0), DtException);  // a plain 0 is an id, not a null object
  EXPECT_TRUE(recorder.sent.empty());
  EXPECT_EQ(drawer.remove(5), nullptr);  // an empty entry goes without a command
  EXPECT_TRUE(recorder.sent.empty());
  drawer.lookup(5);
  drawer.add(new Layer(5, &deleted));
  drawer.update(5u);
  EXPECT_EQ(recorder.summary(), (std::vector<std::string>{"2590:2590:5", "2590:2590:5"}));
}

TEST_F(DrawerTest, RemoveHandsTheObjectBackWithOneCommand) {
  EXPECT_EQ(drawer.remove(3), nullptr);
  EXPECT_TRUE(recorder.sent.empty());
  std::unique_ptr<Layer> layer(new Layer(3, &deleted));
  drawer.add(layer.get());
  recorder.sent.clear();
  EXPECT_EQ(drawer.remove(3), layer.get());
  EXPECT_TRUE(deleted.empty());
  ASSERT_EQ(recorder.sent.size(), 1u);
  const char* b = recorder.bytes(0);
  EXPECT_EQ(recorder.sent[0].size(), 172u);
  EXPECT_EQ(wire::u32(b, 152), 0x600DF00Du);
  EXPECT_EQ(wire::u16(b, 146), 2510u);
  EXPECT_EQ(wire::u32(b, 164), 2511u);
  EXPECT_EQ(wire::u32(b, 160), 3u);
  EXPECT_EQ(wire::u32(b, 168), 0u);
  EXPECT_EQ(wire::text(b, 76, 64), "drawer-1");
  EXPECT_EQ(wire::text(b, 12, 64), "");
  EXPECT_EQ(drawer.remove(3), nullptr);
}

TEST_F(DrawerTest, DestructionRemovesAndDeletesInAscendingId) {
  Recorder own;
  auto scoped = std::make_unique<DtVistrelRemoteDrawer>(&own, "drawer-2", "v", 1);
  for (unsigned int id : {30u, 10u, 20u}) scoped->add(new Layer(id, &deleted));
  scoped->lookup(15);  // an empty entry: skipped
  own.sent.clear();
  scoped.reset();
  EXPECT_EQ(own.summary(),
            (std::vector<std::string>{"2510:2511:10", "2510:2511:20", "2510:2511:30"}));
  EXPECT_EQ(deleted, (std::vector<unsigned int>{10, 20, 30}));
}

TEST_F(DrawerTest, CommandsCarryTheirTypeObjectAndLayer) {
  drawer.show(4);
  drawer.hide(4);
  drawer.addToLayer(4, 40);
  drawer.removeFromLayer(4, 41);
  EXPECT_EQ(recorder.summary(),
            (std::vector<std::string>{"2510:2513:4", "2510:2512:4", "2510:2514:4", "2510:2515:4"}));
  EXPECT_EQ(wire::u32(recorder.bytes(0), 168), 0u);
  EXPECT_EQ(wire::u32(recorder.bytes(2), 168), 40u);
  EXPECT_EQ(wire::u32(recorder.bytes(3), 168), 41u);
  for (const auto& pdu : recorder.sent) EXPECT_EQ(pdu.size(), 172u);
}

TEST_F(DrawerTest, AttributeCommandsDependOnWhatTheGroupIdHolds) {
  auto* panel = new DtVdcAttributeGroupTemplateObject(70, "Panel");
  panel->createAttributeTemplate(4, "Speed", Att::DtVdcNumericAttribute);
  drawer.add(panel);
  drawer.add(new DtVdcAttributeGroupObject(71, panel, DtVdc3DAttachPoint(), DtVector64(),
                                           DtVdcColor(), false));
  recorder.sent.clear();
  drawer.showAttribute(71, 4);
  drawer.hideAttribute(71, 4);
  drawer.showAttribute(70, 4);
  drawer.hideAttribute(70, 4);
  EXPECT_EQ(recorder.summary(),
            (std::vector<std::string>{"2510:2516:4", "2510:2518:4", "2510:2517:4", "2510:2519:4"}));
  EXPECT_EQ(wire::u32(recorder.bytes(0), 168), 71u);
  EXPECT_EQ(wire::u32(recorder.bytes(2), 168), 70u);
  // The group goes first: it refers to the template.
  delete drawer.remove(71);
}

TEST_F(DrawerTest, GroupTemplatesTravelWithTheirAttributes) {
  auto* panel = new DtVdcAttributeGroupTemplateObject(80, "Panel");
  panel->createAttributeTemplate(2, "Fuel", 0, 50);
  panel->createAttributeTemplate(1, "Name", Att::DtVdcBmpAttribute);
  drawer.add(panel);
  EXPECT_EQ(recorder.summary(),
            (std::vector<std::string>{"2570:2571:80", "2570:2575:2", "2570:2577:1"}));
  EXPECT_EQ(wire::f64(recorder.bytes(1), 392), 50.0);
  EXPECT_EQ(drawer.lookup(2), nullptr);  // sent, not held

  // Removing it removes those of its attributes that were added themselves.
  drawer.add(panel->attributeTemplate(1));
  recorder.sent.clear();
  EXPECT_EQ(drawer.remove(80), panel);
  EXPECT_EQ(recorder.summary(), (std::vector<std::string>{"2510:2511:1", "2510:2511:80"}));
  delete panel;
}

TEST_F(DrawerTest, GroupUpdatesSendOnlyChangedValuesAndCleanThem) {
  DtVdcAttributeGroupTemplateObject panel(90, "Panel");
  panel.createAttributeTemplate(3, "Rpm", Att::DtVdcNumericAttribute);
  panel.createAttributeTemplate(1, "Icon", Att::DtVdcBmpAttribute);
  panel.createAttributeTemplate(2, "Label", Att::DtVdcNoValueAttribute);
  auto* group = new DtVdcAttributeGroupObject(91, &panel, DtVdc3DAttachPoint(), DtVector64(),
                                              DtVdcColor(), false);
  drawer.add(group);
  EXPECT_EQ(recorder.sent.size(), 1u);  // all values clean

  group->setNumericAttributeValue(3, 2500);
  group->setBmpAttributeValue(1, "hot.bmp");
  group->setNumericAttributeValue(2, 1);                             // a label: never sent
  EXPECT_THROW(group->setNumericAttributeValue(9, 1), DtException);  // leaves an empty entry
  recorder.sent.clear();
  drawer.update(91u);
  ASSERT_EQ(recorder.summary(),
            (std::vector<std::string>{"2570:2572:91", "2580:2583:1", "2580:2581:3"}));
  EXPECT_EQ(std::string(recorder.bytes(1) + 192, 7), "hot.bmp");
  EXPECT_EQ(wire::u32(recorder.bytes(1), 184), 91u);
  EXPECT_EQ(wire::f64(recorder.bytes(2), 168), 2500.0);
  EXPECT_EQ(wire::text(recorder.bytes(2), 76, 64), "drawer-1");
  EXPECT_EQ(recorder.sent[2].size(), 192u);
  for (auto& [id, value] : group->attributeValueMap()) EXPECT_TRUE(!value || !value->dirty()) << id;

  recorder.sent.clear();
  drawer.update(group);
  EXPECT_EQ(recorder.sent.size(), 1u);
  delete drawer.remove(91);  // before the template goes
}

TEST(DrawerWithoutTransport, SendingThrows) {
  DtVistrelRemoteDrawer drawer(static_cast<DtCustomRemoteControlSender*>(nullptr), "me");
  EXPECT_TRUE(
      vctest::throwsDtException([&] { drawer.show(1); }, "No send mechanism in VistrelRemoteDrawer",
                                "DtVistrelRemoteDrawer::sendDrawControlPdu", "vdcRemoteDrawer"));
  DtVdcCommandPdu pdu;
  EXPECT_THROW(drawer.sendDrawControlPdu(pdu), DtException);
  EXPECT_EQ(pdu.senderId(), "me");  // signed before the transport is chosen
}

}  // namespace
