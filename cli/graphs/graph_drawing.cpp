#include "cli/graphs/graph_drawing.h"

#include <algorithm>
#include <set>
#include <utility>

#include <QHash>
#include <QSet>
#include <QStringList>

namespace kelvarin {

namespace {

constexpr int kShownOfOneKind = 8;  // rows of a table, for instance

QString counted(std::size_t count, const char* thing) {
  return QString::number(count) + u' ' + QLatin1String(thing) +
         QLatin1String(count == 1 ? "" : "s");
}

// Actions behind those that feed them; those in a cycle come as they are in the file.
std::vector<std::size_t> orderOfRows(const GraphFacts& graph) {
  const std::size_t count = graph.actions.size();
  std::vector<int> missing(count, 0);  // actions that must come first
  std::vector<std::vector<std::size_t>> readers(count);
  for (const LinkFacts& link : graph.links) {
    const int from = graph.indexOf(link.from);
    const int to = graph.indexOf(link.to);
    if (from >= 0 && to >= 0) {
      ++missing[static_cast<std::size_t>(to)];
      readers[static_cast<std::size_t>(from)].push_back(static_cast<std::size_t>(to));
    }
  }
  std::set<std::pair<int, std::size_t>> open;  // by what is missing, then as in the file
  for (std::size_t i = 0; i < count; ++i) {
    open.insert({missing[i], i});
  }
  std::vector<std::size_t> order;
  while (!open.empty()) {
    const std::size_t next = open.begin()->second;
    open.erase(open.begin());
    order.push_back(next);
    for (const std::size_t reader : readers[next]) {
      if (open.erase({missing[reader], reader}) > 0) {
        open.insert({--missing[reader], reader});
      }
    }
  }
  return order;
}

QString attributesInWords(const std::vector<NamedValue>& attributes) {
  QString words;
  for (const NamedValue& attribute : attributes) {
    words += QStringLiteral(" %1='%2'").arg(attribute.name, attribute.value);
  }
  return words;
}

QString lineOf(const ActionFact& fact) {
  if (fact.element.isEmpty()) {
    return QStringLiteral("    %1 = %2\n")
        .arg(fact.attributes.front().name, fact.attributes.front().value);
  }
  QString text = fact.text.trimmed();
  text.replace(u'\n', QStringLiteral("\n      ") + QString(2 * fact.depth, u' '));
  return QString(2 + 2 * fact.depth, u' ') + fact.element + attributesInWords(fact.attributes) +
         (text.isEmpty() ? QString() : QStringLiteral(": ") + text) + u'\n';
}

// Behind the element at `index` and all inside it.
std::size_t endOf(const std::vector<ActionFact>& facts, std::size_t index) {
  std::size_t end = index + 1;
  while (end < facts.size() && facts[end].depth > facts[index].depth) {
    ++end;
  }
  return end;
}

// The texts of an element that holds nothing but a list of them; empty for others.
QStringList listedTexts(const std::vector<ActionFact>& facts, std::size_t index) {
  const std::size_t end = endOf(facts, index);
  QStringList texts;
  for (std::size_t i = index + 1; i < end; ++i) {
    const bool isNull = !facts[i].attributes.empty() && facts[i].attributes.front().name == u"null";
    if (facts[i].depth != facts[index].depth + 1 || (!facts[i].attributes.empty() && !isNull)) {
      return {};
    }
    texts += isNull ? QStringLiteral("null") : facts[i].text;
  }
  return texts;
}

// Of elements of one kind, the first ones of a run.
QString factsInWords(const std::vector<ActionFact>& facts) {
  QString text;
  std::size_t runStart = 0;
  int count = 0;  // of elements like the one at runStart
  for (std::size_t i = 0; i < facts.size();) {
    const ActionFact& fact = facts[i];
    const bool isLike = count > 0 && fact.element == facts[runStart].element &&
                        fact.depth == facts[runStart].depth && !fact.element.isEmpty();
    if (!isLike) {
      runStart = i;
      count = 0;
    }
    const QStringList texts = listedTexts(facts, i);
    const bool isCounted = isLike || texts.size() > 1 || endOf(facts, i) == i + 1;
    count += isCounted ? 1 : 0;
    if (count > kShownOfOneKind) {
      int left = 0;
      while (i < facts.size() && facts[i].depth == facts[runStart].depth &&
             facts[i].element == facts[runStart].element) {
        i = endOf(facts, i);
        ++left;
      }
      text += QString(2 + 2 * facts[runStart].depth, u' ') +
              QStringLiteral("... and %1 more\n").arg(left);
      count = 0;
      continue;
    }
    if (texts.isEmpty()) {
      text += lineOf(fact);
      ++i;
      continue;
    }
    ActionFact list = fact;
    list.text = texts.join(QStringLiteral(" | "));
    text += lineOf(list);
    i = endOf(facts, i);
  }
  return text;
}

QString escapedFor(QString text, const QString& quote) {
  return text.replace(u'"', quote).replace(u'\n', u' ');
}

QString pinsOf(const LinkFacts& link) {
  return link.fromPin == u"0" && link.toPin == u"0" ? QString() : link.fromPin + u':' + link.toPin;
}

}  // namespace

QString outlineOf(const GraphFacts& graph, const QString& file) {
  QString text = file + QStringLiteral(": ") + counted(graph.actions.size(), "action") +
                 QStringLiteral(", ") + counted(graph.links.size(), "link") + QStringLiteral(", ") +
                 counted(graph.parameters.size(), "parameter") + u'\n';
  if (!graph.parameters.empty()) {
    text += QStringLiteral("\nParameters\n");
  }
  for (const NamedValue& parameter : graph.parameters) {
    text += QStringLiteral("  %1 = %2\n").arg(parameter.name, parameter.value);
  }
  QHash<QString, std::vector<const LinkFacts*>> linksInto;
  for (const LinkFacts& link : graph.links) {
    linksInto[link.to].push_back(&link);
  }
  for (const std::size_t index : orderOfRows(graph)) {
    const ActionFacts& action = graph.actions[index];
    text += QStringLiteral("\n%1 (%2)%3\n")
                .arg(action.name, action.typeName,
                     action.isDisabled ? QStringLiteral(", switched off") : QString());
    for (const LinkFacts* link : linksInto.value(action.name)) {
      text += QStringLiteral("  <- ") + textOfLink(*link).section(QStringLiteral(" -> "), 0, 0) +
              (link->toPin == u"0" ? QString() : QStringLiteral(" into pin %1").arg(link->toPin)) +
              u'\n';
    }
    text += factsInWords(action.facts);
  }
  for (const QString& note : graph.notes) {
    text += QStringLiteral("\nNote: %1\n").arg(note.simplified());
  }
  return text;
}

QString mermaidOf(const GraphFacts& graph) {
  QSet<QString> sources;
  QSet<QString> readers;
  for (const LinkFacts& link : graph.links) {
    sources.insert(link.from);
    readers.insert(link.to);
  }
  QString text = QStringLiteral("flowchart LR\n");
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    const ActionFacts& action = graph.actions[i];
    const bool isEnd = sources.contains(action.name) != readers.contains(action.name);
    const QString label = QStringLiteral("\"%1<br/>%2\"")
                              .arg(escapedFor(action.name.toHtmlEscaped().replace(
                                                  QStringLiteral("&quot;"), QStringLiteral("\"")),
                                              QStringLiteral("#quot;")),
                                   action.typeName);
    text += QStringLiteral("  a%1%2%3%4%5\n")
                .arg(i)
                .arg(isEnd ? u"([" : u"[", label, isEnd ? u"])" : u"]",
                     action.isDisabled ? QStringLiteral(":::off") : QString());
  }
  for (const LinkFacts& link : graph.links) {
    const QString pins = pinsOf(link);
    text += QStringLiteral("  a%1 -->%2 a%3\n")
                .arg(QString::number(graph.indexOf(link.from)),
                     pins.isEmpty() ? QString() : QStringLiteral("|\"%1\"|").arg(pins),
                     QString::number(graph.indexOf(link.to)));
  }
  const bool hasDisabled =
      std::ranges::any_of(graph.actions, [](const ActionFacts& each) { return each.isDisabled; });
  return hasDisabled ? text + QStringLiteral("  classDef off stroke-dasharray: 4\n") : text;
}

QString dotOf(const GraphFacts& graph) {
  const auto quoted = [](QString text) {
    return u'"' + escapedFor(text.replace(u'\\', QStringLiteral("\\\\")), QStringLiteral("\\\"")) +
           u'"';
  };
  QString text = QStringLiteral("digraph kelvarin {\n  rankdir=LR;\n  node [shape=box];\n");
  for (const ActionFacts& action : graph.actions) {
    QString label = quoted(action.name);
    label.insert(label.size() - 1, QStringLiteral("\\n") + action.typeName);
    text += QStringLiteral("  %1 [label=%2%3];\n")
                .arg(quoted(action.name), label,
                     action.isDisabled ? QStringLiteral(", style=dashed") : QString());
  }
  for (const LinkFacts& link : graph.links) {
    const QString pins = pinsOf(link);
    text += QStringLiteral("  %1 -> %2%3;\n")
                .arg(quoted(link.from), quoted(link.to),
                     pins.isEmpty() ? QString() : QStringLiteral(" [label=\"%1\"]").arg(pins));
  }
  return text + QStringLiteral("}\n");
}

}  // namespace kelvarin
