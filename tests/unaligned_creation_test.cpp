// Received PDU bytes at every address: a socket buffer or an interaction's value hands
// them over at any offset, so every way of making a PDU object from them must work at
// odd addresses and make the same object, with the same bytes, as from aligned memory.
// Under the sanitizer build a read of the header as a struct traps as misaligned.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <typeinfo>
#include <vector>

#include "hVistrelControlInter.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using Bytes = std::vector<unsigned char>;
using PduPtr = std::unique_ptr<DtPdu>;

Bytes bytesOf(const DtPdu& pdu) {
  return Bytes(pdu.packet(), pdu.packet() + pdu.length());
}
const std::type_info& classOf(const PduPtr& pdu) {
  const DtPdu* p = pdu.get();
  return typeid(*p);
}

// Control PDUs of every family: view control and its status form, options, draw control
// in both layouts (and the segmented line that creation restamps), and a command nobody
// knows.
std::vector<Bytes> samples() {
  std::vector<Bytes> out;
  for (int c : {1,  2,   3,    4,    5,    6,    7,    8,    9,    11,   12,  13,
                14, 501, 2511, 2521, 2541, 2551, 2555, 2561, 2571, 2581, 2590}) {
    std::unique_ptr<DtVistrelControlPdu> p(DtNewVistrelControlPdu(static_cast<DtViewerCommand>(c)));
    if (p) out.push_back(bytesOf(*p));
    std::unique_ptr<DtVistrelControlPdu> v0(DtNewDrawControlPduV0(static_cast<DtViewerCommand>(c)));
    if (v0) out.push_back(bytesOf(*v0));
  }
  out.push_back(wire::controlPdu(2530, 400));
  out.push_back(wire::controlPdu(15, 200));
  return out;
}

// The ways received bytes become an object; n is how many of them arrived.
const std::vector<std::function<DtPdu*(const unsigned char*, size_t)>>& entries() {
  static const std::vector<std::function<DtPdu*(const unsigned char*, size_t)>> all = {
      [](const unsigned char* p, size_t n) {
        return DtVistrelControlPdu::createFromBytes(p, n, true);
      },
      [](const unsigned char* p, size_t n) {
        return DtVistrelControlPdu::createFromBytes(p, n, false);
      },
      [](const unsigned char* p, size_t) {
        return DtVistrelControlPdu::createFromNet(reinterpret_cast<const DtNetPduHeader*>(p));
      },
      [](const unsigned char* p, size_t) {
        return DtVistrelControlPdu::create(reinterpret_cast<const DtNetPduHeader*>(p));
      },
      [](const unsigned char* p, size_t) -> DtPdu* {
        DtPduFactory factory;
        factory.addCreator(
            DtVistrelControlPdu::kPduKind,
            [](const DtNetPduHeader* h, DtBufferPlaceHolder* holder, DtPduFactory* f) -> DtPdu* {
              return DtVistrelControlPdu::createFromNet(h, holder, f);
            });
        return factory.createPdu(reinterpret_cast<const DtNetPduHeader*>(p));
      },
      [](const unsigned char* p, size_t) -> DtPdu* {
        DtVistrelControlInteraction inter;
        inter.setFromNetPacket(reinterpret_cast<const DtNetPduHeader*>(p));
        return inter.vcPdu() ? DtVistrelControlPdu::create(
                                   reinterpret_cast<const DtNetPduHeader*>(inter.vcPdu()->packet()))
                             : nullptr;
      },
  };
  return all;
}

TEST(UnalignedCreation, EveryEntryAtEveryOffsetMakesWhatAlignedBytesMake) {
  const std::vector<Bytes> all = samples();
  ASSERT_GT(all.size(), 30u);
  for (const Bytes& pdu : all) {
    ASSERT_EQ(pdu[2], DtVistrelControlPdu::kPduKind);
    for (size_t e = 0; e < entries().size(); ++e) {
      SCOPED_TRACE(testing::Message()
                   << "command " << wire::u16(pdu.data(), 146) << " entry " << e);
      // The 8-aligned start of a vector is the reference; offsets 1 to 7 shift it off.
      PduPtr aligned(entries()[e](pdu.data(), pdu.size()));
      ASSERT_NE(aligned, nullptr);
      Bytes store(pdu.size() + 8);
      for (size_t offset = 1; offset < 8; ++offset) {
        std::memcpy(store.data() + offset, pdu.data(), pdu.size());
        PduPtr shifted(entries()[e](store.data() + offset, pdu.size()));
        ASSERT_NE(shifted, nullptr) << offset;
        EXPECT_EQ(classOf(shifted), classOf(aligned)) << offset;
        EXPECT_EQ(bytesOf(*shifted), bytesOf(*aligned)) << offset;
      }
    }
  }
}

// Bytes cut short at an odd address: what arrived is read byte-wise and padded, as it is
// from aligned memory.
TEST(UnalignedCreation, ShortBytesAtAnOddAddress) {
  std::unique_ptr<DtVistrelControlPdu> tether(
      DtNewVistrelControlPdu(static_cast<DtViewerCommand>(1)));
  const Bytes full = bytesOf(*tether);
  Bytes store(full.size() + 1);
  std::memcpy(store.data() + 1, full.data(), full.size());
  for (size_t n : {size_t(3), size_t(9), size_t(12), size_t(150), full.size() - 1}) {
    PduPtr aligned(DtVistrelControlPdu::createFromBytes(full.data(), n, true));
    PduPtr shifted(DtVistrelControlPdu::createFromBytes(store.data() + 1, n, true));
    ASSERT_NE(aligned, nullptr) << n;
    ASSERT_NE(shifted, nullptr) << n;
    EXPECT_EQ(classOf(shifted), classOf(aligned)) << n;
    EXPECT_EQ(bytesOf(*shifted), bytesOf(*aligned)) << n;
  }
  // A kind byte other than the control PDUs' is refused at any address.
  store[1 + 2] = 201;
  EXPECT_EQ(DtVistrelControlPdu::createFromBytes(store.data() + 1, full.size(), true), nullptr);
  EXPECT_EQ(
      DtVistrelControlPdu::createFromNet(reinterpret_cast<const DtNetPduHeader*>(store.data() + 1)),
      nullptr);
}

}  // namespace
