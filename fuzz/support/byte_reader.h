// The fuzz input read front to back as a small bytecode: every read takes the
// next bytes and an exhausted input reads zeros, so a seed can be written by
// hand in the order the harness asks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace brevo::fuzz {

class ByteReader {
 public:
  ByteReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  bool empty() const noexcept { return pos_ >= size_; }

  std::uint8_t Byte() noexcept { return empty() ? 0 : data_[pos_++]; }

  // Little-endian; missing bytes read as zero.
  template <class T>
  T Number() noexcept {
    unsigned char bytes[sizeof(T)] = {};
    for (unsigned char& b : bytes) b = Byte();
    T value;
    std::memcpy(&value, bytes, sizeof(T));
    return value;
  }

  // A length byte, then that many bytes (fewer at the end of the input).
  std::string Bytes() {
    const std::size_t wanted = Byte();
    const std::size_t taken = wanted < size_ - pos_ ? wanted : size_ - pos_;
    std::string bytes(reinterpret_cast<const char*>(data_ + pos_), taken);
    pos_ += taken;
    return bytes;
  }

  // One of n choices (n > 0).
  std::size_t Pick(std::size_t n) noexcept { return Byte() % n; }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t pos_ = 0;
};

}  // namespace brevo::fuzz
