// Chooses the encoding of the texts of one block, which is applied before compression.
//
// The encodings that fit the texts are tried, and the smallest is taken; of two with about the same
// size the one that is read faster. The next blocks of the column take the same one, until it takes
// more than before or some blocks are over.
// Used by ChunkEncoder, and for the texts inside other encoded texts.
// Layout: docs/gel-format.md, "Encodings of texts".
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "columnar/codecs/front_coded_texts.h"
#include "columnar/codecs/integer_column.h"
#include "columnar/codecs/nested_texts.h"
#include "columnar/codecs/symbol_texts.h"
#include "columnar/codecs/text_dictionary.h"
#include "columnar/codecs/text_encoding.h"
#include "columnar/codecs/text_history.h"
#include "columnar/codecs/text_list.h"
#include "columnar/codecs/text_sample.h"

namespace kelvarin {

class ShapedTextEncoder;

class TextEncoder {
 public:
  TextEncoder();
  ~TextEncoder();
  TextEncoder(TextEncoder&&) noexcept;
  TextEncoder& operator=(TextEncoder&&) noexcept;

  // Appends the encoding byte and the texts, of which there is at least one. The history is that of
  // the column's earlier blocks.
  void append(const TextValues& texts, TextHistory& history, ByteBuffer& out);
  // The different texts of the last append() in their order; none when they are too many for a
  // dictionary.
  std::span<const TextDictionary::Entry> entries() const { return m_dictionary.entries(); }

  // Appends texts that are inside others, at least one, with their size before them.
  void appendNested(const TextValues& texts, TextLevel level, TextHistory& history,
                    ByteBuffer& out);

 private:
  static constexpr std::size_t kUnknownSize = ~std::size_t{0};
  // Encodings that are read more slowly must be smaller in this proportion.
  static constexpr std::size_t kPercentOfSlower = 97;
  // Those that are read faster may be larger in this one.
  static constexpr std::size_t kPercentOfFaster = 103;
  static constexpr std::size_t kPercentOfMuchFaster = 125;
  static constexpr std::size_t kMaxShareOfTrial = 15;  // of a dictionary, in 16ths

  void appendAt(const TextValues& texts, TextHistory& history, TextLevel level, ByteBuffer& out);
  void compare(const TextValues& texts, TextHistory& history, TextLevel level);
  [[nodiscard]] bool encodeAs(TextEncoding encoding, const TextValues& texts, TextHistory& history,
                              TextLevel level);

  // These make the candidate; false where the texts are not stored so.
  void beginCandidate(TextEncoding encoding);
  [[nodiscard]] bool findEntries(const TextValues& texts, TextHistory& history,
                                 std::size_t maxShareOfTrial);
  void encodeDictionary();
  [[nodiscard]] bool encodeEncodedDictionary(TextHistory& history, TextLevel level);
  void encodeFrontCoded(const TextValues& texts);
  [[nodiscard]] bool encodeCodedEntries(const TextValues& texts);
  void encodePlain(const TextValues& texts);
  [[nodiscard]] bool encodeSymbols(const TextValues& texts, TextHistory& history);
  ShapedTextEncoder& shapes();

  void consider(std::size_t percent = 100);
  std::size_t leastSizeOfDictionary() const;
  std::size_t maxPercentOfDictionary() const;
  void considerDictionaries(const TextValues& texts, TextHistory& history, TextLevel level);
  void considerShapes(const TextValues& texts, const TextSample& sample, TextHistory& history,
                      TextLevel level);
  bool isPlainSmaller(const TextValues& texts);
  std::size_t sizeOfBest();
  bool isClearlyBelowBest(std::size_t size);
  void considerSymbols(const TextValues& texts, TextHistory& history);

  TextDictionary m_dictionary;
  TextList m_entries;
  std::vector<std::uint8_t> m_bytes;  // codes, a byte each
  std::vector<std::uint64_t> m_numbers;
  IntegerColumnEncoder m_integers;
  FrontCodedEncoder m_frontCoded;
  SymbolTextEncoder m_symbols;
  std::unique_ptr<ShapedTextEncoder> m_shapes;
  std::unique_ptr<TextEncoder> m_nested;
  ByteBuffer m_best;
  std::size_t m_bestSize = 0;  // compressed, once it is known
  ByteBuffer m_candidate;
  ByteBuffer m_scratch;
};

}  // namespace kelvarin
