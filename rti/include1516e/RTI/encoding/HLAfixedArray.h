#ifndef RTI_HLAfixedArray_h
#define RTI_HLAfixedArray_h

#include <RTI/SpecificConfig.h>
#include <RTI/encoding/DataElement.h>
#include <RTI/encoding/EncodingConfig.h>

namespace rti1516e {
class VariableLengthData;
class HLAfixedArrayImplementation;

// A fixed number of elements of one type (copies of the prototype), each at the
// element's octet boundary, with no count in the encoding.
class RTI_EXPORT HLAfixedArray : public rti1516e::DataElement {
 public:
  explicit HLAfixedArray(const DataElement& protoType, size_t length);
  HLAfixedArray(HLAfixedArray const& rhs);
  virtual ~HLAfixedArray();
  virtual std::unique_ptr<DataElement> clone() const;
  virtual VariableLengthData encode() const;
  virtual void encode(VariableLengthData& inData) const;
  virtual void encodeInto(std::vector<Octet>& buffer) const;
  virtual void decode(VariableLengthData const& inData);
  virtual size_t decodeFrom(std::vector<Octet> const& buffer, size_t index);
  virtual size_t getEncodedLength() const;
  virtual unsigned int getOctetBoundary() const;
  virtual bool isSameTypeAs(DataElement const& inData) const;
  virtual bool hasPrototypeSameTypeAs(DataElement const& dataElement) const;
  virtual size_t size() const;
  virtual void set(size_t index, const DataElement& dataElement);
  virtual void setElementPointer(size_t index, DataElement* dataElement);
  virtual const DataElement& get(size_t index) const;
  DataElement const& operator[](size_t index) const;

 private:
  HLAfixedArray();
  HLAfixedArray& operator=(HLAfixedArray const& rhs);

 protected:
  HLAfixedArrayImplementation* _impl;
};
}  // namespace rti1516e

#endif
