#include "columnar/codecs/symbol_texts.h"

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>

#include "columnar/codecs/text_encoding.h"

namespace kelvarin {

namespace {

// Texts are cut into parts of about this size, each with its own symbols: more texts would need
// more of them than there are.
constexpr std::size_t kPartSize = 1 << 18;
constexpr std::size_t kMaxTextSize = 1 << 23;

constexpr std::size_t kBatch = 1024;  // symbols
// What all symbols of a batch may write, and the bytes that are written beyond the last one.
constexpr std::size_t kBatchMargin = (kBatch + 1) * sizeof(DecodedSymbol);
// Texts that grow more than this when they are decoded are counted before.
constexpr std::size_t kSmallTexts = 1 << 20;
constexpr std::size_t kExpectedGrowth = 8;

// A part of the texts, whose symbols have not been decoded.
struct StoredSymbols {
  std::uint32_t count = 0;
  bool hasNull = false;
  std::vector<DecodedSymbol> table;
  HuffmanDecoder codes;

  [[nodiscard]] bool take(ByteReader& reader) {
    // A single symbol takes no bytes, so nothing would limit how many there are.
    return reader.read(count) && count > 0 && readSymbolTable(reader, table, hasNull) &&
           codes.take(reader, count) && !codes.isSingle() && codes.alphabetSize() <= table.size();
  }

  // Calls use(symbols) for one batch after another; false at the end of damaged codes.
  template <typename Use>
  bool forEachBatch(Use use) {
    std::array<std::uint16_t, kBatch> batch;
    for (std::size_t first = 0; first < count; first += kBatch) {
      const std::span symbols(batch.data(), std::min<std::size_t>(kBatch, count - first));
      if (!codes.next(symbols) || !use(symbols)) {
        return false;
      }
    }
    return true;
  }
};

struct Totals {
  std::uint64_t bytes = 0;  // with lengths
  std::uint64_t rows = 0;
};

// Decodes all parts, without keeping the texts.
bool addUp(ByteReader reader, Totals& totals) {
  StoredSymbols stored;
  while (reader.remaining() > 0) {
    const bool isSound =
        stored.take(reader) && stored.forEachBatch([&](std::span<const std::uint16_t> symbols) {
          for (const std::uint16_t symbol : symbols) {
            const unsigned last = stored.table[symbol].last();
            totals.bytes += DecodedSymbol::step(last);
            totals.rows += DecodedSymbol::endedTexts(last);
          }
          return true;
        });
    if (!isSound) {
      return false;
    }
  }
  return true;
}

// Writes the texts with four bytes before each, and their offsets.
class TextWriter {
 public:
  TextWriter(std::size_t size, std::size_t rows, DecodedTexts& texts)
      : m_size(size), m_rows(rows), m_texts(texts) {
    texts.bytes.resize(kLengthSize + size + kBatchMargin);
    texts.offsets.resize(rows + kBatch + 1);
  }

  // False when there are more texts or bytes than there should be.
  bool write(std::span<const std::uint16_t> symbols, std::span<const DecodedSymbol> table) {
    unsigned char* const begin = m_texts.bytes.data() + kLengthSize;
    std::size_t written = m_written;
    std::uint32_t* offset = m_texts.offsets.data() + m_row + 1;
    for (const std::uint16_t symbol : symbols) {
      const DecodedSymbol& from = table[symbol];
      const unsigned last = from.last();
      std::memcpy(begin + written, from.bytes, sizeof from.bytes);
      written += DecodedSymbol::step(last);
      *offset = static_cast<std::uint32_t>(written);
      offset += DecodedSymbol::endedTexts(last);
    }
    m_written = written;
    m_row = static_cast<std::size_t>(offset - m_texts.offsets.data()) - 1;
    m_isEnded = DecodedSymbol::endedTexts(table[symbols.back()].last()) != 0;
    return m_row <= m_rows && m_written <= m_size;
  }

  // Puts the lengths before the texts.
  bool finish(bool hasNull) {
    if (m_row != m_rows || m_written != m_size || !m_isEnded) {
      return false;
    }
    unsigned char* begin = m_texts.bytes.data();
    std::uint32_t* offsets = m_texts.offsets.data();
    offsets[0] = 0;
    bool isSound = true;
    for (std::size_t row = 0; row < m_rows; ++row) {
      std::uint32_t length = offsets[row + 1] - offsets[row] - std::uint32_t{kLengthSize};
      // The last symbol of the text has left a mark behind it.
      if (hasNull && loadPacked<std::uint32_t>(begin + offsets[row + 1]) == kNullLength) {
        isSound &= length == 0;
        length = kNullLength;
      }
      storePacked(begin + offsets[row], length);
    }
    m_texts.bytes.resize(m_size);
    m_texts.offsets.resize(m_rows);
    return isSound;
  }

