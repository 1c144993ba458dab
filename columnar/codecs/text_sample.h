// Some texts from all over a block, from which its encoder learns what they are like.
//
// Any beginning of the sample is a sample, too. Null texts are left out.
#pragma once

#include <vector>

#include "columnar/codecs/text_values.h"

namespace kelvarin {

class TextSample {
 public:
  static constexpr std::size_t kMaxSize = 256;

  // The texts outlive the sample.
  explicit TextSample(const TextValues& texts);

  const std::vector<Bytes>& texts() const { return m_texts; }
  // Few texts differ: at most a quarter of them.
  bool doesRepeat() const { return m_different * 4 <= m_texts.size(); }
  // So few texts occur twice that nearly all texts of the block must differ.
  bool doesHardlyRepeat() const;

 private:
  std::size_t countDifferent() const;

  std::size_t m_rows;
  std::vector<Bytes> m_texts;
  std::size_t m_different = 0;
};

}  // namespace kelvarin
