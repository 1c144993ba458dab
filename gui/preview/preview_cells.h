// Paints the cells of a preview: what is no ordinary value in italics and fainter, long texts cut
// in one line.
//
// Threads: the user-interface thread.
#pragma once

#include <QStyledItemDelegate>

#include "gui/preview/preview_model.h"

namespace kelvarin {

class PreviewCells : public QStyledItemDelegate {
  Q_OBJECT

 public:
  static constexpr int kMargin = 8;

  PreviewCells(const PreviewModel& model, QObject* parent);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  const PreviewModel& m_model;
};

}  // namespace kelvarin
