// Reading the federation object model: the product's FDD, and files that are missing or
// malformed, which must be refused with the standard exceptions and the file's name.
#include "rti_test_federate.h"

using namespace rti1516;
using namespace rtitest;

namespace {

bool embeddedRti() {
  return ::access((std::string(VC_BINARY_DIR) + "/bin/rtihub").c_str(), X_OK) == 0;
}

class Fdd : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!embeddedRti()) GTEST_SKIP() << "uses thread:// federations";
    url_ = L"thread://" + wide(testName());
  }
  std::wstring url_;
};

TEST_F(Fdd, ProductModelDefinesViewControlWithItsOpaqueParameter) {
  auto rti = makeAmbassador();
  rti->createFederationExecution(url_, wide(VC_FDD_FILE));
  Recorder rec;
  rti->joinFederationExecution(L"t", url_, rec);
  const InteractionClassHandle cls = rti->getInteractionClassHandle(L"ViewControl");
  EXPECT_EQ(rti->getInteractionClassHandle(L"HLAinteractionRoot.ViewControl"), cls);
  EXPECT_EQ(rti->getInteractionClassName(cls), L"HLAinteractionRoot.ViewControl");
  const ParameterHandle p = rti->getParameterHandle(cls, L"ViewControlPdu");
  EXPECT_EQ(rti->getParameterName(cls, p), L"ViewControlPdu");
  EXPECT_NE(rti->getInteractionClassHandle(L"HLAinteractionRoot"), cls);
  EXPECT_NO_THROW(rti->getObjectClassHandle(L"HLAobjectRoot"));
  rti->resignFederationExecution(NO_ACTION);
  rti->destroyFederationExecution(url_);
}

TEST_F(Fdd, LaterFormatWithNameElementsIsReadToo) {
  TempFile f("names", R"(<?xml version="1.0"?>
<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010">
  <interactions>
    <interactionClass><name>HLAinteractionRoot</name>
      <interactionClass><name>ViewControl</name>
        <parameter><name>ViewControlPdu</name></parameter>
      </interactionClass>
    </interactionClass>
  </interactions>
</objectModel>)");
  auto rti = makeAmbassador();
  rti->createFederationExecution(url_, f.wpath());
  Recorder rec;
  rti->joinFederationExecution(L"t", url_, rec);
  const InteractionClassHandle cls = rti->getInteractionClassHandle(L"ViewControl");
  EXPECT_NO_THROW(rti->getParameterHandle(cls, L"ViewControlPdu"));
  rti->resignFederationExecution(NO_ACTION);
  rti->destroyFederationExecution(url_);
}

TEST_F(Fdd, MissingOrUnreadableFileIsCouldNotOpenFddNamingIt) {
  auto rti = makeAmbassador();
  const std::wstring missing = wide(::testing::TempDir()) + L"no_such_fom.xml";
  for (const std::wstring& path : {missing, wide(::testing::TempDir())}) {
    try {
      rti->createFederationExecution(url_, path);
      FAIL() << "accepted " << narrow(path);
    } catch (const CouldNotOpenFDD& e) {
      EXPECT_NE(e.what().find(path), std::wstring::npos) << narrow(e.what());
    }
  }
  Recorder rec;
  EXPECT_THROW(rti->joinFederationExecution(L"t", url_, rec), FederationExecutionDoesNotExist);
}

std::string nestedModel(int depth) {
  std::string xml = "<objectModel><interactions><interactionClass name=\"HLAinteractionRoot\">";
  for (int i = 1; i <= depth; ++i) xml += "<interactionClass name=\"c" + std::to_string(i) + "\">";
  for (int i = 1; i <= depth; ++i) xml += "</interactionClass>";
  return xml + "</interactionClass></interactions></objectModel>";
}

TEST_F(Fdd, NestingIsBoundedBeforeTheStackIs) {
  {
    TempFile deepest("deepest", nestedModel(64));
    auto rti = makeAmbassador();
    rti->createFederationExecution(url_, deepest.wpath());
    Recorder rec;
    rti->joinFederationExecution(L"t", url_, rec);
    EXPECT_NO_THROW(rti->getInteractionClassHandle(L"c64"));
    rti->resignFederationExecution(NO_ACTION);
    rti->destroyFederationExecution(url_);
  }
  // Each level is a few dozen bytes: a file of some megabytes nests far enough to
  // overflow any stack that reads it level by level.
  TempFile deep("deep", nestedModel(200000));
  auto rti = makeAmbassador();
  try {
    rti->createFederationExecution(url_, deep.wpath());
    FAIL() << "accepted";
  } catch (const ErrorReadingFDD& e) {
    EXPECT_NE(narrow(e.what()).find("nested more than 64 deep"), std::string::npos)
        << narrow(e.what());
  }
}

