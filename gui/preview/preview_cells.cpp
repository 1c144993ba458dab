#include "gui/preview/preview_cells.h"

#include <QPainter>

#include "host/contract/column_bytes.h"

namespace kelvarin {

PreviewCells::PreviewCells(const PreviewModel& model, QObject* parent)
    : QStyledItemDelegate(parent), m_model(model) {}

// Without the style's item, which takes ten times as long: a window has hundreds of cells.
void PreviewCells::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const bool isSelected = (option.state & QStyle::State_Selected) != 0;
  const auto group =
      (option.state & QStyle::State_Active) != 0 ? QPalette::Active : QPalette::Inactive;
  if (isSelected) {
    painter->fillRect(option.rect, option.palette.color(group, QPalette::Highlight));
  } else if (index.row() % 2 == 1) {
    painter->fillRect(option.rect, option.palette.color(group, QPalette::AlternateBase));
  }
  const PreviewModel::Cell cell = m_model.cell(index.row(), index.column());
  const bool isFaint = !cell.isThere || cell.value.isMarked();
  QFont font = option.font;
  if (isFaint) {
    font.setItalic(true);
  }
  painter->setFont(font);
  painter->setPen(option.palette.color(group, isSelected ? QPalette::HighlightedText
                                              : isFaint  ? QPalette::PlaceholderText
                                                         : QPalette::Text));
  const QRect area = option.rect.adjusted(kMargin, 0, -kMargin, 0);
  const bool isRight = fixedSizeOf(m_model.typeOf(index.column())) != 0;
  QString text = cell.isThere ? cell.value.text : QStringLiteral("\u2026");
  const QFontMetrics metrics(font);
  // Short texts on the left, which most are, need not be measured. Drawing at a point takes half as
  // long as drawing into a rectangle.
  int left = area.left();
  if (isRight || text.size() * metrics.maxWidth() > area.width()) {
    const int width = metrics.horizontalAdvance(text);
    if (width > area.width()) {
      text = metrics.elidedText(text, Qt::ElideRight, area.width());
    } else if (isRight) {
      left = area.right() + 1 - width;
    }
  }
  const int baseline = area.top() + (area.height() - metrics.height()) / 2 + metrics.ascent();
  painter->drawText(QPoint(left, baseline), text);
  if ((option.state & QStyle::State_HasFocus) != 0) {
    painter->setPen(
        option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Highlight));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
  }
}

QSize PreviewCells::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const PreviewModel::Cell cell = m_model.cell(index.row(), index.column());
  return {option.fontMetrics.horizontalAdvance(cell.value.text) + 2 * kMargin + 1,
          option.fontMetrics.height() + 6};
}

}  // namespace kelvarin
