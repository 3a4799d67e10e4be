// Attribute panels: the PDUs of templates and groups, the values' update PDUs and their
// dirty marks, and the unknown attribute ids.
#include <gtest/gtest.h>

#include <memory>

#include "dtExceptionCheck.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using Att = DtVdcAttributeTemplateObject;

// A panel of one attribute of each kind, ids 1 to 5 in kind order.
std::unique_ptr<DtVdcAttributeGroupTemplateObject> panel() {
  auto t = std::make_unique<DtVdcAttributeGroupTemplateObject>(50, "Engine");
  t->createAttributeTemplate(1, "Label", Att::DtVdcNoValueAttribute);
  t->createAttributeTemplate(2, "Rpm", Att::DtVdcNumericAttribute);
  t->createAttributeTemplate(3, "Fuel", 0.0, 100.0);
  t->createAttributeTemplate(4, "Trace", Att::DtVdcGraphAttribute);
  t->createAttributeTemplate(5, "Icon", Att::DtVdcBmpAttribute);
  return t;
}

TEST(AttributeTemplates, EachKindHasItsDrawTypeNameAndGroup) {
  auto t = panel();
  const char* g = t->pdu().packet();
  EXPECT_EQ(wire::u32(g, 160), 50u);
  EXPECT_EQ(wire::u32(g, 164), 2571u);
  EXPECT_EQ(wire::u32(g, 404), 6u);
  EXPECT_EQ(std::string(g + 408, 6), "Engine");
  ASSERT_EQ(t->attributeTemplates().size(), 5u);
  unsigned int type = 2573;
  for (DtVdcAttributeTemplateObject* a : t->attributeTemplates()) {
    const char* b = a->pdu().packet();
    EXPECT_EQ(wire::u32(b, 164), type++);
    EXPECT_EQ(wire::u32(b, 160), a->id());
    EXPECT_EQ(wire::u32(b, 400), 50u);  // the group template's id
    EXPECT_EQ(a->templateId(), 50u);
    EXPECT_EQ(std::string(b + 408, wire::u32(b, 404)), a->name().c_str());
  }
  // The bar carries its range; the whole flag byte says so.
  DtVdcAttributeTemplateObject* bar = t->attributeTemplate(3);
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(bar->attributeType(), Att::DtVdcValueBarAttribute);
  const char* b = bar->pdu().packet();
  EXPECT_EQ(wire::u8(b, 158), 1u);
  EXPECT_EQ(wire::f64(b, 384), 0.0);
  EXPECT_EQ(wire::f64(b, 392), 100.0);
  EXPECT_EQ(wire::u8(t->attributeTemplate(2)->pdu().packet(), 158), 0u);
  EXPECT_EQ(t->attributeTemplate(6), nullptr);
}

TEST(AttributeGroups, GroupPduAndValueUpdatePdus) {
  auto t = panel();
  DtVdcAttributeGroupObject group(60, t.get(), DtVdc3DAttachPoint(DtString("2:2:2")),
                                  DtVector64(0, 0, 5), DtVdcColor(1, 2, 3, 4), true);
  const char* b = group.pdu().packet();
  EXPECT_EQ(wire::u32(b, 160), 60u);
  EXPECT_EQ(wire::u32(b, 164), 2572u);
  EXPECT_EQ(wire::u32(b, 400), 50u);
  EXPECT_EQ(wire::u8(b, 168), 2u);
  EXPECT_EQ(wire::text(b, 176, 64), "2:2:2");
  EXPECT_EQ(wire::f64(b, 376), 5.0);
  EXPECT_EQ(wire::u32(b, 172), 0x01020304u);
  EXPECT_EQ(wire::u8(b, 158), 4u);

  ASSERT_EQ(group.attributeValueMap().size(), 5u);
  for (auto& [id, value] : group.attributeValueMap()) {
    ASSERT_NE(value, nullptr);
    const char* u = value->attributeUpdatePdu().packet();
    EXPECT_EQ(wire::u32(u, 160), id);
    EXPECT_EQ(wire::u32(u, 184), 60u);  // the group's own id
    EXPECT_EQ(wire::u32(u, 164), id == 5 ? 2583u : 2581u);
    EXPECT_FALSE(value->dirty());
  }

  group.setNumericAttributeValue(2, 1500);
  group.setValueBarAttributeValue(3, 42.5);
  group.setGraphAttributeValueY(4, 3.0);  // x stays 0
  group.setBmpAttributeValue(5, "warn.bmp");
  group.setNumericAttributeValue(1, 9);  // a label keeps no value
  group.updateAllAttributePdus();
  auto update = [&](unsigned id) {
    return group.attributeValueMap()[id]->attributeUpdatePdu().packet();
  };
  EXPECT_EQ(wire::f64(update(2), 168), 1500.0);
  EXPECT_EQ(wire::f64(update(3), 168), 42.5);
  EXPECT_EQ(wire::f64(update(4), 168), 0.0);
  EXPECT_EQ(wire::f64(update(4), 176), 3.0);
  EXPECT_EQ(wire::u32(update(5), 188), 8u);
  EXPECT_EQ(std::string(update(5) + 192, 8), "warn.bmp");
  EXPECT_FALSE(group.attributeValueMap()[1]->dirty());
  EXPECT_TRUE(group.attributeValueMap()[2]->dirty());  // clearing it is the sender's work
  EXPECT_TRUE(wire::zero(update(1), 168, 16));
}

