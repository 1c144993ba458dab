// Columns of texts.
#include <algorithm>
#include <cstring>
#include <optional>
#include <unordered_set>

#include "host/tables/arrow_formats/column_memory.h"
#include "host/tables/arrow_formats/parquet_columns.h"
#include "host/tables/arrow_formats/text_dictionary.h"

namespace kelvarin {

namespace {

constexpr std::size_t kMaxDictionaryBytes = 1 << 20;
// A page with so many bytes gets no more rows.
constexpr std::size_t kFullPage = 1 << 20;
constexpr std::size_t kRowsInStep = 64;

class TextRange {
 public:
  void add(std::string_view text) {
    if (!m_isKnown || text < m_least) {
      m_least = text;
    }
    if (!m_isKnown || text > m_largest) {
      m_largest = text;
    }
    m_isKnown = true;
  }
  void add(const TextRange& other) {
    if (other.m_isKnown) {
      add(other.m_least);
      add(other.m_largest);
    }
  }
  ValueRange range() const { return {m_isKnown, std::string(m_least), std::string(m_largest)}; }

 private:
  bool m_isKnown = false;
  std::string_view m_least;
  std::string_view m_largest;
};

// The codes of texts that have been seen at the same position. Sources that know the distinct texts
// of a column let rows share positions.
class CodesOfPositions {
 public:
  // The texts of the next rows, of which there are so many.
  void begin(const BatchColumn& texts, std::size_t rowCount) {
    if (texts.textBytes() == m_bytes) {
      return;
    }
    m_bytes = texts.textBytes();
    const std::size_t slots = slotOf(static_cast<std::uint32_t>(texts.textSize())) + 1;
    m_isUsed = slots <= kMaxSlotsPerRow * rowCount;
    if (m_isUsed) {
      m_codes.assign(slots, kNoCode);
    }
  }
  // Null where codes are not kept.
  std::uint32_t* codeAt(std::uint32_t position) {
    return m_isUsed ? &m_codes[slotOf(position)] : nullptr;
  }

 private:
  static constexpr std::size_t kMaxSlotsPerRow = 2;

  // A text takes four bytes and more, so no two have the same slot.
  static std::size_t slotOf(std::uint32_t position) { return position / 4; }

  const unsigned char* m_bytes = nullptr;
  bool m_isUsed = false;
  std::vector<std::uint32_t> m_codes;
};

class TextColumn {
 public:
  TextColumn(const GroupColumn& column, std::size_t rowCount, ColumnPages& pages)
      : m_column(column), m_rowCount(rowCount), m_pages(pages), m_dictionary(kMaxDictionaryBytes) {}

  ValueRange encode() {
    if (doesRepeat() && makeCodes()) {
      appendDictionary();
      for (std::size_t row = 0; row < m_rowCount; row += kRowsInPage) {
        appendCodedPage(row, std::min(kRowsInPage, m_rowCount - row));
      }
    } else {
      GroupColumnCursor cursor(m_column);
      for (std::size_t row = 0; row < m_rowCount;) {
        row += appendPlainPage(cursor, std::min(kRowsInPage, m_rowCount - row));
      }
    }
    return m_range.range();
  }

 private:
  struct PlainPage {
    std::size_t rowCount = 0;
    std::size_t missingCount = 0;
    std::size_t size = 0;
    TextRange range;
  };

  bool doesRepeat() const {
    std::unordered_set<std::string_view> seen;
    return doValuesRepeat(GroupColumnCursor(m_column), m_rowCount,
                          [&](const BatchColumn& texts, std::size_t row) {
                            const unsigned char* text = texts.text(row);
                            return isNullText(text) || !seen.insert(textFromBytes(text)).second;
                          });
  }

