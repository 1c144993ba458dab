#include "columnar/codecs/symbol_cutter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace kelvarin {

namespace {

// The first symbols are the bytes, the end of a text and the null text.
constexpr std::uint16_t kEndSymbol = 256;
constexpr std::uint16_t kNullSymbol = 257;
constexpr std::size_t kFirstToken = 258;
constexpr std::size_t kMaxTokenSymbols = 3000;
constexpr int kPartsOfTraining = 16;
// The bytes of a token and its end, each a symbol; how many they are takes so many bits.
constexpr std::size_t kLongestSpelling = 16;
constexpr int kSpellingBits = 5;
static_assert(kLongestSpelling > kMaxSymbolSize);

constexpr std::size_t kStretches = 16;
constexpr std::size_t kPieceSample = 1 << 14;  // bytes
constexpr std::size_t kPiecesInRound = 256;
constexpr int kPieceRounds = 3;
constexpr std::size_t kPhraseSample = 16000;  // tokens
constexpr int kPhraseRounds = 2;
// A search for pieces or phrases ends where they save less of the texts: random texts have none.
constexpr float kMinSaving = 0.05F;
constexpr float kMinSavingForMore = 0.14F;  // of phrases

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

}  // namespace

void SymbolCutter::cut(const TextValues& texts, TrainedSymbols& trained) {
  // At worst every byte and every end of a text is a symbol; between pieces are ends as well.
  m_sequence.resize(std::max(m_sequence.size(),
                             2 * texts.bytes.size() + texts.lengths.size() + kLongestSpelling));
  const bool isTrained = trained.partsLeft > 0;
  if (isTrained && trained.areBytesEnough) {
    --trained.partsLeft;
    std::erase_if(trained.order, [](std::uint16_t symbol) { return symbol >= kFirstToken; });
    return spellAll(texts);
  }
  if (!isTrained) {
    trained = TrainedSymbols();
  }
  m_pieces.clear();
  m_phrases.clear();
  constexpr std::size_t kBytesOfDifferentToken = 32;
  m_tokens.clear(texts.bytes.size() / kBytesOfDifferentToken + trained.tokenCount());
  if (isTrained) {
    useTrained(trained);
  } else {
    beginWithBytes();
  }
  countTokens(texts);
  chooseTokens(trained);
  if (isTrained) {
    spellTokens();
  } else if (!train(trained)) {
    --trained.partsLeft;
    return spellAll(texts);
  }
  --trained.partsLeft;
  m_end = m_sequence.data();
  appendTokens(m_indices);
  joinPhrases();
  if (!isTrained) {
    trained.areBytesEnough = areBytesEnough(texts);
  }
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
  for (const std::uint32_t length : texts.lengths) {
    m_end = std::copy_n(bytes, byteCountOf(length), m_end);
    *m_end++ = length == kNullLength ? kNullSymbol : kEndSymbol;
    bytes += byteCountOf(length);
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

// The first tokens of the table are the trained ones.
void SymbolCutter::useTrained(const TrainedSymbols& trained) {
  m_symbols = trained.symbols;
  for (std::size_t i = kFirstToken; i < trained.firstPiece; ++i) {
    m_tokens.expect(m_symbols[i]);
  }
  for (std::size_t i = trained.firstPiece; i < trained.firstPhrase; ++i) {
    (void)m_pieces.add(m_symbols[i], static_cast<std::uint16_t>(i));
  }
  for (std::size_t i = 0; i < trained.phrases.size(); ++i) {
    (void)m_phrases.add(trained.phrases[i], static_cast<std::uint16_t>(trained.firstPhrase + i));
  }
  m_phraseRounds = trained.phraseRounds;
}

// False where nothing but bytes is worth being a symbol.
bool SymbolCutter::train(TrainedSymbols& trained) {
  trained.firstPiece = m_symbols.size();
  choosePieces();
  trained.areBytesEnough = m_pairs.saving() < kMinSaving && areTokensRare();
  if (trained.areBytesEnough) {
    m_symbols.resize(kFirstToken);
    trained.firstPiece = kFirstToken;
    m_phrasePairs.clear();
  }
  trained.firstPhrase = m_symbols.size();
  if (!trained.areBytesEnough) {
    spellTokens();
    choosePhrases();
  }
  trained.symbols = m_symbols;
  trained.phrases = m_phrasePairs;
  trained.phraseRounds = m_phraseRounds;
  trained.order.resize(m_symbols.size());
  std::iota(trained.order.begin(), trained.order.end(), std::uint16_t{0});
  std::sort(trained.order.begin(), trained.order.end(),
            [this](std::uint16_t left, std::uint16_t right) {
              return std::pair(m_symbols[left].order(), left) <
                     std::pair(m_symbols[right].order(), right);
            });
  trained.partsLeft = kPartsOfTraining;
  return !trained.areBytesEnough;
}

// Whether most bytes are in rare tokens. Single bytes, which are symbols in any case, are neither.
bool SymbolCutter::areTokensRare() {
  std::size_t all = 0;
  std::size_t rare = 0;
  std::size_t frequent = 0;
  for (const TokenTable::Entry& entry : m_tokens.entries()) {
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

void SymbolCutter::countTokens(const TextValues& texts) {
  // At worst every byte and every end of a text is a token.
  m_memory.resize(std::max(m_memory.size(), texts.bytes.size() + texts.lengths.size()));
  std::uint32_t* out = m_memory.data();
  m_texts.cut(texts);
  m_texts.forEach([&](const Symbol& token) { *out++ = m_tokens.count(token); });
  m_indices = {m_memory.data(), out};
}

// Those that save most; trained ones keep their symbols.
void SymbolCutter::chooseTokens(const TrainedSymbols& trained) {
  const std::size_t others = m_symbols.size() - trained.tokenCount();
  const float logOfTotal = std::log2(1.3F * static_cast<float>(m_indices.size()));
  m_gains.clear();
  const auto entries = m_tokens.entries();
  for (std::uint32_t i = 0; i < entries.size(); ++i) {
    TokenTable::Entry& entry = entries[i];
    const auto size = static_cast<float>(entry.token.size());
    if (entry.token.size() == 0) {
      entry.symbol = entry.token.isNull() ? kNullSymbol : kEndSymbol;
    } else if (entry.token.size() == 1 && !entry.token.endsText()) {
      entry.symbol = entry.token.byte(0);
    } else if (entry.count > 1) {
      const float saved = kBitsOfSpelledByte * size - logOfTotal + binaryLogarithm(entry.count);
      const float gain =
          static_cast<float>(entry.count) * saved - kBitsOfSymbol - kBitsOfByte * size;
      if (gain > 0) {
        m_gains.emplace_back(-gain, i);
      }
    }
  }
  const std::size_t count = std::min({m_gains.size(), kMaxTokenSymbols, kMaxSymbols - others});
  if (count < m_gains.size()) {
    std::nth_element(m_gains.begin(), m_gains.begin() + static_cast<std::ptrdiff_t>(count),
                     m_gains.end());
  }
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t index = m_gains[i].second;
    if (index < trained.tokenCount()) {
      entries[index].symbol = static_cast<std::uint16_t>(kFirstToken + index);
    } else {
      entries[index].symbol = static_cast<std::uint16_t>(m_symbols.size());
      m_symbols.push_back(entries[index].token);
    }
  }
}

// The parts that rare words have in common.
void SymbolCutter::choosePieces() {
  for (int round = 0; round < kPieceRounds; ++round) {
    m_end = m_sequence.data();
    std::size_t bytes = 0;
    for (const TokenTable::Entry& entry : m_tokens.entries()) {
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

void SymbolCutter::choosePhrases() {
  m_phraseRounds = 0;
  m_phrasePairs.clear();
  for (int round = 0; round < kPhraseRounds; ++round) {
    m_end = m_sequence.data();
    appendSample();
    joinPhrases();
    const std::size_t free = kMaxSymbols - m_symbols.size();
    const std::size_t rounds = static_cast<std::size_t>(kPhraseRounds - round);
    const auto pairs = m_pairs.find(sequence(), m_symbols, free / rounds);
    if (m_pairs.saving() < kMinSaving) {
      return;
    }
    ++m_phraseRounds;
    for (const SymbolPair& pair : pairs) {
      if (m_phrases.add(pair, static_cast<std::uint16_t>(m_symbols.size()))) {
        m_symbols.push_back(joined(m_symbols[pair.left], m_symbols[pair.right]));
        m_phrasePairs.push_back(pair);
      }
    }
    if (m_pairs.saving() < kMinSavingForMore) {
      return;
    }
  }
}

void SymbolCutter::joinPhrases() {
  for (int round = 0; round < m_phraseRounds; ++round) {
    m_end = m_sequence.data() + m_phrases.join({m_sequence.data(), m_end});
  }
}

// Appends tokens from all over the texts.
void SymbolCutter::appendSample() {
  const std::size_t tokens = m_indices.size();
  if (tokens <= kPhraseSample) {
    return appendTokens(m_indices);
  }
  for (std::size_t stretch = 0; stretch < kStretches; ++stretch) {
    appendTokens(m_indices.subspan(tokens * stretch / kStretches, kPhraseSample / kStretches));
  }
}

// Each token once, however often it occurs.
void SymbolCutter::spellTokens() {
  const auto entries = m_tokens.entries();
  m_spellingOf.resize(entries.size());
  m_spellings.resize(std::max(m_spellings.size(), (entries.size() + 1) * kLongestSpelling));
  std::uint16_t* end = m_spellings.data();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const TokenTable::Entry& entry = entries[i];
    const std::uint16_t* begin = end;
    if (entry.symbol != TokenTable::kNoSymbol) {
      *end++ = entry.symbol;
    } else if (entry.count > 0) {
      m_pieces.spell(entry.token, end);
      if (entry.token.endsText()) {
        *end++ = kEndSymbol;
      }
    }
    m_spellingOf[i] = static_cast<std::uint32_t>(begin - m_spellings.data()) << kSpellingBits |
                      static_cast<std::uint32_t>(end - begin);
  }
}

void SymbolCutter::appendTokens(std::span<const std::uint32_t> indices) {
  constexpr std::size_t kUsual = kLongestSpelling / 2;
  std::uint16_t* end = m_end;
  for (const std::uint32_t index : indices) {
    const std::uint32_t spelling = m_spellingOf[index];
    const std::uint32_t count = spelling % (1u << kSpellingBits);
    const std::uint16_t* from = m_spellings.data() + (spelling >> kSpellingBits);
    std::memcpy(end, from, kUsual * sizeof *from);
    if (count > kUsual) [[unlikely]] {
      std::memcpy(end + kUsual, from + kUsual, kUsual * sizeof *from);
    }
    end += count;
  }
  m_end = end;
}

}  // namespace kelvarin
