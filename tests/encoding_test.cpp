// The 1516-2010 encoding helpers against octets worked out by hand from the HLA's
// encoding rules. Written only against the API's own headers, so the same file runs on
// the embedded RTI and on any other RTI the project is built with.
#include <RTI/VariableLengthData.h>
#include <RTI/encoding/BasicDataElements.h>
#include <RTI/encoding/HLAfixedArray.h>
#include <RTI/encoding/HLAfixedRecord.h>
#include <RTI/encoding/HLAopaqueData.h>
#include <RTI/encoding/HLAvariableArray.h>
#include <RTI/encoding/HLAvariantRecord.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

using namespace rti1516e;

namespace {

using Bytes = std::vector<Octet>;

Bytes bytes(std::initializer_list<int> values) {
  Bytes out;
  for (int v : values) out.push_back(static_cast<Octet>(v));
  return out;
}

// An array of arrays needs its prototype passed as a DataElement: given an array as it
// is, the constructor taken is the copy constructor.
DataElement const& asPrototype(DataElement const& e) {
  return e;
}

Bytes encoded(DataElement const& e) {
  VariableLengthData data = e.encode();
  auto first = static_cast<Octet const*>(data.data());
  return Bytes(first, first + data.size());
}

// Encodes through every path the API has and checks each gives the same octets, the
// declared length and boundary, and that a fresh copy decoding them encodes them again.
void expectEncoding(DataElement const& e, Bytes const& expected, unsigned boundary) {
  SCOPED_TRACE(::testing::Message() << "element of " << expected.size() << " octets");
  EXPECT_EQ(encoded(e), expected);
  Bytes appended;
  e.encodeInto(appended);
  EXPECT_EQ(appended, expected);
  VariableLengthData into;
  e.encode(into);
  EXPECT_EQ(into.size(), expected.size());
  EXPECT_EQ(e.getEncodedLength(), expected.size());
  EXPECT_EQ(e.getOctetBoundary(), boundary);

  auto copy = e.clone();
  EXPECT_TRUE(copy->isSameTypeAs(e));
  EXPECT_EQ(copy->decodeFrom(expected, 0), expected.size());
  EXPECT_EQ(encoded(*copy), expected);
}

// Every proper prefix of a valid encoding is refused, never read past.
void expectEveryTruncationRefused(DataElement& e, Bytes const& valid) {
  for (size_t n = 0; n < valid.size(); ++n) {
    Bytes cut(valid.begin(), valid.begin() + static_cast<std::ptrdiff_t>(n));
    EXPECT_THROW(e.decodeFrom(cut, 0), EncoderException)
        << "decoded from " << n << " of " << valid.size() << " octets";
  }
}

#if VC_EMBEDDED_ENCODING
#define SKIP_ON_OTHER_RTI(why)
#else
#define SKIP_ON_OTHER_RTI(why) GTEST_SKIP() << why
#endif

}  // namespace

TEST(EncodingBasicTypes, IntegersInBothByteOrders) {
  expectEncoding(HLAinteger16BE(0x0102), bytes({0x01, 0x02}), 2);
  expectEncoding(HLAinteger16LE(0x0102), bytes({0x02, 0x01}), 2);
  expectEncoding(HLAinteger16BE(-2), bytes({0xFF, 0xFE}), 2);
  expectEncoding(HLAinteger32BE(0x01020304), bytes({0x01, 0x02, 0x03, 0x04}), 4);
  expectEncoding(HLAinteger32LE(0x01020304), bytes({0x04, 0x03, 0x02, 0x01}), 4);
  expectEncoding(HLAinteger32LE(std::numeric_limits<Integer32>::min()), bytes({0, 0, 0, 0x80}), 4);
  expectEncoding(HLAinteger64BE(0x0102030405060708LL), bytes({1, 2, 3, 4, 5, 6, 7, 8}), 8);
  expectEncoding(HLAinteger64LE(0x0102030405060708LL), bytes({8, 7, 6, 5, 4, 3, 2, 1}), 8);
  expectEncoding(HLAinteger64BE(-1), bytes({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}), 8);

  HLAinteger32BE decoded;
  decoded.decode(VariableLengthData("\x80\x00\x00\x01", 4));
  EXPECT_EQ(decoded.get(), std::numeric_limits<Integer32>::min() + 1);
  HLAinteger16LE small;
  small.decode(VariableLengthData("\xFE\xFF", 2));
  EXPECT_EQ(static_cast<Integer16>(small), -2);
}

