// RPR attribute values against bytes worked out by hand from the modules' datatypes and
// the HLA encoding rules (alignment of each field from the record's start, discriminant
// then padding to the alternatives' 8-byte boundary, no trailing padding).
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "rprCodec.h"
#include "wireBytes.h"

using namespace vcrpr;

namespace {

Bytes hex(const char* text) {
  Bytes out;
  for (const char* p = text; *p;) {
    if (*p == ' ') {
      ++p;
      continue;
    }
    out.push_back(static_cast<std::uint8_t>(std::stoul(std::string(p, 2), nullptr, 16)));
    p += 2;
  }
  return out;
}

Spatial sample(DrAlgorithm a) {
  Spatial s;
  s.algorithm = a;
  s.worldLocation = {1.0, -2.0, 6378137.0};
  s.orientation = {0.5, -0.25, 1.0};
  s.velocity = {100.0, 0.0, -1.5};
  s.acceleration = {2.0, 4.0, 8.0};
  s.angularVelocity = {0.125, -0.0625, 0.25};
  return s;
}

}  // namespace

TEST(RprSpatial, DeadReckonedWorldVelocityIsSixtyBytesLaidOutByHand) {
  const Bytes expected =
      hex("02 00000000000000"             // DRM_FPW, padding to the 8-byte boundary
          "3ff0000000000000"              // X = 1.0 at 8
          "c000000000000000"              // Y = -2.0 at 16
          "415854a640000000"              // Z = 6378137.0 at 24
          "00 000000"                     // IsFrozen at 32, padding to 36
          "3f000000 be800000 3f800000"    // psi 0.5, theta -0.25, phi 1.0 at 36
          "42c80000 00000000 bfc00000");  // velocity 100, 0, -1.5 at 48
  EXPECT_EQ(encode(sample(DrAlgorithm::FPW)), expected);
}

