#include "columnar/codecs/symbol_cutter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include <emmintrin.h>

namespace kelvarin {

namespace {

// The first symbols are the bytes, the end of a text and the null text.
constexpr std::uint16_t kEndSymbol = 256;
constexpr std::uint16_t kNullSymbol = 257;
constexpr std::size_t kFirstToken = 258;
constexpr std::size_t kMaxTokenSymbols = 3000;
constexpr int kPartsOfTraining = 64;
// Where so many different tokens have come, those that are not trained are forgotten.
constexpr std::size_t kMaxKept = 1 << 14;

constexpr std::size_t kStretches = 16;
constexpr std::size_t kPieceSample = 1 << 14;  // bytes
constexpr std::size_t kPiecesInRound = 256;
constexpr int kPieceRounds = 3;
constexpr std::size_t kPhraseSample = 16000;  // tokens
// Pieces and phrases that save less of the texts are not worth it: random texts have none.
constexpr float kMinSaving = 0.05F;

// What a byte of a token takes when it is spelled, and what a symbol takes in the table, in bits.
constexpr float kBitsOfSpelledByte = 4.2F;
constexpr float kBitsOfSymbol = 9;
constexpr float kBitsOfByte = 3.5F;

// From a table for the counts that most tokens have.
float binaryLogarithm(std::uint32_t count) {
  static const std::array<float, 1024> table = [] {
    std::array<float, 1024> values{};
    for (std::size_t i = 1; i < values.size(); ++i) {
      values[i] = std::log2(static_cast<float>(i));
    }
    return values;
  }();
  return count < table.size() ? table[count] : std::log2(static_cast<float>(count));
}

// Whether most bytes are in rare tokens. Single bytes, which are symbols in any case, are neither.
bool areRare(std::span<const TokenTable::Entry> tokens) {
  std::size_t all = 0;
  std::size_t rare = 0;
  std::size_t frequent = 0;
  for (const TokenTable::Entry& entry : tokens) {
    const std::size_t bytes = entry.count * entry.token.size();
    all += bytes;
    if (entry.symbol == TokenTable::kNoSymbol) {
      rare += bytes;
    } else if (entry.symbol >= kFirstToken) {
      frequent += bytes;
    }
  }
  return rare * 2 > all && frequent * 16 < all;
}

// Enough of the texts, from their middle, to see that nothing comes back.
TextValues trialOf(const TextValues& texts) {
  constexpr std::size_t kTrialSize = 1 << 15;
  const std::size_t rows = texts.lengths.size();
  std::size_t first = 0;
  std::size_t firstByte = 0;
  for (; first < rows / 2; ++first) {
    firstByte += byteCountOf(texts.lengths[first]);
  }
  std::size_t size = 0;
  std::size_t last = first;
  for (; last < rows && size < kTrialSize; ++last) {
    size += byteCountOf(texts.lengths[last]);
  }
  return {texts.lengths.subspan(first, last - first), texts.bytes.subspan(firstByte, size)};
}

// Writes bytes as numbers and returns the end of these, behind which others may be overwritten.
std::uint16_t* widened(const unsigned char* bytes, const unsigned char* end,
                       const unsigned char* endOfMemory, std::uint16_t* out) {
  constexpr std::ptrdiff_t kGroup = sizeof(__m128i);
  std::uint16_t* endOfOut = out + (end - bytes);
  for (; bytes < end && endOfMemory - bytes >= kGroup; bytes += kGroup, out += kGroup) {
    const __m128i group = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    auto* to = reinterpret_cast<__m128i*>(out);
    _mm_storeu_si128(to, _mm_unpacklo_epi8(group, _mm_setzero_si128()));
    _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(group, _mm_setzero_si128()));
  }
  std::copy(bytes, std::max(bytes, end), out);
  return endOfOut;
}

}  // namespace