TEST(AttributeGroups, ValuesFollowTheKindOfTheirAttributeNotTheSetter) {
  auto t = panel();
  DtVdcAttributeGroupObject group(61, t.get(), DtVdc3DAttachPoint(), DtVector64(), DtVdcColor(),
                                  false);
  group.setBmpAttributeValue(5, "a.bmp");
  group.updateAttributePdu(5);
  group.setNumericAttributeValue(5, 7.5);  // stored as x; the update still sends the text
  EXPECT_EQ(group.numericAttributeValue(5), 7.5);
  EXPECT_EQ(group.bmpAttributeValue(5), "a.bmp");
  group.updateAttributePdu(5);
  const char* u = group.attributeValueMap()[5]->attributeUpdatePdu().packet();
  EXPECT_EQ(wire::f64(u, 168), 0.0);
  EXPECT_EQ(std::string(u + 192, 5), "a.bmp");

  // A clean value writes nothing, whatever it holds.
  DtVdcAttributeValue* rpm = group.attributeValueMap()[2];
  rpm->setXValue(99);
  group.updateAttributePdu(2);
  EXPECT_EQ(wire::f64(rpm->attributeUpdatePdu().packet(), 168), 0.0);
  group.setGraphAttributeValueX(4, 1.5);
  EXPECT_EQ(group.graphAttributeValueX(4), 1.5);
  EXPECT_EQ(group.graphAttributeValueY(4), 0.0);
  EXPECT_EQ(group.valueBarAttributeValue(3), 0.0);

  // Attributes created after the group have no value in it; copies own their values.
  t->createAttributeTemplate(6, "Late", Att::DtVdcNumericAttribute);
  DtVdcAttributeGroupObject copy(group);
  EXPECT_EQ(copy.attributeValueMap().count(6), 0u);
  EXPECT_NE(copy.attributeValueMap()[5], group.attributeValueMap()[5]);
  EXPECT_EQ(copy.bmpAttributeValue(5), "a.bmp");
}

TEST(AttributeGroups, UnknownIdsThrowAndSetterLookupsLeaveAnEmptyEntry) {
  DtVdcAttributeGroupObject orphan(62, nullptr, DtVdc3DAttachPoint(), DtVector64(), DtVdcColor(),
                                   false);
  EXPECT_TRUE(orphan.attributeValueMap().empty());
  EXPECT_EQ(wire::u32(orphan.pdu().packet(), 400), 0u);
  EXPECT_TRUE(vctest::throwsDtException(
      [&] { orphan.setNumericAttributeValue(3, 1.0); }, "Invalid attribute ID",
      "virtual void DtVdcAttributeGroupObject::setNumericAttributeValue(unsigned int, double)",
      "vdcAttGroup"));
  EXPECT_TRUE(
      vctest::throwsDtException([&] { orphan.updateAttributePdu(4); }, "Invalid attribute ID",
                                "DtVdcAttributeGroupObject::updateAttributePdu", "vdcAttGroup"));
  EXPECT_TRUE(
      vctest::throwsDtException([&] { orphan.bmpAttributeValue(8); }, "Invalid attribute ID",
                                "DtVdcAttributeGroupObject::bmpAttributeValue", "vdcAttGroup"));
  // The setter and the update entered their ids, the getter did not.
  ASSERT_EQ(orphan.attributeValueMap().size(), 2u);
  EXPECT_EQ(orphan.attributeValueMap().count(3), 1u);
  EXPECT_EQ(orphan.attributeValueMap()[4], nullptr);
  orphan.updateAllAttributePdus();  // empty entries are skipped
}

}  // namespace
