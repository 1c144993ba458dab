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

QRectF areaOf(const CanvasScene& scene) {
  return scene.contentArea().adjusted(-kMargin, -kMargin, kMargin, kMargin);
}

void drawPlain(CanvasScene& scene, QPainter& painter, const QRectF& target, const QRectF& area) {
  painter.fillRect(target, scene.colors().background);
  scene.setPlain(true);
  scene.render(&painter, target, area);
  scene.setPlain(false);
}

}  // namespace

QByteArray CanvasView::asSvg() const {
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
  drawPlain(*m_scene, painter, QRectF(QPointF(), area.size()), area);
  painter.end();
  return buffer.data();
}

QImage CanvasView::asImage(double scale) const {
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
  drawPlain(*m_scene, painter, QRectF(QPointF(), QSizeF(size)), area);
  painter.end();
  return image;
}

}  // namespace kelvarin
