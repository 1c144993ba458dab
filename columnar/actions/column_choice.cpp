#include "columnar/actions/column_choice.h"

#include <QHash>

namespace kelvarin {

namespace {

QString nameOf(const GelFile& file, std::size_t column) {
  return QString::fromStdString(file.column(column).name);
}

// Returns the columns of each name in the order of the rows, each once.
class ColumnsByName {
 public:
  explicit ColumnsByName(const GelFile& file) : m_file(file), m_order(file.columnsInRowOrder()) {
    for (std::size_t i = m_order.size(); i-- > 0;) {
      m_columnsOfName[nameOf(file, m_order[i])].push_back(m_order[i]);
    }
  }

  std::optional<std::size_t> take(const QString& name) {
    const auto entry = m_columnsOfName.find(name);
    if (entry == m_columnsOfName.end() || entry->empty()) {
      return std::nullopt;
    }
    const std::size_t column = entry->back();
    entry->pop_back();
    return column;
  }

  // A column that was not taken.
  std::optional<QString> remaining() const {
    for (const std::size_t column : m_order) {
      QString name = nameOf(m_file, column);
      if (!m_columnsOfName.value(name).empty()) {
        return name;
      }
    }
    return std::nullopt;
  }

 private:
  const GelFile& m_file;
  const std::vector<std::size_t> m_order;
  QHash<QString, std::vector<std::size_t>> m_columnsOfName;  // the last ones first
};

}  // namespace

ColumnChoice::ColumnChoice(const std::optional<QStringList>& names) : m_readsAll(!names) {
  if (names) {
    QStringList once = *names;
    once.removeDuplicates();
    m_names = QVector<QString>(once.begin(), once.end());
  }
}

Result<ChosenColumns, MissingColumn> ColumnChoice::choose(const GelFile& file) {
  if (!m_isDecided) {
    return chooseInFirst(file);
  }
  ColumnsByName columns(file);
  ChosenColumns chosen;
  for (qsizetype i = 0; i < m_names.size(); ++i) {
    const std::optional<std::size_t> column = columns.take(m_names[i]);
    if (!column || file.meta(*column).type() != m_metas[i].type()) {
      return Failure{MissingColumn{m_names[i], false}};
    }
    chosen.push_back(*column);
  }
  if (const auto name = m_readsAll ? columns.remaining() : std::nullopt) {
    return Failure{MissingColumn{*name, true}};
  }
  return chosen;
}

Result<ChosenColumns, MissingColumn> ColumnChoice::chooseInFirst(const GelFile& file) {
  ChosenColumns chosen;
  if (m_readsAll) {
    chosen = file.columnsInRowOrder();
  } else {
    ColumnsByName columns(file);
    for (const QString& name : m_names) {
      const std::optional<std::size_t> column = columns.take(name);
      if (!column) {
        return Failure{MissingColumn{name, false}};
      }
      chosen.push_back(*column);
    }
  }
  m_names.clear();
  for (const std::size_t column : chosen) {
    m_names += nameOf(file, column);
    m_metas += file.meta(column);
  }
  m_isDecided = true;
  return chosen;
}

}  // namespace kelvarin
