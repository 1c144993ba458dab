// Shows a text that was found with the match in bold and underlined.
//
// Used by: find_panel.cpp. Threads: the user-interface thread.
#pragma once

#include <QStyledItemDelegate>

namespace kelvarin {

class FoundTextDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

}  // namespace kelvarin
