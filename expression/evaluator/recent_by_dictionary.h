// What was computed last for the dictionaries of columns, since batches of one block share one.
//
// Used by BatchProgram.
// Threads: any.
#pragma once

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>

#include "host/contract/row_batch.h"

namespace kelvarin {

template <typename Values>
class RecentByDictionary {
 public:
  // The values of the variable that has the texts of the column, those of make() where they are
  // not known. Two threads may make the same, which takes less time than to let one wait.
  template <typename Make>
  std::shared_ptr<const Values> of(std::size_t variable, const BatchColumn& column, Make make) {
    if (auto known = find(variable, column)) {
      return known;
    }
    std::shared_ptr<const Values> values = make();
    const std::lock_guard lock(m_mutex);
    m_kept[m_next] = {variable, column.owner(), values};
    m_next = (m_next + 1) % kKept;
    return values;
  }

 private:
  static constexpr std::size_t kKept = 8;

  struct Kept {
    std::size_t variable = 0;
    std::weak_ptr<const void> owner;  // of the dictionary
    std::shared_ptr<const Values> values;

    bool isOf(std::size_t other, const std::shared_ptr<const void>& column) const {
      return values != nullptr && variable == other && !owner.owner_before(column) &&
             !column.owner_before(owner);
    }
  };

  std::shared_ptr<const Values> find(std::size_t variable, const BatchColumn& column) {
    const std::lock_guard lock(m_mutex);
    const auto kept = std::ranges::find_if(
        m_kept, [&](const Kept& each) { return each.isOf(variable, column.owner()); });
    return kept == m_kept.end() ? nullptr : kept->values;
  }

  std::mutex m_mutex;
  std::array<Kept, kKept> m_kept;  // under m_mutex, like the next one
  std::size_t m_next = 0;          // which is replaced
};

}  // namespace kelvarin
