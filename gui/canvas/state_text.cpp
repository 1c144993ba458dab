#include "gui/canvas/state_text.h"

#include <cmath>

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

namespace kelvarin {

namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::CanvasView)
};

QString percent(double fraction) {
  return Texts::tr("%1 %").arg(static_cast<int>(std::floor(100 * fraction)));
}

// Of what leaves the action, "3,015 + 16,796" for two pins, or of what enters a sink.
QString rowsOf(const ActionState& state) {
  const std::vector<long long>& counts = state.rowsOut.empty() ? state.rowsIn : state.rowsOut;
  if (counts.empty()) {
    return {};
  }
  if (counts.size() == 1) {
    return rowsText(counts.front());
  }
  QStringList parts;
  for (const long long count : counts) {
    parts.append(groupedCount(count));
  }
  return parts.join(QStringLiteral(" + "));
}

QString joined(const QStringList& parts) {
  QStringList filled = parts;
  filled.removeAll(QString());
  return filled.join(QStringLiteral(", "));
}

StatusLine lineOfRun(const ActionState& state) {
  const QString rows = rowsOf(state);
  switch (state.kind) {
    case ActionState::Kind::none:
      return {};
    case ActionState::Kind::waiting:
      return {StateMark::waiting, Texts::tr("waiting")};
    case ActionState::Kind::running: {
      const QString share = state.fractionDone < 0 ? rows : percent(state.fractionDone);
      return {StateMark::running, share.isEmpty() ? Texts::tr("running") : share};
    }
    case ActionState::Kind::done:
      return {StateMark::done, rows.isEmpty() ? Texts::tr("done") : rows};
    case ActionState::Kind::failed:
      return {StateMark::failed, Texts::tr("failed")};
    case ActionState::Kind::stopped:
      return {StateMark::stopped, Texts::tr("stopped")};
  }
  return {};
}

QString spokenState(const ActionState& state) {
  switch (state.kind) {
    case ActionState::Kind::none:
      return {};
    case ActionState::Kind::running:
      return joined({Texts::tr("running"),
                     state.fractionDone < 0 ? QString() : percent(state.fractionDone),
                     rowsOf(state)});
    case ActionState::Kind::done:
      return joined({Texts::tr("done"), rowsOf(state)});
    case ActionState::Kind::stopped:
      return joined({Texts::tr("stopped"), rowsOf(state)});
    default:
      return lineOfRun(state).text;
  }
}

QStringList neighbours(const EditedGraph& graph, ActionId action, bool above) {
  QStringList names;
  for (const LinkId id : graph.linksOf(action)) {
    const DrawnLink& link = graph.link(id);
    const ActionId other = above ? link.from : link.to;
    if ((above ? link.to : link.from) == action && graph.hasAction(other)) {
      names.append(graph.name(other));
    }
  }
  names.removeDuplicates();
  return names;
}

QString endText(const EditedGraph& graph, ActionId action, int pin, bool isOutput) {
  if (!graph.hasAction(action)) {
    return Texts::tr("an absent action");
  }
  const QString pinName = graph.pinName({action, pin, isOutput});
  return pinName.isEmpty() ? graph.name(action)
                           : Texts::tr("%1 (%2)").arg(graph.name(action), pinName);
}

