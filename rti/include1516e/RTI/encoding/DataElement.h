#ifndef RTI_DataElement_h
#define RTI_DataElement_h

#include <RTI/SpecificConfig.h>
#include <RTI/encoding/EncodingConfig.h>
#include <RTI/encoding/EncodingExceptions.h>
#include <cstddef>
#include <memory>

namespace rti1516e {
class VariableLengthData;

// A value in the HLA's standard encoding: what every basic type, record and array is.
// encodeInto() appends to a buffer and decodeFrom() reads at an index, returning the
// index after the element; both place the element at its octet boundary counted from the
// start of the buffer, so a composite is built by appending its parts. Malformed bytes
// throw EncoderException, and nothing is read outside the buffer.
class RTI_EXPORT DataElement {
 public:
  virtual ~DataElement() = 0;
  virtual std::unique_ptr<DataElement> clone() const = 0;
  virtual VariableLengthData encode() const = 0;
  virtual void encode(VariableLengthData& inData) const = 0;
  virtual void encodeInto(std::vector<Octet>& buffer) const = 0;
  virtual void decode(VariableLengthData const& inData) = 0;
  virtual size_t decodeFrom(std::vector<Octet> const& buffer, size_t index) = 0;
  virtual size_t getEncodedLength() const = 0;
  virtual unsigned int getOctetBoundary() const = 0;
  // The same class (and, for composites, the same layout).
  virtual bool isSameTypeAs(DataElement const& inData) const;
  // Of the encoded bytes: equal values hash alike.
  virtual Integer64 hash() const;
};
}  // namespace rti1516e

#endif
