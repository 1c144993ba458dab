#include "gui/canvas/canvas_view.h"

#include <algorithm>
#include <cmath>

#include <QAccessible>
#include <QEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_accessibility.h"
#include "gui/canvas/canvas_gesture.h"
#include "gui/canvas/canvas_press.h"
#include "gui/canvas/direct_editor.h"
#include "gui/canvas/link_curve.h"
#include "gui/canvas/note_box.h"
#include "host/widgets/theme.h"

namespace kelvarin {

namespace {

constexpr double kMarginAround = 40.0;  // of what is to be seen
constexpr int kEdgeInterval = 30;       // milliseconds between two steps at the edge
constexpr double kPointStep = 3 * kGridStep;
constexpr double kPointSize = 2.0;          // pixels
constexpr double kMinZoomWithPoints = 0.4;  // below it they would be a carpet
constexpr double kMaximumZoomToAll = 1.0;   // a graph of two boxes does not fill the window

}  // namespace

CanvasView::CanvasView(GraphCommands& commands, Theme& theme, QWidget* parent)
    : QGraphicsView(parent),
      m_commands(commands),
      m_scene(new CanvasScene(commands.graph(), this)),
      m_directEditor(new DirectEditor(*this, commands)) {
  installCanvasAccessibility();
  setObjectName(QStringLiteral("canvas"));
  setAccessibleName(tr("Canvas"));
  setScene(m_scene);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAcceptDrops(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setViewportUpdateMode(QGraphicsView::MinimalViewportUpdate);
  setOptimizationFlags(DontSavePainterState | DontAdjustForAntialiasing);
  setTransformationAnchor(QGraphicsView::NoAnchor);
  setResizeAnchor(QGraphicsView::NoAnchor);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
  viewport()->grabGesture(Qt::PinchGesture);
  m_reachTimer.setSingleShot(true);
  m_reachTimer.setInterval(0);
  m_edgeTimer.setInterval(kEdgeInterval);
  connect(&m_reachTimer, &QTimer::timeout, this, &CanvasView::updateReach);
  connect(&m_edgeTimer, &QTimer::timeout, this, &CanvasView::scrollAtEdge);
  connect(&theme, &Theme::changed, this, [this] { m_scene->setLook(palette(), font()); });
  connectScene();
  describeKeys();
  m_scene->setLook(palette(), font());
  updateReach();
}

// Who listens may be gone already.
CanvasView::~CanvasView() {
  const QSignalBlocker silence(this);
  cancelGesture();
  // The scene would report what goes with it.
  m_scene->disconnect(this);
}

void CanvasView::connectScene() {
  connect(m_scene, &CanvasScene::contentChanged, &m_reachTimer, qOverload<>(&QTimer::start));
  connect(m_scene, &CanvasScene::aboutToRebuild, this, [this] {
    cancelGesture();
    m_directEditor->discard();
    setFocusAction(kNoId);
  });
  // Pins to choose from may go with it.
  const auto endLinkByKeys = [this] {
    if (m_linkByKeys) {
      cancelGesture();
    }
  };
  connect(&graph(), &EditedGraph::actionAboutToBeRemoved, this, endLinkByKeys);
  connect(&graph(), &EditedGraph::actionChanged, this, endLinkByKeys);
  connect(m_scene, &CanvasScene::selectionEdited, this, [this] {
    const ActionId current = currentAction();
    if (current != kNoId) {
      setFocusAction(current);
    } else if (!selection().isEmpty() && selection().actions.isEmpty()) {
      showFocusMark(false);
      announceFocus();
    }
    emit selectionChanged();
  });
}

// ---- Selection.

GraphSelection CanvasView::selection() const {
  return m_scene->selection();
}

void CanvasView::setSelection(const GraphSelection& selection) {
  m_scene->setSelection(selection);
}

ActionId CanvasView::currentAction() const {
  const QSet<ActionId>& actions = m_scene->selection().actions;
  return actions.size() == 1 ? *actions.cbegin() : kNoId;
}

void CanvasView::showAction(ActionId action) {
  if (const ActionBox* box = m_scene->box(action)) {
    setSelection({{action}, {}, {}});
    showArea(box->body());
  }
}

void CanvasView::showLink(LinkId link) {
  if (const LinkCurve* curve = m_scene->curve(link)) {
    setSelection({{}, {link}, {}});
    showArea(curve->boundingRect());
  }
}

void CanvasView::showOnly(const GraphSelection& item) {
  if (!item.actions.isEmpty()) {
    showAction(*item.actions.cbegin());
  } else if (!item.links.isEmpty()) {
    showLink(*item.links.cbegin());
  } else if (!item.notes.isEmpty() && m_scene->note(*item.notes.cbegin()) != nullptr) {
    setSelection(item);
    showArea(m_scene->note(*item.notes.cbegin())->body());
  }
}

void CanvasView::selectAll() {
  GraphSelection all;
  const QList<ActionId> actions = graph().actions();
  const QList<NoteId> notes = graph().notes();
  all.actions = {actions.cbegin(), actions.cend()};
  all.notes = {notes.cbegin(), notes.cend()};
  setSelection(all);
}

QHash<ActionId, QSizeF> CanvasView::boxSizes() const {
  QHash<ActionId, QSizeF> sizes;
  for (const ActionBox* box : m_scene->boxes()) {
    sizes.insert(box->id(), box->body().size());
  }
  return sizes;
}

PinSpacing CanvasView::pinSpacing() const {
  const CanvasMetrics& metrics = m_scene->metrics();
  const double first = metrics.pinOffset(0, false).y();
  return {first, metrics.pinOffset(1, false).y() - first};
}

// ---- What is seen.

QRectF CanvasView::seenArea() const {
  return mapToScene(viewport()->rect()).boundingRect();
}

QPointF CanvasView::pointOfInterest() const {
  if (!isVisible()) {
    return {};  // a graph to come is shown around it
  }
  const QPoint pointer = viewport()->mapFromGlobal(QCursor::pos());
  return viewport()->underMouse() && viewport()->rect().contains(pointer) ? mapToScene(pointer)
                                                                          : seenArea().center();
}

CanvasExtract CanvasView::extract() const {
  return {transform().m11(), m_centre};
}

void CanvasView::setExtract(const CanvasExtract& extract) {
  const double zoom = std::clamp(extract.zoom, kMinimumZoom, kMaximumZoom);
  {
    const QScopedValueRollback showing(m_isShowingExtract, true);
    setTransform(QTransform::fromScale(zoom, zoom));
    updateReach();
    centerOn(extract.centre);
    scrollUntilAt(extract.centre, QRectF(viewport()->rect()).center());  // Qt cuts off the fraction
  }
  m_centre = extract.centre;
  m_directEditor->follow();
  emit extractChanged();
}

// One can scroll until the last box is about to leave the view.
void CanvasView::updateReach() {
  const double zoom = transform().m11();
  const double x = viewport()->width() / zoom;
  const double y = viewport()->height() / zoom;
  const QRectF area = m_scene->contentArea().adjusted(-x, -y, x, y);
  if (area != sceneRect()) {
    setSceneRect(area);
  }
}

void CanvasView::zoomBy(double factor) {
  zoomAbout(transform().m11() * factor, QRectF(viewport()->rect()).center());
}

void CanvasView::zoomAbout(double zoom, QPointF viewportPoint) {
  const double clamped = std::clamp(zoom, kMinimumZoom, kMaximumZoom);
  if (clamped == transform().m11()) {
    return;
  }
  const QPointF fixed = viewportTransform().inverted().map(viewportPoint);
  setTransform(QTransform::fromScale(clamped, clamped));
  updateReach();
  scrollUntilAt(fixed, viewportPoint);
  m_centre = seenArea().center();
  m_directEditor->follow();
  emit extractChanged();
}

// To the nearest pixel.
void CanvasView::scrollUntilAt(QPointF scenePoint, QPointF viewportPoint) {
  const QPointF missing = viewportTransform().map(scenePoint) - viewportPoint;
  horizontalScrollBar()->setValue(horizontalScrollBar()->value() + qRound(missing.x()));
  verticalScrollBar()->setValue(verticalScrollBar()->value() + qRound(missing.y()));
}

void CanvasView::zoomToAll() {
  const QRectF area = m_scene->contentArea();
  if (area.isEmpty()) {
    setExtract({});
    return;
  }
  const double zoom =
      std::min({viewport()->width() / (area.width() + 2 * kMarginAround),
                viewport()->height() / (area.height() + 2 * kMarginAround), kMaximumZoomToAll});
  setExtract({zoom, area.center()});
}

void CanvasView::zoomToSelection() {
  QRectF area;
  for (const ActionId id : selection().actions) {
    area |= m_scene->box(id)->body();
  }
  for (const NoteId id : selection().notes) {
    area |= m_scene->note(id)->body();
  }
  if (area.isEmpty()) {
    return;
  }
  const double zoom =
      std::min({viewport()->width() / (area.width() + 2 * kMarginAround),
                viewport()->height() / (area.height() + 2 * kMarginAround), 2 * kMaximumZoomToAll});
  setExtract({zoom, area.center()});
}

void CanvasView::showArea(const QRectF& area) {
  m_reachTimer.stop();
  updateReach();
  if (!seenArea().contains(area)) {
    ensureVisible(area, static_cast<int>(kMarginAround), static_cast<int>(kMarginAround));
  }
}

double CanvasView::reachOfPointer() const {
  return 6.0 / transform().m11();
}

void CanvasView::scrollContentsBy(int dx, int dy) {
  QGraphicsView::scrollContentsBy(dx, dy);
  if (!m_isShowingExtract) {
    m_centre = seenArea().center();
  }
  m_directEditor->follow();
  emit extractChanged();
}

// What is in the middle stays there, without the halves of pixels that each size would cost.
void CanvasView::resizeEvent(QResizeEvent* event) {
  const CanvasExtract seen = extract();
  QGraphicsView::resizeEvent(event);
  setExtract(seen);
}

void CanvasView::changeEvent(QEvent* event) {
  QGraphicsView::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    m_scene->setLook(palette(), font());
  }
}

// ---- Results of runs and checks.

void CanvasView::setStates(const QHash<ActionId, ActionState>& states) {
  m_scene->setStates(states);
}

void CanvasView::setHeatMap(HeatMap map) {
  m_scene->setHeatMap(map);
}

void CanvasView::setProblems(const QHash<ActionId, QString>& problems) {
  m_scene->setProblems(problems);
}

// Points of every third grid line: what is drawn can be seen to be moved and enlarged by them.
// They lie on whole pixels, so that all look alike at every zoom.
void CanvasView::drawBackground(QPainter* painter, const QRectF& area) {
  QGraphicsView::drawBackground(painter, area);
  if (transform().m11() < kMinZoomWithPoints) {
    return;
  }
  const QTransform toPixels = painter->worldTransform();
  QList<QPoint> points;
  for (double y = std::floor(area.top() / kPointStep) * kPointStep; y <= area.bottom();
       y += kPointStep) {
    for (double x = std::floor(area.left() / kPointStep) * kPointStep; x <= area.right();
         x += kPointStep) {
      points.push_back(toPixels.map(QPointF(x, y)).toPoint());
    }
  }
  painter->setRenderHint(QPainter::Antialiasing, false);
  painter->setWorldTransform({});
  painter->setPen(QPen(m_scene->colors().grid, kPointSize));
  painter->drawPoints(points.data(), static_cast<int>(points.size()));
  painter->setWorldTransform(toPixels);
}

}  // namespace kelvarin
