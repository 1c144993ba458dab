#include "ui/widgets/flow_layout.h"

#include <algorithm>

#include <QWidget>

namespace kelvarin {

namespace {

constexpr int kSpacing = 8;

bool isExpanding(const std::unique_ptr<QLayoutItem>& item) {
  return item->expandingDirections() & Qt::Horizontal;
}

}  // namespace

FlowLayout::FlowLayout(QWidget* parent) : QLayout(parent) {
  setContentsMargins(0, 0, 0, 0);
  setSpacing(kSpacing);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem* item) {
  m_items.emplace_back(item);
}

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  if (index < 0 || index >= count()) {
    return nullptr;
  }
  QLayoutItem* item = m_items[static_cast<std::size_t>(index)].release();
  m_items.erase(m_items.begin() + index);
  return item;
}

Qt::Orientations FlowLayout::expandingDirections() const {
  return std::any_of(m_items.begin(), m_items.end(), isExpanding) ? Qt::Horizontal
                                                                  : Qt::Orientations();
}

int FlowLayout::heightForWidth(int width) const {
  const QMargins margins = contentsMargins();
  const QRect area(0, 0, width - margins.left() - margins.right(), 0);
  return layOut(area, false) + margins.top() + margins.bottom();
}

// All in one line.
QSize FlowLayout::sizeHint() const {
  QSize size(-spacing(), 0);
  for (const auto& item : m_items) {
    const QSize hint = item->sizeHint();
    size = {size.width() + spacing() + hint.width(), std::max(size.height(), hint.height())};
  }
  return withMargins(size.expandedTo({0, 0}));
}

QSize FlowLayout::minimumSize() const {
  QSize size;
  for (const auto& item : m_items) {
    size = size.expandedTo(item->minimumSize());
  }
  return withMargins(size);
}

QSize FlowLayout::withMargins(QSize size) const {
  return size.grownBy(contentsMargins());
}

void FlowLayout::setGeometry(const QRect& area) {
  QLayout::setGeometry(area);
  layOut(area.marginsRemoved(contentsMargins()), true);
}

int FlowLayout::layOut(const QRect& area, bool isApplied) const {
  int top = area.top();
  std::size_t begin = 0;
  while (begin < m_items.size()) {
    std::size_t end = begin;
    int width = 0;
    int height = 0;
    while (end < m_items.size()) {
      const QSize hint = m_items[end]->sizeHint();
      const int needed = width + (end > begin ? spacing() : 0) + hint.width();
      if (end > begin && needed > area.width()) {
        break;
      }
      width = needed;
      height = std::max(height, hint.height());
      ++end;
    }
    if (isApplied) {
      layOutLine(begin, end, {area.left(), top}, height);
    }
    top += height + (end < m_items.size() ? spacing() : 0);
    begin = end;
  }
  return top - area.top();
}

// The line is mirrored where texts run from right to left.
void FlowLayout::layOutLine(std::size_t begin, std::size_t end, QPoint position, int height) const {
  const QRect area = contentsRect();
  const auto direction = parentWidget()->layoutDirection();
  int spare = area.width() + spacing();
  int expanding = 0;
  for (std::size_t i = begin; i < end; ++i) {
    spare -= m_items[i]->sizeHint().width() + spacing();
    expanding += isExpanding(m_items[i]) ? 1 : 0;
  }
  for (std::size_t i = begin; i < end; ++i) {
    const QSize hint = m_items[i]->sizeHint();
    int width = hint.width();
    if (spare > 0 && isExpanding(m_items[i])) {
      width += spare / expanding;
    }
    const QSize size(std::min(width, area.width()), hint.height());
    const QRect box({position.x(), position.y() + (height - size.height()) / 2}, size);
    m_items[i]->setGeometry(direction == Qt::RightToLeft
                                ? QRect({area.left() + area.right() - box.right(), box.top()}, size)
                                : box);
    position.rx() += size.width() + spacing();
  }
}

}  // namespace kelvarin