QPen markPen(const QColor& color, double size) {
  return {color, size / 7.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void drawTriangle(QPainter& painter, const QRectF& area) {
  painter.drawPolygon(
      QPolygonF({QPointF(area.center().x(), area.top()), area.bottomRight(), area.bottomLeft()}));
  const double x = area.center().x();
  painter.drawLine(QPointF(x, area.top() + 0.4 * area.height()),
                   QPointF(x, area.top() + 0.65 * area.height()));
  painter.drawPoint(QPointF(x, area.top() + 0.84 * area.height()));
}

}  // namespace

QString groupedCount(long long count) {
  return QLocale().toString(count);
}

QString rowsText(long long count) {
  return count == 1 ? Texts::tr("1 row") : Texts::tr("%1 rows").arg(groupedCount(count));
}

QString timeText(double seconds) {
  if (seconds < 60.0) {
    return Texts::tr("%1 s").arg(QLocale().toString(seconds, 'f', seconds < 10.0 ? 2 : 1));
  }
  const auto whole = static_cast<long long>(std::llround(seconds));
  return Texts::tr("%1 min %2 s").arg(whole / 60).arg(whole % 60);
}

StatusLine statusLine(const EditedGraph& graph, ActionId action, const ActionState& state,
                      const QString& problem) {
  if (!graph.whyCannotRun(action).isEmpty()) {
    return {StateMark::failed, Texts::tr("cannot run")};
  }
  if (graph.isDisabled(action)) {
    return {StateMark::off, Texts::tr("switched off")};
  }
  if (state.kind == ActionState::Kind::running || state.kind == ActionState::Kind::waiting) {
    return lineOfRun(state);
  }
  if (!problem.isEmpty()) {
    return {StateMark::failed, problem.section(u'\n', 0, 0)};
  }
  StatusLine line = lineOfRun(state);
  if (state.isStale && state.kind != ActionState::Kind::none) {
    line.mark = StateMark::changed;
  }
  return line;
}

QString spokenText(const EditedGraph& graph, ActionId action, const ActionState& state,
                   const QString& problem) {
  QStringList parts{graph.name(action), graph.typeName(action)};
  if (graph.isDisabled(action)) {
    parts.append(Texts::tr("switched off"));
  }
  const QString why = graph.whyCannotRun(action);
  parts.append(why.isEmpty() ? QString() : Texts::tr("cannot run: %1").arg(why));
  parts.append(spokenState(state));
  if (state.kind != ActionState::Kind::none && state.isStale) {
    parts.append(Texts::tr("changed since the last run"));
  }
  parts.append(state.message);
  parts.append(problem);
  const QStringList above = neighbours(graph, action, true);
  const QStringList below = neighbours(graph, action, false);
  if (!above.isEmpty()) {
    parts.append(Texts::tr("reads from %1").arg(above.join(QStringLiteral(", "))));
  }
  if (!below.isEmpty()) {
    parts.append(Texts::tr("feeds %1").arg(below.join(QStringLiteral(", "))));
  }
  return joined(parts);
}

QString toolTipOfAction(const EditedGraph& graph, ActionId action, const ActionState& state,
                        const QString& problem) {
  QStringList lines{Texts::tr("%1 (%2)").arg(graph.name(action), graph.typeName(action))};
  lines.append(graph.whyCannotRun(action));
  if (graph.isDisabled(action)) {
    lines.append(Texts::tr("Switched off: rows go through unchanged."));
  }
  if (state.kind != ActionState::Kind::none) {
    lines.append(state.seconds > 0 ? joined({spokenState(state), timeText(state.seconds)})
                                   : spokenState(state));
    if (state.isStale) {
      lines.append(Texts::tr("The graph has changed since."));
    }
  }
  lines.append(state.message);
  lines.append(problem);
  lines.removeAll(QString());
  return lines.join(u'\n');
}

QString toolTipOfLink(const EditedGraph& graph, const DrawnLink& link, long long rows) {
  const QString ends = Texts::tr("%1 to %2")
                           .arg(endText(graph, link.from, link.fromPin, true),
                                endText(graph, link.to, link.toPin, false));
  if (!link.whyBroken.isEmpty()) {
    return ends + u'\n' + link.whyBroken;
  }
  return rows < 0 ? ends : ends + u'\n' + rowsText(rows);
}

QString toolTipOfPin(const EditedGraph& graph, const PinRef& pin, long long rows) {
  const QString name = graph.pinName(pin);
  QString text =
      pin.isOutput ? Texts::tr("Output %1").arg(pin.pin) : Texts::tr("Input %1").arg(pin.pin);
  if (!name.isEmpty()) {
    text = Texts::tr("%1: %2").arg(text, name);
  }
  text += u'\n' + Texts::tr("Drag from here to draw a link.");
  return rows < 0 ? text : text + u'\n' + rowsText(rows);
}

void drawStateMark(QPainter& painter, const QRectF& area, StateMark mark, const QColor& color,
                   double fraction) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(markPen(color, area.width()));
  painter.setBrush(Qt::NoBrush);
  const double size = area.width();
  const QRectF inner = area.marginsRemoved({size / 8, size / 8, size / 8, size / 8});
  switch (mark) {
    case StateMark::none:
      break;
    case StateMark::waiting:
      painter.drawEllipse(inner);
      painter.drawLine(inner.center(), QPointF(inner.center().x(), inner.top() + size / 6));
      painter.drawLine(inner.center(), inner.center() + QPointF(size / 5, size / 8));
      break;
    case StateMark::running:
      painter.setPen(markPen(QColor(color.red(), color.green(), color.blue(), 80), size));
      painter.drawEllipse(inner);
      painter.setPen(markPen(color, size));
      painter.drawArc(inner, 90 * 16,
                      static_cast<int>(-360 * 16 * (fraction < 0 ? 0.25 : fraction)));
      break;
    case StateMark::done:
      painter.drawPolyline(QPolygonF({QPointF(inner.left(), inner.center().y()),
                                      QPointF(inner.left() + inner.width() * 0.38, inner.bottom()),
                                      QPointF(inner.right(), inner.top() + inner.height() * 0.1)}));
      break;
    case StateMark::failed:
      painter.drawLine(inner.topLeft(), inner.bottomRight());
      painter.drawLine(inner.topRight(), inner.bottomLeft());
      break;
    case StateMark::stopped:
      painter.setBrush(color);
      painter.drawRect(inner);
      break;
    case StateMark::changed:
      painter.drawEllipse(inner);
      break;
    case StateMark::off:
      painter.drawEllipse(inner);
      painter.drawLine(inner.topRight() + QPointF(-size / 9, size / 9),
                       inner.bottomLeft() + QPointF(size / 9, -size / 9));
      break;
    case StateMark::warning:
      drawTriangle(painter, inner);
      break;
  }
  painter.restore();
}

}  // namespace kelvarin
