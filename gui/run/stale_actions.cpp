#include "gui/run/stale_actions.h"

#include <QRegularExpression>

#include "gui/run/downstream.h"

namespace kelvarin {

namespace {

// Behind the first tag.
qsizetype endOfTag(const QString& element) {
  QChar quote;
  for (qsizetype i = 0; i < element.size(); ++i) {
    const QChar sign = element[i];
    if (!quote.isNull()) {
      quote = sign == quote ? QChar() : quote;
    } else if (sign == u'\'' || sign == u'"') {
      quote = sign;
    } else if (sign == u'>') {
      return i + 1;
    }
  }
  return element.size();
}

}  // namespace

QByteArray settingsOf(const QByteArray& element) {
  static const QRegularExpression kWithoutEffect(
      QStringLiteral(R"(\s+(name|x|y)\s*=\s*('[^']*'|"[^"]*"))"));
  const QString text = QString::fromUtf8(element);
  const qsizetype end = endOfTag(text);
  return (text.left(end).remove(kWithoutEffect) + text.mid(end)).toUtf8();
}

StaleActions::Content StaleActions::contentOf(ActionId action) const {
  Content content{settingsOf(m_graph.element(action)), {}};
  if (m_graph.isDisabled(action)) {
    content.settings += " disabled";
  }
  for (const LinkId id : m_graph.linksOf(action)) {
    const DrawnLink& link = m_graph.link(id);
    if (link.to == action && link.whyBroken.isEmpty()) {
      content.inputs.emplace(link.from, link.fromPin, link.toPin);
    }
  }
  return content;
}

void StaleActions::takeSnapshot() {
  m_snapshot.clear();
  m_changed.clear();
  m_parameters = m_graph.parameters();
  m_haveParametersChanged = false;
  for (const ActionId action : m_graph.actions()) {
    m_snapshot.insert(action, contentOf(action));
  }
}

void StaleActions::noteChange(ActionId action) {
  const auto before = m_snapshot.constFind(action);
  if (m_graph.hasAction(action) && before != m_snapshot.constEnd() &&
      *before == contentOf(action)) {
    m_changed.remove(action);
  } else {
    m_changed.insert(action);
  }
}

void StaleActions::noteParameters() {
  m_haveParametersChanged = m_graph.parameters() != m_parameters;
}

QSet<ActionId> StaleActions::withThoseBelow() const {
  const QList<ActionId> all = m_graph.actions();
  if (m_haveParametersChanged) {
    return {all.begin(), all.end()};
  }
  return withDownstream(m_graph, m_changed);
}

}  // namespace kelvarin
