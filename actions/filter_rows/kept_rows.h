// The rows that a filter will send to one of its pins, out of those that it has evaluated ahead.
//
// Offered to the consumers of that pin. Which rows they are is found out when a consumer asks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "host/contract/rows_in_hand.h"

namespace kelvarin {

class KeptRows final : public RowsInHand {
 public:
  // Those of `input` for which `isTrue` equals `wanted`; both last as long as the offer.
  void select(const RowsAhead& input, std::span<const unsigned char> isTrue, bool wanted) {
    m_input = input;
    m_isTrue = isTrue;
    m_wanted = wanted;
    m_chosen.clear();
  }

  const double* numbers(int column, std::size_t first, std::size_t count,
                        double* buffer) const override {
    m_numbers.resize(m_isTrue.size());
    return gather(m_input.numbers(column, 0, m_isTrue.size(), m_numbers.data()), first, count,
                  buffer);
  }
  const std::uint32_t* keys(int column, std::size_t first, std::size_t count,
                            std::uint32_t* buffer) const override {
    m_keys.resize(m_isTrue.size());
    return gather(m_input.keys(column, 0, m_isTrue.size(), m_keys.data()), first, count, buffer);
  }
  const unsigned char* const* texts(int column, std::size_t first, std::size_t count,
                                    const unsigned char** buffer) const override {
    m_texts.resize(m_isTrue.size());
    return gather(m_input.texts(column, 0, m_isTrue.size(), m_texts.data()), first, count, buffer);
  }

 private:
  template <typename Value>
  const Value* gather(const Value* values, std::size_t first, std::size_t count,
                      Value* buffer) const {
    if (values == nullptr) {
      return nullptr;
    }
    choose();
    for (std::size_t i = 0; i < count; ++i) {
      buffer[i] = values[m_chosen[first + i]];
    }
    return buffer;
  }

  void choose() const {
    if (!m_chosen.empty()) {
      return;
    }
    m_chosen.resize(m_isTrue.size());
    std::size_t count = 0;
    for (std::size_t i = 0; i < m_isTrue.size(); ++i) {
      m_chosen[count] = static_cast<std::uint32_t>(i);
      count += (m_isTrue[i] != 0) == m_wanted ? 1 : 0;
    }
  }

  RowsAhead m_input;
  std::span<const unsigned char> m_isTrue;
  bool m_wanted = true;
  mutable std::vector<std::uint32_t> m_chosen;  // these first; empty until somebody asks
  mutable std::vector<double> m_numbers;        // of all rows, where they must be copied
  mutable std::vector<std::uint32_t> m_keys;
  mutable std::vector<const unsigned char*> m_texts;
};

}  // namespace kelvarin
