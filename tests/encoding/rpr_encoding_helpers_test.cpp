// Our RPR values against what the IEEE 1516-2010 API's own encoding helpers make of the
// same values, as the modules declare their types: built where an RTI of that API is at
// hand. Its variant record helper may encode nothing (OpenRTI 0.10), so the variant is
// put together from its parts: the discriminant, padding to the alternative's octet
// boundary as the helper reports it, then the alternative's fixed record.
#include <gtest/gtest.h>

#include <RTI/VariableLengthData.h>
#include <RTI/encoding/BasicDataElements.h>
#include <RTI/encoding/HLAfixedArray.h>
#include <RTI/encoding/HLAfixedRecord.h>

#include <cstdint>
#include <vector>

#include "rprCodec.h"

using namespace rti1516e;

namespace {

vcrpr::Bytes bytesOf(const VariableLengthData& d) {
  const auto* p = static_cast<const std::uint8_t*>(d.data());
  return vcrpr::Bytes(p, p + d.size());
}

HLAfixedRecord floats32(const vcgeo::Vec3& v) {
  HLAfixedRecord r;
  r.appendElement(HLAfloat32BE(static_cast<float>(v.x)));
  r.appendElement(HLAfloat32BE(static_cast<float>(v.y)));
  r.appendElement(HLAfloat32BE(static_cast<float>(v.z)));
  return r;
}

}  // namespace

TEST(RprEncodingHelpers, SpatialOfEveryAlternativeIsWhatTheHelpersMake) {
  using A = vcrpr::DrAlgorithm;
  for (A a : {A::Static, A::FPW, A::RPW, A::RVW, A::FVW, A::FPB, A::RPB, A::RVB, A::FVB}) {
    SCOPED_TRACE(vcrpr::algorithmName(a));
    vcrpr::Spatial s;
    s.algorithm = a;
    s.worldLocation = {4000000.25, -300000.5, 4900000.125};
    s.isFrozen = true;
    s.orientation = {1.5, -0.25, 0.125};
    s.velocity = {10, 20, 30};
    s.acceleration = {-1, -2, -3};
    s.angularVelocity = {0.5, 0.25, 0.125};

    HLAfixedRecord location;
    location.appendElement(HLAfloat64BE(s.worldLocation.x));
    location.appendElement(HLAfloat64BE(s.worldLocation.y));
    location.appendElement(HLAfloat64BE(s.worldLocation.z));
    HLAfixedRecord alternative;
    alternative.appendElement(location);
    alternative.appendElement(HLAoctet(1));
    alternative.appendElement(
        floats32({s.orientation.psi, s.orientation.theta, s.orientation.phi}));
    if (a != A::Static) alternative.appendElement(floats32(s.velocity));
    if (a == A::RVW || a == A::FVW || a == A::RVB || a == A::FVB)
      alternative.appendElement(floats32(s.acceleration));
    if (a == A::RPW || a == A::RVW || a == A::RPB || a == A::RVB)
      alternative.appendElement(floats32(s.angularVelocity));

    vcrpr::Bytes expected{static_cast<std::uint8_t>(a)};
    expected.resize(alternative.getOctetBoundary(), 0);
    const vcrpr::Bytes body = bytesOf(alternative.encode());
    expected.insert(expected.end(), body.begin(), body.end());
    EXPECT_EQ(vcrpr::encode(s), expected);
  }
}

TEST(RprEncodingHelpers, IdentifierTypeAndMarkingAreWhatTheHelpersMake) {
  HLAfixedRecord federate;
  federate.appendElement(HLAinteger16BE(7));
  federate.appendElement(HLAinteger16BE(300));
  HLAfixedRecord id;
  id.appendElement(federate);
  id.appendElement(HLAinteger16BE(4096));
  EXPECT_EQ(vcrpr::encode(vcrpr::EntityId{7, 300, 4096}), bytesOf(id.encode()));

  HLAfixedRecord type;
  type.appendElement(HLAoctet(1));
  type.appendElement(HLAoctet(2));
  type.appendElement(HLAinteger16BE(225));
  for (int v : {3, 4, 5, 6}) type.appendElement(HLAoctet(static_cast<Octet>(v)));
  EXPECT_EQ(vcrpr::encode(vcrpr::EntityType{1, 2, 225, 3, 4, 5, 6}), bytesOf(type.encode()));

  HLAfixedArray data(HLAoctet(), 11);
  const char text[] = "EAGLE01";
  for (std::size_t i = 0; i < sizeof text - 1; ++i)
    data.set(i, HLAoctet(static_cast<Octet>(text[i])));
  HLAfixedRecord marking;
  marking.appendElement(HLAoctet(1));
  marking.appendElement(data);
  EXPECT_EQ(vcrpr::encodeMarking("EAGLE01"), bytesOf(marking.encode()));
}