TEST(EncodingBasicTypes, FloatsAreTheirIeeeBitsInEitherOrder) {
  expectEncoding(HLAfloat32BE(1.0f), bytes({0x3F, 0x80, 0x00, 0x00}), 4);
  expectEncoding(HLAfloat32LE(1.0f), bytes({0x00, 0x00, 0x80, 0x3F}), 4);
  expectEncoding(HLAfloat32BE(-0.0f), bytes({0x80, 0x00, 0x00, 0x00}), 4);
  expectEncoding(HLAfloat64BE(-2.5), bytes({0xC0, 0x04, 0, 0, 0, 0, 0, 0}), 8);
  expectEncoding(HLAfloat64LE(-2.5), bytes({0, 0, 0, 0, 0, 0, 0x04, 0xC0}), 8);
  expectEncoding(HLAfloat64BE(0.1), bytes({0x3F, 0xB9, 0x99, 0x99, 0x99, 0x99, 0x99, 0x9A}), 8);

  HLAfloat64LE d;
  d.decode(VariableLengthData("\x00\x00\x00\x00\x00\x00\xF0\x7F", 8));
  EXPECT_EQ(d.get(), std::numeric_limits<double>::infinity());
}

TEST(EncodingBasicTypes, OctetsCharactersAndBooleans) {
  expectEncoding(HLAoctet(static_cast<Octet>(0xAB)), bytes({0xAB}), 1);
  expectEncoding(HLAbyte(static_cast<Octet>(0x7F)), bytes({0x7F}), 1);
  expectEncoding(HLAASCIIchar('Z'), bytes({0x5A}), 1);
  expectEncoding(HLAunicodeChar(L'\u00E9'), bytes({0x00, 0xE9}), 2);
  expectEncoding(HLAunicodeChar(L'\u20AC'), bytes({0x20, 0xAC}), 2);
  // An octet pair is a 16-bit quantity whose first octet is the more significant.
  expectEncoding(HLAoctetPairBE(OctetPair('a', 'b')), bytes({0x61, 0x62}), 2);
  expectEncoding(HLAoctetPairLE(OctetPair('a', 'b')), bytes({0x62, 0x61}), 2);
  // HLAboolean is an enumeration on HLAinteger32BE.
  expectEncoding(HLAboolean(true), bytes({0, 0, 0, 1}), 4);
  expectEncoding(HLAboolean(false), bytes({0, 0, 0, 0}), 4);
}

TEST(EncodingBasicTypes, StringsAreCountedArrays) {
  expectEncoding(HLAASCIIstring("HLA"), bytes({0, 0, 0, 3, 'H', 'L', 'A'}), 4);
  expectEncoding(HLAASCIIstring(""), bytes({0, 0, 0, 0}), 4);
  expectEncoding(HLAASCIIstring(std::string("a\0b", 3)), bytes({0, 0, 0, 3, 'a', 0, 'b'}), 4);
  expectEncoding(HLAunicodeString(L"H\u00E9"), bytes({0, 0, 0, 2, 0x00, 0x48, 0x00, 0xE9}), 4);

  // Read from an index off its boundary, a string starts at the next multiple of four.
  HLAASCIIstring text;
  Bytes buffer = bytes({0xEE, 0xEE, 0xEE, 0xEE, 0, 0, 0, 2, 'o', 'k', 0xEE});
  EXPECT_EQ(text.decodeFrom(buffer, 2), 10u);
  EXPECT_EQ(text.get(), "ok");
  // And appended after an odd octet, it pads to that multiple first.
  Bytes appended = bytes({0x11});
  HLAASCIIstring("x").encodeInto(appended);
  EXPECT_EQ(appended, bytes({0x11, 0, 0, 0, 0, 0, 0, 1, 'x'}));
  HLAfloat64LE(1.0).encodeInto(appended);
  EXPECT_EQ(appended.size(), 24u);
}

