// A growable byte array whose growth never zero-fills: message queues and socket
// buffers append and drop bytes at high rates and must not pay for initialisation.
#ifndef VCRTI_BYTE_BUFFER_H
#define VCRTI_BYTE_BUFFER_H

#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

namespace vcrti {

class ByteBuffer {
 public:
  ByteBuffer() = default;
  ByteBuffer(ByteBuffer&&) noexcept = default;
  ByteBuffer& operator=(ByteBuffer&&) noexcept = default;
  ByteBuffer(const ByteBuffer&) = delete;
  ByteBuffer& operator=(const ByteBuffer&) = delete;

  unsigned char* data() noexcept { return buf_.get(); }
  const unsigned char* data() const noexcept { return buf_.get(); }
  std::size_t size() const noexcept { return size_; }
  std::size_t capacity() const noexcept { return cap_; }
  bool empty() const noexcept { return size_ == 0; }

  void clear() noexcept { size_ = 0; }

  void reserve(std::size_t n) {
    if (n <= cap_) return;
    std::size_t cap = cap_ ? cap_ : 256;
    while (cap < n) cap *= 2;
    std::unique_ptr<unsigned char[]> b(new unsigned char[cap]);
    if (size_) std::memcpy(b.get(), buf_.get(), size_);
    buf_ = std::move(b);
    cap_ = cap;
  }

  // Extends the contents by n bytes and returns where they start; the caller fills them.
  unsigned char* grow(std::size_t n) {
    reserve(size_ + n);
    unsigned char* p = buf_.get() + size_;
    size_ += n;
    return p;
  }

  void append(const void* p, std::size_t n) {
    if (n) std::memcpy(grow(n), p, n);
  }

  void resize(std::size_t n) {
    reserve(n);
    size_ = n;
  }

  // Drops the first n bytes.
  void consume(std::size_t n) noexcept {
    if (n >= size_) {
      size_ = 0;
      return;
    }
    std::memmove(buf_.get(), buf_.get() + n, size_ - n);
    size_ -= n;
  }

  void swap(ByteBuffer& other) noexcept {
    buf_.swap(other.buf_);
    std::swap(size_, other.size_);
    std::swap(cap_, other.cap_);
  }

 private:
  std::unique_ptr<unsigned char[]> buf_;
  std::size_t size_ = 0;
  std::size_t cap_ = 0;
};

}  // namespace vcrti

#endif
