#include <charconv>
#include <new>

#include "host/tables/files/column_memory.h"
#include "library/arrow_streams/imported_values.h"

namespace kelvarin {

namespace {

constexpr std::int64_t kMillisecondsPerDay = 86400000;

template <typename Offset>
std::string_view textAt(const ArraySlice& values, std::int64_t row) {
  const auto begin = values.at<Offset>(row);
  const auto end = values.at<Offset>(row + 1);
  const auto* bytes = static_cast<const char*>(values.array.buffers[2]);
  return end <= begin ? std::string_view()
                      : std::string_view(bytes + begin, static_cast<std::size_t>(end - begin));
}

// A view has 16 bytes: the size, and the text itself where it is short, or else its first four
// bytes, its buffer and where it begins there.
std::string_view viewedTextAt(const ArraySlice& values, std::int64_t row) {
  constexpr std::size_t kWidth = 16;
  constexpr std::uint32_t kMaxInside = 12;
  const unsigned char* view = values.bytesAt(row, kWidth);
  const std::uint32_t size = lengthFromBytes(view);
  if (size <= kMaxInside) {
    return {reinterpret_cast<const char*>(view) + 4, size};
  }
  const std::uint32_t buffer = lengthFromBytes(view + 8);
  return {static_cast<const char*>(values.array.buffers[2 + buffer]) + lengthFromBytes(view + 12),
          size};
}

template <typename Integer>
void appendInteger(std::string& text, Integer integer) {
  char digits[24];
  text.append(digits, std::to_chars(digits, digits + sizeof digits, integer).ptr);
}

std::int64_t dayOfMilliseconds(std::int64_t milliseconds) {
  const bool roundsUp = milliseconds < 0 && milliseconds % kMillisecondsPerDay != 0;
  return milliseconds / kMillisecondsPerDay - (roundsUp ? 1 : 0);
}

// Calls work(view), where view(position) is the text of a value, until it is called again.
template <typename Work>
auto withTextsOf(const ArraySlice& values, const ArrowType& type, Work work) {
  std::string made;
  const auto making = [&](auto append) {
    return work([&made, append](std::int64_t at) -> std::string_view {
      made.clear();
      append(made, at);
      return made;
    });
  };
  switch (type.kind) {
    case ArrowKind::utf8:
      return work([&](std::int64_t at) { return textAt<std::int32_t>(values, at); });
    case ArrowKind::largeUtf8:
      return work([&](std::int64_t at) { return textAt<std::int64_t>(values, at); });
    case ArrowKind::utf8View:
      return work([&](std::int64_t at) { return viewedTextAt(values, at); });
    case ArrowKind::date32:
      return making([&](std::string& text, std::int64_t at) {
        appendIsoDate(text, values.at<std::int32_t>(at));
      });
    case ArrowKind::date64:
      return making([&](std::string& text, std::int64_t at) {
        appendIsoDate(text, dayOfMilliseconds(values.at<std::int64_t>(at)));
      });
    case ArrowKind::timestamp:
      return making([&](std::string& text, std::int64_t at) {
        appendIsoTimestamp(text, values.at<std::int64_t>(at), type.form.decimals, type.form.isUtc);
      });
    case ArrowKind::decimal:
      return making([&](std::string& text, std::int64_t at) {
        const auto width = static_cast<std::size_t>(type.decimalBits / 8);
        text = decimalText(values.bytesAt(at, width), type.decimalBits, type.scale);
      });
    default:
      return making([&](std::string& text, std::int64_t at) {
        withIntegerOf(type.kind,
                      [&](auto integer) { appendInteger(text, values.at<decltype(integer)>(at)); });
      });
  }
}

void countFinerTimes(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally) {
  const std::int64_t ticksPerMillisecond = type.form.decimals == 6 ? 1'000 : 1'000'000;
  for (std::int64_t row = 0; row < rows.rows.count; ++row) {
    if (!rows.isMissing(row) &&
        rows.values.at<std::int64_t>(rows.positionOf(row)) % ticksPerMillisecond != 0) {
      tally.finerTimes.add(tally.rowsBefore + row);
    }
  }
}

void tallyTexts(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally) {
  if (type.kind == ArrowKind::timestamp && type.form.decimals > 3) {
    countFinerTimes(rows, type, tally);
  }
}

// Stores texts one after another.
class StoredTexts {
 public:
  explicit StoredTexts(unsigned char* memory) : m_memory(memory), m_next(memory) {}