TEST(EncodingBasicTypes, UnicodeBeyondTheBasicPlaneTravelsAsASurrogatePair) {
  SKIP_ON_OTHER_RTI("wide characters beyond U+FFFF are ours to pair");
  std::wstring grin(1, static_cast<wchar_t>(0x1F600));
  expectEncoding(HLAunicodeString(grin), bytes({0, 0, 0, 2, 0xD8, 0x3D, 0xDE, 0x00}), 4);
  HLAunicodeString back;
  back.decode(VariableLengthData("\x00\x00\x00\x02\xD8\x3D\xDE\x00", 8));
  EXPECT_EQ(back.get(), grin);
  // A lone high surrogate at the end stays what it was.
  back.decode(VariableLengthData("\x00\x00\x00\x01\xD8\x3D", 6));
  EXPECT_EQ(back.get(), std::wstring(1, static_cast<wchar_t>(0xD83D)));
}

TEST(EncodingBasicTypes, ExternalVariablesAreWrittenByDecodeAndSet) {
  SKIP_ON_OTHER_RTI(
      "OpenRTI 0.10 never writes the caller's variable, and its pointer constructor crashes");
  Integer32 mine = 5;
  HLAinteger32BE bound(&mine);
  EXPECT_EQ(encoded(bound), bytes({0, 0, 0, 5}));
  mine = 6;
  EXPECT_EQ(encoded(bound), bytes({0, 0, 0, 6}));
  bound.decode(VariableLengthData("\x00\x00\x01\x00", 4));
  EXPECT_EQ(mine, 256);
  bound = 9;
  EXPECT_EQ(mine, 9);
  // A copy has its own value and leaves the variable alone.
  HLAinteger32BE copy(bound);
  copy.set(1);
  EXPECT_EQ(mine, 9);

  std::string name;
  HLAASCIIstring text;
  text.setDataPointer(&name);
  text.decode(VariableLengthData("\x00\x00\x00\x02hi", 6));
  EXPECT_EQ(name, "hi");
  EXPECT_THROW(text.setDataPointer(nullptr), EncoderException);
}

// --------------------------------------------------------------------------- records

TEST(EncodingRecords, FieldsArePaddedToTheirOwnBoundary) {
  HLAfixedRecord r;
  r.appendElement(HLAoctet(1));
  r.appendElement(HLAinteger32BE(2));
  r.appendElement(HLAoctet(3));
  r.appendElement(HLAfloat64BE(1.0));
  expectEncoding(r, bytes({1,    0,    0, 0, 0, 0, 0, 2,  // octet, 3 pad, int32 at 4
                           3,    0,    0, 0, 0, 0, 0, 0,  // octet at 8, pad to 16
                           0x3F, 0xF0, 0, 0, 0, 0, 0, 0}),
                 8);
  // No padding after the last field.
  HLAfixedRecord tail;
  tail.appendElement(HLAinteger16BE(0x0A0B));
  tail.appendElement(HLAoctet(0x0C));
  expectEncoding(tail, bytes({0x0A, 0x0B, 0x0C}), 2);
  expectEncoding(HLAfixedRecord(), Bytes(), 1);
}

TEST(EncodingRecords, DecodingWritesTheCallersFieldsInPlace) {
  SKIP_ON_OTHER_RTI(
      "OpenRTI 0.10 never writes the caller's variable, and its pointer constructor crashes");
  Integer16 id = 0;
  std::string callsign;
  double altitude = 0;
  HLAinteger16BE idField(&id);
  HLAASCIIstring callsignField(&callsign);
  HLAfloat64LE altitudeField(&altitude);
  HLAfixedRecord r;
  r.appendElementPointer(&idField);
  r.appendElementPointer(&callsignField);
  r.appendElementPointer(&altitudeField);

  Bytes wire = bytes({0x00, 0x07, 0, 0,                          // id at 0, pad to 4
                      0,    0,    0, 3, 'V', 'C', '1',  0,       // callsign at 4, pad...
                      0,    0,    0, 0,                          // ...to 16
                      0,    0,    0, 0, 0,   0,   0x59, 0x40});  // 100.0 at 16
  EXPECT_EQ(r.decodeFrom(wire, 0), 24u);
  EXPECT_EQ(id, 7);
  EXPECT_EQ(callsign, "VC1");
  EXPECT_EQ(altitude, 100.0);
  EXPECT_EQ(encoded(r), wire);
}

