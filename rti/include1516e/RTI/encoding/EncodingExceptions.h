#ifndef RTI_EncodingExceptions_h
#define RTI_EncodingExceptions_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <RTI/encoding/EncodingConfig.h>

namespace rti1516e {
// What every encoding helper throws: bytes that do not hold the type (too short, a count
// larger than the bytes left, an unknown discriminant), or a misuse (an index out of
// range, an element of another type).
class RTI_EXPORT EncoderException : public Exception {
 public:
  explicit EncoderException(std::wstring const& message) noexcept;
  std::wstring what() const noexcept override;

 private:
  std::wstring _msg;
};
}  // namespace rti1516e

#endif
