#include "host/tables/csv/csv_values.h"

#include <algorithm>

#include <QUtf8StringView>

#include "host/tables/csv/csv_number.h"

namespace kelvarin {

namespace {

struct NumberType {
  using Value = double;
  static constexpr Value kMissing = kNullNumber;
  static bool parse(std::string_view field, Value& value) { return parseNumber(field, value); }
  static bool parseInBlock(std::string_view field, Value& value) {
    return parseShortDecimal(field, value) || parseNumber(field, value);
  }
};

struct KeyType {
  using Value = std::uint32_t;
  static constexpr Value kMissing = kNullKey;
  static bool parse(std::string_view field, Value& value) { return parseKey(field, value); }
  static bool parseInBlock(std::string_view field, Value& value) { return parse(field, value); }
};

// The text of a field; `unquoted` holds it when it is quoted.
std::string_view textOf(const CsvField& field, char quote, std::string& unquoted) {
  if (!field.isQuoted) [[likely]] {
    return field.bytes;
  }
  unquoted.clear();
  appendQuotedText(field.bytes, quote, unquoted);
  return unquoted;
}

template <typename Type>
std::optional<BadField> parseFields(const CsvBlock& block, std::size_t index,
                                    const CsvNullRule& nulls, typename Type::Value* values,
                                    BadFieldCount& badFields) {
  std::string unquoted;
  const std::uint32_t* mark = block.marksOfRow(0) + index;
  for (long long row = 0; row < block.rowCount(); ++row, mark += block.marksInRow()) {
    const CsvField field = block.fieldAt(mark);
    if (!field.isQuoted && Type::parseInBlock(field.bytes, values[row])) [[likely]] {
      if (nulls.nullText.empty() || !nulls.isNullText(field)) [[likely]] {
        continue;
      }
    }
    values[row] = Type::kMissing;
    const std::string_view text = textOf(field, nulls.quote, unquoted);
    if (text.empty() || nulls.isNullText(field)) {
      continue;
    }
    if (field.isQuoted && Type::parse(text, values[row])) {
      continue;
    }
    if (!badFields.isTolerated) {
      return BadField{row, std::string(text)};
    }
    values[row] = Type::kMissing;
    badFields.firstLine = badFields.count == 0 ? block.lineOfRow(row) : badFields.firstLine;
    ++badFields.count;
  }
  return std::nullopt;
}

// Copies `size` bytes, of which at least kEager may be read and written, and says whether all of
// them are ASCII.
constexpr std::size_t kEager = 16;

bool copyShort(unsigned char* place, const char* bytes, std::size_t size) {
  std::uint64_t words[2];
  static_assert(sizeof words == kEager);
  std::memcpy(words, bytes, kEager);
  std::memcpy(place, words, kEager);
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  const std::uint64_t low = size >= 8 ? words[0] : words[0] & ((std::uint64_t{1} << 8 * size) - 1);
  const std::uint64_t high =
      size <= 8 ? 0 : words[1] & (~std::uint64_t{0} >> 8 * (kEager - size));
  return ((low | high) & kHighBits) == 0;
}

std::size_t bytesOfTexts(const CsvBlock& block, std::size_t index) {
  const std::uint32_t* mark = block.marksOfRow(0) + index;
  std::size_t size = 4 * static_cast<std::size_t>(block.rowCount());
  for (long long row = 0; row < block.rowCount(); ++row, mark += block.marksInRow()) {
    size += (mark[1] & ~CsvBlock::kQuotedMark) - (mark[0] & ~CsvBlock::kQuotedMark) - 1;
  }
  return size;
}

std::optional<BadField> copyTexts(const CsvBlock& block, std::size_t index,
                                  const CsvNullRule& nulls, ValueColumn& column) {
  std::string unquoted;
  unsigned char* place = column.replace(bytesOfTexts(block, index) + kEager);
  const std::uint32_t* mark = block.marksOfRow(0) + index;
  for (long long row = 0; row < block.rowCount(); ++row, mark += block.marksInRow()) {
    const CsvField field = block.fieldAt(mark);
    if (nulls.isNullText(field)) [[unlikely]] {
      place = putNullText(place);
      continue;
    }
    bool isAscii = false;
    std::string_view text = field.bytes;
    if (!field.isQuoted && text.size() <= kEager) [[likely]] {
      const auto length = static_cast<std::uint32_t>(text.size());
      std::memcpy(place, &length, 4);
      isAscii = copyShort(place + 4, text.data(), text.size());
      place += 4 + text.size();
    } else {
      text = textOf(field, nulls.quote, unquoted);
      place = putText(place, text.data(), text.size());
    }
    if (!isAscii && !isUtf8(text)) [[unlikely]] {
      return BadField{row, std::string(text)};
    }
  }
  return std::nullopt;
}

}  // namespace

bool isUtf8(std::string_view text) {
  return QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8();
}

std::optional<BadField> convertFields(const CsvBlock& block, std::size_t index,
                                      const CsvNullRule& nulls, ValueColumn& column,
                                      BadFieldCount& badFields) {
  const auto rowCount = static_cast<std::size_t>(block.rowCount());
  switch (column.type()) {
    case MetaTypeColumn::number:
      return parseFields<NumberType>(block, index, nulls, column.replaceNumbers(rowCount),
                                     badFields);
    case MetaTypeColumn::key:
      return parseFields<KeyType>(block, index, nulls, column.replaceKeys(rowCount), badFields);
    default:
      return copyTexts(block, index, nulls, column);
  }
}

void TypeInference::look(const CsvBlock& block, std::size_t index, const CsvNullRule& nulls,
                         long long rowCount) {
  std::string unquoted;
  const long long end = std::min(rowCount, block.rowCount());
  for (long long row = 0; row < end && !m_hasText; ++row) {
    const CsvField field = block.field(row, index);
    const std::string_view text = textOf(field, nulls.quote, unquoted);
    if (text.empty() || nulls.isNullText(field)) {
      continue;
    }
    double number;
    m_hasText = !parseNumber(text, number);
    m_hasNumber = m_hasNumber || !m_hasText;
  }
}

}  // namespace kelvarin
