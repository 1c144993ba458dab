#include "gui/canvas/minimap.h"

#include <algorithm>

#include <QMouseEvent>
#include <QPainter>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/note_box.h"

namespace kelvarin {

namespace {

constexpr int kActionsWithoutMap = 50;
constexpr int kDistanceToCorner = 12;
constexpr int kDrawInterval = 100;  // milliseconds; a picture of many boxes is not drawn more often
constexpr double kMargin = 4.0;

}  // namespace

Minimap::Minimap(CanvasView& canvas) : QWidget(&canvas), m_canvas(canvas) {
  setObjectName(QStringLiteral("minimap"));
  setAccessibleName(tr("Overview of the graph"));
  setToolTip(tr("Overview of the graph: click or drag to move about"));
  setCursor(Qt::PointingHandCursor);
  hide();
  m_timer.setSingleShot(true);
  m_timer.setInterval(kDrawInterval);
  connect(&m_timer, &QTimer::timeout, this, &Minimap::draw);
  CanvasScene& scene = canvas.canvasScene();
  const auto drawSoon = [this] {
    if (!m_timer.isActive()) {
      m_timer.start();
    }
  };
  connect(&scene, &CanvasScene::contentChanged, this, drawSoon);
  connect(&scene, &CanvasScene::selectionEdited, this, drawSoon);
  connect(&canvas, &CanvasView::extractChanged, this, qOverload<>(&QWidget::update));
  canvas.installEventFilter(this);
  draw();
}

QSize Minimap::sizeHint() const {
  return {208, 136};
}

bool Minimap::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &m_canvas && event->type() == QEvent::Resize) {
    adapt();
  }
  return QWidget::eventFilter(watched, event);
}

void Minimap::adapt() {
  const QSize size = sizeHint().boundedTo(m_canvas.size() / 3);
  setGeometry(m_canvas.width() - size.width() - kDistanceToCorner,
              m_canvas.height() - size.height() - kDistanceToCorner, size.width(), size.height());
  const bool isUseful = m_canvas.canvasScene().boxes().size() > kActionsWithoutMap;
  if (isUseful != isVisibleTo(&m_canvas)) {
    setVisible(isUseful);
    raise();
  }
  if (isUseful && m_picture.deviceIndependentSize().toSize() != size && !m_timer.isActive()) {
    m_timer.start();
  }
}

void Minimap::draw() {
  adapt();
  if (isHidden()) {
    return;
  }
  const CanvasScene& scene = m_canvas.canvasScene();
  m_area = scene.contentArea();
  m_picture = QPixmap(size() * devicePixelRatioF());
  m_picture.setDevicePixelRatio(devicePixelRatioF());
  m_picture.fill(scene.colors().box);
  QPainter painter(&m_picture);
  painter.setWorldTransform(toCanvas().inverted());
  for (const NoteBox* note : scene.notes()) {
    painter.fillRect(note->body(), scene.graph().note(note->id()).colour);
  }
  for (const ActionBox* box : scene.boxes()) {
    const ActionState& state = scene.state(box->id());
    painter.fillRect(box->body(), box->isSelected() ? scene.colors().accent
                                  : state.kind == ActionState::Kind::none
                                      ? scene.colors().link
                                      : scene.colors().ofState(state.kind));
  }
  painter.end();
  update();
}

// From the map's pixels.
QTransform Minimap::toCanvas() const {
  const double scale = std::max(m_area.width() / (width() - 2 * kMargin),
                                m_area.height() / (height() - 2 * kMargin));
  QTransform transform;
  transform.translate(m_area.center().x(), m_area.center().y());
  transform.scale(scale, scale);
  transform.translate(-width() / 2.0, -height() / 2.0);
  return transform;
}

void Minimap::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.drawPixmap(0, 0, m_picture);
  const CanvasColors& colors = m_canvas.canvasScene().colors();
  const QRectF seen = toCanvas().inverted().mapRect(m_canvas.seenArea());
  QColor fill = colors.accent;
  fill.setAlpha(40);
  painter.setPen(QPen(colors.accent, 1.5));
  painter.setBrush(fill);
  painter.drawRect(seen);
  painter.setPen(colors.border);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

void Minimap::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    moveCanvasTo(event->position());
  }
}

void Minimap::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons().testFlag(Qt::LeftButton)) {
    moveCanvasTo(event->position());
  }
}

void Minimap::moveCanvasTo(QPointF position) {
  m_canvas.centerOn(toCanvas().map(position));
}

void Minimap::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && !m_timer.isActive()) {
    m_timer.start();
  }
}

}  // namespace kelvarin
