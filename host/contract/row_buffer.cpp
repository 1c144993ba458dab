#include "host/contract/row_buffer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "host/contract/column_bytes.h"

namespace {

unsigned char* putText(unsigned char* out, const char* bytes, std::size_t size) {
  const auto length = static_cast<std::uint32_t>(size);
  std::memcpy(out, &length, sizeof length);
  std::memcpy(out + sizeof length, bytes, size);
  return out + sizeof length + size;
}

// Half a surrogate pair becomes U+FFFD.
QByteArray utf8Of(const QString& text) {
  if (text.isValidUtf16()) {
    return text.toUtf8();
  }
  QString repaired = text;
  for (qsizetype i = 0; i < repaired.size(); ++i) {
    const bool isPair = repaired[i].isHighSurrogate() && i + 1 < repaired.size() &&
                        repaired[i + 1].isLowSurrogate();
    if (isPair) {
      ++i;
    } else if (repaired[i].isSurrogate()) {
      repaired[i] = QChar::ReplacementCharacter;
    }
  }
  return repaired.toUtf8();
}

}  // namespace

RowBuffer::RowBuffer(int size) {
  const auto first = static_cast<std::size_t>(std::max(size, 64));
  m_chunks.push_back({std::make_unique<unsigned char[]>(first), first});
}

RowBuffer::~RowBuffer() = default;

void RowBuffer::reset() {
  m_chunkInUse = 0;
  m_used = 0;
}

void RowBuffer::deepReset(long long bytesKept) {
  reset();
  auto kept = static_cast<long long>(m_chunks.front().size);
  std::size_t count = 1;
  while (count < m_chunks.size() &&
         kept + static_cast<long long>(m_chunks[count].size) <= bytesKept) {
    kept += static_cast<long long>(m_chunks[count].size);
    ++count;
  }
  m_chunks.resize(count);
}

unsigned char* RowBuffer::allocateInNextChunk(std::size_t size) {
  ++m_chunkInUse;
  while (m_chunkInUse < m_chunks.size() && m_chunks[m_chunkInUse].size < size) {
    ++m_chunkInUse;
  }
  if (m_chunkInUse == m_chunks.size()) {
    const std::size_t chunk = std::max(size, m_chunks.back().size * 2);
    m_chunks.push_back({std::make_unique<unsigned char[]>(chunk), chunk});
  }
  m_used = size;
  return m_chunks[m_chunkInUse].bytes.get();
}

unsigned char* bytesFromDouble(RowBuffer* buffer, double value, int alignment) {
  const std::size_t step = alignment > 1 ? static_cast<std::size_t>(alignment) : 1;
  unsigned char* bytes = buffer->allocate(sizeof value + step - 1);
  const auto address = reinterpret_cast<std::uintptr_t>(bytes);
  bytes += (step - address % step) % step;
  std::memcpy(bytes, &value, sizeof value);
  return bytes;
}

unsigned char* bytesFromKey(RowBuffer* buffer, unsigned int key) {
  unsigned char* bytes = buffer->allocate(sizeof key);
  std::memcpy(bytes, &key, sizeof key);
  return bytes;
}

unsigned char* bytesFromUtf8(RowBuffer* buffer, std::string_view text) {
  unsigned char* bytes = buffer->allocate(4 + text.size());
  putText(bytes, text.data(), text.size());
  return bytes;
}

unsigned char* bytesFromQString(RowBuffer* buffer, const QString& text) {
  if (text.isNull()) {
    return bytesOfNullText();
  }
  const QByteArray utf8 = utf8Of(text);
  return bytesFromUtf8(buffer, {utf8.constData(), static_cast<std::size_t>(utf8.size())});
}

unsigned char* bytesFromQString(unsigned char* out, const QString& text) {
  if (text.isNull()) {
    std::memcpy(out, bytesOfNullText(), 4);
    return out + 4;
  }
  const QByteArray utf8 = utf8Of(text);
  return putText(out, utf8.constData(), static_cast<std::size_t>(utf8.size()));
}

std::size_t bytesNeeded(const QString& text) {
  return 4 + (text.isNull() ? 0 : static_cast<std::size_t>(utf8Of(text).size()));
}

unsigned char* bytesOfNullText() {
  static unsigned char nullText[4] = {0xFF, 0xFF, 0xFF, 0xFF};
  return nullText;
}

QString qStringFromBytes(const unsigned char* bytes) {
  if (kelvarin::isNullText(bytes)) {
    return {};
  }
  const std::string_view text = kelvarin::textFromBytes(bytes);
  const QString result = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  return result.isNull() ? QStringLiteral("") : result;
}
