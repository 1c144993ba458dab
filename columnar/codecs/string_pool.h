// The texts of a column's last blocks, in the order of their bytes.
//
// Most blocks have the same texts as the previous ones, and texts in the pool need not be sorted
// again. The pool saves time only: the bytes of a block depend on its own texts. It is emptied when
// few texts recur, so that it takes little more memory than the blocks.
// Used by TextDictionary, one object a column.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "columnar/codecs/text_values.h"

namespace kelvarin {

class StringPool {
 public:
  struct Text {
    std::uint64_t beginning;  // the first 8 bytes, padded with zeros
    std::uint64_t middle;     // the next 8 bytes
    const unsigned char* bytes;
    std::uint32_t length;
    std::uint32_t block;  // the last one that has it
  };

  void beginBlock();
  // Writes the indices of the block's next texts, which are valid until the next block begins, and
  // returns the end of their bytes. `end` is the end of the block's bytes, which outlive their use.
  const unsigned char* find(std::span<const std::uint32_t> lengths, const unsigned char* bytes,
                            const unsigned char* end, std::uint32_t* indices);
  // How many different texts the block has so far.
  std::size_t countInBlock() const { return m_countInBlock; }
  // Sorts all texts.
  void endBlock();
  void forget();

  std::size_t size() const { return m_texts.size(); }
  // Calls use(index, text) for the texts of the block that has ended, in their order. The null text
  // comes first.
  template <typename Use>
  void forEachInBlock(Use use) const {
    for (const std::uint32_t index : m_order) {
      if (m_texts[index].block == m_block) {
        use(index, m_texts[index]);
      }
    }
  }

 private:
  // Enough to sort most texts.
  struct SortKey {
    std::uint64_t beginning;
    std::uint32_t index;
  };

  bool isWorthKeeping() const;
  std::uint32_t indexOf(const Text& wanted, std::uint64_t hash);
  std::uint32_t add(const Text& text, std::uint64_t hash);
  void growSlots();
  void sortNew();
  void keepNew();
  std::size_t countOfNew() const { return m_texts.size() - m_countOfOld; }

  std::vector<Text> m_texts;
  std::vector<std::uint32_t> m_slots;  // indices from 1, by hash
  std::vector<std::uint32_t> m_order;  // indices
  std::vector<SortKey> m_newOrder;
  std::vector<std::uint32_t> m_merged;
  std::vector<std::unique_ptr<unsigned char[]>> m_kept;  // the bytes of texts of earlier blocks
  std::size_t m_keptSize = 0;
  std::size_t m_countOfOld = 0;  // in the pool before the block
  std::size_t m_countInBlock = 0;
  std::uint32_t m_block = 0;
};

}  // namespace kelvarin