  // False: there are too many different texts, or none.
  bool makeCodes() {
    m_codes.emplace(m_rowCount);
    std::uint32_t* next = m_codes->values;
    CodesOfPositions known;
    for (const GroupColumn::Piece& piece : m_column.pieces) {
      known.begin(piece.values, piece.rowCount);
      for (std::size_t row = 0; row < piece.rowCount; ++row) {
        const std::optional<std::uint32_t> code = codeOf(piece.values, row, known);
        if (!code) {
          return false;
        }
        *next++ = *code;
      }
    }
    return !m_dictionary.texts().empty();
  }

  std::optional<std::uint32_t> codeOf(const BatchColumn& texts, std::size_t row,
                                      CodesOfPositions& known) {
    std::uint32_t* knownCode = known.codeAt(texts.textPositions()[row]);
    if (knownCode != nullptr && *knownCode != kNoCode) {
      return *knownCode;
    }
    std::uint32_t code = kNoCode;
    const unsigned char* text = texts.text(row);
    if (isNullText(text)) {
      return code;
    }
    if (!m_dictionary.find(text, code)) {
      return std::nullopt;
    }
    if (knownCode != nullptr) {
      *knownCode = code;
    }
    return code;
  }

  void appendDictionary() {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(m_dictionary.byteCount());
    for (const unsigned char* text : m_dictionary.texts()) {
      bytes.insert(bytes.end(), text, text + 4 + textFromBytes(text).size());
    }
    m_pages.appendDictionary(bytes.data(), bytes.size(), m_dictionary.texts().size());
  }

  void appendCodedPage(std::size_t firstRow, std::size_t rowCount) {
    const std::uint32_t* codes = m_codes->values + firstRow;
    m_isInPage.assign(m_dictionary.texts().size(), 0);
    for (std::size_t row = 0; row < rowCount; ++row) {
      if (codes[row] != kNoCode) {
        m_isInPage[codes[row]] = 1;
      }
    }
    TextRange range;
    for (std::size_t code = 0; code < m_isInPage.size(); ++code) {
      if (m_isInPage[code] != 0) {
        range.add(textFromBytes(m_dictionary.texts()[code]));
      }
    }
    m_range.add(range);
    appendCodes(codes, rowCount, bitsOfCodes(m_isInPage.size()), range.range(), m_pages);
  }

  // Up to `maxRows` rows; returns how many.
  std::size_t appendPlainPage(GroupColumnCursor& cursor, std::size_t maxRows) {
    m_pages.presence().resize(maxRows);
    PlainPage page;
    while (page.rowCount < maxRows && page.size < kFullPage) {
      const std::size_t rows = std::min(kRowsInStep, maxRows - page.rowCount);
      cursor.next(rows, [&](const BatchColumn& texts, std::size_t first, std::size_t count) {
        for (std::size_t row = first; row < first + count; ++row) {
          append(texts.text(row), page);
        }
      });
    }
    m_range.add(page.range);
    m_pages.appendPage(page.rowCount, page.missingCount, page.size, page.range.range());
    return page.rowCount;
  }

  // Texts in rows have the bytes that they have in a plain page.
  void append(const unsigned char* text, PlainPage& page) {
    const bool isMissing = isNullText(text);
    m_pages.presence()[page.rowCount++] = isMissing ? 0 : 1;
    if (isMissing) {
      ++page.missingCount;
      return;
    }
    const std::string_view view = textFromBytes(text);
    const std::size_t size = 4 + view.size();
    std::memcpy(m_pages.valuesOfPage(page.size + size) + page.size, text, size);
    page.size += size;
    page.range.add(view);
  }

  const GroupColumn& m_column;
  std::size_t m_rowCount;
  ColumnPages& m_pages;
  TextDictionary m_dictionary;
  std::optional<ColumnMemory<std::uint32_t>> m_codes;  // of all rows
  std::vector<std::uint8_t> m_isInPage;                // of each text, for the range of a page
  TextRange m_range;
};

}  // namespace

ValueRange encodeTexts(const GroupColumn& column, std::size_t rowCount, ColumnPages& pages) {
  return TextColumn(column, rowCount, pages).encode();
}

}  // namespace kelvarin
