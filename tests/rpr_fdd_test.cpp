// The 2000-format object model against the published RPR modules it was written from: an
// RTI that merges the two (a federate of the other API joining with the modules) refuses
// a class whose attributes, transportation or order differ in the least.
#include <gtest/gtest.h>

#include <pugixml.hpp>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

struct Attr {
  std::string name, dataType, transportation, order;
};
using Classes = std::map<std::string, std::vector<Attr>>;  // qualified name -> attributes

std::string childText(const pugi::xml_node& n, const char* tag) {
  return n.child(tag).text().as_string();
}

// 1516-2000: properties are XML attributes.
void walk2000(const pugi::xml_node& cls, const std::string& parent, Classes& out) {
  const std::string name = parent.empty() ? std::string(cls.attribute("name").as_string())
                                          : parent + "." + cls.attribute("name").as_string();
  auto& attrs = out[name];
  for (auto a : cls.children("attribute"))
    attrs.push_back({a.attribute("name").as_string(), a.attribute("dataType").as_string(),
                     a.attribute("transportation").as_string(), a.attribute("order").as_string()});
  for (auto c : cls.children("objectClass")) walk2000(c, name, out);
}

// 1516-2010: properties are child elements; a module may only name a class another defines.
void walk2010(const pugi::xml_node& cls, const std::string& parent, Classes& out) {
  const std::string name =
      parent.empty() ? childText(cls, "name") : parent + "." + childText(cls, "name");
  auto& attrs = out[name];
  for (auto a : cls.children("attribute"))
    attrs.push_back({childText(a, "name"), childText(a, "dataType"), childText(a, "transportation"),
                     childText(a, "order")});
  for (auto c : cls.children("objectClass")) walk2010(c, name, out);
}

pugi::xml_document load(const std::string& path) {
  pugi::xml_document doc;
  EXPECT_TRUE(doc.load_file(path.c_str(), pugi::parse_default | pugi::parse_comments)) << path;
  return doc;
}

const std::string kShare = std::string(VC_SOURCE_DIR) + "/share/fom/";
const std::string kRoot = "HLAobjectRoot.BaseEntity";

}  // namespace

TEST(RprObjectModel, EveryEntityClassMatchesTheModulesAttributeForAttribute) {
  Classes ours, theirs;
  auto fdd = load(kShare + "VistrelControl.xml");
  walk2000(fdd.child("objectModel").child("objects").child("objectClass"), "", ours);
  for (const char* module : {"RPR-Base_v2.0.xml", "RPR-Physical_v2.0.xml"}) {
    auto doc = load(kShare + "rpr-fom-2.0/" + module);
    walk2010(doc.child("objectModel").child("objects").child("objectClass"), "", theirs);
  }
  std::set<std::string> entityClasses;
  for (const auto& kv : theirs)
    if (kv.first == kRoot || kv.first.rfind(kRoot + ".PhysicalEntity", 0) == 0)
      entityClasses.insert(kv.first);
  ASSERT_EQ(entityClasses.size(), 19u);  // BaseEntity, PhysicalEntity and its 17 below

  for (const std::string& name : entityClasses) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(ours.count(name)) << "missing from the FDD";
    const auto& a = ours[name];
    const auto& b = theirs[name];
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
      EXPECT_EQ(a[i].name, b[i].name) << "attribute " << i;
      EXPECT_EQ(a[i].dataType, b[i].dataType) << a[i].name;
      EXPECT_EQ(a[i].transportation, b[i].transportation) << a[i].name;
      EXPECT_EQ(a[i].order, b[i].order) << a[i].name;
    }
  }
  // The classes the viewer reads from: the attributes it decodes are where it expects.
  EXPECT_EQ(ours[kRoot][3].name, "Spatial");
  EXPECT_EQ(ours[kRoot][3].dataType, "SpatialVariantStruct");
  EXPECT_EQ(ours[kRoot + ".PhysicalEntity"][17].name, "Marking");
  // Nothing of the modules beyond the entities: EmbeddedSystem is not ours to carry.
  for (const auto& kv : ours) {
    if (kv.first.rfind("HLAobjectRoot.", 0) == 0) {
      EXPECT_EQ(kv.first.rfind(kRoot, 0), 0u) << kv.first;
    }
  }
}

TEST(RprObjectModel, EveryDatatypeItUsesIsDefinedAndTheSourceIsCredited) {
  auto fdd = load(kShare + "VistrelControl.xml");
  const pugi::xml_node model = fdd.child("objectModel");
  std::set<std::string> defined;
  for (auto group : model.child("dataTypes").children())
    for (auto d : group.children()) defined.insert(d.attribute("name").as_string());
  std::vector<std::string> used;
  for (auto a : model.select_nodes("//attribute"))
    used.push_back(a.node().attribute("dataType").as_string());
  for (auto f : model.select_nodes("//dataTypes//*[@dataType]"))
    used.push_back(f.node().attribute("dataType").as_string());
  for (auto s : model.select_nodes("//simpleData | //enumeratedData"))
    used.push_back(s.node().attribute("representation").as_string());
  for (const std::string& name : used) {
    if (name.rfind("HLA", 0) == 0 || name == "NA") continue;  // the standard's own
    EXPECT_TRUE(defined.count(name)) << name;
  }
  EXPECT_TRUE(defined.count("SpatialVariantStruct"));
  EXPECT_TRUE(defined.count("MarkingStruct"));

  std::string comments;
  for (auto n : fdd.children())
    if (n.type() == pugi::node_comment) comments += n.value();
  EXPECT_NE(comments.find("Reprinted with permission from SISO Inc."), std::string::npos);
}
