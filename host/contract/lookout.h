// When an action looks for rows ahead: at every row where it may, but after it saw none, or too
// few, only some rows later, so that looking costs next to nothing where nobody reads ahead.
#pragma once

namespace kelvarin {

class Lookout {
 public:
  // Before the first row; `isUseful`: something can be evaluated ahead.
  void open(bool isUseful) { m_rowsToWait = isUseful ? 0 : kNever; }
  void close() { m_rowsToWait = kNever; }

  // Asked at every row that is not evaluated ahead.
  bool isDue() {
    if (m_rowsToWait > 0) {
      --m_rowsToWait;
      return false;
    }
    return m_rowsToWait == 0;
  }
  void sawNothing(bool isUseful) { m_rowsToWait = isUseful ? kRowsBetweenLooks : kNever; }

 private:
  static constexpr int kNever = -1;
  static constexpr int kRowsBetweenLooks = 16;

  int m_rowsToWait = kNever;
};

}  // namespace kelvarin