TEST(EncodingRecords, MisuseIsRefused) {
  HLAfixedRecord r;
  r.appendElement(HLAinteger32BE(1));
  EXPECT_THROW(r.get(1), EncoderException);
  EXPECT_THROW(r.set(1, HLAinteger32BE(2)), EncoderException);
  EXPECT_THROW(r.set(0, HLAinteger32LE(2)), EncoderException);
  r.set(0, HLAinteger32BE(2));
  EXPECT_EQ(encoded(r), bytes({0, 0, 0, 2}));
  EXPECT_TRUE(r.hasElementSameTypeAs(0, HLAinteger32BE()));
  EXPECT_FALSE(r.hasElementSameTypeAs(0, HLAinteger32LE()));
  EXPECT_FALSE(r.hasElementSameTypeAs(1, HLAinteger32BE()));
}

TEST(EncodingRecords, VariantPutsTheAlternativeAtItsBoundary) {
  SKIP_ON_OTHER_RTI("OpenRTI 0.10's HLAvariantRecord encodes nothing");
  HLAvariantRecord v{HLAinteger32BE()};
  v.addVariant(HLAinteger32BE(1), HLAfloat64BE());
  v.addVariant(HLAinteger32BE(2), HLAASCIIstring());
  v.setVariant(HLAinteger32BE(1), HLAfloat64BE(2.0));
  expectEncoding(v, bytes({0, 0, 0, 1, 0, 0, 0, 0, 0x40, 0, 0, 0, 0, 0, 0, 0}), 8);
  v.setVariant(HLAinteger32BE(2), HLAASCIIstring("ab"));
  expectEncoding(v, bytes({0, 0, 0, 2, 0, 0, 0, 2, 'a', 'b'}), 8);

  // A one-octet discriminant before a 32-bit alternative: three octets of padding.
  HLAvariantRecord small{HLAoctet()};
  small.addVariant(HLAoctet(7), HLAinteger32BE());
  small.setVariant(HLAoctet(7), HLAinteger32BE(42));
  expectEncoding(small, bytes({7, 0, 0, 0, 0, 0, 0, 42}), 4);

  // Decoding chooses the alternative by the discriminant it reads.
  HLAvariantRecord decoded(v);
  decoded.decode(
      VariableLengthData("\x00\x00\x00\x01\x00\x00\x00\x00\x3F\xF0\x00\x00\x00\x00\x00\x00", 16));
  EXPECT_EQ(static_cast<HLAinteger32BE const&>(decoded.getDiscriminant()).get(), 1);
  EXPECT_EQ(static_cast<HLAfloat64BE const&>(decoded.getVariant()).get(), 1.0);
}

TEST(EncodingRecords, VariantRefusesDiscriminantsWithoutAnAlternative) {
  SKIP_ON_OTHER_RTI("OpenRTI 0.10's HLAvariantRecord encodes nothing");
  HLAvariantRecord v{HLAinteger32BE()};
  v.addVariant(HLAinteger32BE(1), HLAfloat64BE());
  EXPECT_THROW(v.setDiscriminant(HLAinteger32BE(3)), EncoderException);
  EXPECT_THROW(v.setVariant(HLAinteger32BE(1), HLAfloat32BE(1)), EncoderException);
  EXPECT_THROW(v.setDiscriminant(HLAinteger16BE(1)), EncoderException);
  EXPECT_THROW(v.decode(VariableLengthData("\x00\x00\x00\x03\x00\x00\x00\x00", 8)),
               EncoderException);
  EXPECT_TRUE(v.isSameTypeAs(HLAinteger32BE(1), HLAfloat64BE()));
  EXPECT_FALSE(v.isSameTypeAs(HLAinteger32BE(2), HLAfloat64BE()));
  EXPECT_TRUE(v.hasMatchingDiscriminantTypeAs(HLAinteger32BE()));
  EXPECT_FALSE(v.hasMatchingDiscriminantTypeAs(HLAinteger32LE()));
}

// ---------------------------------------------------------------------------- arrays