 private:
  std::size_t m_size;
  std::size_t m_rows;
  DecodedTexts& m_texts;
  std::size_t m_written = 0;  // bytes, the length before the first text left out
  std::size_t m_row = 0;
  bool m_isEnded = false;
};

}  // namespace

std::size_t SymbolTextEncoder::fit(const TextValues& texts, TrainedSymbols& trained) {
  m_encoded.clear();
  m_encoded.put(static_cast<std::uint32_t>(texts.bytes.size()));
  const std::size_t parts = (texts.bytes.size() + kPartSize / 2) / kPartSize;
  const std::size_t partSize = texts.bytes.size() / std::max<std::size_t>(parts, 1) + 1;
  std::size_t firstRow = 0;
  std::size_t firstByte = 0;
  while (firstRow < texts.lengths.size()) {
    std::size_t row = firstRow;
    std::size_t bytes = 0;
    // Texts without bytes go with those before them, so that a part has more than one symbol.
    while (row < texts.lengths.size() &&
           (bytes < partSize || byteCountOf(texts.lengths[row]) == 0)) {
      bytes += byteCountOf(texts.lengths[row++]);
    }
    if (bytes > kMaxTextSize || !appendPart({texts.lengths.subspan(firstRow, row - firstRow),
                                             texts.bytes.subspan(firstByte, bytes)},
                                            trained)) {
      return 0;
    }
    firstRow = row;
    firstByte += bytes;
  }
  return m_encoded.size();
}

bool SymbolTextEncoder::appendPart(const TextValues& texts, TrainedSymbols& trained) {
  m_cutter.cut(texts, trained);
  const std::size_t symbols = m_cutter.symbols().size();
  countSymbols();
  numberSymbols(trained);
  if (m_symbols.size() < 2) {
    return false;
  }
  m_numberCounts.assign(m_symbols.size(), 0);
  for (std::size_t i = 0; i < symbols; ++i) {
    if (m_counts[i] > 0) {
      m_numberCounts[m_numbers[i]] += m_counts[i];
    }
  }
  const auto sequence = m_cutter.sequence();
  m_encoded.put(static_cast<std::uint32_t>(sequence.size()));
  m_table.append(m_symbols, m_encoded);
  m_codes.fit(m_numberCounts);
  m_codes.append(sequence, m_numbers, m_encoded);
  return true;
}

// In two counts each, so that a symbol need not wait for the same one before it.
void SymbolTextEncoder::countSymbols() {
  const std::size_t symbols = m_cutter.symbols().size();
  const auto sequence = m_cutter.sequence();
  m_counts.assign(2 * symbols, 0);
  std::uint32_t* counts = m_counts.data();
  std::size_t i = 0;
  for (; i + 1 < sequence.size(); i += 2) {
    ++counts[sequence[i]];
    ++counts[symbols + sequence[i + 1]];
  }
  if (i < sequence.size()) {
    ++counts[sequence[i]];
  }
  std::transform(counts, counts + symbols, counts + symbols, counts, std::plus());
  m_counts.resize(symbols);
}

// The trained symbols have their order; those behind them are few.
void SymbolTextEncoder::orderUsed(const TrainedSymbols& trained) {
  const auto symbols = m_cutter.symbols();
  m_order.clear();
  for (const std::uint16_t symbol : trained.order) {
    if (m_counts[symbol] > 0) {
      m_order.push_back(symbol);
    }
  }
  m_added.clear();
  for (std::size_t symbol = trained.order.size(); symbol < symbols.size(); ++symbol) {
    if (m_counts[symbol] > 0) {
      const auto [first, last] = symbols[symbol].order();
      m_added.push_back({first, last, static_cast<std::uint16_t>(symbol)});
    }
  }
  std::sort(m_added.begin(), m_added.end());
  // From the last one on, each moves up by the number of those that come between.
  std::size_t left = m_order.size();
  m_order.resize(left + m_added.size());
  std::size_t out = m_order.size();
  for (std::size_t added = m_added.size(); added > 0; --added) {
    const OrderedSymbol& next = m_added[added - 1];
    while (left > 0 && std::pair(next.first, next.last) < symbols[m_order[left - 1]].order()) {
      m_order[--out] = m_order[--left];
    }
    m_order[--out] = next.index;
  }
}

// Numbers those that occur in their order; the same bytes have one number.
void SymbolTextEncoder::numberSymbols(const TrainedSymbols& trained) {
  orderUsed(trained);
  const auto symbols = m_cutter.symbols();
  m_numbers.resize(symbols.size());
  m_symbols.clear();
  for (const std::uint16_t index : m_order) {
    if (m_symbols.empty() || m_symbols.back() != symbols[index]) {
      m_symbols.push_back(symbols[index]);
    }
    m_numbers[index] = static_cast<std::uint16_t>(m_symbols.size() - 1);
  }
}

bool decodeSymbolTexts(ByteReader& reader, std::size_t rows, DecodedTexts& texts) {
  std::uint32_t textBytes = 0;
  // A text takes a bit at least.
  if (!reader.read(textBytes) || rows > 8 * reader.remaining()) {
    return false;
  }
  const std::size_t size = textBytes + rows * kLengthSize;
  if (size > 0xFFFFFFFF - kBatchMargin) {
    return false;
  }
  if (size > kSmallTexts && size / kExpectedGrowth > reader.remaining()) {
    Totals totals;
    if (!addUp(reader, totals) || totals.rows != rows || totals.bytes != size) {
      return false;
    }
  }
  TextWriter writer(size, rows, texts);
  StoredSymbols stored;
  bool hasNull = false;
  while (reader.remaining() > 0) {
    if (!stored.take(reader) ||
        !stored.forEachBatch([&](auto symbols) { return writer.write(symbols, stored.table); })) {
      return false;
    }
    hasNull |= stored.hasNull;
  }
  return writer.finish(hasNull);
}

RowCounts rowCountOfSymbolTexts(ByteReader& reader, RowCounts known) {
  std::uint32_t textBytes = 0;
  Totals totals;
  if (!reader.read(textBytes) || !addUp(reader, totals) || totals.rows < known.min ||
      totals.rows > known.max || textBytes + totals.rows * kLengthSize != totals.bytes) {
    return RowCounts::none();
  }
  const auto rows = static_cast<std::uint32_t>(totals.rows);
  return {rows, rows};
}

}  // namespace kelvarin
