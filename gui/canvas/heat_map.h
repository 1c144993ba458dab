// Which of the last run's figures colour the canvas: the time of the actions, or their rows.
//
// Used by: canvas_scene.h, heat_legend.h.
#pragma once

#include <QHash>
#include <QString>

#include "gui/document/action_state.h"
#include "gui/document/graph_parts.h"

namespace kelvarin {

enum class HeatMap { off, time, rows };

// What the heat map shows of an action.
struct ActionHeat {
  double share = -1.0;  // of the largest figure; below 0: nothing is known
  QString text;         // "0.42 s, 38 %", "3,015, 15 %"
  bool operator==(const ActionHeat&) const = default;
};

// The figures of a whole graph.
class HeatScale {
 public:
  HeatScale() = default;
  HeatScale(HeatMap map, const QHash<ActionId, ActionState>& states);

  HeatMap map() const { return m_map; }
  // False where there was no run, or all figures are 0.
  bool hasFigures() const { return m_largest > 0.0; }
  // The largest figure, for the legend: "0.42 s", "19,811 rows".
  QString largestText() const;
  ActionHeat of(const ActionState& state) const;

 private:
  HeatMap m_map = HeatMap::off;
  double m_largest = 0.0;
  double m_total = 0.0;  // of what the percentages are: all time, the most rows
};

}  // namespace kelvarin
