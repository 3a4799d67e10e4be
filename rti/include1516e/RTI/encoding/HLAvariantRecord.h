#ifndef RTI_HLAvariantRecord_h
#define RTI_HLAvariantRecord_h

#include <RTI/SpecificConfig.h>
#include <RTI/encoding/DataElement.h>
#include <RTI/encoding/EncodingConfig.h>

namespace rti1516e {
class VariableLengthData;
class HLAvariantRecordImplementation;

// A discriminant, then the alternative it selects at that alternative's octet boundary;
// the record's boundary is the largest of the discriminant's and every alternative's.
// Discriminants match by their encoded bytes. Decoding a discriminant that selects no
// alternative throws EncoderException.
class RTI_EXPORT HLAvariantRecord : public rti1516e::DataElement {
 public:
  explicit HLAvariantRecord(DataElement const& discriminantPrototype);
  HLAvariantRecord(HLAvariantRecord const& rhs);
  virtual ~HLAvariantRecord();
  virtual std::unique_ptr<DataElement> clone() const;
  virtual VariableLengthData encode() const;
  virtual void encode(VariableLengthData& inData) const;
  virtual void encodeInto(std::vector<Octet>& buffer) const;
  virtual void decode(VariableLengthData const& inData);
  virtual size_t decodeFrom(std::vector<Octet> const& buffer, size_t index);
  virtual size_t getEncodedLength() const;
  virtual unsigned int getOctetBoundary() const;
  virtual bool isSameTypeAs(DataElement const& inData) const;
  virtual bool isSameTypeAs(DataElement const& discriminant, DataElement const& inData) const;
  virtual bool hasMatchingDiscriminantTypeAs(DataElement const& dataElement) const;
  virtual void addVariant(const DataElement& discriminant, const DataElement& valuePrototype);
  virtual void addVariantPointer(const DataElement& discriminant, DataElement* valuePtr);
  virtual void setDiscriminant(const DataElement& discriminant);
  virtual void setVariant(const DataElement& discriminant, DataElement const& value);
  virtual void setVariantPointer(const DataElement& discriminant, DataElement* valuePtr);
  virtual const DataElement& getDiscriminant() const;
  virtual const DataElement& getVariant() const;

 private:
  HLAvariantRecord();
  HLAvariantRecord& operator=(HLAvariantRecord const& rhs);

 protected:
  HLAvariantRecordImplementation* _impl;
};
}  // namespace rti1516e

#endif
