#include "gui/canvas/heat_map.h"

#include <algorithm>
#include <cmath>

#include <QCoreApplication>

#include "gui/canvas/state_text.h"

namespace kelvarin {

namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::CanvasView)
};

// What leaves the action; of a sink, what enters it.
long long rowsOf(const ActionState& state) {
  long long rows = 0;
  for (const long long count : state.rowsOut.empty() ? state.rowsIn : state.rowsOut) {
    rows += count;
  }
  return rows;
}

double figureOf(HeatMap map, const ActionState& state) {
  return map == HeatMap::time ? state.seconds : static_cast<double>(rowsOf(state));
}

}  // namespace

HeatScale::HeatScale(HeatMap map, const QHash<ActionId, ActionState>& states) : m_map(map) {
  if (map == HeatMap::off) {
    return;
  }
  for (const ActionState& state : states) {
    const double figure = figureOf(map, state);
    m_largest = std::max(m_largest, figure);
    m_total += figure;
  }
  if (map == HeatMap::rows) {
    m_total = m_largest;
  }
}

QString HeatScale::largestText() const {
  return m_map == HeatMap::time ? timeText(m_largest) : rowsText(std::llround(m_largest));
}

ActionHeat HeatScale::of(const ActionState& state) const {
  if (!hasFigures() || state.kind == ActionState::Kind::none) {
    return {};
  }
  // Boxes are too small for the word "rows" as well; the legend says it.
  const double figure = figureOf(m_map, state);
  const QString text =
      m_map == HeatMap::time ? timeText(figure) : groupedCount(std::llround(figure));
  return {figure / m_largest, Texts::tr("%1, %2 %").arg(text).arg(qRound(100 * figure / m_total))};
}

}  // namespace kelvarin
