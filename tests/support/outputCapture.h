#pragma once
// Catches what the toolkit's output streams print while it lives.
#include <string>

#include "dtOutput.h"

class OutputCapture {
 public:
  explicit OutputCapture(DtOutputStream& stream) : stream_(stream) {
    oldSink_ = stream.sink();
    oldUser_ = stream.sinkUser();
    stream.setSink(&OutputCapture::append, &text_);
  }
  ~OutputCapture() { stream_.setSink(oldSink_, oldUser_); }
  OutputCapture(const OutputCapture&) = delete;
  OutputCapture& operator=(const OutputCapture&) = delete;

  const std::string& text() const { return text_; }
  void clear() { text_.clear(); }

 private:
  static void append(void* user, const char* text, size_t length) {
    static_cast<std::string*>(user)->append(text, length);
  }
  DtOutputStream& stream_;
  DtOutputStream::Sink oldSink_;
  void* oldUser_;
  std::string text_;
};
