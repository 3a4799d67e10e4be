#ifndef RTI_HLAvariableArray_h
#define RTI_HLAvariableArray_h

#include <RTI/SpecificConfig.h>
#include <RTI/encoding/DataElement.h>
#include <RTI/encoding/EncodingConfig.h>

namespace rti1516e {
class VariableLengthData;
class HLAvariableArrayImplementation;

// Elements of one type behind a 32-bit big-endian count; the boundary is the larger of 4
// and the element's. Decoding refuses a count larger than the bytes left, so hostile
// bytes cannot make it allocate more elements than the data could hold.
class RTI_EXPORT HLAvariableArray : public rti1516e::DataElement {
 public:
  explicit HLAvariableArray(const DataElement& prototype);
  HLAvariableArray(HLAvariableArray const& rhs);
  virtual ~HLAvariableArray();
  virtual std::unique_ptr<DataElement> clone() const;
  virtual VariableLengthData encode() const;
  virtual void encode(VariableLengthData& inData) const;
  virtual void encodeInto(std::vector<Octet>& buffer) const;
  virtual void decode(VariableLengthData const& inData);
  virtual size_t decodeFrom(std::vector<Octet> const& buffer, size_t index);
  virtual size_t getEncodedLength() const;
  virtual unsigned int getOctetBoundary() const;
  virtual bool isSameTypeAs(DataElement const& inData) const;
  virtual size_t size() const;
  virtual bool hasPrototypeSameTypeAs(DataElement const& dataElement) const;
  virtual void addElement(const DataElement& dataElement);
  virtual void addElementPointer(DataElement* dataElement);
  virtual void set(size_t index, const DataElement& dataElement);
  virtual void setElementPointer(size_t index, DataElement* dataElement);
  virtual const DataElement& get(size_t index) const;
  DataElement const& operator[](size_t index) const;

 private:
  HLAvariableArray();
  HLAvariableArray& operator=(HLAvariableArray const& rhs);

 protected:
  HLAvariableArrayImplementation* _impl;
};
}  // namespace rti1516e

#endif
