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

  void setWantedRows(int wanted, int minimum) {
    m_wantedRows = wanted;
    m_minimumRows = minimum;
    this->updateGeometry();
  }

  QSize sizeHint() const override { return {View::sizeHint().width(), heightOfRows(m_wantedRows)}; }
  QSize minimumSizeHint() const override {
    return {View::minimumSizeHint().width(), heightOfRows(m_minimumRows)};
  }

 private:
  int m_wantedRows = 6;
  int m_minimumRows = 3;
};

}  // namespace kelvarin