TEST(EncodingArrays, VariableArraysCountThenAlignEachElement) {
  HLAvariableArray shorts{HLAinteger16BE()};
  for (Integer16 i = 1; i <= 3; ++i) shorts.addElement(HLAinteger16BE(i));
  expectEncoding(shorts, bytes({0, 0, 0, 3, 0, 1, 0, 2, 0, 3}), 4);

  // The count takes four octets; an eight-octet element waits for its boundary.
  HLAvariableArray doubles{HLAfloat64BE()};
  doubles.addElement(HLAfloat64BE(1.5));
  expectEncoding(doubles, bytes({0, 0, 0, 1, 0, 0, 0, 0, 0x3F, 0xF8, 0, 0, 0, 0, 0, 0}), 8);

  expectEncoding(HLAvariableArray(HLAoctet()), bytes({0, 0, 0, 0}), 4);

  // Records of three octets at a two-octet boundary: one octet of padding between them.
  HLAfixedRecord pair;
  pair.appendElement(HLAinteger16BE());
  pair.appendElement(HLAoctet());
  HLAvariableArray records(pair);
  for (int i = 0; i < 2; ++i) {
    HLAfixedRecord r;
    r.appendElement(HLAinteger16BE(static_cast<Integer16>(1 + 3 * i)));
    r.appendElement(HLAoctet(static_cast<Octet>(2 + 3 * i)));
    records.addElement(r);
  }
  expectEncoding(records, bytes({0, 0, 0, 2, 0, 1, 2, 0, 0, 4, 5}), 4);
  EXPECT_THROW(records.addElement(HLAinteger16BE()), EncoderException);
}

TEST(EncodingArrays, FixedArraysHaveNoCount) {
  HLAfixedArray three(HLAoctet(), 3);
  for (size_t i = 0; i < 3; ++i) three.set(i, HLAoctet(static_cast<Octet>(i + 1)));
  HLAfixedRecord r;
  r.appendElement(three);
  r.appendElement(HLAinteger32BE(7));
  expectEncoding(r, bytes({1, 2, 3, 0, 0, 0, 0, 7}), 4);
  expectEncoding(three, bytes({1, 2, 3}), 1);

  HLAfixedArray ints(HLAinteger32LE(), 2);
  ints.set(1, HLAinteger32LE(-1));
  expectEncoding(ints, bytes({0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}), 4);
  EXPECT_THROW(ints.set(2, HLAinteger32LE()), EncoderException);
  EXPECT_THROW(ints.set(0, HLAinteger32BE()), EncoderException);
  EXPECT_THROW(ints.get(2), EncoderException);
  EXPECT_EQ(ints.size(), 2u);
}

TEST(EncodingArrays, NestedArraysRoundTripThroughDecodeFromAnIndex) {
  HLAvariableArray inner{HLAASCIIstring()};
  HLAvariableArray outer(asPrototype(inner));
  inner.addElement(HLAASCIIstring("a"));
  outer.addElement(inner);
  inner.addElement(HLAASCIIstring("bc"));
  outer.addElement(inner);
  Bytes wire = bytes({0, 0, 0, 2,                               // two lists
                      0, 0, 0, 1, 0,   0,  0, 1, 'a',           // ["a"]
                      0, 0, 0,                                  // pad to 16
                      0, 0, 0, 2, 0,   0,  0, 1, 'a', 0, 0, 0,  // ["a", "bc"]
                      0, 0, 0, 2, 'b', 'c'});
  expectEncoding(outer, wire, 4);

  Bytes prefixed = bytes({9, 9, 9, 9});
  prefixed.insert(prefixed.end(), wire.begin(), wire.end());
  HLAvariableArray back(asPrototype(inner));
  EXPECT_EQ(back.decodeFrom(prefixed, 4), prefixed.size());
  ASSERT_EQ(back.size(), 2u);
  auto const& second = static_cast<HLAvariableArray const&>(back[1]);
  ASSERT_EQ(second.size(), 2u);
  EXPECT_EQ(static_cast<HLAASCIIstring const&>(second[1]).get(), "bc");
}

TEST(EncodingArrays, OpaqueDataIsCountedOctets) {
  Octet raw[] = {1, 2, 3};
  HLAopaqueData data(raw, 3);
  expectEncoding(data, bytes({0, 0, 0, 3, 1, 2, 3}), 4);
  EXPECT_EQ(data.dataLength(), 3u);
  HLAopaqueData back;
  back.decode(VariableLengthData("\x00\x00\x00\x02\xAA\xBB", 6));
  ASSERT_EQ(back.dataLength(), 2u);
  EXPECT_EQ(back.get()[1], static_cast<Octet>(0xBB));
}

