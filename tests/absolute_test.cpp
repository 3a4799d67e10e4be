// The absolute view PDU: layout, single-precision angles, text forms, dump.
#include <gtest/gtest.h>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

TEST(Absolute, FreshPduIs196BytesWithCommandZero) {
  DtAbsoluteVCPdu pdu;
  EXPECT_EQ(pdu.length(), 196);
  EXPECT_EQ(wire::u16(pdu.packet(), 8), 196u);
  EXPECT_EQ(wire::u16(pdu.packet(), 146), 0u);
  EXPECT_TRUE(wire::zero(pdu.packet(), 152, 44));
}

TEST(Absolute, LocationIsThreeDoublesAndOrientationThreeFloats) {
  DtAbsoluteVCPdu pdu;
  pdu.setWorldLocation(DtVector64(1000.25, -2000.5, 6378137.125));
  pdu.setOrientation(DtTaitBryan(0.1, -0.2, 3.0));
  const char* b = pdu.packet();
  EXPECT_EQ(wire::f64(b, 160), 1000.25);
  EXPECT_EQ(wire::f64(b, 168), -2000.5);
  EXPECT_EQ(wire::f64(b, 176), 6378137.125);
  EXPECT_EQ(wire::f32(b, 184), 0.1f);
  EXPECT_EQ(wire::f32(b, 188), -0.2f);
  EXPECT_EQ(wire::f32(b, 192), 3.0f);
  EXPECT_TRUE(wire::zero(b, 156, 4));  // padding
  EXPECT_EQ(pdu.orientation().psi(), static_cast<double>(0.1f));
  EXPECT_NE(pdu.orientation().psi(), 0.1);
  EXPECT_EQ(pdu.worldLocation(), DtVector64(1000.25, -2000.5, 6378137.125));
}

TEST(Absolute, GettersRefreshOneCacheEachCall) {
  DtAbsoluteVCPdu pdu;
  pdu.setWorldLocation(DtVector64(1, 1, 1));
  const DtVector64& first = pdu.worldLocation();
  pdu.setWorldLocation(DtVector64(2, 2, 2));
  const DtVector64& second = pdu.worldLocation();
  EXPECT_EQ(&first, &second);
  EXPECT_EQ(first, DtVector64(2, 2, 2));
}

TEST(AbsoluteText, WritesSixNumbersWithSixDecimals) {
  DtAbsoluteVCPdu pdu;
  pdu.setWorldLocation(DtVector64(1000, 2000, 30.5));
  pdu.setOrientation(DtTaitBryan(0.785398, 0, 0));
  EXPECT_STREQ(pdu.string(), "1000.000000 2000.000000 30.500000 0.785398 0.000000 0.000000");
}

TEST(AbsoluteText, ParsesAnyWhiteSpaceAndKeepsWhatIsMissing) {
  DtAbsoluteVCPdu pdu;
  pdu.setFromString("1 2 3 0.5 0.25 0.125");
  EXPECT_STREQ(pdu.string(), "1.000000 2.000000 3.000000 0.500000 0.250000 0.125000");
  pdu.setFromString("  4\t5\n6   0.1 0 0");
  EXPECT_EQ(pdu.worldLocation(), DtVector64(4, 5, 6));
  EXPECT_EQ(wire::f32(pdu.packet(), 184), 0.1f);
  pdu.setFromString("7 8");
  EXPECT_EQ(pdu.worldLocation(), DtVector64(7, 8, 0));
  pdu.setFromString(nullptr);
  EXPECT_EQ(pdu.worldLocation(), DtVector64(0, 0, 0));
}

TEST(AbsoluteDump, LabelsAfterTheHeader) {
  DtAbsoluteVCPdu pdu;
  pdu.setWorldLocation(DtVector64(1, 2, 3));
  pdu.setOrientation(DtTaitBryan(0.5, 0.25, 0.125));
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  const std::string& t = cap.text();
  EXPECT_NE(t.find("Command DtVcAbsolute (0)\n"), std::string::npos);
  EXPECT_NE(t.find("\nLocation: {1.000000, 2.000000, 3.000000}\n"
                   "Orientation: {0.500000, 0.250000, 0.125000}\n"),
            std::string::npos);
}

}  // namespace
