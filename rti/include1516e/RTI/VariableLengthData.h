#ifndef RTI_VariableLengthData_h
#define RTI_VariableLengthData_h

#include <RTI/SpecificConfig.h>
#include <cstddef>

namespace rti1516e {
// How adopted bytes are freed; without one they are freed with delete[].
typedef void (*VariableLengthDataDeleteFunction)(void* data);

// A run of bytes that either owns its storage or refers to the caller's.
//
// setDataPointer() refers to memory the caller keeps alive (no copy); copying such an
// object always yields an owning copy. takeDataPointer() adopts the caller's memory and
// frees it with the given function, or delete[] when there is none.
class RTI_EXPORT VariableLengthData {
 public:
  VariableLengthData();
  // Copies; the caller may free inData afterwards.
  VariableLengthData(void const* inData, size_t inSize);
  VariableLengthData(VariableLengthData const& rhs);
  VariableLengthData(VariableLengthData&& rhs) noexcept;
  ~VariableLengthData();

  VariableLengthData& operator=(VariableLengthData const& rhs);
  VariableLengthData& operator=(VariableLengthData&& rhs) noexcept;

  // Valid until this object is destroyed or given other bytes.
  void const* data() const;
  size_t size() const;

  // Copies; reuses the current allocation when it is owned and large enough.
  void setData(void const* inData, size_t inSize);
  // Refers to the caller's bytes without copying; the caller keeps them alive.
  void setDataPointer(void* inData, size_t inSize);
  // Adopts the caller's bytes.
  void takeDataPointer(void* inData, size_t inSize, VariableLengthDataDeleteFunction func = 0);

 private:
  void release() noexcept;

  char* _data;
  size_t _size;
  size_t _capacity;  // non-zero only when the bytes were allocated here
  bool _adopted;     // the bytes came from takeDataPointer and are freed by _deleter
  VariableLengthDataDeleteFunction _deleter;
};
}  // namespace rti1516e

#endif
