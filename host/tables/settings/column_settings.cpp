#include "host/tables/settings/column_settings.h"

#include <QSet>

#include "host/tables/messages.h"

namespace kelvarin {

namespace {

const QString kAbort = QStringLiteral("abort");
const QString kNull = QStringLiteral("null");
const QString kColumn = QStringLiteral("Column");

QString faultOfOnBadValue(const QString& value) {
  return value == kAbort || value == kNull ? QString() : table_messages::badOnBadValue(value);
}

QString faultOfColumn(const QString& name, const QString& meta) {
  if (name.isEmpty()) {
    return table_messages::columnWithoutName();
  }
  const bool isType = meta == u"F" || meta == u"K" || meta == u"U";
  return isType ? QString() : table_messages::badColumnMeta(name, meta);
}

}  // namespace

const std::vector<KnownElements> kColumnElements{
    {QString(), {kColumn}},
    {kColumn, {}},
};

ColumnSettings::ColumnSettings(const XMLNode& action)
    : m_onBadValue(attributeOr(action, u"onBadValue", kAbort)) {
  checkWhileLoading(action, [this](const TextExpansion& expanded) {
    return faultOfOnBadValue(expanded(m_onBadValue));
  });
  QSet<QString> names;
  for (int i = 0; i < action.nChildNode(); ++i) {
    const XMLNode child = action.getChildNode(i);
    if (child.name() != kColumn) {
      continue;
    }
    const ColumnElement& column = m_columns.emplace_back(ColumnElement{
        attributeOr(child, u"name", QString()), attributeOr(child, u"meta", QString())});
    checkWhileLoading(child, [&](const TextExpansion& expanded) {
      const QString name = expanded(column.name);
      const QString fault = faultOfColumn(name, expanded(column.meta));
      const bool isTwice = names.contains(name);
      names.insert(name);
      return fault.isEmpty() && isTwice ? table_messages::declaredTwice(name) : fault;
    });
  }
}

Result<ColumnRules, QString> ColumnSettings::rules(const TextExpansion& expanded) const {
  const QString onBadValue = expanded(m_onBadValue);
  if (const QString fault = faultOfOnBadValue(onBadValue); !fault.isEmpty()) {
    return Failure{fault};
  }
  ColumnRules rules{onBadValue == kNull, {}};
  QSet<QString> names;
  for (const ColumnElement& element : m_columns) {
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
  if (m_onBadValue != kAbort) {
    saveAttribute(out, L"onBadValue", m_onBadValue);
  }
}

void ColumnSettings::saveChildrenAndEnd(std::wostringstream& out, const char* action) const {
  if (m_columns.empty()) {
    out << L"/>\n";
    return;
  }
  out << L">\n";
  for (const ColumnElement& column : m_columns) {
    out << L"<Column";
    saveAttribute(out, L"name", column.name);
    saveAttribute(out, L"meta", column.meta);
    out << L"/>\n";
  }
  out << L"</" << action << L">\n";
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
  constexpr qsizetype kMostShown = 50;
  QStringList shown(names.mid(0, kMostShown).toList());
  if (names.size() > kMostShown) {
    shown += table_messages::andMore(names.size() - kMostShown);
  }
  return shown.join(QStringLiteral(", "));
}

}  // namespace kelvarin
