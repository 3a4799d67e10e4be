// Strings, vectors, lists, exceptions and the output streams with their dump lines.
#include <gtest/gtest.h>

#include <string>

#include "dtException.h"
#include "dtList.h"
#include "dtOutput.h"
#include "dtVector.h"
#include "outputCapture.h"

namespace {

TEST(VectorText, SixDecimalsInBraces) {
  EXPECT_EQ(DtVector64(1000, 2000, 30.5).string(), "{1000.000000, 2000.000000, 30.500000}");
  EXPECT_EQ(DtTaitBryan(0.785398, 0, -1).string(), "{0.785398, 0.000000, -1.000000}");
  DtVector64 v;
  EXPECT_EQ(v, DtVector64(0, 0, 0));
  v[1] = 4;
  EXPECT_EQ(v.y(), 4.0);
}

TEST(DumpLines, EveryDumpFunctionPrintsLabelBlankValue) {
  OutputCapture cap(DtDumpOut);
  DtDumpString("Location:", "{1}");
  DtDumpEnum("Command", "DtVcOrbit", 5);
  DtDumpInteger("ObjectId", -3);
  DtDumpFloat("Radius:", 2.5);
  DtDumpBoolean("Flashing", true);
  DtDumpBoolean("Flashing", false);
  DtDumpHexWord("Fill", 0xABCDu);
  unsigned char bytes[] = {0xff, 0xfd, 0x00, 0x1a};
  DtDumpHexBytes("IgnoreFlags", bytes, 4);
  DtDumpString("", "entity");
  DtDumpText("Exit vistrel.\n");
  EXPECT_EQ(cap.text(),
            "Location: {1}\n"
            "Command DtVcOrbit (5)\n"
            "ObjectId -3\n"
            "Radius: 2.500000\n"
            "Flashing true\n"
            "Flashing false\n"
            "Fill 0x0000abcd\n"
            "IgnoreFlags ff fd 00 1a\n"
            " entity\n"
            "Exit vistrel.\n");
}

TEST(OutputStreams, SinksRedirectAndRestore) {
  std::string longText(3000, 'q');
  {
    OutputCapture info(DtInfo);
    OutputCapture warn(DtWarn);
    DtInfo("a %d %s\n", 1, "b");
    DtInfo("%s", longText.c_str());  // longer than the stream's own scratch space
    DtWarn << "w" << 2L;
    EXPECT_EQ(info.text(), "a 1 b\n" + longText);
    EXPECT_EQ(warn.text(), "w2");
  }
  EXPECT_EQ(DtInfo.sink(), nullptr);
}

TEST(Exceptions, TextCarriesPrefixFunctionAndFile) {
  try {
    DT_THROW("vdc object not found");
    FAIL();
  } catch (const DtException& e) {
    EXPECT_EQ(e.message(), "vdc object not found");
    EXPECT_NE(e.function().find("TestBody"), std::string::npos);
    EXPECT_EQ(e.file(), "toolkit_util_test");
    EXPECT_EQ(std::string(e.what()), "DtException: vdc object not found (thrown by " +
                                         e.function() + " in toolkit_util_test)");
  }
  // Without a place, the text is the message alone; the base name drops the directory
  // and only the last extension.
  EXPECT_STREQ(DtException("bare").what(), "DtException: bare");
  DtException placed("m", "void f(int)", "/a.b/dir/vdcColor.cpp");
  EXPECT_EQ(placed.file(), "vdcColor");
  EXPECT_STREQ(placed.what(), "DtException: m (thrown by void f(int) in vdcColor)");
  EXPECT_STREQ(DtException("m", "", "x/vdcAttGroup.cpp").what(),
               "DtException: m (thrown in vdcAttGroup)");
}

TEST(Lists, OutOfRangeGivesNullAndRemoveTakesTheFirst) {
  DtList list;
  int a = 1, b = 2;
  list.add(&a);
  list.add(&b);
  list.add(&a);
  EXPECT_TRUE(list.remove(&a));
  EXPECT_EQ(list.count(), 2);
  EXPECT_EQ(list.nth(0), &b);
  EXPECT_EQ(list.nth(2), nullptr);
  EXPECT_EQ(list.nth(-1), nullptr);
  EXPECT_FALSE(list.remove(&list));
  DtGlobalObjectDesignatorList ids{"1:1:1", "2:2:2"};
  EXPECT_EQ(ids.count(), 2);
  EXPECT_EQ(ids[1], "2:2:2");
  EXPECT_TRUE(ids.nth(5).isNull());
}

TEST(Strings, CompareWithTextsAndNull) {
  DtString s("abc");
  EXPECT_TRUE(s == "abc");
  EXPECT_TRUE("abc" == s);
  EXPECT_TRUE(DtString(nullptr) == "");
  EXPECT_TRUE(DtString(nullptr).isNull());
  EXPECT_STREQ(s, "abc");
  EXPECT_EQ(DtString("a b").contains(' '), true);
}

}  // namespace
