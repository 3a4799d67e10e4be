// PDU buffers: the header, lengths, resizing and the memory-safety promise.
#include <gtest/gtest.h>

#include <vector>

#include "dtPdu.h"
#include "kindPdu.h"
#include "wireBytes.h"

namespace {

TEST(PduHeader, FreshPduHasKindLengthAndZeroBody) {
  KindPdu pdu(196);
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 196);
  EXPECT_EQ(wire::u8(b, 0), DtPdu::kProtocolVersion);
  EXPECT_EQ(wire::u8(b, 2), 77u);
  EXPECT_EQ(wire::u16(b, 8), 196u);
  EXPECT_TRUE(wire::zero(b, 12, 196 - 12));
  EXPECT_GE(pdu.capacity(), DtBaseMsg::kAllocationFloor);
  EXPECT_TRUE(wire::zero(b, 196, pdu.capacity() - 196));
  EXPECT_EQ(DtPdu::headerLength(b), 196);
}

TEST(PduBounds, ReadsPastTheAllocationAreZeroAndWritesAreDropped) {
  KindPdu pdu(20);
  size_t end = pdu.capacity();
  pdu.writeU32(end - 2, 0xAABBCCDDu);  // straddles the end: only the first two bytes land
  EXPECT_EQ(wire::u16(pdu.packet(), end - 2), 0xAABBu);
  EXPECT_EQ(pdu.readU32(end - 2), 0xAABB0000u);
  pdu.writeFloat64(end + 100, 1.5);
  EXPECT_EQ(pdu.readFloat64(end + 100), 0.0);
  EXPECT_EQ(pdu.readU8(static_cast<size_t>(-1)), 0u);
  EXPECT_EQ(pdu.readDesignator(end - 10), DtString());
  pdu.writeChars(end - 3, 64, "abcdef");
  EXPECT_EQ(pdu.readChars(end - 3, 64), DtString("abc"));
}

TEST(PduBounds, WritesBeyondTheLengthLandInsideTheFloor) {
  KindPdu pdu(152);
  pdu.writeU32(400, 0x01020304u);
  EXPECT_EQ(pdu.length(), 152);
  EXPECT_EQ(wire::u32(pdu.packet(), 400), 0x01020304u);
  pdu.changeSize(500);  // growing keeps what was written past the old length
  EXPECT_EQ(pdu.readU32(400), 0x01020304u);
  EXPECT_EQ(wire::u16(pdu.packet(), 8), 500u);
}

TEST(PduResize, InsertAndDeleteMoveTheFollowingBytes) {
  KindPdu pdu(20);
  for (int i = 12; i < 20; ++i) pdu.writeU8(static_cast<size_t>(i), static_cast<unsigned>(i));
  pdu.insertBytes(14, 4);
  EXPECT_EQ(pdu.length(), 24);
  EXPECT_EQ(wire::u16(pdu.packet(), 8), 24u);
  EXPECT_EQ(pdu.readU8(13), 13u);
  EXPECT_TRUE(wire::zero(pdu.packet(), 14, 4));
  EXPECT_EQ(pdu.readU8(18), 14u);
  EXPECT_EQ(pdu.readU8(23), 19u);
  pdu.deleteBytes(13, 6);  // 13, the four zeros, 14
  EXPECT_EQ(pdu.length(), 18);
  EXPECT_EQ(pdu.readU8(12), 12u);
  EXPECT_EQ(pdu.readU8(13), 15u);
  EXPECT_EQ(pdu.readU8(17), 19u);
  pdu.deleteBytes(10, 100);  // more than there is: up to the end
  EXPECT_EQ(pdu.length(), 10);
  pdu.deleteBytes(50, 3);  // past the end: nothing
  EXPECT_EQ(pdu.length(), 10);
}

TEST(PduResize, LengthsStayWithinWhatTheHeaderCanState) {
  KindPdu pdu(20);
  pdu.changeSize(70000);
  EXPECT_EQ(pdu.length(), DtBaseMsg::kMaxLength);
  EXPECT_EQ(wire::u16(pdu.packet(), 8), 65535u);
  pdu.insertBytes(100, 1000);
  EXPECT_EQ(pdu.length(), DtBaseMsg::kMaxLength);
  pdu.changeSize(-5);
  EXPECT_EQ(pdu.length(), 0);
}

TEST(PduReceive, WrappingCopiesTheBytesAndTakesTheHeaderLength) {
  std::vector<unsigned char> bytes = wire::controlPdu(3, 200);
  bytes[150] = 0x5A;
  KindPdu pdu(bytes.data(), bytes.size());
  bytes[150] = 0;
  EXPECT_EQ(pdu.length(), 200);
  EXPECT_EQ(pdu.readU8(150), 0x5Au);
  EXPECT_NE(static_cast<const void*>(pdu.packet()), static_cast<const void*>(bytes.data()));
}

TEST(PduReceive, BytesTheSenderDidNotSendReadAsZero) {
  // The header claims 300 bytes but only 40 arrived.
  std::vector<unsigned char> bytes = wire::controlPdu(3, 300, 40);
  for (size_t i = 12; i < 40; ++i) bytes[i] = 0xEE;
  KindPdu pdu(bytes.data(), bytes.size());
  EXPECT_EQ(pdu.length(), 300);
  EXPECT_EQ(pdu.readU8(39), 0xEEu);
  EXPECT_TRUE(wire::zero(pdu.packet(), 40, 260));
  // Fewer bytes than a header: what is there is kept, the length reads as zero.
  KindPdu tiny(bytes.data(), 5);
  EXPECT_EQ(tiny.length(), 0);
  EXPECT_EQ(tiny.readU8(2), 202u);
}