void SymbolCutter::cut(const TextValues& texts, TrainedSymbols& trained) {
  // At worst every byte and every end of a text is a symbol; between pieces are ends as well.
  m_sequence.resize(std::max(
      m_sequence.size(), 2 * texts.bytes.size() + texts.lengths.size() + TokenSpellings::kLongest));
  const bool isTrained = trained.partsLeft > 0;
  if (isTrained && trained.areBytesEnough) {
    --trained.partsLeft;
    std::erase_if(trained.order, [](std::uint16_t symbol) { return symbol >= kFirstToken; });
    trained.tokens.release();
    return spellAll(texts);
  }
  if (isTrained) {
    useTrained(trained);
    countTokens(texts, trained.tokens);
    chooseTokens(trained.tokens.entries());
  } else if (!train(texts, trained)) {
    return spellAll(texts);
  }
  --trained.partsLeft;
  spellTokens(trained);
  m_end = m_sequence.data();
  appendTokens(m_indices, trained.spellings);
  if (!trained.phrases.empty()) {
    m_end = m_sequence.data() + m_phrases.join({m_sequence.data(), m_end});
  }
  if (!isTrained) {
    trained.areBytesEnough = areBytesEnough(texts);
  }
}

void SymbolCutter::beginWith(const TextValues& texts, TrainedSymbols& trained) {
  constexpr std::size_t kBytesOfDifferentToken = 32;
  trained.phrases.clear();
  trained.tokens.clear(texts.bytes.size() / kBytesOfDifferentToken);
  trained.spellings.clear();
  trained.partsLeft = kPartsOfTraining;
  m_pieces.clear();
  m_phrases.clear();
  beginWithBytes();
  countTokens(texts, trained.tokens);
  chooseTokens(trained.tokens.entries());
}

void SymbolCutter::beginWithBytes() {
  m_symbols.clear();
  for (int byte = 0; byte < 256; ++byte) {
    m_symbols.push_back(Symbol::ofByte(static_cast<unsigned char>(byte)));
  }
  m_symbols.push_back(Symbol::end());
  m_symbols.push_back(Symbol::null());
}

// Every byte is a symbol, whatever was trained.
void SymbolCutter::spellAll(const TextValues& texts) {
  beginWithBytes();
  m_end = m_sequence.data();
  const unsigned char* bytes = texts.bytes.data();
  const unsigned char* endOfMemory = bytes + texts.bytes.size();
  for (const std::uint32_t length : texts.lengths) {
    const unsigned char* end = bytes + byteCountOf(length);
    m_end = widened(bytes, end, endOfMemory, m_end);
    *m_end++ = length == kNullLength ? kNullSymbol : kEndSymbol;
    bytes = end;
  }
}

// Whether the chosen symbols save so little beside single bytes that they do not pay for the time.
bool SymbolCutter::areBytesEnough(const TextValues& texts) const {
  constexpr float kSmallSaving = 0.06F;
  const auto bitsOf = [](std::span<const std::uint32_t> counts) {
    std::uint32_t all = 0;
    float bits = 0;
    for (const std::uint32_t count : counts) {
      all += count;
      bits += count == 0 ? 0 : kBitsOfSymbol - static_cast<float>(count) * binaryLogarithm(count);
    }
    return bits + static_cast<float>(all) * binaryLogarithm(all);
  };
  std::vector<std::uint32_t> counts(kFirstToken);
  for (const unsigned char byte : texts.bytes) {
    ++counts[byte];
  }
  counts[kEndSymbol] = static_cast<std::uint32_t>(texts.lengths.size());
  const float bytesOnly = bitsOf(counts);
  counts.assign(m_symbols.size(), 0);
  for (const std::uint16_t symbol : sequence()) {
    ++counts[symbol];
  }
  return bitsOf(counts) > (1 - kSmallSaving) * bytesOnly;
}

void SymbolCutter::useTrained(TrainedSymbols& trained) {
  m_symbols = trained.symbols;
  m_pieces.clear();
  m_phrases.clear();
  for (std::size_t i = trained.firstPiece; i < trained.firstPhrase; ++i) {
    (void)m_pieces.add(m_symbols[i], static_cast<std::uint16_t>(i));
  }
  for (std::size_t i = 0; i < trained.phrases.size(); ++i) {
    (void)m_phrases.add(trained.phrases[i], static_cast<std::uint16_t>(trained.firstPhrase + i));
  }
  if (trained.tokens.entries().size() > kMaxKept) {
    trained.tokens.keepTrained();
    trained.spellings.clear();
  }
  trained.tokens.beginTexts();
}

