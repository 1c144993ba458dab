// The parts of rare words: symbols of up to 8 bytes, found by their first bytes.
//
// At most one symbol begins with the same three bytes, so that finding it is one look.
// Used by SymbolCutter.
#pragma once

#include <cstdint>
#include <vector>

#include "columnar/codecs/symbol.h"

namespace kelvarin {

class SymbolPieces {
 public:
  static constexpr std::size_t kMaxSize = sizeof(std::uint64_t);

  SymbolPieces();

  // 2 to 8 bytes, none of which is zero, without the end of a text.
  static bool canBe(const Symbol& symbol) {
    const std::size_t size = symbol.size();
    std::size_t zeros = 0;
    for (std::size_t i = 0; i < size; ++i) {
      zeros += symbol.byte(i) == 0 ? 1 : 0;
    }
    return size >= 2 && size <= kMaxSize && zeros == 0 && !symbol.endsText();
  }

  void clear();
  // A symbol of 2 to 8 bytes, without zeros, that ends no text. One that begins like an earlier one
  // is ignored: false.
  bool add(const Symbol& symbol, std::uint16_t index);

  // Writes the symbols of a token's bytes to `end`; bytes are their own symbols.
  void spell(const Symbol& token, std::uint16_t*& end) const {
    // The bytes are shifted out of two registers, and what is found is selected without branches.
    std::uint64_t next = token.low;
    std::uint64_t later = token.high << 8 >> 8;
    std::uint16_t* out = end;
    for (std::size_t left = token.size(); left > 0;) {
      const Piece longer = m_longer[hashOf(next)].piece;
      const Piece shorter = m_pairs[next & 0xFFFF];
      const std::uint64_t bytes = m_longer[hashOf(next)].bytes;
      const bool isLonger = (next ^ bytes) << (kWordBits - 8 * longer.size) == 0;
      const std::size_t taken = isLonger ? longer.size : shorter.size;
      *out++ = isLonger ? longer.symbol : shorter.symbol;
      left -= taken;
      const std::size_t half = 4 * taken;  // one shift of 64 bits would be none
      next = next >> half >> half | later << (kWordBits - 2 * half) % kWordBits;
      later = later >> half >> half;
    }
    end = out;
  }

 private:
  static constexpr int kHashBits = 11;
  static constexpr std::size_t kWordBits = 64;

  struct Piece {
    std::uint16_t symbol = 0;
    std::uint16_t size = 0;
  };
  // A free slot has eight bytes that are looked for elsewhere.
  struct Slot {
    std::uint64_t bytes = 0;
    Piece piece{0, kMaxSize};
  };

  static std::size_t hashOf(std::uint64_t bytes) {
    return (bytes << 40) * 0x9E3779B97F4A7C15ull >> (64 - kHashBits);
  }
  void forgetPair(std::uint16_t pair) {
    m_pairs[pair] = {static_cast<std::uint16_t>(pair & 0xFF), 1};
  }

  std::vector<Slot> m_longer;  // by a hash of the first three bytes
  std::vector<Piece> m_pairs;  // by the first two bytes: both, or the first one
  std::vector<std::uint16_t> m_usedPairs;
};

}  // namespace kelvarin
