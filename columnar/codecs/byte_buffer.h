// A growing buffer whose bytes are not set when it grows, for compressed and decoded data.
//
// Memory is kept when the buffer shrinks.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>

#include "base/byte_cursor.h"

namespace kelvarin {

class ByteBuffer {
 public:
  unsigned char* data() { return m_bytes.get(); }
  const unsigned char* data() const { return m_bytes.get(); }
  std::size_t size() const { return m_size; }
  bool isEmpty() const { return m_size == 0; }
  void clear() { m_size = 0; }
  Bytes bytes() const { return {data(), m_size}; }
  Bytes bytes(std::size_t offset) const { return bytes().subspan(offset); }

  // The first bytes stay, new ones are unset. The capacity grows by what is needed and a reserve.
  void resize(std::size_t size) {
    if (size > m_capacity) {
      grow(size);
    }
    m_size = size;
  }

  // Appends `size` unset bytes and returns their address.
  unsigned char* append(std::size_t size) {
    const std::size_t offset = m_size;
    resize(m_size + size);
    return data() + offset;
  }
  void append(Bytes bytes) {
    if (!bytes.empty()) {
      std::memcpy(append(bytes.size()), bytes.data(), bytes.size());
    }
  }
  // The same for the short texts of a row, without a call.
  void appendShort(const unsigned char* bytes, std::size_t size) {
    unsigned char* to = append(size);
    if (size > 16) {
      std::memcpy(to, bytes, size);
    } else if (size >= 8) {
      copyEnds<std::uint64_t>(to, bytes, size);
    } else if (size >= 4) {
      copyEnds<std::uint32_t>(to, bytes, size);
    } else if (size > 0) {
      to[0] = bytes[0];
      to[size / 2] = bytes[size / 2];
      to[size - 1] = bytes[size - 1];
    }
  }
  template <PackedValue T>
  void put(T value) {
    storePacked(append(sizeof value), value);
  }

  // Frees the memory.
  void release() { *this = ByteBuffer(m_reserve); }

  ByteBuffer() = default;
  // `reserve` is the spare capacity that is taken whenever the buffer grows.
  explicit ByteBuffer(std::size_t reserve) : m_reserve(reserve) {}

 private:
  // Copies both ends, which meet or overlap.
  template <typename T>
  static void copyEnds(unsigned char* to, const unsigned char* from, std::size_t size) {
    storePacked(to, loadPacked<T>(from));
    storePacked(to + size - sizeof(T), loadPacked<T>(from + size - sizeof(T)));
  }

  void grow(std::size_t size) {
    const std::size_t capacity = size + std::max(m_reserve, size / 8);
    std::unique_ptr<unsigned char[]> larger(new unsigned char[capacity]);
    if (m_size > 0) {
      std::memcpy(larger.get(), m_bytes.get(), m_size);
    }
    m_bytes = std::move(larger);
    m_capacity = capacity;
  }

  std::unique_ptr<unsigned char[]> m_bytes;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
  std::size_t m_reserve = 0;
};

}  // namespace kelvarin
