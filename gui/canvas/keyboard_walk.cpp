#include "gui/canvas/keyboard_walk.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "gui/canvas/action_box.h"

namespace kelvarin {

namespace {

// What lies beside the way counts more than what lies along it.
constexpr double kSideways = 2.5;

ActionId alongLinks(const CanvasScene& scene, ActionId from, bool isForward) {
  const EditedGraph& graph = scene.graph();
  ActionId found = kNoId;
  int firstPin = std::numeric_limits<int>::max();
  double nearest = std::numeric_limits<double>::max();
  for (const LinkId id : graph.linksOf(from)) {
    const DrawnLink& link = graph.link(id);
    const ActionId other = isForward ? link.to : link.from;
    const int pin = isForward ? link.fromPin : link.toPin;
    if ((isForward ? link.from : link.to) != from || scene.box(other) == nullptr) {
      continue;
    }
    const double distance = std::abs(scene.box(other)->pos().y() - scene.box(from)->pos().y());
    if (pin < firstPin || (pin == firstPin && distance < nearest)) {
      found = other;
      firstPin = pin;
      nearest = distance;
    }
  }
  return found;
}

QPointF unitOf(WalkDirection direction) {
  switch (direction) {
    case WalkDirection::left:
      return {-1, 0};
    case WalkDirection::right:
      return {1, 0};
    case WalkDirection::up:
      return {0, -1};
    case WalkDirection::down:
      return {0, 1};
  }
  return {};
}

ActionId nearestTowards(const CanvasScene& scene, ActionId from, WalkDirection direction) {
  const QPointF unit = unitOf(direction);
  const QPointF start = scene.box(from)->body().center();
  ActionId found = kNoId;
  double nearest = std::numeric_limits<double>::max();
  for (const ActionBox* box : scene.boxes()) {
    const QPointF way = box->body().center() - start;
    const double ahead = QPointF::dotProduct(way, unit);
    const double aside = std::abs(way.x() * unit.y() - way.y() * unit.x());
    if (box->id() == from || ahead < 1.0 || aside > 2 * ahead + box->body().height()) {
      continue;
    }
    const double cost = ahead + kSideways * aside;
    if (cost < nearest || (cost == nearest && box->id() < found)) {
      found = box->id();
      nearest = cost;
    }
  }
  return found;
}

}  // namespace

ActionId nextAction(const CanvasScene& scene, ActionId from, WalkDirection direction) {
  if (scene.box(from) == nullptr) {
    const QList<ActionId> order = readingOrder(scene);
    return order.isEmpty() ? kNoId : order.front();
  }
  if (direction == WalkDirection::left || direction == WalkDirection::right) {
    const ActionId linked = alongLinks(scene, from, direction == WalkDirection::right);
    if (linked != kNoId) {
      return linked;
    }
  }
  return nearestTowards(scene, from, direction);
}

QList<ActionId> readingOrder(const CanvasScene& scene) {
  QList<const ActionBox*> boxes(scene.boxes().cbegin(), scene.boxes().cend());
  std::sort(boxes.begin(), boxes.end(), [](const ActionBox* one, const ActionBox* other) {
    return std::pair(one->pos().y(), one->id()) < std::pair(other->pos().y(), other->id());
  });
  QList<ActionId> order;
  auto first = boxes.begin();
  while (first != boxes.end()) {
    // A row is what begins above the middle of its highest box.
    const double middle = (*first)->body().center().y();
    const auto end = std::find_if(
        first, boxes.end(), [middle](const ActionBox* box) { return box->pos().y() > middle; });
    std::sort(first, end, [](const ActionBox* one, const ActionBox* other) {
      return std::pair(one->pos().x(), one->id()) < std::pair(other->pos().x(), other->id());
    });
    for (; first != end; ++first) {
      order.append((*first)->id());
    }
  }
  return order;
}

}  // namespace kelvarin
