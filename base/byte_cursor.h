// Little-endian values in byte buffers: loading and storing one, reading a sequence with its bounds
// checked, and appending to a growing buffer.
//
// Values are unaligned and packed without padding.
// Errors: a read past the end returns false and reads nothing.
#pragma once

#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

namespace kelvarin {

static_assert(std::endian::native == std::endian::little,
              "Files are little-endian, and so are the loads and stores below.");

using Bytes = std::span<const unsigned char>;

// Integers and doubles.
template <typename T>
concept PackedValue = std::is_arithmetic_v<T>;

template <PackedValue T>
T loadPacked(const unsigned char* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

template <PackedValue T>
void storePacked(unsigned char* bytes, T value) {
  std::memcpy(bytes, &value, sizeof value);
}

// Reads from the front of a buffer that it does not own.
class ByteReader {
 public:
  explicit ByteReader(Bytes bytes) : m_bytes(bytes) {}

  std::size_t position() const { return m_position; }
  std::size_t remaining() const { return m_bytes.size() - m_position; }

  template <PackedValue T>
  [[nodiscard]] bool read(T& value) {
    if (remaining() < sizeof value) {
      return false;
    }
    value = loadPacked<T>(m_bytes.data() + m_position);
    m_position += sizeof value;
    return true;
  }

  // A view of the next `size` bytes.
  [[nodiscard]] bool readBytes(std::size_t size, Bytes& bytes) {
    if (remaining() < size) {
      return false;
    }
    bytes = m_bytes.subspan(m_position, size);
    m_position += size;
    return true;
  }

  [[nodiscard]] bool skip(std::size_t size) {
    Bytes skipped;
    return readBytes(size, skipped);
  }

 private:
  Bytes m_bytes;
  std::size_t m_position = 0;
};

// Appends to a buffer that it does not own.
class ByteWriter {
 public:
  explicit ByteWriter(std::vector<unsigned char>& bytes) : m_bytes(bytes) {}

  template <PackedValue T>
  void put(T value) {
    unsigned char bytes[sizeof value];
    storePacked(bytes, value);
    m_bytes.insert(m_bytes.end(), bytes, bytes + sizeof value);
  }

  void putBytes(Bytes bytes) { m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end()); }
  void putZeros(std::size_t count) { m_bytes.resize(m_bytes.size() + count); }

 private:
  std::vector<unsigned char>& m_bytes;
};

inline std::string_view asText(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline Bytes asBytes(std::string_view text) {
  return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

}  // namespace kelvarin
