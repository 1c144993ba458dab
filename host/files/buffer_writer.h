// A growing buffer of little-endian bytes, for what is put together in memory and written at once.
//
// Threads: one at a time.
#pragma once

#include <concepts>
#include <cstdint>
#include <string_view>
#include <vector>

#include <QString>
#include <QtEndian>

#include "host/contract/meta_info.h"

class BufferWriter {
 public:
  const unsigned char* data() const { return m_bytes.data(); }
  std::size_t size() const { return m_bytes.size(); }
  // Keeps the memory.
  void reset() { m_bytes.clear(); }

  template <std::integral Integer>
  void put(Integer value) {
    qToLittleEndian(value, grow(sizeof value));
  }
  void put(double value) { put(std::bit_cast<std::uint64_t>(value)); }

  void putBytes(const void* bytes, std::size_t size) {
    if (size > 0) {
      std::memcpy(grow(size), bytes, size);
    }
  }

  // A 32-bit byte count and UTF-8 bytes.
  void putText(std::string_view utf8) {
    put(static_cast<std::uint32_t>(utf8.size()));
    putBytes(utf8.data(), utf8.size());
  }
  void putText(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    putText(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())));
  }
  void putMeta(const MetaInfo& meta) {
    meta.saveInBuffer(grow(static_cast<std::size_t>(MetaInfo::memSize())));
  }

  // Overwrites an integer that was put earlier, such as a length that was not known then.
  template <std::integral Integer>
  void putAt(std::size_t offset, Integer value) {
    qToLittleEndian(value, m_bytes.data() + offset);
  }

 private:
  unsigned char* grow(std::size_t size) {
    m_bytes.resize(m_bytes.size() + size);
    return m_bytes.data() + m_bytes.size() - size;
  }

  std::vector<unsigned char> m_bytes;
};
