// A column's type, copied as one 64-bit value.
//
// Saved form: 8 bytes, little-endian: the type code, three zero bytes, the 32-bit integer argument.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

// Character codes; columns produced by actions are number, key or text. `date` marks an input
// variable whose text column enters an expression as an elapsed time.
enum class MetaTypeColumn : unsigned char { number = 'F', key = 'K', text = 'U', date = 'D' };

class MetaInfo {
 public:
  MetaInfo() = default;
  MetaInfo(MetaTypeColumn type, int argument) : m_type(type), m_argument(argument) {}
  // From a saved form of memSize() bytes.
  explicit MetaInfo(const unsigned char* saved) { std::memcpy(this, saved, sizeof(MetaInfo)); }

  MetaTypeColumn type() const { return m_type; }
  int argument() const { return m_argument; }
  char code() const { return static_cast<char>(m_type); }

  void saveInBuffer(unsigned char* buffer) const { std::memcpy(buffer, this, sizeof(MetaInfo)); }
  static int memSize() { return 8; }

  friend bool operator==(const MetaInfo&, const MetaInfo&) = default;

 private:
  MetaTypeColumn m_type = MetaTypeColumn::text;
  unsigned char m_zero[3] = {0, 0, 0};
  std::int32_t m_argument = 0;
};

static_assert(sizeof(MetaInfo) == 8 && std::is_trivially_copyable_v<MetaInfo>);

// Columns that are neither number nor key are created as text.
inline MetaInfo metaOfOutput(MetaTypeColumn type) {
  const bool isKept = type == MetaTypeColumn::number || type == MetaTypeColumn::key;
  return {isKept ? type : MetaTypeColumn::text, 0};
}
