#include "gui/document/graph_search.h"

#include <algorithm>
#include <functional>

#include <QCoreApplication>

#include "host/contract/column_user.h"
#include "host/xml_source/xml_text.h"

namespace kelvarin {

namespace {

class SearchTexts {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::GraphSearch)
};

QRegularExpression patternOf(const GraphSearch& search, const QString& form) {
  QRegularExpression pattern(form.arg(QRegularExpression::escape(search.text)));
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

struct ElementText {
  bool isAttribute = false;
  QString where;   // the attribute or the element
  QString output;  // the name of the element, where it has one
  QString text;
};

// Sees every text of an element; what it returns replaces the text, null leaves it.
using ChangeText = std::function<QString(const ElementText& text)>;

QString withChangedTexts(const QString& element, const ChangeText& change, bool isAction = true) {
  XmlText xml(element);
  const QString name = isAction ? QString() : xml.tag.value(u"name").value_or(QString());
  for (const QString& attribute : xml.tag.attributeNames()) {
    const QString changed = isSearched(attribute, isAction)
                                ? change({true, attribute, name, *xml.tag.value(attribute)})
                                : QString();
    if (!changed.isNull()) {
      xml.tag.set(attribute, changed);
    }
  }
  for (XmlChild& child : xml.children) {
    child.element = withChangedTexts(child.element, change, false);
  }
  if (xml.children.empty() && !xml.head.isEmpty()) {
    const QString changed = change({false, xml.tag.name(), name, xml.plainText()});
    if (!changed.isNull()) {
      xml.setPlainText(changed);
    }
  }
  return xml.text();
}

QStringList expressionsOf(const ActionItem& action) {
  const auto* user = dynamic_cast<const ColumnUser*>(&action);
  return user == nullptr ? QStringList() : user->expressions();
}

// An attribute that one of the two does not have counts as an empty one.
void appendChanges(const QString& elementBefore, const QString& elementNow,
                   QList<ChangedText>& changes) {
  const XmlText before(elementBefore);
  const XmlText now(elementNow);
  const auto compare = [&changes](const QString& where, const QString& one, const QString& other) {
    if (one != other) {
      changes.append({where, one, other});
    }
  };
  for (const QString& attribute : now.tag.attributeNames()) {
    compare(attribute, before.tag.value(attribute).value_or(QString()), *now.tag.value(attribute));
  }
  const std::size_t count = std::min(before.children.size(), now.children.size());
  for (std::size_t i = 0; i < count; ++i) {
    appendChanges(before.children[i].element, now.children[i].element, changes);
  }
  if (before.children.empty() && now.children.empty()) {
    compare(now.tag.name(), before.plainText(), now.plainText());
  }
}

// The texts of one action by their indexes; one that is another text by now stays.
using TextsOfAction = QHash<int, QString>;

bool replaceSettings(GraphCommands& commands, ActionId action, const TextsOfAction& texts,
                     const std::function<QString(const QString&)>& replaced) {
  int index = 0;
  const QString element = QString::fromUtf8(commands.graph().element(action));
  const QString now = withChangedTexts(element, [&](const ElementText& text) {
    const auto wanted = texts.constFind(index++);
    return wanted != texts.constEnd() && *wanted == text.text ? replaced(text.text) : QString();
  });
  return now == element || commands.setElement(action, now.toUtf8());
}

}  // namespace

TextPattern::TextPattern(const GraphSearch& search)
    : m_isEmpty(search.text.isEmpty()),
      m_pattern(patternOf(
          search, search.isWholeWord ? QStringLiteral("(?<!\\w)%1(?!\\w)") : QStringLiteral("%1"))),
      m_wholePattern(patternOf(search, QStringLiteral("\\A%1\\z"))) {}

qsizetype TextPattern::positionIn(const QString& text) const {
  return m_isEmpty ? -1 : text.indexOf(m_pattern);
}

bool TextPattern::isWhole(const QString& text) const {
  return !m_isEmpty && text.contains(m_wholePattern);
}

// Without groups in the pattern, backslashes in the replacement are plain characters.
QString TextPattern::replaced(QString text, const QString& replacement) const {
  return m_isEmpty ? text : text.replace(m_pattern, replacement);
}

QList<SearchedText> textsOf(const EditedGraph& graph, ActionId action) {
  const QStringList expressions = expressionsOf(graph.action(action));
  QList<SearchedText> texts;
  texts.append({.kind = SearchedText::Kind::name,
                .action = action,
                .where = QStringLiteral("name"),
                .text = graph.name(action)});
  texts.append({.kind = SearchedText::Kind::type,
                .action = action,
                .where = QStringLiteral("type"),
                .text = graph.typeName(action)});
  static const QRegularExpression notOfName(QStringLiteral("\\W"),
                                            QRegularExpression::UseUnicodePropertiesOption);
  int index = 0;
  withChangedTexts(QString::fromUtf8(graph.element(action)), [&](const ElementText& text) {
    // An attribute may well have the name of a column that is an expression elsewhere.
    const bool isExpression =
        expressions.contains(text.text) && (!text.isAttribute || text.text.contains(notOfName));
    texts.append(
        {.kind = isExpression ? SearchedText::Kind::expression : SearchedText::Kind::setting,
         .action = action,
         .where = text.where,
         .output = isExpression ? text.output : QString(),
         .text = text.text,
         .index = index++});
    return QString();
  });
  return texts;
}

SearchedText textOf(const EditedGraph& graph, NoteId note) {
  return {.kind = SearchedText::Kind::note, .note = note, .text = graph.note(note).text};
}

QList<ChangedText> changedTexts(const QString& elementBefore, const QString& elementNow) {
  QList<ChangedText> changes;
  appendChanges(elementBefore, elementNow, changes);
  return changes;
}

ReplacedTexts replaceInGraph(GraphCommands& commands, const GraphSearch& search,
                             const QString& replacement, const QList<SearchedText>& texts) {
  const EditedGraph& graph = commands.graph();
  const TextPattern pattern(search);
  const auto replaced = [&](const QString& text) { return pattern.replaced(text, replacement); };
  QHash<ActionId, TextsOfAction> settings;
  ReplacedTexts result;
  const auto note = [&result](ActionId action, bool isDone) {
    QList<ActionId>& list = isDone ? result.changed : result.refused;
    if (!list.contains(action)) {
      list.append(action);
    }
  };
  commands.together(SearchTexts::tr("Replace '%1'").arg(search.text), [&] {
    for (const SearchedText& text : texts) {
      if (text.kind == SearchedText::Kind::note && graph.hasNote(text.note)) {
        const DrawnNote drawn = graph.note(text.note);
        commands.setNote(drawn.id, drawn.rectangle, replaced(drawn.text), drawn.colour);
        ++result.noteCount;
      } else if (text.kind == SearchedText::Kind::name && graph.hasAction(text.action)) {
        const QString name = replaced(graph.name(text.action));
        note(text.action,
             name == graph.name(text.action) ||
                 (!name.isEmpty() && commands.rename(text.action, graph.freeName(name))));
      } else if (text.index >= 0 && graph.hasAction(text.action)) {
        settings[text.action].insert(text.index, text.text);
      }
    }
    for (const ActionId action : graph.actions()) {
      if (settings.contains(action)) {
        note(action, replaceSettings(commands, action, settings[action], replaced));
      }
    }
  });
  return result;
}

}  // namespace kelvarin
