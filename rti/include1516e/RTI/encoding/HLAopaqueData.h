#ifndef RTI_HLAopaqueData_h
#define RTI_HLAopaqueData_h

#include <RTI/SpecificConfig.h>
#include <RTI/encoding/DataElement.h>
#include <RTI/encoding/EncodingConfig.h>

namespace rti1516e {
class VariableLengthData;
class HLAopaqueDataImplementation;

// Bytes the encoding does not look into: a 32-bit big-endian count, then the bytes
// (boundary 4). Given a buffer by pointer it decodes into that buffer and throws when the
// data does not fit.
class RTI_EXPORT HLAopaqueData : public rti1516e::DataElement {
 public:
  HLAopaqueData();
  HLAopaqueData(const Octet* inData, size_t dataSize);
  HLAopaqueData(Octet** inData, size_t bufferSize, size_t dataSize);
  HLAopaqueData(HLAopaqueData const& rhs);
  virtual ~HLAopaqueData();
  virtual std::unique_ptr<DataElement> clone() const;
  virtual VariableLengthData encode() const;
  virtual void encode(VariableLengthData& inData) const;
  virtual void encodeInto(std::vector<Octet>& buffer) const;
  virtual void decode(VariableLengthData const& inData);
  virtual size_t decodeFrom(std::vector<Octet> const& buffer, size_t index);
  virtual size_t getEncodedLength() const;
  virtual unsigned int getOctetBoundary() const;
  virtual size_t bufferLength() const;
  virtual size_t dataLength() const;
  virtual void setDataPointer(Octet** inData, size_t bufferSize, size_t dataSize);
  virtual void set(const Octet* inData, size_t dataSize);
  virtual const Octet* get() const;
  operator const Octet*() const;

 private:
  HLAopaqueData& operator=(HLAopaqueData const& rhs);

 protected:
  HLAopaqueDataImplementation* _impl;
};
}  // namespace rti1516e

#endif
