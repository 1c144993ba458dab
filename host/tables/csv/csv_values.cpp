#include "host/tables/csv/csv_values.h"

#include <algorithm>
#include <bit>
#include <type_traits>

#include <QUtf8StringView>

#include "host/tables/csv/csv_short_decimals.h"

namespace kelvarin {

namespace {

struct NumberType {
  using Value = double;
  static constexpr Value kMissing = kNullNumber;
  static bool parse(std::string_view field, Value& value) { return parseNumber(field, value); }
  static bool parseInBlock(std::string_view field, Value& value) {
    return parsePlainDecimal(field, value) || parseNumber(field, value);
  }
};

// Refuses numbers that lose digits.
struct ExactNumberType {
  using Value = double;
  static constexpr Value kMissing = kNullNumber;
  static bool parse(std::string_view field, Value& value) {
    return parseNumber(field, value) && lostDigits(field, value) == LostDigits::none;
  }
  static bool parseInBlock(std::string_view field, Value& value) {
    return parsePlainDecimal<true>(field, value) ||
           (parseNumber(field, value) &&
            (!mayHaveLostDigits(field) || lostDigits(field, value) == LostDigits::none));
  }
};

struct KeyType {
  using Value = std::uint32_t;
  static constexpr Value kMissing = kNullKey;
  static bool parse(std::string_view field, Value& value) { return parseKey(field, value); }
  static bool parseInBlock(std::string_view field, Value& value) { return parse(field, value); }
};

// The text of a field; `unquoted` holds it where it is not a part of the field.
std::string_view textOf(const CsvField& field, char quote, std::string& unquoted) {
  if (!field.isQuoted) [[likely]] {
    return field.bytes;
  }
  const std::size_t next = field.bytes.find(quote, 1);
  if (next + 1 == field.bytes.size()) [[likely]] {
    return field.bytes.substr(1, next - 1);
  }
  unquoted.clear();
  appendQuotedText(field.bytes, quote, unquoted);
  return unquoted;
}

// Copies `size` bytes, of which at least kEager may be read and written, and says whether all of
// them are ASCII.
constexpr std::size_t kEager = 16;

bool copyShort(unsigned char* target, const char* bytes, std::size_t size) {
  // As many high bits as there are bytes, without a branch on a size that nobody can foretell.
  static constexpr unsigned char kHighBits[2 * kEager] = {0x80, 0x80, 0x80, 0x80, 0x80, 0x80,
                                                          0x80, 0x80, 0x80, 0x80, 0x80, 0x80,
                                                          0x80, 0x80, 0x80, 0x80};
  std::uint64_t words[2];
  std::uint64_t highBits[2];
  static_assert(sizeof words == kEager);
  std::memcpy(words, bytes, kEager);
  std::memcpy(target, words, kEager);
  std::memcpy(highBits, kHighBits + kEager - size, kEager);
  return ((words[0] & highBits[0]) | (words[1] & highBits[1])) == 0;
}

// Of more than kEager bytes.
bool isLongAscii(std::string_view text) {
  std::uint64_t all = 0;
  const auto look = [&](const char* bytes) {
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    all |= word;
  };
  for (std::size_t at = 0; at + sizeof all <= text.size(); at += sizeof all) {
    look(text.data() + at);
  }
  look(text.data() + text.size() - sizeof all);
  return (all & 0x8080808080808080u) == 0;
}

// For the texts of the first rows, with their counts.
std::size_t capacityForTexts(const CsvBlock& block, std::size_t index, long long rowCount) {
  const std::uint32_t* mark = block.marksOfRow(0) + index;
  std::size_t size = 4 * static_cast<std::size_t>(rowCount) + kEager;
  for (long long row = 0; row < rowCount; ++row, mark += block.marksInRow()) {
    size += (mark[1] & ~CsvBlock::kQuotedMark) - (mark[0] & ~CsvBlock::kQuotedMark) - 1;
  }
  return size;
}

}  // namespace

CsvValueRules::CsvValueRules(const CsvDialect& dialect, std::size_t columnCount)
    : m_quote(dialect.quote), m_numbers(dialect.numbers), m_isEmptyNull(columnCount == 1) {
  std::vector<std::string> texts = dialect.furtherNullTexts;
  texts.push_back(dialect.nullText);
  for (std::string& text : texts) {
    if (text.empty()) {
      m_isEmptyNull = true;
      continue;
    }
    std::string buffer;
    double number = 0;
    const auto plain = plainNumber(text, buffer);
    m_hasNullNumber = m_hasNullNumber || (plain && parseNumber(*plain, number));
    m_longestNull = std::max(m_longestNull, text.size());
    m_nullTexts.push_back(std::move(text));
  }
}

bool CsvValueRules::isNullText(std::string_view text) const {
  return std::ranges::find(m_nullTexts, text) != m_nullTexts.end();
}

bool isUtf8(std::string_view text) {
  return QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8();
}

FieldConverter::FieldConverter(const CsvBlock& block, std::size_t index, MetaTypeColumn type,
                               DigitRule digits, long long rowCount)
    : m_block(&block),
      m_index(index),
      m_digits(digits),
      m_memory(type, static_cast<std::size_t>(rowCount),
               fixedSizeOf(type) != 0 ? 0 : capacityForTexts(block, index, rowCount)) {}

std::optional<BadField> FieldConverter::convert(long long begin, long long end,
                                                const CsvValueRules& rules,
                                                BadFieldCount* tolerated) {
  switch (m_memory.type()) {
    case MetaTypeColumn::number:
      return m_digits == DigitRule::mustBeKept
                 ? parse<ExactNumberType>(begin, end, rules, tolerated, m_memory.numbers())
                 : parse<NumberType>(begin, end, rules, tolerated, m_memory.numbers());
    case MetaTypeColumn::key:
      return parse<KeyType>(begin, end, rules, tolerated, m_memory.keys());
    default:
      return copyTexts(begin, end, rules);
  }
}

template <typename Type>
std::optional<BadField> FieldConverter::parse(long long begin, long long end,
                                              const CsvValueRules& rules, BadFieldCount* tolerated,
                                              typename Type::Value* values) {
  constexpr long long kRows = kShortDecimalsAtOnce;
  for (long long row = begin; row < end; row += kRows) {
    const auto count = static_cast<int>(std::min(kRows, end - row));
    std::uint64_t left = ~std::uint64_t{0} >> (kRows - count);
    if constexpr (std::is_same_v<typename Type::Value, double>) {
      if (!rules.hasNullNumber() && rules.areNumbersPlain()) {
        left &= ~parseShortDecimals(*m_block, m_index, row, static_cast<std::size_t>(count),
                                    values + row);
      }
    }
    for (; left != 0; left &= left - 1) {
      const long long next = row + std::countr_zero(left);
      if (auto bad = parseField<Type>(next, rules, tolerated, values[next])) {
        return bad;
      }
    }
  }
  return std::nullopt;
}

template <typename Type>
std::optional<BadField> FieldConverter::parseField(long long row, const CsvValueRules& rules,
                                                   BadFieldCount* tolerated,
                                                   typename Type::Value& value) {
  const CsvField field = m_block->field(row, m_index);
  if (!field.isQuoted && rules.areNumbersPlain() && Type::parseInBlock(field.bytes, value))
      [[likely]] {
    if (!rules.hasNullNumber() || !rules.isNull(field)) [[likely]] {
      return std::nullopt;
    }
  }
  value = Type::kMissing;
  if (rules.isNull(field)) {
    return std::nullopt;
  }
  const std::string_view text = textOf(field, rules.quote(), m_unquoted);
  const bool mayBeOther = field.isQuoted || !rules.areNumbersPlain();
  if (text.empty() || (mayBeOther && parseQuotedOrOther<Type>(text, rules, value))) {
    return std::nullopt;
  }
  if (tolerated == nullptr) {
    return BadField{row, std::string(text)};
  }
  value = Type::kMissing;
  if (tolerated->count++ == 0) {
    tolerated->firstLine = m_block->linesBefore(row);
  }
  return std::nullopt;
}

template <typename Type>
bool FieldConverter::parseQuotedOrOther(std::string_view text, const CsvValueRules& rules,
                                        typename Type::Value& value) {
  const auto plain = rules.plainNumber(text, m_plain);
  return plain && Type::parse(*plain, value);
}

std::optional<BadField> FieldConverter::copyTexts(long long begin, long long end,
                                                  const CsvValueRules& rules) {
  std::string unquoted;
  unsigned char* next = m_memory.texts() + m_textSize;
  std::uint32_t* position = m_memory.positions() + begin;
  const std::uint32_t* mark = m_block->marksOfRow(begin) + m_index;
  for (long long row = begin; row < end; ++row, mark += m_block->marksInRow()) {
    *position++ = static_cast<std::uint32_t>(next - m_memory.texts());
    const CsvField field = m_block->fieldAt(mark);
    if (rules.isNull(field)) [[unlikely]] {
      next = putNullText(next);
      continue;
    }
    bool isAscii = false;
    const std::string_view text = textOf(field, rules.quote(), unquoted);
    if (text.size() <= kEager && text.data() != unquoted.data()) [[likely]] {
      const auto length = static_cast<std::uint32_t>(text.size());
      std::memcpy(next, &length, 4);
      isAscii = copyShort(next + 4, text.data(), text.size());
      next += 4 + text.size();
    } else {
      next = putText(next, text.data(), text.size());
      isAscii = text.size() > kEager && isLongAscii(text);
    }
    if (!isAscii && !isUtf8(text)) [[unlikely]] {
      return BadField{row, std::string(text)};
    }
  }
  m_textSize = static_cast<std::size_t>(next - m_memory.texts());
  return std::nullopt;
}

void TypeInference::look(const CsvBlock& block, std::size_t index, const CsvValueRules& rules,
                         long long rowCount, long long firstLine) {
  std::string unquoted;
  std::string buffer;
  const long long end = std::min(rowCount, block.rowCount());
  for (long long row = 0; row < end && !m_hasText; ++row) {
    const CsvField field = block.field(row, index);
    if (rules.isNull(field)) {
      continue;
    }
    const std::string_view text = textOf(field, rules.quote(), unquoted);
    if (text.empty()) {
      continue;
    }
    double number = 0;
    const auto plain = rules.plainNumber(text, buffer);
    const bool isNumber = plain && parseNumber(*plain, number);
    const bool isPlain =
        isNumber && (!mayHaveLostDigits(*plain) || lostDigits(*plain, number) == LostDigits::none);
    const bool isForPeople = !isNumber && (isNumberForPeople(text) || parseNumber(text, number));
    m_hasNumber = m_hasNumber || isNumber || isForPeople;
    m_hasText = !isNumber && !isForPeople && !isMissingWord(text);
    if (!isPlain && !m_forText) {
      m_forText = FieldForText{firstLine + block.linesBefore(row), std::string(text)};
    }
  }
}

}  // namespace kelvarin