// Whether a part of the texts shows already that nothing but bytes is worth being a symbol.
bool SymbolCutter::isTrialEnough(const TextValues& texts, TrainedSymbols& trained) {
  const TextValues trial = trialOf(texts);
  if (trial.bytes.size() * 2 >= texts.bytes.size()) {
    return false;
  }
  beginWith(trial, trained);
  return areRare(trained.tokens.entries()) && arePiecesRare(trained);
}

// False where nothing but bytes is worth being a symbol.
bool SymbolCutter::train(const TextValues& texts, TrainedSymbols& trained) {
  trained.areBytesEnough = isTrialEnough(texts, trained);
  if (!trained.areBytesEnough) {
    beginWith(texts, trained);
    trained.areBytesEnough = arePiecesRare(trained) && areRare(trained.tokens.entries());
  }
  for (TokenTable::Entry& entry : trained.tokens.entries()) {
    entry.trainedSymbol = entry.symbol;
  }
  if (trained.areBytesEnough) {
    m_symbols.resize(kFirstToken);
    trained.firstPiece = kFirstToken;
  }
  trained.firstPhrase = m_symbols.size();
  if (!trained.areBytesEnough) {
    spellTokens(trained);
    choosePhrases(trained);
  }
  trained.symbols = m_symbols;
  trained.order.resize(m_symbols.size());
  std::iota(trained.order.begin(), trained.order.end(), std::uint16_t{0});
  std::sort(trained.order.begin(), trained.order.end(),
            [this](std::uint16_t left, std::uint16_t right) {
              return std::pair(m_symbols[left].order(), left) <
                     std::pair(m_symbols[right].order(), right);
            });
  return !trained.areBytesEnough;
}

void SymbolCutter::countTokens(const TextValues& texts, TokenTable& tokens) {
  // At worst every byte and every end of a text is a token.
  m_memory.resize(std::max(m_memory.size(), texts.bytes.size() + texts.lengths.size()));
  std::uint32_t* out = m_memory.data();
  m_texts.cut(texts);
  std::array<Symbol, TokenTable::kBatch> batch;
  std::size_t count = 0;
  const auto countBatch = [&] {
    tokens.count({batch.data(), count}, out);
    out += count;
    count = 0;
  };
  m_texts.forEach([&](const Symbol& token) {
    batch[count++] = token;
    if (count == batch.size()) {
      countBatch();
    }
  });
  countBatch();
  m_indices = {m_memory.data(), out};
}

// Those that save most; trained ones keep their symbols.
void SymbolCutter::chooseTokens(std::span<TokenTable::Entry> tokens) {
  const float logOfTotal = std::log2(1.3F * static_cast<float>(m_indices.size()));
  m_gains.clear();
  for (std::uint32_t i = 0; i < tokens.size(); ++i) {
    TokenTable::Entry& entry = tokens[i];
    const auto size = static_cast<float>(entry.token.size());
    if (entry.token.size() == 0) {
      entry.symbol = entry.token.isNull() ? kNullSymbol : kEndSymbol;
    } else if (entry.token.size() == 1 && !entry.token.endsText()) {
      entry.symbol = entry.token.byte(0);
    } else if (entry.count > 1) {
      const float saved = kBitsOfSpelledByte * size - logOfTotal + binaryLogarithm(entry.count);
      const float gain =
          static_cast<float>(entry.count) * saved - kBitsOfSymbol - kBitsOfByte * size;
      if (gain > 0 && entry.trainedSymbol != TokenTable::kNoSymbol) {
        entry.symbol = entry.trainedSymbol;
      } else if (gain > 0) {
        m_gains.emplace_back(-gain, i);
      }
    }
  }
  const std::size_t count =
      std::min({m_gains.size(), kMaxTokenSymbols, kMaxSymbols - m_symbols.size()});
  if (count < m_gains.size()) {
    std::nth_element(m_gains.begin(), m_gains.begin() + static_cast<std::ptrdiff_t>(count),
                     m_gains.end());
  }
  for (const auto& [gain, index] : std::span(m_gains).first(count)) {
    tokens[index].symbol = static_cast<std::uint16_t>(m_symbols.size());
    m_symbols.push_back(tokens[index].token);
  }
}

