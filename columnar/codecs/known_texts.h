// The texts that a column has had in its last blocks, in the order of their bytes.
//
// Most blocks have the same texts as the blocks before them; what is remembered need not be put in
// order again. It saves time and nothing else: what a block is stored as depends on its own texts
// alone. Texts are forgotten when few of them come again, so that they take little more memory than
// the blocks do.
// Used by TextDictionary, one object a column. Threads: one at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "columnar/codecs/text_values.h"

namespace kelvarin {

class KnownTexts {
 public:
  struct Text {
    std::uint64_t beginning;  // the first 8 bytes, filled up with zeros
    std::uint64_t middle;     // the next 8 bytes
    const unsigned char* bytes;
    std::uint32_t length;
    std::uint32_t block;  // the last one that has it
  };

  void beginBlock();
  // Writes the places of the block's next texts, which keep them until the next block begins, and
  // gives the end of their bytes. `end` is that of the block's bytes; they outlive its use.
  const unsigned char* find(std::span<const std::uint32_t> lengths, const unsigned char* bytes,
                            const unsigned char* end, std::uint32_t* places);
  // How many different texts the block has so far.
  std::size_t countInBlock() const { return m_countInBlock; }
  // Puts all texts in order.
  void endBlock();
  void forget();

  std::size_t size() const { return m_texts.size(); }
  // Calls use(place, text) for the texts of the block that has ended, in their order. The null text
  // is before all others.
  template <typename Use>
  void forEachInBlock(Use use) const {
    for (const std::uint32_t place : m_order) {
      if (m_texts[place].block == m_block) {
        use(place, m_texts[place]);
      }
    }
  }

 private:
  // Enough to bring most texts into their order.
  struct SortKey {
    std::uint64_t beginning;
    std::uint32_t place;
  };

  bool isWorthKnowing() const;
  std::uint32_t place(const Text& wanted, std::uint64_t hash);
  std::uint32_t add(const Text& text, std::uint64_t hash);
  void growSlots();
  void sortNew();
  void keepNew();
  std::size_t countOfNew() const { return m_texts.size() - m_countOfOld; }

  std::vector<Text> m_texts;
  std::vector<std::uint32_t> m_slots;  // places from 1, by hash
  std::vector<std::uint32_t> m_order;  // places
  std::vector<SortKey> m_newOrder;
  std::vector<std::uint32_t> m_merged;
  std::vector<std::unique_ptr<unsigned char[]>> m_kept;  // the bytes of texts of former blocks
  std::size_t m_keptSize = 0;
  std::size_t m_countOfOld = 0;  // known before the block
  std::size_t m_countInBlock = 0;
  std::uint32_t m_block = 0;
};

}  // namespace kelvarin
