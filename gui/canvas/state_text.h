// What canvas and screen readers say about an action, and the mark that stands for its state.
//
// States differ by mark and words, and by their colour only in addition.
#pragma once

#include <QPainter>
#include <QString>

#include "gui/document/action_state.h"
#include "gui/document/edited_graph.h"

namespace kelvarin {

enum class StateMark { none, waiting, running, done, failed, stopped, changed, off, warning };

// The line at the bottom of a box.
struct StatusLine {
  StateMark mark = StateMark::none;
  QString text;
};

// "19,811", with the separators of the user's language.
QString groupedCount(long long count);
// "1 row", "19,811 rows".
QString rowsText(long long count);
// "0.04 s", "2 min 10 s".
QString timeText(double seconds);

// `problem` is what a check has found; empty when nothing.
StatusLine statusLine(const EditedGraph& graph, ActionId action, const ActionState& state,
                      const QString& problem);
// "speed, Calculator, done, 19,811 rows, reads from flights, feeds late?".
QString spokenText(const EditedGraph& graph, ActionId action, const ActionState& state,
                   const QString& problem);
QString toolTipOfAction(const EditedGraph& graph, ActionId action, const ActionState& state,
                        const QString& problem);
// `rows` is below 0 when unknown.
QString toolTipOfLink(const EditedGraph& graph, const DrawnLink& link, long long rows);
QString toolTipOfPin(const EditedGraph& graph, const PinRef& pin, long long rows);

// In the square `area`; `fraction` is that of what is running, below 0 when unknown.
void drawStateMark(QPainter& painter, const QRectF& area, StateMark mark, const QColor& color,
                   double fraction = -1.0);

}  // namespace kelvarin
