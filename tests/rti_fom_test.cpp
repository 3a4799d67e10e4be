// FOM modules of the 1516-2010 format: the published RPR FOM 2.0 modules and ours read and
// merged as they are, in any order their dependencies allow; modules that conflict named
// with both modules; hostile files refused before they cost anything.
#if __has_include("fdd_parser.h")
#include "core_types.h"
#include "fdd_parser.h"
#include "federation_core.h"
#include "fom_modules.h"
#include "protocol.h"
#include "rti_hub_fixture.h"

#include <algorithm>
#include <set>

using namespace vcrti;
using namespace rtitest;

namespace {

const std::string kRpr = std::string(VC_SOURCE_DIR) + "/share/fom/rpr-fom-2.0/";
const std::string kFoundation = kRpr + "RPR-Foundation_v2.0.xml";
const std::string kEnumerations = kRpr + "RPR-Enumerations_v2.0.xml";
const std::string kBase = kRpr + "RPR-Base_v2.0.xml";
const std::string kPhysical = kRpr + "RPR-Physical_v2.0.xml";
const std::string kSwitches = kRpr + "RPR-Switches_v2.0.xml";
const std::string kViewControl = std::string(VC_SOURCE_DIR) + "/share/fom/VistrelControl-1516e.xml";
const std::string kFdd2000 = std::string(VC_SOURCE_DIR) + "/share/fom/VistrelControl.xml";

FddModel read(const std::vector<std::string>& files) {
  std::vector<std::wstring> paths;
  for (const std::string& f : files) paths.push_back(wide(f));
  return readFomModules(paths);
}

// The message of the RtiError that reading throws, which must be of `fault`.
std::string refusal(const std::vector<std::string>& files, Fault fault) {
  try {
    read(files);
  } catch (const RtiError& e) {
    EXPECT_EQ(e.fault(), fault) << narrow(e.message());
    return narrow(e.message());
  }
  ADD_FAILURE() << "accepted";
  return {};
}

const FddMember& attribute(const FddModel& m, const wchar_t* cls, const wchar_t* name) {
  const std::uint32_t c = m.objects.findClass(cls);
  EXPECT_NE(c, kNoClass) << narrow(cls);
  const std::uint32_t a = m.objects.findMember(c, name);
  EXPECT_NE(a, kNoClass) << narrow(name);
  return m.objects.members.at(a);
}

// Every class by qualified name with its own members, as text: two models that describe
// the same classes the same way give the same map, whatever their handles.
std::map<std::wstring, std::wstring> describe(const FddTree& tree) {
  std::map<std::wstring, std::wstring> out;
  for (const FddClass& c : tree.classes) {
    std::wstring d = c.transportation + L"/" + c.order + L":";
    for (std::uint32_t m : c.declared) {
      const FddMember& x = tree.members[m];
      d += L" " + x.name + L"(" + x.dataType + L"," + x.transportation + L"," + x.order + L")";
    }
    out[c.qualified] = d;
  }
  return out;
}

const std::vector<std::string> kAll = {kFoundation, kEnumerations, kBase,
                                       kPhysical,   kSwitches,     kViewControl};

TEST(FomModules, PublishedRprModulesAndOursLoadAsTheyAre) {
  const FddModel m = read(kAll);
  // The MIM first, then each module, by the name it was given.
  ASSERT_EQ(m.modules.size(), 7u);
  EXPECT_EQ(m.modules[0], L"HLAstandardMIM");
  EXPECT_EQ(m.modules[3], wide(kBase));

  const wchar_t* const aircraft = L"BaseEntity.PhysicalEntity.Platform.Aircraft";
  const std::uint32_t cls = m.objects.findClass(aircraft);
  ASSERT_NE(cls, kNoClass);
  EXPECT_EQ(m.objects.classes[cls].qualified, std::wstring(L"HLAobjectRoot.") + aircraft);
  EXPECT_EQ(m.modules.at(m.objects.classes[cls].module), wide(kPhysical));
  // Defined by Base, named as scaffolding by Physical: Base's attributes, in Base's order.
  const std::uint32_t base = m.objects.findClass(L"BaseEntity");
  EXPECT_EQ(m.modules.at(m.objects.classes[base].module), wide(kBase));
  EXPECT_EQ(m.objects.members[m.objects.classes[base].declared.at(3)].name, L"Spatial");
  const FddMember& spatial = attribute(m, aircraft, L"Spatial");
  EXPECT_EQ(spatial.dataType, L"SpatialVariantStruct");
  EXPECT_EQ(spatial.transportation, L"HLAbestEffort");
  EXPECT_EQ(spatial.order, L"Receive");
  EXPECT_EQ(attribute(m, aircraft, L"Marking").dataType, L"MarkingStruct");
  EXPECT_EQ(attribute(m, L"HLAobjectRoot", L"HLAprivilegeToDeleteObject").order, L"TimeStamp");
  EXPECT_NE(m.objects.findClass(L"HLAmanager.HLAfederate"), kNoClass);

  const std::uint32_t collision = m.interactions.findClass(L"Collision");
  ASSERT_NE(collision, kNoClass);
  EXPECT_EQ(m.interactions.classes[collision].transportation, L"HLAbestEffort");
  EXPECT_EQ(m.interactions.classes[collision].order, L"Receive");
  const std::uint32_t vc = m.interactions.findClass(L"ViewControl");
  ASSERT_NE(vc, kNoClass);
  EXPECT_EQ(m.interactions.classes[vc].transportation, L"HLAreliable");
  const std::uint32_t pdu = m.interactions.findMember(vc, L"ViewControlPdu");
  ASSERT_NE(pdu, kNoClass);
  EXPECT_EQ(m.interactions.members[pdu].dataType, L"HLAopaqueData");

  const FddDataType* variant = m.findDataType(L"SpatialVariantStruct");
  ASSERT_NE(variant, nullptr);
  EXPECT_EQ(variant->kind, FddDataType::Kind::VariantRecord);
  EXPECT_EQ(variant->properties,
            (std::vector<std::wstring>{L"DeadReckoningAlgorithm", L"DeadReckoningAlgorithmEnum8",
                                       L"HLAvariantRecord"}));
  auto fpw = std::find_if(variant->items.begin(), variant->items.end(),
                          [](const FddItem& i) { return i.value == L"DRM_FPW"; });
  ASSERT_NE(fpw, variant->items.end());
  EXPECT_EQ(fpw->name, L"SpatialFPW");
  EXPECT_EQ(fpw->dataType, L"SpatialFPStruct");
  const FddDataType* id = m.findDataType(L"EntityIdentifierStruct");
  ASSERT_NE(id, nullptr);
  EXPECT_EQ(id->kind, FddDataType::Kind::FixedRecord);
  ASSERT_EQ(id->items.size(), 2u);
  EXPECT_EQ(id->items[0].name, L"FederateIdentifier");
  EXPECT_EQ(id->items[0].dataType, L"FederateIdentifierStruct");
  EXPECT_EQ(id->items[1].dataType, L"UnsignedInteger16");
  const FddDataType* algorithm = m.findDataType(L"DeadReckoningAlgorithmEnum8");
  ASSERT_NE(algorithm, nullptr);
  EXPECT_EQ(algorithm->kind, FddDataType::Kind::Enumerated);
  EXPECT_EQ(algorithm->properties, std::vector<std::wstring>{L"HLAoctet"});
  const FddDataType* u16 = m.findDataType(L"RPRunsignedInteger16BE");
  ASSERT_NE(u16, nullptr);
  EXPECT_EQ(u16->kind, FddDataType::Kind::Basic);
  EXPECT_EQ(u16->properties, (std::vector<std::wstring>{L"16", L"Big"}));

  // The whole model travels in one frame to the hub and from it to every joiner.
  ByteBuffer blob;
  ASSERT_TRUE(encodeFdd(m, blob));
  EXPECT_LT(blob.size(), kMaxModelBytes / 2);  // room for modules of its own
  FddModel back;
  std::string err;
  ASSERT_TRUE(decodeFdd(blob.data(), blob.size(), back, err)) << err;
  EXPECT_EQ(describe(back.objects), describe(m.objects));
  EXPECT_EQ(back.modules, m.modules);
  ASSERT_EQ(back.dataTypes.size(), m.dataTypes.size());
  for (std::size_t i = 0; i < m.dataTypes.size(); ++i)
    EXPECT_TRUE(back.dataTypes[i].sameAs(m.dataTypes[i])) << narrow(m.dataTypes[i].name);
}

TEST(FomModules, AnyOrderTheDependenciesAllowGivesTheSameClasses) {
  const FddModel usual = read(kAll);
  const FddModel other =
      read({kViewControl, kSwitches, kFoundation, kEnumerations, kBase, kPhysical});
  EXPECT_EQ(describe(other.objects), describe(usual.objects));
  EXPECT_EQ(describe(other.interactions), describe(usual.interactions));
  EXPECT_EQ(other.dataTypes.size(), usual.dataTypes.size());
  // A module loaded twice adds nothing.
  const FddModel twice = read({kFoundation, kEnumerations, kBase, kBase, kFoundation});
  EXPECT_EQ(twice.objects.classes.size(),
            read({kFoundation, kEnumerations, kBase}).objects.classes.size());

  // Physical extends BaseEntity, which only Base defines.
  std::string msg = refusal({kFoundation, kEnumerations, kPhysical, kBase}, Fault::InconsistentFDD);
  EXPECT_NE(msg.find("'HLAobjectRoot.BaseEntity' is not defined"), std::string::npos) << msg;
  EXPECT_NE(msg.find(kPhysical), std::string::npos) << msg;
  // Base uses the enumerations' datatypes.
  msg = refusal({kFoundation, kBase, kEnumerations}, Fault::InconsistentFDD);
  EXPECT_NE(msg.find("is not defined"), std::string::npos) << msg;
  EXPECT_NE(msg.find(kBase), std::string::npos) << msg;
}

TEST(FomModules, AJoinersModulesMergeIntoTheTwoThousandFormatModel) {
  // A federation made from the 2000-format FDD that a 2010 federate joins with the
  // published modules: the entity classes and ViewControl agree to the attribute.
  FddModel fdd = parseFddFile(wide(kFdd2000));
  const FddModel before = fdd;
  const std::string err =
      mergeModules(fdd, parseFomModules({wide(kFoundation), wide(kEnumerations), wide(kBase),
                                         wide(kPhysical), wide(kSwitches), wide(kViewControl)}));
  ASSERT_EQ(err, "");
  // Every handle given before keeps its class, its name and its members.
  for (const FddTree FddModel::*tree : {&FddModel::interactions, &FddModel::objects}) {
    const FddTree& was = before.*tree;
    const FddTree& now = fdd.*tree;
    ASSERT_GE(now.classes.size(), was.classes.size());
    for (std::uint32_t c = 0; c < was.classes.size(); ++c) {
      EXPECT_EQ(now.classes[c].qualified, was.classes[c].qualified);
      EXPECT_EQ(now.classes[c].declared, was.classes[c].declared)
          << narrow(was.classes[c].qualified);
    }
    for (std::uint32_t m = 0; m < was.members.size(); ++m)
      EXPECT_EQ(now.members[m].name, was.members[m].name);
  }
  EXPECT_GT(fdd.objects.classes.size(), before.objects.classes.size());  // EmbeddedSystem, ...
  EXPECT_NE(fdd.objects.findClass(L"HLAmanager.HLAfederation"), kNoClass);
  EXPECT_NE(fdd.findDataType(L"SpatialVariantStruct"), nullptr);
}

// A module that restates one thing of the published ones differently.
std::string variantOf(const std::string& file, const std::string& from, const std::string& to) {
  std::ifstream in(file, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const auto at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

TEST(FomModules, AConflictingModuleIsRefusedNamingTheClassAndBothModules) {
  const std::string spatial =
      "<name>Spatial</name>\n                    <dataType>SpatialVariantStruct</dataType>";
  struct Case {
    const char* what;
    std::string from, to, expected;
  } cases[] = {
      {"attribute transportation",
       "<transportation>HLAbestEffort</transportation>\n                    <order>Receive</order>",
       "<transportation>HLAreliable</transportation>\n                    <order>Receive</order>",
       "object class 'HLAobjectRoot.BaseEntity' of module '%B' differs from its definition in "
       "module '%A': attribute 'EntityType' has transportation 'HLAreliable', not 'HLAbestEffort'"},
      {"attribute datatype", spatial,
       "<name>Spatial</name>\n                    <dataType>EntityTypeStruct</dataType>",
       "attribute 'Spatial' has datatype 'EntityTypeStruct', not 'SpatialVariantStruct'"},
      {"attribute name", spatial,
       "<name>Spatial2</name>\n                    <dataType>SpatialVariantStruct</dataType>",
       "attribute 4 is 'Spatial2', not 'Spatial'"},
      {"datatype",
       "<name>FederateIdentifier</name>\n                    <dataType>FederateIdentifierStruct",
       "<name>Federate</name>\n                    <dataType>FederateIdentifierStruct",
       "datatype 'EntityIdentifierStruct' of module '%B' differs from its definition in module "
       "'%A'"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    TempFile changed("conflict", variantOf(kBase, c.from, c.to));
    std::string expected = c.expected;
    for (auto [mark, file] :
         {std::pair<const char*, std::string>{"%A", kBase}, {"%B", changed.path()}})
      if (auto at = expected.find(mark); at != std::string::npos) expected.replace(at, 2, file);
    const std::string msg =
        refusal({kFoundation, kEnumerations, kBase, changed.path()}, Fault::InconsistentFDD);
    EXPECT_NE(msg.find(expected), std::string::npos) << msg;
  }
  // Interactions: another order for ViewControl than our module gives it.
  TempFile timed("conflict",
                 variantOf(kViewControl, "<order>Receive</order>", "<order>TimeStamp</order>"));
  const std::string msg = refusal({kViewControl, timed.path()}, Fault::InconsistentFDD);
  EXPECT_NE(msg.find("interaction class 'HLAinteractionRoot.ViewControl' of module '" +
                     timed.path() + "' differs from its definition in module '" + kViewControl +
                     "': order 'TimeStamp', not 'Receive'"),
            std::string::npos)
      << msg;
  // The MIM's root restated otherwise.
  TempFile root("conflict", R"(<objectModel><objects><objectClass><name>HLAobjectRoot</name>
    <sharing>Neither</sharing></objectClass></objects></objectModel>)");
  const std::string rootMsg = refusal({root.path()}, Fault::InconsistentFDD);
  EXPECT_NE(rootMsg.find("'HLAobjectRoot' of module '" + root.path() +
                         "' differs from its definition in module 'HLAstandardMIM'"),
            std::string::npos)
      << rootMsg;
}

TEST(FomModules, AScaffoldingClassTakesTheMembersOfItsDefinitionWithNewHandles) {
  TempFile carrier("scaffold", R"(<objectModel><objects><objectClass><name>HLAobjectRoot</name>
    <objectClass><name>A</name><objectClass><name>B</name><sharing>Publish</sharing>
      <attribute><name>b</name><dataType>HLAboolean</dataType></attribute>
    </objectClass></objectClass></objectClass></objects></objectModel>)");
  TempFile definer("scaffold", R"(<objectModel><objects><objectClass><name>HLAobjectRoot</name>
    <objectClass><name>A</name><sharing>Publish</sharing>
      <attribute><name>a</name><dataType>HLAcount</dataType></attribute>
    </objectClass></objectClass></objects></objectModel>)");
  FddModel m = read({definer.path()});
  const std::uint32_t a = m.objects.findClass(L"A");
  const std::uint32_t aAttr = m.objects.findMember(a, L"a");
  // B's module names A only to carry B: it extends A's definition.
  ASSERT_EQ(mergeModule(m, parseFddFile(carrier.wpath())), "");
  const std::uint32_t b = m.objects.findClass(L"A.B");
  ASSERT_NE(b, kNoClass);
  EXPECT_EQ(m.objects.findClass(L"A"), a);
  EXPECT_EQ(m.objects.findMember(b, L"a"), aAttr);
  EXPECT_GT(m.objects.findMember(b, L"b"), aAttr);
  // The other way round, B's module first, A stays a scaffold until its definition comes.
  EXPECT_NE(refusal({carrier.path(), definer.path()}, Fault::InconsistentFDD)
                .find("'HLAobjectRoot.A' is not defined"),
            std::string::npos);
}

struct Hostile {
  const char* what;
  std::string xml;
  const char* reason;
};

TEST(FomModules, HostileModulesAreRefusedBeforeTheyCostAnything) {
  const std::string head = "<objectModel><objects><objectClass><name>HLAobjectRoot</name>";
  const std::string tail = "</objectClass></objects></objectModel>";
  std::string laughs = "<?xml version=\"1.0\"?><!DOCTYPE objectModel [<!ENTITY a \"aaaaaaaa\">";
  for (int i = 1; i < 10; ++i)
    laughs += "<!ENTITY " + std::string(i + 1, 'a') + " \"&" + std::string(i, 'a') + ";&" +
              std::string(i, 'a') + ";\">";
  laughs += "]>" + head + "<objectClass><name>&aaaaaaaaaa;</name></objectClass>" + tail;
  std::string deep = head;
  for (int i = 0; i < 100; ++i) deep += "<objectClass><name>c" + std::to_string(i) + "</name>";
  for (int i = 0; i < 100; ++i) deep += "</objectClass>";
  deep += tail;
  const Hostile cases[] = {
      {"entity expansion", laughs, "document type declaration"},
      {"external entity",
       "<!DOCTYPE objectModel [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>" + head +
           "<objectClass><name>&x;</name></objectClass>" + tail,
       "document type declaration"},
      {"deep nesting", deep, "nested more than 64 deep"},
      {"duplicate class",
       head + "<objectClass><name>A</name></objectClass><objectClass><name>A</name></objectClass>" +
           tail,
       "'HLAobjectRoot.A' declared twice"},
      {"duplicate attribute",
       head +
           "<objectClass><name>A</name><attribute><name>x</name></attribute>"
           "<attribute><name>x</name></attribute></objectClass>" +
           tail,
       "'x' declared twice"},
      {"duplicate datatype",
       "<objectModel><dataTypes><simpleDataTypes><simpleData><name>T</name></simpleData>"
       "<simpleData><name>T</name></simpleData></simpleDataTypes></dataTypes></objectModel>",
       "datatype 'T' declared twice"},
      {"datatype without a name",
       "<objectModel><dataTypes><arrayDataTypes><arrayData><name/></arrayData>"
       "</arrayDataTypes></dataTypes></objectModel>",
       "<arrayData> without a name"},
  };
  for (const Hostile& h : cases) {
    SCOPED_TRACE(h.what);
    TempFile f("hostile", h.xml);
    const std::string msg = refusal({kFoundation, f.path()}, Fault::ErrorReadingFDD);
    EXPECT_NE(msg.find(f.path()), std::string::npos) << msg;
    EXPECT_NE(msg.find(h.reason), std::string::npos) << msg;
  }
  // Huge: refused by its size, before a byte of it is parsed.
  TempFile huge("huge", head + std::string(kMaxFddBytes, ' ') + tail);
  const std::string msg = refusal({huge.path()}, Fault::ErrorReadingFDD);
  EXPECT_NE(msg.find("larger than 16 MiB"), std::string::npos) << msg;
  EXPECT_NE(refusal({kRpr + "missing.xml"}, Fault::CouldNotOpenFDD).find("missing.xml"),
            std::string::npos);

  // Datatypes count against the model's limits as classes do.
  FddModel many = standardMim();
  FddDataType t;
  t.items.resize(kMaxDataTypeEntries);
  many.dataTypes.push_back(t);
  many.dataTypes.back().name = L"Many";
  EXPECT_NE(many.index().find("datatypes and their items"), std::string::npos);
}

TEST(FomModules, JoinersModulesTravelAsAListThatRefusesCorruptBytes) {
  std::vector<FddModel> modules = parseFomModules({wide(kFoundation), wide(kViewControl)});
  ByteBuffer blob;
  ASSERT_TRUE(encodeModules(modules, blob));
  std::vector<FddModel> back;
  std::string err;
  ASSERT_TRUE(decodeModules(blob.data(), blob.size(), back, err)) << err;
  ASSERT_EQ(back.size(), 2u);
  EXPECT_EQ(back[1].modules, std::vector<std::wstring>{wide(kViewControl)});
  EXPECT_EQ(back[0].dataTypes.size(), modules[0].dataTypes.size());
  for (std::size_t n = 0; n < blob.size(); n += 7) {
    std::vector<unsigned char> cut(blob.data(), blob.data() + n);
    EXPECT_FALSE(decodeModules(cut.data(), cut.size(), back, err)) << n;
  }
}

// ---------------------------------------------------------------- joins that bring modules

// A module with a class of its own and a subclass of ViewControl.
const char* const kGreetingModule = R"(<objectModel><modelIdentification><name>Greeting</name>
  </modelIdentification>
  <interactions><interactionClass><name>HLAinteractionRoot</name>
    <interactionClass><name>Greeting</name><sharing>PublishSubscribe</sharing>
      <transportation>HLAreliable</transportation><order>Receive</order>
      <parameter><name>Text</name><dataType>HLAunicodeString</dataType></parameter>
    </interactionClass>
    <interactionClass><name>ViewControl</name>
      <interactionClass><name>Annotated</name><sharing>PublishSubscribe</sharing>
        <transportation>HLAreliable</transportation><order>Receive</order>
        <parameter><name>Note</name><dataType>HLAunicodeString</dataType></parameter>
      </interactionClass>
    </interactionClass>
  </interactionClass></interactions></objectModel>)";

// A member of a federation in this process that keeps the frames it is sent.
struct Inbox final : FederationMember {
  std::vector<wire::Message> got;
  std::vector<std::vector<unsigned char>> frames;
  void deliver(const unsigned char* frame, std::size_t size) override {
    frames.emplace_back(frame, frame + size);
    got.emplace_back();
    wire::decodeFrame(frames.back().data(), size, got.back());
  }
};

TEST(FomJoin, TheFederationCoreGrowsItsRoutesAndTellsEveryMember) {
  FederationCore core(std::make_shared<const FddModel>(parseFddFile(wide(kFdd2000))));
  Inbox a, b;
  core.join(a);
  core.join(b);
  const std::uint32_t vc = core.model()->interactions.findClass(L"ViewControl");
  ASSERT_EQ(core.subscribeInteractions(a, vc, true), "");
  TempFile module("greeting", kGreetingModule);
  FddModel grown = *core.model();
  ASSERT_EQ(mergeModules(grown, parseFomModules({module.wpath()})), "");
  const std::uint32_t annotated = grown.interactions.findClass(L"ViewControl.Annotated");
  ASSERT_GT(annotated, vc);
  ASSERT_EQ(core.extendModel(std::make_shared<const FddModel>(grown)), "");
  for (Inbox* m : {&a, &b}) {
    ASSERT_EQ(m->got.size(), 1u);
    ASSERT_EQ(m->got[0].type, wire::MsgType::ModelGrown);
    FddModel sent;
    std::string err;
    ASSERT_TRUE(decodeFdd(m->got[0].blob.data, m->got[0].blob.size, sent, err)) << err;
    EXPECT_EQ(sent.interactions.findClass(L"ViewControl.Annotated"), annotated);
  }
  // A subscriber of ViewControl receives its new subclass; the sender does not.
  EXPECT_EQ(core.interactionReceivers(annotated), std::vector<FederationMember*>{&a});
  ASSERT_EQ(core.subscribeInteractions(b, core.model()->interactions.findClass(L"Greeting"), true),
            "");
  EXPECT_EQ(core.interactionReceivers(annotated), std::vector<FederationMember*>{&a});
}

class FomJoinHub : public HubTest {
 protected:
  // Joins as a raw client bringing `module`; returns the hub's reply.
  Reply joinWith(RawClient& c, const std::string& module) {
    TempFile f("module", module);
    ByteBuffer blob;
    EXPECT_TRUE(encodeModules(parseFomModules({f.wpath()}), blob));
    Frame join(kJoin);
    join.u32(1).str(name_).str("modular").u32(static_cast<std::uint32_t>(blob.size()));
    join.raw(std::vector<unsigned char>(blob.data(), blob.data() + blob.size()));
    EXPECT_TRUE(c.send(join.done()));
    std::vector<unsigned char> body;
    Reply r;
    EXPECT_TRUE(c.readFrame(body, std::chrono::seconds(10)));
    EXPECT_TRUE(parseReply(body, r));
    return r;
  }
};

TEST_F(FomJoinHub, AJoinersModuleReachesAFederateAlreadyJoinedInAnotherProcess) {
  // Joined through the 2000 API, subscribed to ViewControl before the module came.
  Fed& a = join(false, true);
  RawClient b(port_);
  const Reply joined = joinWith(b, kGreetingModule);
  ASSERT_EQ(joined.status, 0u) << joined.text;
  FddModel model;
  std::string err;
  ASSERT_TRUE(decodeFdd(joined.payload.data() + 4, joined.payload.size() - 4, model, err)) << err;
  const std::uint32_t greeting = model.interactions.findClass(L"Greeting");
  const std::uint32_t annotated = model.interactions.findClass(L"ViewControl.Annotated");
  ASSERT_NE(greeting, kNoClass);
  ASSERT_NE(annotated, kNoClass);
  const std::uint32_t text = model.interactions.findMember(greeting, L"Text");
  const std::uint32_t note = model.interactions.findMember(annotated, L"Note");
  const std::uint32_t pdu = model.interactions.findMember(annotated, L"ViewControlPdu");

  // The federate already joined learns the class with its next evokes.
  rti1516::InteractionClassHandle cls;
  for (int i = 0; i < 200 && !cls.isValid(); ++i) {
    a.rti->evokeMultipleCallbacks(0.001, 0.05);
    try {
      cls = a.rti->getInteractionClassHandle(L"Greeting");
    } catch (const rti1516::Exception&) {
    }
  }
  ASSERT_TRUE(cls.isValid());
  EXPECT_EQ(handleValue(cls), greeting);
  const rti1516::ParameterHandle textHandle = a.rti->getParameterHandle(cls, L"Text");
  EXPECT_EQ(handleValue(textHandle), text);
  a.rti->subscribeInteractionClass(cls);

  const std::vector<unsigned char> hello = {0, 0, 0, 1, 0, 'h'};
  ASSERT_TRUE(
      b.send(Frame(kInteraction).u32(greeting).u32(0).u32(1).u32(text).u32(6).raw(hello).done()));
  ASSERT_TRUE(b.send(Frame(kInteraction)
                         .u32(annotated)
                         .u32(0)
                         .u32(2)
                         .u32(pdu)
                         .u32(6)
                         .raw(hello)
                         .u32(note)
                         .u32(6)
                         .raw(hello)
                         .done()));
  ASSERT_TRUE(pumpUntil(*a.rti, *a.rec, 2));
  EXPECT_EQ(a.rec->got[0].cls, cls);
  EXPECT_EQ(a.rec->got[0].params.at(textHandle), hello);
  // The subclass arrives as ViewControl, the class subscribed, with only its parameters.
  EXPECT_EQ(a.rec->got[1].cls, a.cls);
  ASSERT_EQ(a.rec->got[1].params.size(), 1u);
  EXPECT_EQ(a.rec->got[1].params.at(a.pdu), hello);
}

TEST_F(FomJoinHub, AConflictingModuleIsRefusedWholeNamingBothModules) {
  Fed& a = join(false, true);
  RawClient b(port_);
  const std::string conflicting =
      variantOf(kViewControl, "<order>Receive</order>", "<order>TimeStamp</order>");
  std::string withGreeting = kGreetingModule;
  const Reply refused = joinWith(b, conflicting);
  EXPECT_EQ(refused.status, 7u);  // InconsistentFdd
  EXPECT_NE(refused.text.find("interaction class 'HLAinteractionRoot.ViewControl' of module"),
            std::string::npos)
      << refused.text;
  EXPECT_NE(refused.text.find("differs from its definition in module '" VC_FDD_FILE
                              "': order 'TimeStamp', not 'Receive'"),
            std::string::npos)
      << refused.text;
  // Nothing of it stayed: the federation works on, and the next joiner's modules merge.
  expectFederationWorks("after the refused module");
  RawClient c(port_);
  EXPECT_EQ(joinWith(c, withGreeting).status, 0u);
  EXPECT_NO_THROW(a.rti->getInteractionClassHandle(L"ViewControl"));
}

}  // namespace
#endif
