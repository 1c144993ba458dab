#include "gui/document/graph_layout.h"

#include <cmath>

#include <QCoreApplication>

namespace kelvarin {

namespace {

// Between the top left corners of actions that stand side by side, or one below the other.
constexpr double kColumnStep = 240.0;
constexpr double kRowStep = 96.0;

class RemovalTexts {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::GraphCommands)
};

bool isFree(const EditedGraph& graph, QPointF position) {
  for (const ActionId id : graph.actions()) {
    const QPointF distance = graph.position(id) - position;
    if (std::abs(distance.x()) < kColumnStep && std::abs(distance.y()) < kRowStep) {
      return false;
    }
  }
  return true;
}

}  // namespace

QPointF onGrid(QPointF position) {
  return {std::round(position.x()), std::round(position.y())};
}

QRectF onGrid(const QRectF& rectangle) {
  return {onGrid(rectangle.topLeft()),
          QSizeF(std::round(rectangle.width()), std::round(rectangle.height()))};
}

QPointF freePositionBeside(const EditedGraph& graph, const PinRef& pin) {
  const double step = pin.isOutput ? kColumnStep : -kColumnStep;
  return freePositionBelow(graph, graph.position(pin.action) + QPointF(step, pin.pin * kRowStep));
}

QPointF freePositionBelow(const EditedGraph& graph, QPointF position) {
  while (!isFree(graph, position)) {
    position += QPointF(0, kRowStep);
  }
  return position;
}

QHash<ActionId, QPointF> positionsWithSpace(const EditedGraph& graph, const DrawnLink& link) {
  const double left = graph.position(link.to).x();
  const double distance = left - graph.position(link.from).x();
  QHash<ActionId, QPointF> positions;
  if (distance <= 0 || distance >= 2 * kColumnStep) {
    return positions;
  }
  const QPointF shift(2 * kColumnStep - distance, 0);
  QList<ActionId> open{link.to};
  while (!open.isEmpty()) {
    const ActionId current = open.takeLast();
    if (positions.contains(current) || graph.position(current).x() < left) {
      continue;
    }
    positions.insert(current, graph.position(current) + shift);
    for (const LinkId id : graph.linksOf(current)) {
      if (graph.link(id).from == current && graph.link(id).whyBroken.isEmpty()) {
        open.append(graph.link(id).to);
      }
    }
  }
  return positions;
}

PinRef sourceAbove(const EditedGraph& graph, ActionId action, const QSet<ActionId>& removed) {
  QSet<ActionId> seen;
  while (!seen.contains(action)) {
    seen.insert(action);
    LinkId into = kNoId;
    for (int pin = 0; pin < graph.pinCount(action, false) && into == kNoId; ++pin) {
      into = graph.linkInto(action, pin);
    }
    if (into == kNoId) {
      break;
    }
    const DrawnLink& link = graph.link(into);
    if (!removed.contains(link.from)) {
      return {link.from, link.fromPin, true};
    }
    action = link.from;
  }
  return {};
}

QString removalText(const EditedGraph& graph, const GraphSelection& selection) {
  if (selection.actions.size() == 1) {
    return RemovalTexts::tr("Delete '%1'").arg(graph.name(*selection.actions.begin()));
  }
  if (!selection.actions.isEmpty()) {
    return RemovalTexts::tr("Delete %n action(s)", nullptr,
                            static_cast<int>(selection.actions.size()));
  }
  if (!selection.links.isEmpty()) {
    return RemovalTexts::tr("Delete %n link(s)", nullptr, static_cast<int>(selection.links.size()));
  }
  return RemovalTexts::tr("Delete %n note(s)", nullptr, static_cast<int>(selection.notes.size()));
}

}  // namespace kelvarin
