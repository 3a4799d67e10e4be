// The banner is printed once per process, at the first control PDU built. This file
// holds a single test so that its process builds no PDU before it.
#include <gtest/gtest.h>

#include "outputCapture.h"
#include "vistrelControl.h"

TEST(Banner, PrintedOnceThroughInfo) {
  OutputCapture info(DtInfo);
  {
    DtAbsoluteVCPdu a;
    DtRequestStateVCPdu b;
    DtAbsoluteVCPdu c(a);
  }
  DtAbsoluteVCPdu d;
  EXPECT_EQ(info.text(), "Using Brennholt vistrel control API version 1.2 for Quillon 5.8.\n");
}