  std::uint32_t add(std::string_view text) {
    const std::uint32_t position = here();
    m_next = putText(m_next, text.data(), text.size());
    return position;
  }
  std::uint32_t addNull() {
    const std::uint32_t position = here();
    m_next = putNullText(m_next);
    return position;
  }
  std::size_t size() const { return static_cast<std::size_t>(m_next - m_memory); }

 private:
  std::uint32_t here() const { return static_cast<std::uint32_t>(m_next - m_memory); }

  unsigned char* m_memory;
  unsigned char* m_next;
};

template <typename View>
std::size_t sizeOfTexts(const ArrayRows& rows, View view) {
  std::size_t size = 4 * static_cast<std::size_t>(rows.rows.count);
  const bool isPlain = rows.isPlain();
  for (std::int64_t row = 0; row < rows.rows.count; ++row) {
    if (isPlain || !rows.isMissing(row)) {
      size += view(rows.positionOf(row)).size();
    }
  }
  if (size > UINT32_MAX) {
    throw std::bad_alloc();
  }
  return size;
}

template <typename View>
BatchColumn textsOfRows(const ArrayRows& rows, View view) {
  ColumnMemory memory(MetaTypeColumn::text, static_cast<std::size_t>(rows.rows.count),
                      sizeOfTexts(rows, view));
  StoredTexts texts(memory.texts());
  std::uint32_t* positions = memory.positions();
  const bool isPlain = rows.isPlain();
  for (std::int64_t row = 0; row < rows.rows.count; ++row) {
    positions[row] =
        !isPlain && rows.isMissing(row) ? texts.addNull() : texts.add(view(rows.positionOf(row)));
  }
  return memory.column(texts.size());
}

// What rows with codes need beside their dictionary.
struct Codes {
  std::shared_ptr<const void> batch;  // which has the dictionary
  std::vector<std::uint32_t> positions;
  std::vector<std::uint16_t> codes;
};

}  // namespace

ConvertedArray importTexts(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally) {
  tallyTexts(rows, type, tally);
  return {withTextsOf(rows.values, type, [&](auto view) { return textsOfRows(rows, view); }),
          std::nullopt};
}

ImportedDictionary importDictionary(const ArraySlice& values, const ArrowType& type) {
  const ArrayRows all{values, values, ArrowKind::unsupported};
  ImportedDictionary dictionary;
  const BatchColumn texts =
      withTextsOf(values, type, [&](auto view) { return textsOfRows(all, view); });
  const std::size_t size = texts.textSize();
  auto bytes = std::make_shared_for_overwrite<unsigned char[]>(size + 4);
  std::memcpy(bytes.get(), texts.textBytes(), size);
  putNullText(bytes.get() + size);
  dictionary.positions.assign(texts.textPositions(), texts.textPositions() + values.count);
  dictionary.positions.push_back(static_cast<std::uint32_t>(size));
  dictionary.bytes = bytes.get();
  dictionary.size = size + 4;
  dictionary.owner = std::move(bytes);
  return dictionary;
}

ConvertedArray importCodes(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally,
                           const std::shared_ptr<const void>& owner,
                           const ImportedDictionary& dictionary) {
  constexpr std::size_t kMaxCodes = std::size_t{1} << 16;
  tallyTexts(rows, type, tally);
  auto codes = std::make_shared<Codes>();
  codes->batch = owner;
  const auto count = static_cast<std::size_t>(rows.rows.count);
  const std::size_t null = dictionary.positions.size() - 1;
  const bool hasCodes = dictionary.positions.size() <= kMaxCodes;
  codes->positions.resize(count);
  codes->codes.resize(hasCodes ? count : 0);
  for (std::size_t row = 0; row < count; ++row) {
    const auto at = static_cast<std::int64_t>(row);
    const std::size_t code =
        rows.rows.isNull(at) ? null : static_cast<std::size_t>(rows.codeAt(at));
    codes->positions[row] = dictionary.positions[code];
    if (hasCodes) {
      codes->codes[row] = static_cast<std::uint16_t>(code);
    }
  }
  BatchColumn column = BatchColumn::ofTexts(MetaTypeColumn::text, codes, dictionary.bytes,
                                            codes->positions.data(), dictionary.size);
  if (hasCodes) {
    column.setDictionary({codes->codes.data(), dictionary.positions});
  }
  return {std::move(column), std::nullopt};
}

}  // namespace kelvarin
