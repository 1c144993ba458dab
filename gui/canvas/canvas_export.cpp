// The canvas as a picture for documents: without selection, whole, in the colours of the theme.
#include <algorithm>
#include <cmath>

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

#include "gui/canvas/canvas_scene.h"
#include "gui/canvas/canvas_view.h"

namespace kelvarin {

namespace {

constexpr double kMargin = 24.0;
constexpr double kMaximumSide = 16'384.0;  // pixels of an image; larger ones fail in many programs

// While it lives nothing is marked that is no part of the graph.
class Unmarked {
 public:
  explicit Unmarked(CanvasScene& scene) : m_scene(scene), m_selection(scene.selection()) {
    m_scene.blockSignals(true);
    m_scene.setSelection({});
  }
  ~Unmarked() {
    m_scene.setSelection(m_selection);
    m_scene.blockSignals(false);
  }
  Unmarked(const Unmarked&) = delete;
  Unmarked& operator=(const Unmarked&) = delete;

 private:
  CanvasScene& m_scene;
  const GraphSelection m_selection;
};

QRectF areaOf(const CanvasScene& scene) {
  return scene.contentArea().adjusted(-kMargin, -kMargin, kMargin, kMargin);
}

}  // namespace

QByteArray CanvasView::asSvg() const {
  const Unmarked unmarked(*m_scene);
  const QRectF area = areaOf(*m_scene);
  QBuffer buffer;
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  // Texts are as large, compared with the boxes, as on the screen.
  generator.setResolution(logicalDpiX());
  generator.setSize(area.size().toSize());
  generator.setViewBox(QRectF(QPointF(), area.size()));
  generator.setTitle(tr("Graph"));
  QPainter painter(&generator);
  painter.fillRect(QRectF(QPointF(), area.size()), m_scene->colors().background);
  m_scene->render(&painter, QRectF(QPointF(), area.size()), area);
  painter.end();
  return buffer.data();
}

QImage CanvasView::asImage(double scale) const {
  const Unmarked unmarked(*m_scene);
  const QRectF area = areaOf(*m_scene);
  const double side = std::max(area.width(), area.height());
  const double used = std::min(scale, kMaximumSide / side);
  const QSize size(static_cast<int>(std::ceil(area.width() * used)),
                   static_cast<int>(std::ceil(area.height() * used)));
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  const int dotsPerMeter = qRound(logicalDpiX() / 0.0254);
  image.setDotsPerMeterX(dotsPerMeter);
  image.setDotsPerMeterY(dotsPerMeter);
  image.fill(m_scene->colors().background);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  m_scene->render(&painter, QRectF(QPointF(), QSizeF(size)), area);
  painter.end();
  return image;
}

}  // namespace kelvarin