// Whether the pieces that are chosen gain little.
bool SymbolCutter::arePiecesRare(TrainedSymbols& trained) {
  trained.firstPiece = m_symbols.size();
  choosePieces(trained.tokens.entries());
  return m_pairs.saving() < kMinSaving;
}

// The parts that rare words have in common.
void SymbolCutter::choosePieces(std::span<const TokenTable::Entry> tokens) {
  for (int round = 0; round < kPieceRounds; ++round) {
    m_end = m_sequence.data();
    std::size_t bytes = 0;
    for (const TokenTable::Entry& entry : tokens) {
      if (entry.symbol == TokenTable::kNoSymbol) {
        m_pieces.spell(entry.token, m_end);
        *m_end++ = kEndSymbol;  // pieces are parts of one word
        bytes += entry.token.size();
      }
      if (bytes > kPieceSample) {
        break;
      }
    }
    for (const SymbolPair& pair : m_pairs.find(sequence(), m_symbols, kPiecesInRound)) {
      const Symbol piece = joined(m_symbols[pair.left], m_symbols[pair.right]);
      if (SymbolPieces::canBe(piece) &&
          m_pieces.add(piece, static_cast<std::uint16_t>(m_symbols.size()))) {
        m_symbols.push_back(piece);
      }
    }
    if (m_pairs.saving() < kMinSaving) {
      return;
    }
  }
}

void SymbolCutter::choosePhrases(TrainedSymbols& trained) {
  m_end = m_sequence.data();
  appendSample(trained.spellings);
  const auto pairs = m_pairs.find(sequence(), m_symbols, kMaxSymbols - m_symbols.size());
  if (m_pairs.saving() < kMinSaving) {
    return;
  }
  for (const SymbolPair& pair : pairs) {
    if (m_phrases.add(pair, static_cast<std::uint16_t>(m_symbols.size()))) {
      m_symbols.push_back(joined(m_symbols[pair.left], m_symbols[pair.right]));
      trained.phrases.push_back(pair);
    }
  }
}

// Appends tokens from all over the texts.
void SymbolCutter::appendSample(const TokenSpellings& spellings) {
  const std::size_t tokens = m_indices.size();
  if (tokens <= kPhraseSample) {
    return appendTokens(m_indices, spellings);
  }
  for (std::size_t stretch = 0; stretch < kStretches; ++stretch) {
    appendTokens(m_indices.subspan(tokens * stretch / kStretches, kPhraseSample / kStretches),
                 spellings);
  }
}

// Each token once, however often it occurs.
void SymbolCutter::spellTokens(TrainedSymbols& trained) {
  const auto tokens = trained.tokens.entries();
  m_spellingOf.resize(tokens.size());
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    TokenTable::Entry& entry = tokens[i];
    if (entry.symbol != TokenTable::kNoSymbol) {
      m_spellingOf[i] = TokenSpellings::ofSymbol(entry.symbol);
    } else if (entry.count > 0) {
      if (!entry.spelling.isThere()) {
        entry.spelling = trained.spellings.add(entry.token, m_pieces, kEndSymbol);
      }
      m_spellingOf[i] = entry.spelling;
    }
  }
}

void SymbolCutter::appendTokens(std::span<const std::uint32_t> indices,
                                const TokenSpellings& spellings) {
  std::uint16_t* end = m_end;
  for (const std::uint32_t index : indices) {
    spellings.write(m_spellingOf[index], end);
  }
  m_end = end;
}

}  // namespace kelvarin
