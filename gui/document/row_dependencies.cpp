#include "gui/document/row_dependencies.h"

#include <QRegularExpression>

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

ActionDependencies dependenciesOf(const EditedGraph& graph, ActionId action) {
  ActionDependencies found{settingsOf(graph.element(action)), {}};
  if (graph.isDisabled(action)) {
    found.settings += " disabled";
  }
  for (const LinkId id : graph.linksOf(action)) {
    const DrawnLink& link = graph.link(id);
    if (link.to == action && link.whyBroken.isEmpty()) {
      found.inputs.emplace(link.from, link.fromPin, link.toPin);
    }
  }
  return found;
}

BranchDependencies dependenciesOfBranch(const EditedGraph& graph, ActionId lastAction) {
  BranchDependencies branch{{}, graph.parameters(), graph.graph().file};
  QList<ActionId> open{lastAction};
  while (!open.isEmpty()) {
    const ActionId action = open.takeLast();
    const auto [added, isNew] = branch.actions.try_emplace(action);
    if (isNew) {
      added->second = dependenciesOf(graph, action);
      for (const auto& input : added->second.inputs) {
        open += std::get<0>(input);
      }
    }
  }
  return branch;
}

}  // namespace kelvarin
