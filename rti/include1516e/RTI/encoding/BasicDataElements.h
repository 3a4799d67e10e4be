#ifndef RTI_BasicDataElements_h
#define RTI_BasicDataElements_h

#include <RTI/SpecificConfig.h>
#include <RTI/encoding/DataElement.h>
#include <RTI/encoding/EncodingConfig.h>
#include <string>

// The basic types of the HLA's encoding. Each holds its value in itself or, given a
// pointer, in the caller's variable, which set() and decoding then write to: that is how
// an application decodes a record straight into its own fields.
//
// Sizes and octet boundaries: HLAoctet, HLAbyte, HLAASCIIchar 1; HLAoctetPair*,
// HLAinteger16*, HLAunicodeChar 2 (a UTF-16 code unit, big-endian); HLAinteger32*,
// HLAfloat32*, HLAboolean (an HLAinteger32BE, 0 or 1) 4; HLAinteger64*, HLAfloat64* 8;
// the strings are variable arrays (32-bit big-endian count, then the characters) with
// boundary 4. HLAunicodeString writes characters beyond U+FFFF as surrogate pairs.
#define RTI1516E_ENCODING_HELPER_CLASS(EncodableDataType, SimpleDataType)      \
  class EncodableDataType##Implementation;                                     \
  class RTI_EXPORT EncodableDataType : public rti1516e::DataElement {          \
   public:                                                                     \
    EncodableDataType();                                                       \
    explicit EncodableDataType(SimpleDataType const& inData);                  \
    /* Refers to the caller's variable; a null pointer means our own. */       \
    explicit EncodableDataType(SimpleDataType* inData);                        \
    EncodableDataType(EncodableDataType const& rhs);                           \
    virtual ~EncodableDataType();                                              \
    /* Copies the value (into the caller's variable, if referring). */         \
    EncodableDataType& operator=(EncodableDataType const& rhs);                \
    virtual std::unique_ptr<DataElement> clone() const;                        \
    virtual VariableLengthData encode() const;                                 \
    virtual void encode(VariableLengthData& inData) const;                     \
    virtual void encodeInto(std::vector<Octet>& buffer) const;                 \
    virtual void decode(VariableLengthData const& inData);                     \
    virtual size_t decodeFrom(std::vector<Octet> const& buffer, size_t index); \
    virtual size_t getEncodedLength() const;                                   \
    virtual unsigned int getOctetBoundary() const;                             \
    virtual Integer64 hash() const;                                            \
    /* A null pointer throws EncoderException. */                              \
    virtual void setDataPointer(SimpleDataType* inData);                       \
    virtual void set(SimpleDataType inData);                                   \
    virtual SimpleDataType get() const;                                        \
    EncodableDataType& operator=(SimpleDataType rhs);                          \
    operator SimpleDataType() const;                                           \
                                                                               \
   protected:                                                                  \
    EncodableDataType##Implementation* _impl;                                  \
  };

namespace rti1516e {
class VariableLengthData;

RTI1516E_ENCODING_HELPER_CLASS(HLAASCIIchar, char)
RTI1516E_ENCODING_HELPER_CLASS(HLAASCIIstring, std::string)
RTI1516E_ENCODING_HELPER_CLASS(HLAboolean, bool)
RTI1516E_ENCODING_HELPER_CLASS(HLAbyte, Octet)
RTI1516E_ENCODING_HELPER_CLASS(HLAfloat32BE, float)
RTI1516E_ENCODING_HELPER_CLASS(HLAfloat32LE, float)
RTI1516E_ENCODING_HELPER_CLASS(HLAfloat64BE, double)
RTI1516E_ENCODING_HELPER_CLASS(HLAfloat64LE, double)
RTI1516E_ENCODING_HELPER_CLASS(HLAinteger16LE, Integer16)
RTI1516E_ENCODING_HELPER_CLASS(HLAinteger16BE, Integer16)
RTI1516E_ENCODING_HELPER_CLASS(HLAinteger32BE, Integer32)
RTI1516E_ENCODING_HELPER_CLASS(HLAinteger32LE, Integer32)
RTI1516E_ENCODING_HELPER_CLASS(HLAinteger64BE, Integer64)
RTI1516E_ENCODING_HELPER_CLASS(HLAinteger64LE, Integer64)
RTI1516E_ENCODING_HELPER_CLASS(HLAoctet, Octet)
RTI1516E_ENCODING_HELPER_CLASS(HLAoctetPairBE, OctetPair)
RTI1516E_ENCODING_HELPER_CLASS(HLAoctetPairLE, OctetPair)
RTI1516E_ENCODING_HELPER_CLASS(HLAunicodeChar, wchar_t)
RTI1516E_ENCODING_HELPER_CLASS(HLAunicodeString, std::wstring)
}  // namespace rti1516e

#undef RTI1516E_ENCODING_HELPER_CLASS

#endif
