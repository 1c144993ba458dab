#include "gui/canvas/canvas_scene.h"

#include <algorithm>
#include <limits>

#include <QGuiApplication>

#include "gui/canvas/action_box.h"
#include "gui/canvas/link_curve.h"
#include "gui/canvas/note_box.h"

namespace kelvarin {

namespace {

constexpr double kPinReach = 11.0;
constexpr double kLinkReach = 6.0;

template <typename Item>
Item* as(QGraphicsItem* item) {
  return qgraphicsitem_cast<Item*>(item);
}

QRectF around(QPointF point, double distance) {
  return QRectF(point, point).adjusted(-distance, -distance, distance, distance);
}

template <typename Item>
QSet<int> present(const QSet<int>& ids, const QHash<int, Item*>& items) {
  QSet<int> found;
  for (const int id : ids) {
    if (items.contains(id)) {
      found.insert(id);
    }
  }
  return found;
}

// Marks the items that are selected now and were not, or the other way round.
template <typename Item>
void remark(const QHash<int, Item*>& items, const QSet<int>& before, const QSet<int>& now) {
  for (const int id : before) {
    if (!now.contains(id) && items.contains(id)) {
      items[id]->setSelected(false);
    }
  }
  for (const int id : now) {
    if (!before.contains(id) && items.contains(id)) {
      items[id]->setSelected(true);
    }
  }
}

}  // namespace

CanvasScene::CanvasScene(EditedGraph& graph, QObject* parent)
    : QGraphicsScene(parent),
      m_graph(graph),
      m_metrics(QGuiApplication::font()),
      m_colors(CanvasColors::of(QGuiApplication::palette())) {
  m_selectionTimer.setSingleShot(true);
  m_selectionTimer.setInterval(0);
  connect(&m_selectionTimer, &QTimer::timeout, this, &CanvasScene::selectionEdited);
  connectGraph();
  rebuild();
}

// Curves delete their labels, so they go before the scene deletes what is left.
CanvasScene::~CanvasScene() {
  qDeleteAll(m_curves);
}

void CanvasScene::connectGraph() {
  connect(&m_graph, &EditedGraph::loaded, this, &CanvasScene::rebuild);
  connect(&m_graph, &EditedGraph::actionAdded, this, &CanvasScene::addBox);
  connect(&m_graph, &EditedGraph::actionRemoved, this, &CanvasScene::removeBox);
  connect(&m_graph, &EditedGraph::actionChanged, this, &CanvasScene::readBox);
  connect(&m_graph, &EditedGraph::actionMoved, this, &CanvasScene::moveBox);
  connect(&m_graph, &EditedGraph::linkAdded, this, &CanvasScene::addCurve);
  connect(&m_graph, &EditedGraph::linkChanged, this, [this](LinkId id) {
    if (LinkCurve* changed = curve(id)) {
      changed->read();
    }
  });
  connect(&m_graph, &EditedGraph::linkRemoved, this, &CanvasScene::removeCurve);
  connect(&m_graph, &EditedGraph::noteAdded, this, &CanvasScene::addNote);
  connect(&m_graph, &EditedGraph::noteChanged, this, [this](NoteId id) {
    if (NoteBox* changed = note(id)) {
      changed->read();
      emit contentChanged();
    }
  });
  connect(&m_graph, &EditedGraph::noteRemoved, this, &CanvasScene::removeNote);
}

void CanvasScene::setLook(const QPalette& palette, const QFont& font) {
  m_colors = CanvasColors::of(palette);
  m_metrics = CanvasMetrics(font);
  m_pictures.clear();
  setBackgroundBrush(m_colors.background);
  for (ActionBox* box : std::as_const(m_boxes)) {
    box->read();
  }
  for (LinkCurve* curve : std::as_const(m_curves)) {
    curve->follow();
  }
  update();
  emit contentChanged();
}

void CanvasScene::rebuild() {
  emit aboutToRebuild();
  qDeleteAll(m_curves);
  qDeleteAll(m_boxes);
  qDeleteAll(m_notes);
  m_curves.clear();
  m_boxes.clear();
  m_notes.clear();
  m_states.clear();
  m_problems.clear();
  for (const NoteId id : m_graph.notes()) {
    addNote(id);
  }
  for (const ActionId id : m_graph.actions()) {
    addBox(id);
  }
  for (const LinkId id : m_graph.links()) {
    addCurve(id);
  }
  m_selection = {};
  emit selectionEdited();
  emit contentChanged();
}

void CanvasScene::addBox(ActionId id) {
  auto* box = new ActionBox(*this, id);
  m_boxes.insert(id, box);
  addItem(box);
  emit contentChanged();
}

void CanvasScene::removeBox(ActionId id) {
  delete m_boxes.take(id);
  if (m_selection.actions.remove(id)) {
    m_selectionTimer.start();
  }
  emit contentChanged();
}

void CanvasScene::readBox(ActionId id) {
  ActionBox* changed = box(id);
  if (changed == nullptr) {
    return;
  }
  changed->read();
  followBox(id);
  emit contentChanged();
}

void CanvasScene::moveBox(ActionId id) {
  ActionBox* moved = box(id);
  if (moved == nullptr) {
    return;
  }
  moved->setPos(m_graph.position(id));
  followBox(id);
  emit contentChanged();
}

void CanvasScene::followBox(ActionId id) {
  for (const LinkId link : m_graph.linksOf(id)) {
    if (LinkCurve* moved = curve(link)) {
      moved->follow();
    }
  }
}

void CanvasScene::addCurve(LinkId id) {
  auto* added = new LinkCurve(*this, id);
  m_curves.insert(id, added);
  addItem(added);
}

void CanvasScene::removeCurve(LinkId id) {
  delete m_curves.take(id);
  if (m_selection.links.remove(id)) {
    m_selectionTimer.start();
  }
}

void CanvasScene::addNote(NoteId id) {
  auto* added = new NoteBox(*this, id);
  m_notes.insert(id, added);
  addItem(added);
  emit contentChanged();
}

void CanvasScene::removeNote(NoteId id) {
  delete m_notes.take(id);
  if (m_selection.notes.remove(id)) {
    m_selectionTimer.start();
  }
  emit contentChanged();
}

QRectF CanvasScene::contentArea() const {
  QRectF area;
  for (const ActionBox* box : m_boxes) {
    area |= box->sceneBoundingRect();
  }
  for (const LinkCurve* curve : m_curves) {
    area |= curve->boundingRect();
  }
  for (const NoteBox* note : m_notes) {
    area |= note->sceneBoundingRect();
  }
  return area;
}

CanvasHit CanvasScene::hitAt(QPointF point, double tolerance) const {
  const double pinReach = std::max(kPinReach, tolerance);
  const QList<QGraphicsItem*> near =
      items(around(point, std::max(pinReach, kLinkReach)), Qt::IntersectsItemBoundingRect);
  CanvasHit hit;
  for (QGraphicsItem* item : near) {
    const auto* box = as<ActionBox>(item);
    if (box == nullptr) {
      continue;
    }
    const PinRef pin = box->pinNear(point, pinReach);
    if (pin.pin >= 0) {
      return {CanvasHit::Kind::pin, pin, kNoId, kNoId};
    }
    if (hit.kind == CanvasHit::Kind::nothing && box->body().contains(point)) {
      hit = {CanvasHit::Kind::action, {box->id(), 0, true}, kNoId, kNoId};
    }
  }
  if (hit.kind != CanvasHit::Kind::nothing) {
    return hit;
  }
  double nearest = std::max(kLinkReach, tolerance);
  for (QGraphicsItem* item : near) {
    const auto* curve = as<LinkCurve>(item);
    const double distance = curve == nullptr ? nearest + 1 : curve->distanceTo(point);
    if (distance <= nearest) {
      nearest = distance;
      hit = {CanvasHit::Kind::link, {}, curve->id(), kNoId};
    }
  }
  for (QGraphicsItem* item : near) {
    const auto* note = as<NoteBox>(item);
    if (hit.kind == CanvasHit::Kind::nothing && note != nullptr && note->body().contains(point)) {
      const bool isCorner = note->corner().contains(point);
      hit = {isCorner ? CanvasHit::Kind::noteCorner : CanvasHit::Kind::note, {}, kNoId, note->id()};
    }
  }
  return hit;
}

LinkId CanvasScene::linkNear(QPointF point, double tolerance) const {
  LinkId found = kNoId;
  double nearest = tolerance;
  for (QGraphicsItem* item : items(around(point, tolerance), Qt::IntersectsItemBoundingRect)) {
    const auto* curve = as<LinkCurve>(item);
    if (curve == nullptr || !curve->link().whyBroken.isEmpty()) {
      continue;
    }
    const double distance = curve->distanceTo(point);
    if (distance <= nearest) {
      nearest = distance;
      found = curve->id();
    }
  }
  return found;
}

void CanvasScene::setSelection(const GraphSelection& wanted) {
  const GraphSelection selection{present(wanted.actions, m_boxes), present(wanted.links, m_curves),
                                 present(wanted.notes, m_notes)};
  if (selection == m_selection) {
    return;
  }
  const GraphSelection before = m_selection;
  m_selection = selection;
  remark(m_boxes, before.actions, selection.actions);
  remark(m_curves, before.links, selection.links);
  remark(m_notes, before.notes, selection.notes);
  emit selectionEdited();
}

const ActionState& CanvasScene::state(ActionId id) const {
  static const ActionState kNone;
  const auto found = m_states.constFind(id);
  return found == m_states.constEnd() ? kNone : *found;
}

long long CanvasScene::rowsAt(const PinRef& pin) const {
  const ActionState& at = state(pin.action);
  const std::vector<long long>& counts = pin.isOutput ? at.rowsOut : at.rowsIn;
  const auto index = static_cast<std::size_t>(pin.pin);
  return pin.pin >= 0 && index < counts.size() ? counts[index] : -1;
}

void CanvasScene::setStates(const QHash<ActionId, ActionState>& states) {
  m_states = states;
  showResults();
}

void CanvasScene::setProblems(const QHash<ActionId, QString>& problems) {
  m_problems = problems;
  showResults();
}

void CanvasScene::setHeatMap(HeatMap map) {
  m_heat = HeatScale(map, {});
  showResults();
}

void CanvasScene::showResults() {
  // Once for all: thousands of small areas would take longer than the picture.
  update();
  m_heat = HeatScale(m_heat.map(), m_states);
  for (auto box = m_boxes.cbegin(); box != m_boxes.cend(); ++box) {
    const ActionState& at = state(box.key());
    (*box)->setResult(at, problem(box.key()), m_heat.of(at));
  }
  long long most = 0;
  for (const LinkCurve* curve : std::as_const(m_curves)) {
    most = std::max(most, rowsAt({curve->link().from, curve->link().fromPin, true}));
  }
  for (LinkCurve* curve : std::as_const(m_curves)) {
    const bool isWhole = curve->link().whyBroken.isEmpty();
    const long long rows = isWhole ? rowsAt({curve->link().from, curve->link().fromPin, true}) : -1;
    const bool hasHeat = m_heat.map() == HeatMap::rows && rows >= 0 && most > 0;
    curve->setRows(rows, hasHeat ? static_cast<double>(rows) / static_cast<double>(most) : -1.0);
  }
  emit resultsShown();
}

void CanvasScene::setPinFilter(std::function<bool(const PinRef&)> accepts) {
  m_pinFilter = std::move(accepts);
  update();
}

void CanvasScene::setLitPin(const PinRef& pin) {
  if (m_litPin == pin) {
    return;
  }
  const ActionId before = m_litPin.action;
  m_litPin = pin;
  for (const ActionId id : {before, pin.action}) {
    if (ActionBox* changed = box(id)) {
      changed->update();
    }
  }
}

void CanvasScene::setLitLink(LinkId link) {
  if (m_litLink == link) {
    return;
  }
  for (const LinkId id : {m_litLink, link}) {
    if (LinkCurve* changed = curve(id)) {
      changed->setLit(id == link);
    }
  }
  m_litLink = link;
}

}  // namespace kelvarin