TEST(PduCopy, CopiesAndAssignmentsOwnTheirBytes) {
  KindPdu a(64);
  a.writeU32(20, 7);
  a.writeU32(1000, 9);  // past the length, inside the floor
  KindPdu b(a);
  KindPdu c(12);
  c = a;
  a.writeU32(20, 8);
  EXPECT_EQ(b.readU32(20), 7u);
  EXPECT_EQ(c.readU32(20), 7u);
  EXPECT_EQ(b.readU32(1000), 9u);
  EXPECT_EQ(c.length(), 64);
  c = c;  // self-assignment keeps the bytes
  EXPECT_EQ(c.readU32(20), 7u);
}

TEST(PduPlaceHolder, PdusWorkInTheLentBlockUntilTheyOutgrowIt) {
  DtBufferPlaceHolder holder(2000);
  KindPdu pdu(100, &holder);
  EXPECT_EQ(static_cast<const void*>(pdu.packet()), static_cast<const void*>(holder.data()));
  pdu.writeU32(50, 0xCAFEu);
  EXPECT_EQ(wire::u32(holder.data(), 50), 0xCAFEu);
  pdu.changeSize(3000);  // beyond the block: the PDU moves to memory of its own
  EXPECT_NE(static_cast<const void*>(pdu.packet()), static_cast<const void*>(holder.data()));
  EXPECT_EQ(pdu.readU32(50), 0xCAFEu);
  KindPdu copy(pdu);
  EXPECT_NE(static_cast<const void*>(copy.packet()), static_cast<const void*>(pdu.packet()));
}

TEST(NetTypes, FieldTypesHoldNetworkOrder) {
  DtNetU32 u(0x01020304u);
  DtNetU16 s(0xA1B2u);
  DtNetInt32 i(-2);
  DtNetFloat64 d(1.0);
  EXPECT_EQ(wire::u32(&u, 0), 0x01020304u);
  EXPECT_EQ(wire::u16(&s, 0), 0xA1B2u);
  EXPECT_EQ(wire::u32(&i, 0), 0xFFFFFFFEu);
  EXPECT_EQ(wire::u64(&d, 0), 0x3FF0000000000000ull);
  EXPECT_EQ(static_cast<unsigned>(u), 0x01020304u);
  EXPECT_EQ(static_cast<int>(i), -2);
  DtNetEulerAngles e(DtTaitBryan(0.1, 0.2, 0.3));
  EXPECT_EQ(wire::f32(&e, 0), 0.1f);
  EXPECT_EQ(wire::f32(&e, 8), 0.3f);
  EXPECT_EQ(DtTaitBryan(e).psi(), static_cast<double>(0.1f));
}

TEST(NetTypes, DesignatorsAreTerminatedAndCutAt63) {
  std::string longId(80, 'x');
  DtNetGlobalObjectDesignator d(DtString(longId.c_str()));
  EXPECT_EQ(d.string().length(), 63u);
  EXPECT_EQ(d.bytes()[63], 0);
  DtNetGlobalObjectDesignator shortId(DtString("1:2:3"));
  EXPECT_EQ(wire::text(shortId.bytes(), 0, 64), "1:2:3");
  EXPECT_TRUE(wire::zero(shortId.bytes(), 5, 59));
  // A received field without any NUL reads as all 64 bytes.
  unsigned char full[64];
  std::memset(full, 'y', sizeof full);
  EXPECT_EQ(DtNetGlobalObjectDesignator::decode(full).length(), 64u);
}

TEST(NetTypes, CharFieldsPadShortTextsAndFillWithoutTerminator) {
  KindPdu pdu(200);
  pdu.writeChars(20, 8, "abc");
  EXPECT_EQ(wire::text(pdu.packet(), 20, 8), "abc");
  EXPECT_TRUE(wire::zero(pdu.packet(), 23, 5));
  pdu.writeU8(28, 'Z');
  pdu.writeChars(20, 8, "abcdefghijk");
  EXPECT_EQ(pdu.readChars(20, 8), DtString("abcdefgh"));
  EXPECT_EQ(pdu.readU8(28), static_cast<unsigned>('Z'));  // the field's neighbour is untouched
}

TEST(PduFactory, BuildsByKind) {
  DtPduFactory factory;
  factory.addCreator(77,
                     [](const DtNetPduHeader* h, DtBufferPlaceHolder*, DtPduFactory*) -> DtPdu* {
                       return new KindPdu(h, static_cast<size_t>(DtPdu::headerLength(h)));
                     });
  KindPdu model(40);
  DtPdu* made = factory.createPdu(reinterpret_cast<const DtNetPduHeader*>(model.packet()));
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->length(), 40);
  delete made;
  std::vector<unsigned char> other = wire::controlPdu(0, 152);
  EXPECT_EQ(factory.createPdu(reinterpret_cast<const DtNetPduHeader*>(other.data())), nullptr);
}

}  // namespace
