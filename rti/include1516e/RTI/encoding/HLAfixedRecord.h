#ifndef RTI_HLAfixedRecord_h
#define RTI_HLAfixedRecord_h

#include <RTI/SpecificConfig.h>
#include <RTI/encoding/DataElement.h>
#include <RTI/encoding/EncodingConfig.h>

namespace rti1516e {
class VariableLengthData;
class HLAfixedRecordImplementation;

// A record of fields in the order they were appended, each at its own octet boundary;
// the record's boundary is the largest of its fields'. Fields appended by pointer stay
// the caller's and are decoded into in place. Out-of-range indexes and fields of another
// type throw EncoderException.
class RTI_EXPORT HLAfixedRecord : public rti1516e::DataElement {
 public:
  HLAfixedRecord();
  HLAfixedRecord(HLAfixedRecord const& rhs);
  virtual ~HLAfixedRecord();
  virtual std::unique_ptr<DataElement> clone() const;
  virtual VariableLengthData encode() const;
  virtual void encode(VariableLengthData& inData) const;
  virtual void encodeInto(std::vector<Octet>& buffer) const;
  virtual void decode(VariableLengthData const& inData);
  virtual size_t decodeFrom(std::vector<Octet> const& buffer, size_t index);
  virtual size_t getEncodedLength() const;
  virtual unsigned int getOctetBoundary() const;
  virtual bool isSameTypeAs(DataElement const& inData) const;
  virtual bool hasElementSameTypeAs(size_t index, DataElement const& inData) const;
  virtual size_t size() const;
  virtual void appendElement(const DataElement& dataElement);
  virtual void appendElementPointer(DataElement* dataElement);
  virtual void set(size_t index, const DataElement& dataElement);
  virtual void setElementPointer(size_t index, DataElement* dataElement);
  virtual const DataElement& get(size_t index) const;
  DataElement const& operator[](size_t index) const;

 private:
  HLAfixedRecord& operator=(HLAfixedRecord const& rhs);

 protected:
  HLAfixedRecordImplementation* _impl;
};
}  // namespace rti1516e

#endif
