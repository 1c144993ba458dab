// Why a columnar file could not be written: the first failure of any thread.
//
// Kept by ColumnarHDWriter, reported by its workers, read by the writing action.
// Threads: any.
#pragma once

#include <mutex>

#include <QString>

namespace kelvarin {

struct WriteFailure {
  enum class Kind {
    none,
    noColumns,   // the column strategy leaves none to write
    tooLarge,    // too many columns or rows for the numbers of the format, or for the memory
    cannotOpen,  // `file`, because of `reason`
    cannotWrite
  };

  Kind kind = Kind::none;
  QString file;
  QString reason;
};

class FirstFailure {
 public:
  void report(const WriteFailure& failure) {
    const std::lock_guard lock(m_mutex);
    if (m_failure.kind == WriteFailure::Kind::none) {
      m_failure = failure;
    }
  }
  void forget() {
    const std::lock_guard lock(m_mutex);
    m_failure = {};
  }
  WriteFailure get() const {
    const std::lock_guard lock(m_mutex);
    return m_failure;
  }
  bool isSet() const { return get().kind != WriteFailure::Kind::none; }

 private:
  mutable std::mutex m_mutex;  // guards m_failure
  WriteFailure m_failure;
};

}  // namespace kelvarin