TEST(EncodingArrays, OpaqueDataDecodesOnlyWhatItHasAndWhatFits) {
  SKIP_ON_OTHER_RTI(
      "OpenRTI 0.10 reads opaque data past the end, and crashes given the caller's buffer");
  HLAopaqueData opaque;
  expectEveryTruncationRefused(opaque, bytes({0, 0, 0, 2, 7, 7}));

  Octet storage[4] = {0, 0, 0, 0};
  Octet* buffer = storage;
  HLAopaqueData mine(&buffer, sizeof storage, 0);
  mine.decode(VariableLengthData("\x00\x00\x00\x02\xAA\xBB", 6));
  EXPECT_EQ(mine.dataLength(), 2u);
  EXPECT_EQ(storage[1], static_cast<Octet>(0xBB));
  EXPECT_THROW(mine.decode(VariableLengthData("\x00\x00\x00\x05\x01\x02\x03\x04\x05", 9)),
               EncoderException);
}

TEST(EncodingTypes, SameTypeMeansSameLayout) {
  EXPECT_TRUE(HLAinteger32BE().isSameTypeAs(HLAinteger32BE(5)));
  EXPECT_FALSE(HLAinteger32BE().isSameTypeAs(HLAinteger32LE()));
  EXPECT_FALSE(HLAfloat32BE().isSameTypeAs(HLAinteger32BE()));

  HLAfixedRecord a, b, c;
  a.appendElement(HLAinteger16BE());
  b.appendElement(HLAinteger16BE(9));
  c.appendElement(HLAinteger16LE());
  EXPECT_TRUE(a.isSameTypeAs(b));
  EXPECT_FALSE(a.isSameTypeAs(c));
  b.appendElement(HLAoctet());
  EXPECT_FALSE(a.isSameTypeAs(b));

  EXPECT_TRUE(HLAvariableArray(HLAoctet()).isSameTypeAs(HLAvariableArray(HLAoctet())));
  EXPECT_FALSE(HLAvariableArray(HLAoctet()).isSameTypeAs(HLAvariableArray(HLAbyte())));
  EXPECT_FALSE(HLAfixedArray(HLAoctet(), 2).isSameTypeAs(HLAvariableArray(HLAoctet())));
}

TEST(EncodingTypes, AFixedArraysLengthAndPrototypeAreItsType) {
  SKIP_ON_OTHER_RTI("OpenRTI 0.10 compares neither a fixed array's length nor its prototype");
  EXPECT_FALSE(HLAfixedArray(HLAoctet(), 2).isSameTypeAs(HLAfixedArray(HLAoctet(), 3)));
  EXPECT_FALSE(HLAfixedArray(HLAoctet(), 2).isSameTypeAs(HLAfixedArray(HLAbyte(), 2)));
  EXPECT_TRUE(HLAfixedArray(HLAoctet(), 2).hasPrototypeSameTypeAs(HLAoctet()));
  EXPECT_FALSE(HLAfixedArray(HLAoctet(), 2).hasPrototypeSameTypeAs(HLAbyte()));
}

// ------------------------------------------------------------------- hostile octets

TEST(EncodingHostileInput, TruncatedEncodingsAreRefused) {
  HLAinteger16BE i16;
  expectEveryTruncationRefused(i16, bytes({1, 2}));
  HLAinteger64LE i64;
  expectEveryTruncationRefused(i64, bytes({1, 2, 3, 4, 5, 6, 7, 8}));
  HLAfloat32BE f32;
  expectEveryTruncationRefused(f32, bytes({1, 2, 3, 4}));
  HLAoctetPairLE pair;
  expectEveryTruncationRefused(pair, bytes({1, 2}));
  HLAunicodeChar uc;
  expectEveryTruncationRefused(uc, bytes({0, 0x41}));
  HLAASCIIstring s;
  expectEveryTruncationRefused(s, bytes({0, 0, 0, 3, 'a', 'b', 'c'}));
  HLAunicodeString us;
  expectEveryTruncationRefused(us, bytes({0, 0, 0, 2, 0, 'a', 0, 'b'}));

  HLAfixedRecord r;
  r.appendElement(HLAoctet());
  r.appendElement(HLAfloat64BE());
  expectEveryTruncationRefused(r, bytes({1, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8}));
  HLAvariableArray list{HLAinteger32BE()};
  expectEveryTruncationRefused(list, bytes({0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0, 2}));
  HLAfixedArray fixed(HLAinteger16LE(), 2);
  expectEveryTruncationRefused(fixed, bytes({1, 0, 2, 0}));
}