TEST(RprSpatial, EveryAlternativeHasItsLengthAndFieldsWhereTheModulesPutThem) {
  struct Case {
    DrAlgorithm a;
    std::size_t length;
    int velocityAt, accelerationAt, angularAt;  // -1: not carried
  };
  const Case cases[] = {
      {DrAlgorithm::Static, 48, -1, -1, -1}, {DrAlgorithm::FPW, 60, 48, -1, -1},
      {DrAlgorithm::RPW, 72, 48, -1, 60},    {DrAlgorithm::RVW, 84, 48, 60, 72},
      {DrAlgorithm::FVW, 72, 48, 60, -1},    {DrAlgorithm::FPB, 60, 48, -1, -1},
      {DrAlgorithm::RPB, 72, 48, -1, 60},    {DrAlgorithm::RVB, 84, 48, 60, 72},
      {DrAlgorithm::FVB, 72, 48, 60, -1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(algorithmName(c.a));
    Spatial s = sample(c.a);
    s.isFrozen = true;
    const Bytes b = encode(s);
    ASSERT_EQ(b.size(), c.length);
    EXPECT_EQ(spatialLength(c.a), c.length);
    EXPECT_EQ(b[0], static_cast<std::uint8_t>(c.a));
    for (int i = 1; i < 8; ++i) EXPECT_EQ(b[i], 0) << "padding at " << i;
    EXPECT_EQ(wire::f64(b.data(), 24), 6378137.0);
    EXPECT_EQ(b[32], 1);
    EXPECT_EQ(b[33] | b[34] | b[35], 0);
    EXPECT_EQ(wire::f32(b.data(), 44), 1.0f);
    if (c.velocityAt >= 0) {
      EXPECT_EQ(wire::f32(b.data(), c.velocityAt + 8), -1.5f);
    }
    if (c.accelerationAt >= 0) {
      EXPECT_EQ(wire::f32(b.data(), c.accelerationAt), 2.0f);
    }
    if (c.angularAt >= 0) {
      EXPECT_EQ(wire::f32(b.data(), c.angularAt + 8), 0.25f);
    }

    Spatial back;
    ASSERT_EQ(decode(b.data(), b.size(), &back), Fault::None);
    EXPECT_EQ(back.algorithm, c.a);
    EXPECT_TRUE(back.isFrozen);
    EXPECT_EQ(back.worldLocation.x, 1.0);
    EXPECT_EQ(back.orientation.theta, -0.25);
    EXPECT_EQ(back.velocity.z, c.velocityAt >= 0 ? -1.5 : 0.0);
    EXPECT_EQ(back.acceleration.y, c.accelerationAt >= 0 ? 4.0 : 0.0);
    EXPECT_EQ(back.angularVelocity.y, c.angularAt >= 0 ? -0.0625 : 0.0);
  }
}

TEST(RprSpatial, AnglesAndRatesTravelAsSinglePrecision) {
  Spatial s = sample(DrAlgorithm::RPW);
  s.orientation.psi = 0.1;
  s.angularVelocity.x = 0.1;
  const Bytes b = encode(s);
  Spatial back;
  ASSERT_EQ(decode(b.data(), b.size(), &back), Fault::None);
  EXPECT_EQ(back.orientation.psi, static_cast<double>(0.1f));
  EXPECT_EQ(back.angularVelocity.x, static_cast<double>(0.1f));
  EXPECT_EQ(back.worldLocation.z, 6378137.0);  // the location keeps its double
}

TEST(RprSpatial, BadValuesAreRefusedAndLeaveTheLastGoodOne) {
  const Bytes good = encode(sample(DrAlgorithm::RVB));
  Spatial kept = sample(DrAlgorithm::Static);
  kept.worldLocation = {7.0, 8.0, 9.0};
  auto refused = [&](Bytes b, Fault why) {
    Spatial out = kept;
    EXPECT_EQ(decode(b.data(), b.size(), &out), why);
    EXPECT_EQ(out.worldLocation.x, 7.0);
    EXPECT_EQ(out.algorithm, DrAlgorithm::Static);
  };
  refused({}, Fault::WrongLength);
  refused(Bytes(good.begin(), good.end() - 1), Fault::WrongLength);
  Bytes longer = good;
  longer.push_back(0);  // trailing padding is not part of the encoding
  refused(longer, Fault::WrongLength);
  // An RVB-sized body under an FPW discriminant.
  Bytes relabelled = good;
  relabelled[0] = static_cast<std::uint8_t>(DrAlgorithm::FPW);
  refused(relabelled, Fault::WrongLength);
  for (std::uint8_t d : {0, 10, 255}) {
    Bytes b = good;
    b[0] = d;
    refused(b, Fault::UnknownAlgorithm);
  }
  Spatial nan = sample(DrAlgorithm::RVB);
  nan.worldLocation.y = std::numeric_limits<double>::quiet_NaN();
  refused(encode(nan), Fault::NotFinite);
  Spatial inf = sample(DrAlgorithm::RVB);
  inf.angularVelocity.z = std::numeric_limits<double>::infinity();
  refused(encode(inf), Fault::NotFinite);
  Spatial hugeAngle = sample(DrAlgorithm::Static);
  hugeAngle.orientation.phi = 1e300;  // becomes an infinite float on the wire
  refused(encode(hugeAngle), Fault::NotFinite);
}

TEST(RprSpatial, AnAlgorithmWithoutAlternativeIsItsDiscriminantAlone) {
  Spatial s = sample(DrAlgorithm::Other);
  EXPECT_EQ(encode(s), hex("00"));
  EXPECT_EQ(spatialLength(DrAlgorithm::Other), 0u);
  EXPECT_STREQ(algorithmName(DrAlgorithm::RVB), "DRM_RVB");
  EXPECT_STREQ(algorithmName(static_cast<DrAlgorithm>(42)), "unknown");
}

TEST(RprIdentifiers, EntityIdentifierAndTypeAreTheirPackedRecords) {
  EXPECT_EQ(encode(EntityId{1, 2, 0x1234}), hex("0001 0002 1234"));
  // CountryCode is 16 bits at offset 2, right after the two octets: no padding.
  EXPECT_EQ(encode(EntityType{1, 2, 225, 3, 4, 5, 6}), hex("01 02 00e1 03 04 05 06"));

  EntityId id;
  const Bytes idBytes = hex("ffff 0102 0003");
  ASSERT_EQ(decode(idBytes.data(), idBytes.size(), &id), Fault::None);
  EXPECT_EQ(id.text(), "65535:258:3");
  EXPECT_EQ(decode(idBytes.data(), 5, &id), Fault::WrongLength);
  EntityType type;
  const Bytes typeBytes = hex("01 02 00e1 03 04 05 06");
  ASSERT_EQ(decode(typeBytes.data(), typeBytes.size(), &type), Fault::None);
  EXPECT_EQ(type.text(), "1.2.225.3.4.5.6");
  EXPECT_EQ(decode(typeBytes.data(), 9, &type), Fault::WrongLength);
}

TEST(RprIdentifiers, DesignatorTextsParseOnlyWhenWhole) {
  EntityId id;
  ASSERT_TRUE(EntityId::parse("1:2:3", &id));
  EXPECT_EQ(id, (EntityId{1, 2, 3}));
  ASSERT_TRUE(EntityId::parse("65535:0:65535", &id));
  EXPECT_EQ(id.site, 65535);
  for (const char* bad :
       {"", "1:2", "1:2:3:4", "65536:0:0", "a:b:c", "1::3", " 1:2:3", "1:2:3 ", "-1:2:3", "1:2:"}) {
    EntityId untouched{9, 9, 9};
    EXPECT_FALSE(EntityId::parse(bad, &untouched)) << bad;
    EXPECT_EQ(untouched, (EntityId{9, 9, 9})) << bad;
  }
}

TEST(RprMarking, AsciiInElevenOctetsAfterItsEncodingType) {
  EXPECT_EQ(encodeMarking("EAGLE01"), hex("01 4541474c453031 00000000"));
  EXPECT_EQ(encodeMarking("ABCDEFGHIJKLMN"), hex("01 4142434445464748494a4b"));
  EXPECT_EQ(encodeMarking(""), hex("01 0000000000000000000000"));

  std::string text = "old";
  const Bytes full = encodeMarking("ABCDEFGHIJK");
  ASSERT_EQ(decodeMarking(full.data(), full.size(), &text), Fault::None);
  EXPECT_EQ(text, "ABCDEFGHIJK");  // eleven characters, no terminator needed
  const Bytes stops = hex("01 41 00 42 0000000000000000");
  ASSERT_EQ(decodeMarking(stops.data(), stops.size(), &text), Fault::None);
  EXPECT_EQ(text, "A");
  EXPECT_EQ(decodeMarking(full.data(), 11, &text), Fault::WrongLength);
  const Bytes control = hex("01 41 1b 5b 0000000000000000");
  EXPECT_EQ(decodeMarking(control.data(), control.size(), &text), Fault::BadText);
  EXPECT_EQ(text, "A");
}
