#include "host/testing/text_dictionaries.h"

#include <cstring>
#include <map>
#include <string>

namespace kelvarin::testing {

namespace {

struct Texts {
  std::string bytes;
  std::vector<std::uint32_t> entries;
  std::vector<std::uint16_t> codes;
  std::vector<std::uint32_t> positions;

  void addEntry(std::string_view countedText) {
    entries.push_back(static_cast<std::uint32_t>(bytes.size()));
    bytes += countedText;
  }
};

// With the bytes of the length before it.
std::string_view countedText(const unsigned char* bytes) {
  const std::size_t size = isNullText(bytes) ? 0 : lengthFromBytes(bytes);
  return {reinterpret_cast<const char*>(bytes), sizeof(std::uint32_t) + size};
}

BatchColumn withDictionary(const BatchColumn& column, std::size_t rows,
                           std::string_view entryWithoutRows) {
  auto texts = std::make_shared<Texts>();
  std::map<std::string_view, std::uint16_t> codeOfText;
  const auto size = static_cast<std::uint32_t>(entryWithoutRows.size());
  texts->addEntry(std::string(reinterpret_cast<const char*>(&size), sizeof size) +
                  std::string(entryWithoutRows));
  for (std::size_t row = 0; row < rows; ++row) {
    const std::string_view text = countedText(column.text(row));
    const auto code = static_cast<std::uint16_t>(texts->entries.size());
    const auto [known, isNew] = codeOfText.try_emplace(text, code);
    if (isNew) {
      texts->addEntry(text);
    }
    texts->codes.push_back(known->second);
    texts->positions.push_back(texts->entries[known->second]);
  }
  BatchColumn made = BatchColumn::ofTexts(
      column.type(), texts, reinterpret_cast<const unsigned char*>(texts->bytes.data()),
      texts->positions.data(), texts->bytes.size());
  made.setDictionary({texts->codes.data(), texts->entries});
  return made;
}

}  // namespace

RowBatchPointer withDictionaries(const RowBatch& batch, std::string_view entryWithoutRows) {
  std::vector<BatchColumn> columns;
  for (const BatchColumn& column : batch.columns()) {
    const bool isText = fixedSizeOf(column.type()) == 0;
    columns.push_back(isText ? withDictionary(column, batch.storedRows(), entryWithoutRows)
                             : column);
  }
  return std::make_shared<RowBatch>(batch.storedRows(), std::move(columns));
}

bool matchesDictionary(const BatchColumn& column, std::size_t storedRows) {
  const BatchDictionary& dictionary = column.dictionary();
  for (std::size_t row = 0; row < storedRows; ++row) {
    const std::uint16_t code = dictionary.codes[row];
    if (code >= dictionary.positions.size() ||
        countedText(column.textBytes() + dictionary.positions[code]) !=
            countedText(column.text(row))) {
      return false;
    }
  }
  return true;
}

}  // namespace kelvarin::testing