TEST(EncodingHostileInput, HugeCountsFailWithoutAllocatingForThem) {
  SKIP_ON_OTHER_RTI("OpenRTI 0.10 allocates by the count and reads strings past the end");
  // Each count claims four thousand million elements that the octets cannot hold; a
  // decoder that believed it would exhaust memory long before failing.
  Bytes huge = bytes({0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0});
  HLAvariableArray records{HLAfixedRecord()};
  EXPECT_THROW(records.decodeFrom(huge, 0), EncoderException);
  HLAvariableArray doubles{HLAfloat64BE()};
  HLAvariableArray lists(asPrototype(doubles));
  EXPECT_THROW(lists.decodeFrom(huge, 0), EncoderException);
  HLAASCIIstring s;
  EXPECT_THROW(s.decodeFrom(huge, 0), EncoderException);
  HLAunicodeString us;
  EXPECT_THROW(us.decodeFrom(huge, 0), EncoderException);
  HLAopaqueData o;
  EXPECT_THROW(o.decodeFrom(huge, 0), EncoderException);

  // An inner count that runs past the end, behind a plausible outer one (the inner list
  // of doubles starts at its eight-octet boundary).
  Bytes nested = bytes({0, 0, 0, 1, 0, 0, 0, 0, 0x7F, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0});
  EXPECT_THROW(lists.decodeFrom(nested, 0), EncoderException);
  // One more element counted than there are octets for: the last is missing.
  HLAvariableArray shorts{HLAinteger16BE()};
  EXPECT_THROW(shorts.decodeFrom(bytes({0, 0, 0, 3, 0, 1, 0, 2}), 0), EncoderException);
}

TEST(EncodingHostileInput, IndexesOutsideTheBufferAreRefused) {
  Bytes four = bytes({1, 2, 3, 4});
  HLAinteger32BE i;
  EXPECT_EQ(i.decodeFrom(four, 0), 4u);
  EXPECT_THROW(i.decodeFrom(four, 1), EncoderException);
  EXPECT_THROW(i.decodeFrom(four, 5), EncoderException);
  HLAoctet o;
  EXPECT_THROW(o.decodeFrom(four, 4), EncoderException);
  EXPECT_THROW(o.decodeFrom(Bytes(), 0), EncoderException);
}

TEST(EncodingHostileInput, IndexesNearTheTopDoNotWrapAround) {
  SKIP_ON_OTHER_RTI("OpenRTI 0.10's index arithmetic wraps around");
  Bytes four = bytes({1, 2, 3, 4});
  HLAinteger32BE i;
  EXPECT_THROW(i.decodeFrom(four, std::numeric_limits<size_t>::max()), EncoderException);
  HLAvariableArray list{HLAoctet()};
  EXPECT_THROW(list.decodeFrom(four, std::numeric_limits<size_t>::max() - 2), EncoderException);
  HLAfixedRecord r;
  r.appendElement(HLAoctet());
  r.appendElement(HLAfloat64BE());
  EXPECT_THROW(r.decodeFrom(Bytes(16), std::numeric_limits<size_t>::max()), EncoderException);
}

TEST(EncodingHostileInput, BooleansOtherThanZeroOrOneAreRefused) {
  SKIP_ON_OTHER_RTI("what other values mean is up to each RTI");
  HLAboolean b;
  EXPECT_THROW(b.decode(VariableLengthData("\x00\x00\x00\x02", 4)), EncoderException);
  EXPECT_THROW(b.decode(VariableLengthData("\x01\x00\x00\x00", 4)), EncoderException);
  b.decode(VariableLengthData("\x00\x00\x00\x01", 4));
  EXPECT_TRUE(b.get());
}
