#include "host/tables/arrow/arrow_columns.h"

#include <algorithm>
#include <numeric>

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

QVector<QString> namesOf(const std::vector<ArrowField>& fields) {
  QVector<QString> names;
  for (const ArrowField& field : fields) {
    names.append(field.name);
  }
  return names;
}

// Chooses the fields of a table that become columns, and settles their types.
class ColumnChooser {
 public:
  ColumnChooser(const QString& source, const std::vector<ArrowField>& fields,
                const ArrowRules& rules)
      : m_source(source),
        m_fields(fields),
        m_rules(rules),
        m_names(namesOf(fields)),
        m_positions(positionsOf(m_names)),
        m_columnOfField(fields.size(), -1) {
    for (qsizetype i = 0; i < m_names.size(); ++i) {
      if (m_positions[m_names[i]] != i) {
        m_repeated.insert(m_names[i]);
      }
    }
  }

  Result<ArrowColumns, ReadFault> columns() {
    const auto chosen = chosenFields();
    if (!chosen) {
      return Failure{chosen.error()};
    }
    for (const std::size_t index : *chosen) {
      if (const auto status = add(index); !status) {
        return Failure{status.error()};
      }
    }
    for (const DeclaredColumn& declared : m_rules.columns.declared) {
      if (const auto status = declare(declared); !status) {
        return Failure{status.error()};
      }
    }
    if (m_made.fields.empty() && !m_made.leftOut.isEmpty()) {
      return faultOf({}, table_messages::nothingReadable(m_source));
    }
    return std::move(m_made);
  }

 private:
  Result<std::vector<std::size_t>, ReadFault> chosenFields() const {
    std::vector<std::size_t> chosen(m_fields.size());
    if (m_rules.columns.chosen.isEmpty()) {
      std::iota(chosen.begin(), chosen.end(), 0);
      return chosen;
    }
    chosen.clear();
    for (const QString& name : m_rules.columns.chosen) {
      const qsizetype index = m_positions.value(name, -1);
      if (index < 0) {
        return faultOf(name, chosenColumnAbsent(m_source, name, m_names));
      }
      chosen.push_back(static_cast<std::size_t>(index));
    }
    return chosen;
  }

  Status<ReadFault> add(std::size_t index) {
    const ArrowField& field = m_fields[index];
    const bool isReadable = !field.types.empty();
    if (!isReadable && m_rules.unreadable == UnreadableColumns::error) {
      return faultOf(field.name,
                     table_messages::unsupportedType(m_source, field.name, field.type) +
                         (m_rules.isOfAttribute ? table_messages::waysAroundType() : QString()));
    }
    if (!isReadable && m_rules.unreadable == UnreadableColumns::skip) {
      m_made.leftOut.append(field.name);
      return Done{};
    }
    if (m_repeated.contains(field.name)) {
      return faultOf(field.name, table_messages::duplicateColumn(m_source, field.name));
    }
    m_columnOfField[index] = static_cast<int>(m_made.fields.size());
    m_made.columns.names.append(field.name);
    m_made.columns.types.push_back(isReadable ? field.types.front() : MetaTypeColumn::text);
    m_made.fields.push_back(static_cast<int>(index));
    m_made.areJson.push_back(!isReadable);
    return Done{};
  }

  // What is said of a column that is not read has no effect.
  Status<ReadFault> declare(const DeclaredColumn& declared) {
    const qsizetype index = m_positions.value(declared.name, -1);
    if (index < 0) {
      return faultOf(declared.name, table_messages::declaredColumnAbsent(m_source, declared.name,
                                                                         shownNames(m_names)));
    }
    const int found = m_columnOfField[static_cast<std::size_t>(index)];
    if (found < 0) {
      return Done{};
    }
    const auto column = static_cast<std::size_t>(found);
    const ArrowField& field = m_fields[static_cast<std::size_t>(index)];
    const std::vector<MetaTypeColumn> types =
        m_made.areJson[column] ? std::vector{MetaTypeColumn::text} : field.types;
    if (std::ranges::find(types, declared.type) == types.end()) {
      QStringList possible;
      for (const MetaTypeColumn type : types) {
        possible += letterOf(type);
      }
      return faultOf(declared.name,
                     table_messages::cannotBeDeclared(m_source, declared.name, field.type,
                                                      letterOf(declared.type),
                                                      possible.join(QStringLiteral(" or "))));
    }
    m_made.columns.types[column] = declared.type;
    return Done{};
  }

  const QString& m_source;
  const std::vector<ArrowField>& m_fields;
  const ArrowRules& m_rules;
  const QVector<QString> m_names;
  const QHash<QString, qsizetype> m_positions;
  QSet<QString> m_repeated;          // names of several fields
  std::vector<int> m_columnOfField;  // -1: it is not read
  ArrowColumns m_made;
};

}  // namespace

Result<ArrowColumns, ReadFault> arrowColumnsOf(const QString& source,
                                               const std::vector<ArrowField>& fields,
                                               const ArrowRules& rules) {
  return ColumnChooser(source, fields, rules).columns();
}

}  // namespace kelvarin
