#ifndef RTI_VariableLengthData_h
#define RTI_VariableLengthData_h

#include <RTI/SpecificConfig.h>

namespace rti1516 {
// A run of bytes that either owns its storage or refers to the caller's.
//
// setDataPointer() makes it refer to memory that the caller keeps alive, which is how
// the RTI hands received values to callbacks without copying them; copying such an
// object always yields an owning copy. takeDataPointer() adopts memory that must have
// been allocated with new char[]. The move operations hand the bytes over without
// copying them.
class RTI_EXPORT VariableLengthData {
 public:
  VariableLengthData();
  // Copies; the caller may free inData afterwards.
  VariableLengthData(void const* inData, unsigned long inSize);
  VariableLengthData(VariableLengthData const& rhs);
  VariableLengthData(VariableLengthData&& rhs) noexcept;
  ~VariableLengthData();

  VariableLengthData& operator=(VariableLengthData const& rhs);
  VariableLengthData& operator=(VariableLengthData&& rhs) noexcept;

  // Valid until this object is destroyed or given other bytes.
  void const* data() const;
  unsigned long size() const;

  // Copies; reuses the current allocation when it is owned and large enough.
  void setData(void const* inData, unsigned long inSize);

  // Refers to the caller's bytes without copying; the caller keeps them alive.
  void setDataPointer(void* inData, unsigned long inSize);

  // Adopts the caller's bytes (allocated with new char[]).
  void takeDataPointer(void* inData, unsigned long inSize);

 private:
  void release() noexcept;

  char* _data;
  unsigned long _size;
  unsigned long _capacity;  // non-zero only when the bytes are owned
};
}  // namespace rti1516

#endif
