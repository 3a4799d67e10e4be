// Text -> setFromString() of a control PDU class, then string() and the text read back
// again. The first byte picks the class (every class, fresh and received short); the rest
// is the text. The text forms are what tools and users type.
#include <memory>
#include <string>

#include "fuzzSupport.h"
#include "pduClasses.h"

using fuzzsupport::use;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzsupport::silenceOutput();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const auto& makers = pduclasses::all();
  std::unique_ptr<DtVistrelControlPdu> pdu(makers[data[0] % makers.size()]());
  if (!pdu) return 0;
  const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
  const int length = pdu->length();
  pdu->setFromString(text.c_str());
  const std::string once = pdu->string();
  use(once.c_str());
  pdu->print();
  // What string() wrote reads back, and writes the same text again.
  pdu->setFromString(once.c_str());
  use(pdu->string());
  use(static_cast<std::uint64_t>(DtVistrelControlPdu::isNumber(text.c_str())));
  use(static_cast<std::uint64_t>(length));
  return 0;
}
