#include "gui/find/found_text_delegate.h"

#include <QApplication>
#include <QPainter>
#include <QTextLayout>

#include "gui/find/find_model.h"

namespace kelvarin {

void FoundTextDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
  QStyleOptionViewItem shown = option;
  initStyleOption(&shown, index);
  const QString text = std::exchange(shown.text, QString());
  const QWidget* widget = option.widget;
  QStyle* style = widget == nullptr ? QApplication::style() : widget->style();
  style->drawControl(QStyle::CE_ItemViewItem, &shown, painter, widget);

  const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &shown, widget) + 1;
  const QRect area = shown.rect.adjusted(margin, 0, -margin, 0);
  QTextLayout layout(shown.fontMetrics.elidedText(text, Qt::ElideRight, area.width()), shown.font);
  QTextLayout::FormatRange match;
  match.start = index.data(FindModel::matchBegin).toInt();
  match.length = index.data(FindModel::matchLength).toInt();
  match.format.setFontWeight(QFont::Bold);
  match.format.setFontUnderline(true);
  if (match.start >= 0 && match.length > 0) {
    layout.setFormats({match});
  }
  QTextOption direction(Qt::AlignLeft);
  direction.setWrapMode(QTextOption::NoWrap);
  direction.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  layout.setTextOption(direction);
  layout.beginLayout();
  QTextLine line = layout.createLine();
  line.setLineWidth(area.width());
  layout.endLayout();

  const bool isSelected = shown.state.testFlag(QStyle::State_Selected);
  const QPalette::ColorGroup group =
      shown.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
  painter->save();
  painter->setClipRect(area);
  painter->setPen(
      shown.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text));
  layout.draw(painter, QPointF(area.left(), area.top() + (area.height() - line.height()) / 2.0));
  painter->restore();
}

}  // namespace kelvarin
