#include "host/tables/arrow/arrow_columns.h"

#include <algorithm>

#include <QSet>

#include "host/tables/arrow/value_messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

Failure<ReadFault> faultOf(const QString& column, const QString& text) {
  return Failure{ReadFault{text, {column}}};
}

QChar letterOf(MetaTypeColumn type) {
  return QChar::fromLatin1(static_cast<char>(type));
}

Result<TableColumns, ReadFault> settledColumns(const QString& source,
                                               const std::vector<ArrowField>& fields) {
  TableColumns columns;
  QSet<QString> known;
  for (const ArrowField& field : fields) {
    if (field.types.empty()) {
      return faultOf(field.name, table_messages::unsupportedType(source, field.name, field.type));
    }
    if (known.contains(field.name)) {
      return faultOf(field.name, table_messages::duplicateColumn(source, field.name));
    }
    known.insert(field.name);
    columns.names.append(field.name);
    columns.types.push_back(field.types.front());
  }
  return columns;
}

}  // namespace

Result<TableColumns, ReadFault> arrowColumnsOf(const QString& source,
                                               const std::vector<ArrowField>& fields,
                                               const std::vector<DeclaredColumn>& declaredColumns) {
  Result<TableColumns, ReadFault> columns = settledColumns(source, fields);
  if (!columns) {
    return columns;
  }
  const QHash<QString, qsizetype> positions = positionsOf(columns->names);
  for (const DeclaredColumn& declared : declaredColumns) {
    const qsizetype index = positions.value(declared.name, -1);
    if (index < 0) {
      return faultOf(declared.name, table_messages::declaredColumnAbsent(
                                        source, declared.name, shownNames(columns->names)));
    }
    const ArrowField& field = fields[static_cast<std::size_t>(index)];
    if (std::find(field.types.begin(), field.types.end(), declared.type) == field.types.end()) {
      QStringList possible;
      for (const MetaTypeColumn type : field.types) {
        possible += letterOf(type);
      }
      return faultOf(declared.name, table_messages::cannotBeDeclared(
                                        source, declared.name, field.type, letterOf(declared.type),
                                        possible.join(QStringLiteral(" or "))));
    }
    columns->types[static_cast<std::size_t>(index)] = declared.type;
  }
  return columns;
}

}  // namespace kelvarin
