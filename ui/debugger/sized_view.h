// A view of rows that asks for the height of a few of them, and takes more where there is more.
//
// Used by the tables of the step debugger, which share a page with the expression.
#pragma once

#include <QHeaderView>
#include <QTableView>
#include <QTreeView>

namespace kelvarin {

inline const QHeaderView& headerOf(const QTableView& table) {
  return *table.horizontalHeader();
}
inline const QHeaderView& headerOf(const QTreeView& tree) {
  return *tree.header();
}

template <typename View>
class SizedView : public View {
 public:
  using View::View;

  static constexpr int kRowGap = 4;
  int rowHeight() const { return this->fontMetrics().height() + kRowGap; }
  int heightOfRows(int rows) const {
    return headerOf(*this).sizeHint().height() + rows * rowHeight() + 2 * this->frameWidth();
  }

  QSize sizeHint() const override {
    constexpr int kRows = 6;
    return {View::sizeHint().width(), heightOfRows(kRows)};
  }
  QSize minimumSizeHint() const override {
    constexpr int kRows = 4;
    return {View::minimumSizeHint().width(), heightOfRows(kRows)};
  }
};

}  // namespace kelvarin
