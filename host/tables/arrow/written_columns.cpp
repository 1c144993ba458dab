#include "host/tables/arrow/written_columns.h"

#include <QSet>

#include "host/contract/attribute_table.h"
#include "host/contract/missing_column.h"
#include "host/tables/arrow/value_messages.h"
#include "host/tables/settings/column_elements.h"
#include "host/tables/settings/messages.h"
#include "host/tables/settings/on_bad_value.h"

namespace kelvarin {

namespace {

constexpr char16_t kColumn[] = u"Column";
constexpr char16_t kName[] = u"name";
constexpr char16_t kType[] = u"type";

QString faultOfColumn(const QString& name, const QString& type) {
  if (name.isEmpty()) {
    return table_messages::columnWithoutName();
  }
  return StoredType::named(type) ? QString()
                                 : table_messages::badStoredType(
                                       name, type, storedTypeNames().join(QStringLiteral(", ")));
}

}  // namespace

WrittenColumns::WrittenColumns(const XMLNode& action, const GlobalParameters* parameters)
    : m_onBadValue(on_bad_value::kAbort) {
  readAttribute(action, on_bad_value::kAttribute, m_onBadValue, parameters);
  for (int i = 0; i < action.nChildNode(); ++i) {
    const XMLNode child = action.getChildNode(i);
    if (child.name() == kColumn) {
      Column& column = m_columns.emplace_back(Column{{}, {}, child});
      readAttribute(child, kName, column.name, parameters);
      readAttribute(child, kType, column.type, parameters);
    }
  }
}

AttributeDescription WrittenColumns::describedAttribute() {
  return on_bad_value::described(
      QStringLiteral("what happens at a value that does not fit its column's declared type"));
}

ElementDescription WrittenColumns::describedElement() {
  return {.name = QString::fromUtf16(kColumn),
          .meaning = QStringLiteral("fixes the type of a column in the file"),
          .mayRepeat = true,
          .attributes = {
              {QString::fromUtf16(kName), AttributeKind::text, QStringLiteral("the column"),
               QStringLiteral("")},
              {QString::fromUtf16(kType), AttributeKind::text,
               QStringLiteral("its type in the file"), QStringLiteral(""),
               AllowedValues{.inWords = "double, int64, int32, uint32, boolean, text, date, or "
                                        "timestamp_ms, _us or _ns, also with _utc behind"}}}};
}

std::vector<ElementFault> WrittenColumns::faults(const XMLNode& action,
                                                 const TextExpansion& expanded) const {
  std::vector<ElementFault> faults;
  const auto report = [&faults](const XMLNode& element, const QString& message) {
    if (!message.isEmpty()) {
      faults.push_back({LogLevel::error, element, message});
    }
  };
  report(action, on_bad_value::faultOf(expanded(m_onBadValue)));
  QSet<QString> names;
  for (const Column& column : m_columns) {
    const QString name = expanded(column.name);
    const QString fault = faultOfColumn(name, expanded(column.type));
    const bool isTwice = names.contains(name);
    names.insert(name);
    report(column.element,
           fault.isEmpty() && isTwice ? table_messages::declaredTwice(name) : fault);
  }
  return faults;
}

Result<StoredColumns, QString> WrittenColumns::storedColumns(const OneRow& columns,
                                                             const TextExpansion& expanded) const {
  StoredColumns stored = StoredColumns::plain(columns);
  stored.areBadValuesNull = expanded(m_onBadValue) == on_bad_value::kNull;
  for (const Column& column : m_columns) {
    const QString name = expanded(column.name);
    const QString typeName = expanded(column.type);
    const std::optional<StoredType> type = StoredType::named(typeName);
    if (!type) {
      return Failure{faultOfColumn(name, typeName)};
    }
    const int index = columns.getIndexOfColumn(name);
    if (index < 0) {
      return Failure{table_messages::storedColumnAbsent(
          name, typeName, missingColumnHint(name, columns.getColNamesDeep()))};
    }
    const MetaTypeColumn present = columns.getMetaType(index);
    if (!canBeStoredAs(present, *type)) {
      return Failure{table_messages::cannotBeStored(
          name, typeName, storedTypeNames(present).join(QStringLiteral(", ")))};
    }
    stored.types[static_cast<std::size_t>(index)] = *type;
  }
  return stored;
}

void WrittenColumns::renameColumn(const QString& oldName, const QString& newName) {
  for (Column& column : m_columns) {
    column.name = column.name == oldName ? newName : column.name;
  }
}

void WrittenColumns::saveAttribute(std::wostringstream& out) const {
  on_bad_value::save(out, m_onBadValue);
}

void WrittenColumns::saveChildrenAndEnd(std::wostringstream& out, const char* action) const {
  saveColumnElements(out, action, m_columns, kType, &Column::type);
}

}  // namespace kelvarin
