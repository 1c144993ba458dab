// A growing buffer whose bytes are not set when it grows, for compressed and decoded data.
//
// Memory is kept when the buffer shrinks.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/byte_cursor.h"
#include "base/spare_memory.h"

namespace kelvarin {

class ByteBuffer {
 public:
  unsigned char* data() { return m_data; }
  const unsigned char* data() const { return m_data; }
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
  // In memory of somebody else, as long as it suffices.
  ByteBuffer(unsigned char* target, std::size_t capacity) : m_data(target), m_capacity(capacity) {}
  ~ByteBuffer() {
    if (m_isOwner) {
      spare_memory::giveBack(m_data, m_capacity);
    }
  }
  ByteBuffer(ByteBuffer&& other) noexcept { swap(other); }
  ByteBuffer& operator=(ByteBuffer&& other) noexcept {
    ByteBuffer taken(std::move(other));
    swap(taken);
    return *this;
  }

 private:
  // Copies both ends, which meet or overlap.
  template <typename T>
  static void copyEnds(unsigned char* to, const unsigned char* from, std::size_t size) {
    storePacked(to, loadPacked<T>(from));
    storePacked(to + size - sizeof(T), loadPacked<T>(from + size - sizeof(T)));
  }

  void grow(std::size_t size) {
    ByteBuffer larger(m_reserve);
    larger.m_capacity = size + std::max(m_reserve, size / 8);
    larger.m_data = spare_memory::take(larger.m_capacity);
    larger.m_isOwner = true;
    if (m_size > 0) {
      std::memcpy(larger.m_data, m_data, m_size);
    }
    larger.m_size = m_size;
    swap(larger);
  }
  void swap(ByteBuffer& other) noexcept {
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_reserve, other.m_reserve);
    std::swap(m_isOwner, other.m_isOwner);
  }

  unsigned char* m_data = nullptr;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
  std::size_t m_reserve = 0;
  bool m_isOwner = false;
};

}  // namespace kelvarin
