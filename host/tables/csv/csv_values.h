// From the fields of one column of a block to the bytes of values.
//
// An unquoted field that is a null text is missing, and so is every empty field of a number or key
// column.
// Errors: the row, to be turned into a message by the caller.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/tables/csv/csv_block.h"
#include "host/tables/csv/csv_dialect.h"
#include "host/tables/csv/csv_number.h"
#include "host/tables/files/column_memory.h"

namespace kelvarin {

// What a number column makes of numbers that lose digits.
enum class DigitRule {
  mayBeLost,   // rounds them, as the user has declared the column
  mustBeKept,  // takes them for misfits, since the column's type was inferred
};

// A field that does not fit its column's type, or is not UTF-8.
struct BadField {
  long long row;  // in the block
  std::string text;
};

// The fields that are no number or key, and were read as missing.
struct BadFieldCount {
  long long count = 0;
  long long firstLine = 0;  // where the record of the first one begins
};

// What fields mean beyond their text: missing values, and how numbers are written.
class CsvValueRules {
 public:
  CsvValueRules(const CsvDialect& dialect, std::size_t columnCount);

  char quote() const { return m_quote; }
  // A null text would be a number.
  bool hasNullNumber() const { return m_hasNullNumber; }
  bool areNumbersPlain() const { return m_numbers.isPlain(); }

  bool isNull(const CsvField& field) const {
    if (field.isQuoted) [[unlikely]] {
      return field.bytes.empty();  // it is not in the file
    }
    return field.bytes.empty() ? m_isEmptyNull
                               : field.bytes.size() <= m_longestNull && isNullText(field.bytes);
  }
  // A number as its parser reads it, in `buffer` where that is another text; none where it is
  // written otherwise than the numbers of the file.
  std::optional<std::string_view> plainNumber(std::string_view text, std::string& buffer) const {
    if (areNumbersPlain()) [[likely]] {
      return text;
    }
    return toPlainNumber(text, m_numbers, buffer) ? std::optional<std::string_view>(buffer)
                                                  : std::nullopt;
  }

 private:
  bool isNullText(std::string_view text) const;

  char m_quote;
  CsvNumberFormat m_numbers;
  std::vector<std::string> m_nullTexts;  // none of them empty
  std::size_t m_longestNull = 0;
  bool m_isEmptyNull;  // an empty line, too, which is a missing value in a file with one column
  bool m_hasNullNumber = false;
};

// Fills one column with the fields of a block, some rows after the others. Bad fields become
// missing and are counted when they are tolerated; else the first one ends the work.
class FieldConverter {
 public:
  // Reserves memory for the first `rowCount` rows of `block`.
  FieldConverter(const CsvBlock& block, std::size_t index, MetaTypeColumn type, DigitRule digits,
                 long long rowCount);

  // The rows from `begin`, where it ended before, to before `end`. `tolerated` counts bad fields,
  // with the lines before them in the block; null: there may be none.
  std::optional<BadField> convert(long long begin, long long end, const CsvValueRules& rules,
                                  BadFieldCount* tolerated);
  // The rows so far.
  BatchColumn column() const { return m_memory.column(m_textSize); }

 private:
  template <typename Type>
  std::optional<BadField> parse(long long begin, long long end, const CsvValueRules& rules,
                                BadFieldCount* tolerated, typename Type::Value* values);
  template <typename Type>
  std::optional<BadField> parseField(long long row, const CsvValueRules& rules,
                                     BadFieldCount* tolerated, typename Type::Value& value);
  template <typename Type>
  bool parseQuotedOrOther(std::string_view text, const CsvValueRules& rules,
                          typename Type::Value& value);
  std::optional<BadField> copyTexts(long long begin, long long end, const CsvValueRules& rules);

  const CsvBlock* m_block;
  std::size_t m_index;
  DigitRule m_digits;
  ColumnMemory m_memory;
  std::size_t m_textSize = 0;
  std::string m_unquoted;
  std::string m_plain;  // a number as its parser reads it
};

bool isUtf8(std::string_view text);

// Why a column that looks like numbers is text: the first field that decided it.
struct FieldForText {
  long long line;
  std::string text;
};

// Infers whether the fields of a column are numbers.
class TypeInference {
 public:
  // Looks at no more than `rowCount` fields. The block begins in `firstLine`.
  void look(const CsvBlock& block, std::size_t index, const CsvValueRules& rules,
            long long rowCount, long long firstLine);
  MetaTypeColumn type() const {
    return m_hasNumber && !m_hasText && !m_forText ? MetaTypeColumn::number : MetaTypeColumn::text;
  }
  // A number that would lose digits, one written for people, or a word for a missing one, where all
  // fields are such or numbers; else null.
  const FieldForText* fieldForText() const {
    return m_forText && m_hasNumber && !m_hasText ? &*m_forText : nullptr;
  }

 private:
  bool m_hasNumber = false;
  bool m_hasText = false;
  std::optional<FieldForText> m_forText;
};

}  // namespace kelvarin
