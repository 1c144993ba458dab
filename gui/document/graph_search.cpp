#include "gui/document/graph_search.h"

#include <functional>

#include <QCoreApplication>
#include <QRegularExpression>

#include "gui/document/xml_text.h"
#include "host/contract/column_user.h"

namespace kelvarin {

namespace {

class SearchTexts {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::GraphSearch)
};

QRegularExpression patternOf(const GraphSearch& search) {
  const QString text = QRegularExpression::escape(search.text);
  QRegularExpression pattern(search.isWholeWord ? QStringLiteral("(?<!\\w)%1(?!\\w)").arg(text)
                                                : text);
  pattern.setPatternOptions(QRegularExpression::UseUnicodePropertiesOption |
                            (search.isCaseSensitive ? QRegularExpression::NoPatternOption
                                                    : QRegularExpression::CaseInsensitiveOption));
  return pattern;
}

// What the host reads of every action is not searched.
bool isSearched(const QString& attribute, bool isAction) {
  static const QStringList kOfHost{QStringLiteral("name"), QStringLiteral("version"),
                                   QStringLiteral("x"), QStringLiteral("y"),
                                   QStringLiteral("disabled")};
  return !isAction || !kOfHost.contains(attribute);
}

// `change` sees every text of an element with its attribute's or element's name; what it returns
// replaces the text, null leaves it.
using ChangeText = std::function<QString(const QString& where, const QString& text)>;

QString withChangedTexts(const QString& element, const ChangeText& change, bool isAction) {
  XmlText xml(element);
  for (const QString& attribute : xml.tag.attributeNames()) {
    const QString changed =
        isSearched(attribute, isAction) ? change(attribute, *xml.tag.value(attribute)) : QString();
    if (!changed.isNull()) {
      xml.tag.set(attribute, changed);
    }
  }
  for (XmlChild& child : xml.children) {
    child.element = withChangedTexts(child.element, change, false);
  }
  if (xml.children.empty() && !xml.head.isEmpty()) {
    if (const QString changed = change(xml.tag.name(), xml.plainText()); !changed.isNull()) {
      xml.setPlainText(changed);
    }
  }
  return xml.text();
}

QStringList expressionsOf(const ActionItem& action) {
  const auto* user = dynamic_cast<const ColumnUser*>(&action);
  return user == nullptr ? QStringList() : user->expressions();
}

}  // namespace

QList<GraphMatch> findInGraph(const EditedGraph& graph, const GraphSearch& search) {
  QList<GraphMatch> matches;
  if (search.text.isEmpty()) {
    return matches;
  }
  const QRegularExpression pattern = patternOf(search);
  for (const ActionId id : graph.actions()) {
    const QStringList expressions = expressionsOf(graph.action(id));
    const auto look = [&](GraphMatch::Kind kind, const QString& where, const QString& text) {
      if (const qsizetype position = text.indexOf(pattern); position >= 0) {
        matches.append({id, kind, where, text, position});
      }
    };
    look(GraphMatch::Kind::name, QStringLiteral("name"), graph.name(id));
    const auto lookAtSetting = [&](const QString& where, const QString& text) {
      look(expressions.contains(text) ? GraphMatch::Kind::expression : GraphMatch::Kind::setting,
           where, text);
      return QString();
    };
    withChangedTexts(QString::fromUtf8(graph.element(id)), lookAtSetting, true);
  }
  return matches;
}

QList<ActionId> replaceInGraph(GraphCommands& commands, const GraphSearch& search,
                               const QString& replacement) {
  QList<ActionId> changed;
  if (search.text.isEmpty()) {
    return changed;
  }
  const EditedGraph& graph = commands.graph();
  const QRegularExpression pattern = patternOf(search);
  const auto replaced = [&](const QString&, const QString& text) {
    return text.contains(pattern) ? QString(text).replace(pattern, replacement) : QString();
  };
  commands.together(SearchTexts::tr("Replace '%1'").arg(search.text), [&] {
    for (const ActionId id : graph.actions()) {
      const QByteArray before = graph.element(id);
      if (const QString name = replaced({}, graph.name(id)); !name.isEmpty()) {
        commands.rename(id, graph.freeName(name));
      }
      const QString element = QString::fromUtf8(graph.element(id));
      if (const QString now = withChangedTexts(element, replaced, true); now != element) {
        commands.setElement(id, now.toUtf8());
      }
      if (graph.element(id) != before) {
        changed.append(id);
      }
    }
  });
  return changed;
}

}  // namespace kelvarin
