// What the earlier blocks of a column have shown about its whole numbers: whether anything was
// smaller than as many bits for each as the largest one needs.
//
// Used by IntegerColumnEncoder, one object a column.
#pragma once

#include <algorithm>

namespace kelvarin {

class IntegerHistory {
 public:
  // Numbers of so many bits are as even as those before, so other layouts need not be tried.
  bool areEven(int bits) const { return m_blocksLeft > 0 && bits == m_bits; }
  void setUsed() { --m_blocksLeft; }
  // All layouts have been tried.
  void setCompared(bool areEven, int bits) {
    constexpr int kMaxTrust = 15;  // blocks
    m_trust = areEven ? std::min(4 * m_trust + 3, kMaxTrust) : 0;
    m_blocksLeft = m_trust;
    m_bits = bits;
  }

 private:
  int m_trust = 0;
  int m_blocksLeft = 0;
  int m_bits = 0;
};

}  // namespace kelvarin
