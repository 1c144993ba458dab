#include "gui/canvas/canvas_metrics.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>

namespace kelvarin {

namespace {

constexpr double kPadding = 8.0;
constexpr double kMinimumPicture = 28.0;
constexpr double kMinimumWidth = 152.0;
constexpr int kCharactersOfType = 19;

double roundedUpToGrid(double length) {
  return std::ceil(length / kGridStep) * kGridStep;
}

}  // namespace

CanvasMetrics::CanvasMetrics(const QFont& font) : m_textFont(font), m_nameFont(font) {
  m_nameFont.setBold(true);
  const QFontMetricsF metrics(m_textFont);
  m_lineHeight = std::ceil(metrics.height());
  m_digitWidth = metrics.horizontalAdvance(u'0');
  m_pictureSize = std::max(kMinimumPicture, std::round(1.75 * m_lineHeight));
  m_width = std::max(kMinimumWidth, roundedUpToGrid(kCharactersOfType * metrics.averageCharWidth() +
                                                    2 * kPadding));
}

QSizeF CanvasMetrics::boxSize(int pinsIn, int pinsOut) const {
  const double texts = 3 * kPadding + 4 * m_lineHeight;
  const int pins = std::max({pinsIn, pinsOut, 1});
  const double beside = pinOffset(pins - 1, false).y() + 2 * kPadding;
  return {m_width, roundedUpToGrid(std::max(texts, beside))};
}

QPointF CanvasMetrics::pinOffset(int pin, bool isOutput) const {
  const double step = std::max(24.0, m_lineHeight + kPadding);
  return {isOutput ? m_width : 0.0, kPadding + m_lineHeight + pin * step};
}

QRectF CanvasMetrics::pictureArea() const {
  const double above = kPadding + (2 * m_lineHeight - m_pictureSize) / 2;
  return {kPadding + 4, above, m_pictureSize, m_pictureSize};
}

QRectF CanvasMetrics::nameArea() const {
  const double left = pictureArea().right() + kPadding;
  return {left, kPadding, m_width - left - kPadding, 2 * m_lineHeight};
}

QRectF CanvasMetrics::typeArea() const {
  const double left = kPadding + 4;
  return {left, kPadding + 2 * m_lineHeight, m_width - left - kPadding, m_lineHeight};
}

QRectF CanvasMetrics::statusArea(const QSizeF& box) const {
  const double left = kPadding + 4;
  return {left, box.height() - kPadding - m_lineHeight, m_width - left - kPadding, m_lineHeight};
}

QRectF CanvasMetrics::warningArea(const QSizeF& box) const {
  const QRectF status = statusArea(box);
  return {status.right() - m_lineHeight, status.top(), m_lineHeight, m_lineHeight};
}

QPointF snappedToGrid(QPointF point) {
  return {std::round(point.x() / kGridStep) * kGridStep,
          std::round(point.y() / kGridStep) * kGridStep};
}

}  // namespace kelvarin
