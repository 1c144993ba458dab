// Symbols of an alphabet of up to 4096, stored with fewer bits the more often they occur.
//
// The codes are canonical Huffman codes of at most 14 bits, so that their lengths say everything
// and a table decodes each symbol with one look. Four streams hold the symbols in turn, which lets
// a processor decode four at a time. Used by the encodings of texts.
// Layout: docs/gel-format.md, "Huffman codes".
// Source: D. A. Huffman, "A method for the construction of minimum-redundancy codes" (1952).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/byte_buffer.h"

namespace kelvarin {

inline constexpr std::size_t kMaxHuffmanSymbols = 4096;
inline constexpr std::size_t kHuffmanStreams = 4;

class HuffmanEncoder {
 public:
  // `counts` are how often each symbol of the alphabet occurs, at least one of them above 0.
  void fit(std::span<const std::uint32_t> counts);
  // The bits that a symbol takes; 0 for one that does not occur, or that is the only one.
  int length(std::size_t symbol) const { return m_lengths[symbol]; }
  // The bytes that append() takes for symbols that occur as often as fit() was given, or up to 3
  // more.
  std::size_t encodedSize() const;
  // Appends the lengths and the streams. All symbols had a count above 0.
  void append(std::span<const std::uint16_t> symbols, ByteBuffer& out);
  // The same for the symbols symbolOf[value] of other values.
  void append(std::span<const std::uint16_t> values, std::span<const std::uint16_t> symbolOf,
              ByteBuffer& out);

 private:
  // The first bit of a code is the lowest one.
  struct Code {
    std::uint16_t bits = 0;
    std::uint16_t length = 0;
  };

  void orderByCount(std::span<const std::uint32_t> counts);
  void assignCodes();
  void appendCodes(std::span<const std::uint16_t> values, const Code* codes, ByteBuffer& out);

  std::vector<std::uint8_t> m_lengths;  // up to the last symbol that occurs
  std::vector<Code> m_codes;
  std::vector<Code> m_codesOfValues;
  std::size_t m_different = 0;
  std::uint64_t m_symbols = 0;
  std::uint64_t m_bits = 0;
  // Of fit(), kept to spare allocations.
  std::vector<std::uint64_t> m_order;
  std::vector<std::uint64_t> m_weights;
};

// For every value of the next bits, as many as the longest code has: which symbol they begin with,
// and how many bits it takes.
struct HuffmanTable {
  std::vector<std::uint16_t> symbols;
  std::vector<std::uint8_t> lengths;

  // From the length of each symbol's code, up to 15; 0 for symbols without one. False where these
  // are not the lengths of such codes.
  [[nodiscard]] bool fill(std::span<const std::uint8_t> codeLengths);
};

class HuffmanDecoder {
 public:
  // Reads lengths and streams of `count` symbols, from 1 on. False where they are damaged or do
  // not follow. The bytes outlive the decoding.
  [[nodiscard]] bool take(ByteReader& reader, std::size_t count);
  // All symbols are the same one, and take no bytes.
  bool isSingle() const { return m_isSingle; }
  // The symbols are below this number.
  std::size_t alphabetSize() const { return m_alphabetSize; }
  // Decodes the next symbols, a multiple of 4 of them until the last ones. False at the end of
  // damaged streams.
  [[nodiscard]] bool next(std::span<std::uint16_t> symbols);

 private:
  // Positions count in bits from the first stream's first byte on.
  struct Stream {
    std::size_t position = 0;
    std::size_t end = 0;
  };

  [[nodiscard]] bool takeLengths(ByteReader& reader);
  [[nodiscard]] bool takeStreams(ByteReader& reader);
  std::size_t nextQuickly(std::span<std::uint16_t> symbols);
  bool areStreamsSound() const;

  std::size_t m_alphabetSize = 0;
  std::size_t m_remaining = 0;  // symbols
  bool m_isSingle = false;
  HuffmanTable m_table;
  Bytes m_bytes;
  std::array<Stream, kHuffmanStreams> m_streams;
};

}  // namespace kelvarin
