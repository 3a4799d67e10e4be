// PDU memory handed from one message to the next: whatever one message wrote, in
// whatever way, the next one to get the memory must read as zero, as freshly
// allocated memory would.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "dtPdu.h"
#include "kindPdu.h"
#include "wireBytes.h"

namespace {

// Reads without asking for write access, which would count as writing everything.
const char* bytesOf(const DtBaseMsg& m) {
  return m.packet();
}

using Writer = std::function<void(KindPdu&)>;

const std::vector<std::pair<std::string, Writer>>& writers() {
  static const std::vector<std::pair<std::string, Writer>> list = {
      {"writeBytes",
       [](KindPdu& p) {
         std::vector<unsigned char> ones(40, 0xFF);
         p.writeBytes(p.capacity() - 40, ones.data(), ones.size());
       }},
      {"writeU8", [](KindPdu& p) { p.writeU8(p.capacity() - 1, 0xFF); }},
      {"writeU32", [](KindPdu& p) { p.writeU32(1000, 0xFFFFFFFFu); }},
      {"writeFloat64", [](KindPdu& p) { p.writeFloat64(p.capacity() - 8, -1.0); }},
      {"writeDesignator",
       [](KindPdu& p) { p.writeDesignator(p.capacity() - 64, "xxxxxxxxxxxxxxxxxxxx"); }},
      {"writeChars", [](KindPdu& p) { p.writeChars(1400, 64, "yyyyyyyyyyyyyyyyyyyyyyyyyyyy"); }},
      {"insertBytes",
       [](KindPdu& p) {
         p.writeU8(15, 0xFF);
         p.insertBytes(12, 600);
       }},
      {"packet", [](KindPdu& p) { std::memset(p.packet(), 0xFF, p.capacity()); }},
      {"writableBytes", [](KindPdu& p) { std::memset(p.exposed(1500, 44), 0xFF, 44); }},
      {"assignment",
       [](KindPdu& p) {
         KindPdu junk(20);
         junk.writeU32(1200, 0xFFFFFFFFu);
         p = junk;
       }},
      {"growing",
       [](KindPdu& p) {
         p.writeU32(1500, 0xFFFFFFFFu);
         p.changeSize(3000);
       }},
      {"receiving",
       [](KindPdu& p) {
         std::vector<unsigned char> ones(DtBaseMsg::kAllocationFloor, 0xFF);
         ones[8] = 0x06;  // length 1544
         ones[9] = 0x08;
         p = KindPdu(ones.data(), ones.size());
       }},
  };
  return list;
}

// Nothing behind the header of a fresh PDU of 20 bytes, or of a received header.
void expectClean(const KindPdu& pdu, const std::string& how) {
  EXPECT_TRUE(wire::zero(bytesOf(pdu), 12, pdu.capacity() - 12)) << how;
  EXPECT_EQ(pdu.readU32(1000), 0u) << how;
}

TEST(PduReuse, MemoryComesBackCleanAfterEveryKindOfWrite) {
  std::vector<unsigned char> header = {6, 1, 77, 129, 0, 0, 0, 0, 0, 12, 0, 0};
  int reused = 0;
  for (const auto& [name, write] : writers()) {
    const char* given;
    {
      KindPdu dirty(20);
      write(dirty);
      given = bytesOf(dirty);
    }
    KindPdu fresh(20);
    // The next message made on this thread gets that memory back.
    if (bytesOf(fresh) == given) ++reused;
    expectClean(fresh, name + ", then a fresh PDU");
    {
      KindPdu dirty(20);
      write(dirty);
    }
    KindPdu received(header.data(), header.size());
    expectClean(received, name + ", then received bytes");
    KindPdu copied(received);
    expectClean(copied, name + ", then a copy");
  }
  EXPECT_GT(reused, 0);
}

TEST(PduReuse, CopiesKeepWhatLiesBeyondTheLength) {
  KindPdu a(20);
  a.writeU32(1500, 0x01020304u);
  KindPdu b(a);
  EXPECT_EQ(b.readU32(1500), 0x01020304u);
  KindPdu c(20);
  c.writeU32(1200, 0xFFFFFFFFu);
  c = a;
  EXPECT_EQ(c.readU32(1500), 0x01020304u);
  EXPECT_EQ(c.readU32(1200), 0u);
  EXPECT_TRUE(wire::zero(bytesOf(c), 12, 1500 - 12));
}

TEST(PduReuse, PlaceHolderMemoryIsNeverTakenForReuse) {
  DtBufferPlaceHolder holder(DtBaseMsg::kAllocationFloor);
  {
    KindPdu lent(20, &holder);
    lent.writeU32(800, 0xABCDEF01u);
  }
  // The block is the application's: the next PDU gets its own memory, and the place
  // holder keeps what was written into it.
  KindPdu fresh(20);
  EXPECT_NE(static_cast<const void*>(bytesOf(fresh)), static_cast<const void*>(holder.data()));
  EXPECT_EQ(wire::u32(holder.data(), 800), 0xABCDEF01u);
  expectClean(fresh, "after a place holder");
}

TEST(PduReuse, MessagesMayEndOnAnotherThread) {
  std::vector<KindPdu*> made;
  for (int i = 0; i < 100; ++i) {
    auto* pdu = new KindPdu(20);
    pdu->writeU32(1000, 0xFFFFFFFFu);
    made.push_back(pdu);
  }
  std::thread other([&] {
    for (KindPdu* pdu : made) delete pdu;
    KindPdu fresh(20);
    expectClean(fresh, "on the thread that dropped them");
  });
  other.join();
  // Threads that end with memory in hand give it back (the sanitizer build checks).
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([] {
      std::vector<KindPdu> local;
      for (int i = 0; i < 50; ++i) local.emplace_back(300);
    });
  for (auto& t : threads) t.join();
  KindPdu fresh(20);
  expectClean(fresh, "on the first thread");
}

// A message that outlives the thread's own clean-up (a static, destroyed at exit).
KindPdu lateMessage(40);

TEST(PduReuse, StaticMessagesAreUsable) {
  lateMessage.writeU32(600, 5);
  EXPECT_EQ(lateMessage.readU32(600), 5u);
}

}  // namespace
