// Bytes -> the 1516-2010 encoding helpers, as a federate decodes a value it received: a
// record holding every kind of element, arrays of records and of strings, and a variant
// record around them. Decoding either succeeds or throws EncoderException, whatever the
// bytes; what decoded must encode to the same length it reports and decode again to the
// same bytes.
#include <RTI/VariableLengthData.h>
#include <RTI/encoding/BasicDataElements.h>
#include <RTI/encoding/HLAfixedArray.h>
#include <RTI/encoding/HLAfixedRecord.h>
#include <RTI/encoding/HLAopaqueData.h>
#include <RTI/encoding/HLAvariableArray.h>
#include <RTI/encoding/HLAvariantRecord.h>

#include <cstdlib>
#include <memory>
#include <vector>

using namespace rti1516e;

namespace {

std::unique_ptr<DataElement> makeValue() {
  HLAfixedRecord leaf;
  leaf.appendElement(HLAoctet());
  leaf.appendElement(HLAinteger16LE());
  leaf.appendElement(HLAfloat64BE());
  leaf.appendElement(HLAunicodeString());
  leaf.appendElement(HLAfixedArray(HLAoctetPairBE(), 3));

  HLAvariantRecord choice{HLAinteger32BE()};
  choice.addVariant(HLAinteger32BE(0), HLAboolean());
  choice.addVariant(HLAinteger32BE(1), leaf);
  choice.addVariant(HLAinteger32BE(2), HLAvariableArray(HLAASCIIstring()));
  choice.addVariant(HLAinteger32BE(3), HLAopaqueData());

  HLAfixedRecord top;
  top.appendElement(HLAASCIIchar());
  top.appendElement(HLAvariableArray(static_cast<DataElement const&>(leaf)));
  top.appendElement(choice);
  top.appendElement(HLAinteger64BE());
  return top.clone();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::unique_ptr<DataElement> prototype = makeValue();
  std::vector<Octet> bytes(reinterpret_cast<const Octet*>(data),
                           reinterpret_cast<const Octet*>(data) + size);
  std::unique_ptr<DataElement> value = prototype->clone();
  size_t end;
  try {
    end = value->decodeFrom(bytes, 0);
  } catch (const EncoderException&) {
    return 0;  // refused with a reason: what a decoder is for
  }
  if (end > size) std::abort();
  std::vector<Octet> again;
  value->encodeInto(again);
  if (again.size() != value->getEncodedLength()) std::abort();
  std::unique_ptr<DataElement> copy = prototype->clone();
  if (copy->decodeFrom(again, 0) != again.size()) std::abort();
  std::vector<Octet> third;
  copy->encodeInto(third);
  if (third != again) std::abort();
  return 0;
}
