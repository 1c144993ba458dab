#include "gui/canvas/heat_legend.h"

#include <algorithm>

#include <QEvent>
#include <QLocale>
#include <QPainter>

#include "gui/canvas/canvas_scene.h"
#include "gui/canvas/canvas_view.h"

namespace kelvarin {

namespace {

constexpr int kDistanceToCorner = 12;
constexpr int kMargin = 8;
constexpr int kBarHeight = 12;
constexpr int kSpacing = 4;
constexpr int kMinimumWidth = 208;

}  // namespace

HeatLegend::HeatLegend(CanvasView& canvas) : QWidget(&canvas), m_canvas(canvas) {
  setObjectName(QStringLiteral("heatLegend"));
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
  connect(&canvas.canvasScene(), &CanvasScene::resultsShown, this, &HeatLegend::adapt);
  canvas.installEventFilter(this);
  adapt();
}

QString HeatLegend::title() const {
  const HeatScale& scale = m_canvas.canvasScene().heatScale();
  const bool isTime = scale.map() == HeatMap::time;
  if (!scale.hasFigures()) {
    return isTime ? tr("Run the graph to see where time goes.")
                  : tr("Run the graph to see where rows go.");
  }
  return isTime ? tr("Time of each action, and its share of all time")
                : tr("Rows of each action, compared with the most");
}

QSize HeatLegend::sizeHint() const {
  const int line = fontMetrics().height();
  const bool hasBar = m_canvas.canvasScene().heatScale().hasFigures();
  return {std::max(kMinimumWidth, fontMetrics().horizontalAdvance(title()) + 2 * kMargin),
          2 * kMargin + line + (hasBar ? 2 * kSpacing + kBarHeight + line : 0)};
}

void HeatLegend::adapt() {
  const QSize size = sizeHint();
  const int left = layoutDirection() == Qt::RightToLeft
                       ? m_canvas.width() - size.width() - kDistanceToCorner
                       : kDistanceToCorner;
  setGeometry(left, kDistanceToCorner, size.width(), size.height());
  setAccessibleName(title());
  const bool isWanted = m_canvas.canvasScene().heatScale().map() != HeatMap::off;
  if (isWanted != isVisibleTo(&m_canvas)) {
    setVisible(isWanted);
    raise();
  }
  update();
}

bool HeatLegend::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &m_canvas && event->type() == QEvent::Resize) {
    adapt();
  }
  return QWidget::eventFilter(watched, event);
}

void HeatLegend::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange) {
    adapt();
  }
}

void HeatLegend::paintEvent(QPaintEvent*) {
  const CanvasScene& scene = m_canvas.canvasScene();
  const CanvasColors& colors = scene.colors();
  QPainter painter(this);
  painter.fillRect(rect(), colors.box);
  painter.setPen(colors.border);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  painter.setPen(colors.text);
  QRect area = rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
  const int line = fontMetrics().height();
  painter.drawText(area, Qt::AlignTop | Qt::AlignLeading, title());
  if (!scene.heatScale().hasFigures()) {
    return;
  }
  const QRect bar(area.left(), area.top() + line + kSpacing, area.width(), kBarHeight);
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  QLinearGradient gradient(isMirrored ? bar.topRight() : bar.topLeft(),
                           isMirrored ? bar.topLeft() : bar.topRight());
  gradient.setColorAt(0.0, colors.heat(0.0));
  gradient.setColorAt(1.0, colors.heat(1.0));
  painter.fillRect(bar, gradient);
  painter.setPen(colors.border);
  painter.drawRect(bar.adjusted(0, 0, -1, -1));
  painter.setPen(colors.text);
  const QRect ends(area.left(), bar.bottom() + 1 + kSpacing, area.width(), line);
  painter.drawText(ends, Qt::AlignLeading | Qt::AlignTop, locale().toString(0));
  painter.drawText(ends, Qt::AlignTrailing | Qt::AlignTop, scene.heatScale().largestText());
}

}  // namespace kelvarin
