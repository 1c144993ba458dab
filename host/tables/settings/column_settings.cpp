#include "host/tables/settings/column_settings.h"

#include <QSet>

#include "host/contract/nearest_names.h"
#include "host/tables/settings/column_elements.h"
#include "host/tables/settings/messages.h"
#include "host/tables/settings/on_bad_value.h"
#include "host/tables/settings/text_list.h"

namespace kelvarin {

namespace {

constexpr char16_t kColumn[] = u"Column";
constexpr char16_t kColumns[] = u"columns";
constexpr char16_t kName[] = u"name";
constexpr char16_t kMeta[] = u"meta";

QString faultOfChosen(const QStringList& chosen) {
  QSet<QString> names;
  for (const QString& name : chosen) {
    if (names.contains(name)) {
      return table_messages::chosenTwice(name);
    }
    names.insert(name);
  }
  return {};
}

QString faultOfColumn(const QString& name, const QString& meta) {
  if (name.isEmpty()) {
    return table_messages::columnWithoutName();
  }
  const bool isType = meta == u"F" || meta == u"K" || meta == u"U";
  return isType ? QString() : table_messages::badColumnMeta(name, meta);
}

}  // namespace

ColumnSettings::ColumnSettings(const XMLNode& action, const GlobalParameters* parameters)
    : m_onBadValue(on_bad_value::kAbort) {
  readAttribute(action, kColumns, m_chosen, parameters);
  readAttribute(action, on_bad_value::kAttribute, m_onBadValue, parameters);
  for (int i = 0; i < action.nChildNode(); ++i) {
    const XMLNode child = action.getChildNode(i);
    if (child.name() == kColumn) {
      Column& column = m_columns.emplace_back(Column{{}, {}, child});
      readAttribute(child, kName, column.name, parameters);
      readAttribute(child, kMeta, column.meta, parameters);
    }
  }
}

std::vector<AttributeDescription> ColumnSettings::describedAttributes() {
  return {{QString::fromUtf16(kColumns), AttributeKind::text,
           QStringLiteral("the columns to read, in this order, with bars between: id|price; \\| is "
                          "a bar; empty: all"),
           QStringLiteral("")},
          on_bad_value::described(
              QStringLiteral("what happens at a value that does not fit its column's type"))};
}

ElementDescription ColumnSettings::describedElement() {
  return {.name = QString::fromUtf16(kColumn),
          .meaning = QStringLiteral("fixes the type of a column"),
          .mayRepeat = true,
          .attributes = {
              {QString::fromUtf16(kName), AttributeKind::text, QStringLiteral("the column"),
               QStringLiteral("")},
              {QString::fromUtf16(kMeta), AttributeKind::text, QStringLiteral("its type"),
               QStringLiteral(""), AllowedValues{.inWords = "F (number), K (key) or U (text)"}}}};
}

std::vector<ElementFault> ColumnSettings::faults(const XMLNode& action,
                                                 const TextExpansion& expanded) const {
  std::vector<ElementFault> faults;
  const auto report = [&faults](const XMLNode& element, const QString& message) {
    if (!message.isEmpty()) {
      faults.push_back({LogLevel::error, element, message});
    }
  };
  report(action, on_bad_value::faultOf(expanded(m_onBadValue)));
  report(action, faultOfChosen(textsOfList(expanded(m_chosen), u'|')));
  QSet<QString> names;
  for (const Column& column : m_columns) {
    const QString name = expanded(column.name);
    const QString fault = faultOfColumn(name, expanded(column.meta));
    const bool isTwice = names.contains(name);
    names.insert(name);
    report(column.element,
           fault.isEmpty() && isTwice ? table_messages::declaredTwice(name) : fault);
  }
  return faults;
}

Result<ColumnRules, QString> ColumnSettings::rules(const TextExpansion& expanded) const {
  const QString onBadValue = expanded(m_onBadValue);
  if (const QString fault = on_bad_value::faultOf(onBadValue); !fault.isEmpty()) {
    return Failure{fault};
  }
  ColumnRules rules{onBadValue == on_bad_value::kNull, {}, textsOfList(expanded(m_chosen), u'|')};
  if (const QString fault = faultOfChosen(rules.chosen); !fault.isEmpty()) {
    return Failure{fault};
  }
  QSet<QString> names;
  for (const Column& element : m_columns) {
    const QString name = expanded(element.name);
    const QString meta = expanded(element.meta);
    if (const QString fault = faultOfColumn(name, meta); !fault.isEmpty()) {
      return Failure{fault};
    }
    if (names.contains(name)) {
      return Failure{table_messages::declaredTwice(name)};
    }
    names.insert(name);
    rules.declared.push_back({name, static_cast<MetaTypeColumn>(meta[0].toLatin1())});
  }
  return rules;
}

void ColumnSettings::saveAttributes(std::wostringstream& out) const {
  if (!m_chosen.isEmpty()) {
    writeAttribute(out, kColumns, m_chosen);
  }
  on_bad_value::save(out, m_onBadValue);
}

void ColumnSettings::saveChildrenAndEnd(std::wostringstream& out, const char* action) const {
  saveColumnElements(out, action, m_columns, kMeta, &Column::meta);
}

QHash<QString, qsizetype> positionsOf(const QVector<QString>& names) {
  QHash<QString, qsizetype> positions;
  positions.reserve(names.size());
  for (qsizetype i = names.size() - 1; i >= 0; --i) {
    positions[names[i]] = i;
  }
  return positions;
}

QString shownNames(const QVector<QString>& names) {
  constexpr qsizetype kMaxShown = 50;
  QStringList shown(names.mid(0, kMaxShown).toList());
  if (names.size() > kMaxShown) {
    shown += table_messages::andMore(names.size() - kMaxShown);
  }
  return shown.join(QStringLiteral(", "));
}

QString chosenColumnAbsent(const QString& source, const QString& chosen,
                           const QVector<QString>& names) {
  return table_messages::chosenColumnAbsent(source, chosen, nearestNames(chosen, names.toList()),
                                            shownNames(names));
}

}  // namespace kelvarin