struct Malformed {
  const char* what;
  const char* xml;
  const char* reason;  // expected in the message besides the file name
};

const Malformed kMalformed[] = {
    {"empty file", "", "not well-formed"},
    {"not XML", "this is not an object model", "not well-formed"},
    {"unclosed element",
     "<objectModel><interactions><interactionClass name=\"HLAinteractionRoot\">", "line 1"},
    {"error on a later line",
     "<objectModel>\n<interactions>\n<interactionClass "
     "name=\"HLAinteractionRoot\">\n</interactions>",
     "line 4"},
    {"wrong root element", "<html><body/></html>", "<html>"},
    {"wrong interaction root",
     "<objectModel><interactions><interactionClass name=\"Root\"/></interactions></objectModel>",
     "HLAinteractionRoot"},
    {"two interaction roots",
     "<objectModel><interactions><interactionClass name=\"HLAinteractionRoot\"/>"
     "<interactionClass name=\"HLAinteractionRoot\"/></interactions></objectModel>",
     "more than one root"},
    {"class without name",
     "<objectModel><interactions><interactionClass name=\"HLAinteractionRoot\"><interactionClass/>"
     "</interactionClass></interactions></objectModel>",
     "without a name"},
    {"parameter without name",
     "<objectModel><interactions><interactionClass name=\"HLAinteractionRoot\"><interactionClass "
     "name=\"A\">"
     "<parameter "
     "dataType=\"HLAopaqueData\"/></interactionClass></interactionClass></interactions></"
     "objectModel>",
     "without a name"},
    {"parameter redeclared in subclass",
     "<objectModel><interactions><interactionClass name=\"HLAinteractionRoot\"><interactionClass "
     "name=\"A\">"
     "<parameter name=\"p\"/><interactionClass name=\"B\"><parameter "
     "name=\"p\"/></interactionClass>"
     "</interactionClass></interactionClass></interactions></objectModel>",
     "declared twice"},
    {"sibling classes of one name",
     "<objectModel><interactions><interactionClass name=\"HLAinteractionRoot\"><interactionClass "
     "name=\"A\"/>"
     "<interactionClass name=\"A\"/></interactionClass></interactions></objectModel>",
     "declared twice"},
    {"dot in class name",
     "<objectModel><interactions><interactionClass name=\"HLAinteractionRoot\"><interactionClass "
     "name=\"A.B\"/>"
     "</interactionClass></interactions></objectModel>",
     "'.'"},
    {"wrong object root",
     "<objectModel><objects><objectClass name=\"Thing\"/></objects></objectModel>",
     "HLAobjectRoot"},
};

void PrintTo(const Malformed& m, std::ostream* os) {
  *os << m.what;
}

class FddMalformed : public Fdd, public ::testing::WithParamInterface<Malformed> {};

TEST_P(FddMalformed, IsErrorReadingFddNamingTheFileAndTheFault) {
  const Malformed& m = GetParam();
  TempFile f("malformed", m.xml);
  auto rti = makeAmbassador();
  try {
    rti->createFederationExecution(url_, f.wpath());
    FAIL() << m.what << ": accepted";
  } catch (const ErrorReadingFDD& e) {
    const std::string msg = narrow(e.what());
    EXPECT_NE(msg.find(f.path()), std::string::npos) << m.what << ": " << msg;
    EXPECT_NE(msg.find(m.reason), std::string::npos) << m.what << ": " << msg;
  }
  // Nothing half-made is left behind.
  Recorder rec;
  EXPECT_THROW(rti->joinFederationExecution(L"t", url_, rec), FederationExecutionDoesNotExist);
}

INSTANTIATE_TEST_SUITE_P(Files, FddMalformed, ::testing::ValuesIn(kMalformed),
                         [](const ::testing::TestParamInfo<Malformed>& param) {
                           std::string n = param.param.what;
                           for (char& c : n)
                             if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                           return n;
                         });

}  // namespace
