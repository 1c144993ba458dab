#include "gui/window/parameters_model.h"

#include <algorithm>

#include <QGuiApplication>
#include <QPalette>

#include "gui/document/parameter_uses.h"
#include "host/widgets/theme.h"

namespace kelvarin {

ParametersModel::ParametersModel(const EditedGraph& graph, QObject* parent)
    : QAbstractTableModel(parent), m_graph(graph) {
  for (const DrawnParameter& parameter : m_graph.parameters()) {
    m_rows.push_back({parameter.name, parameter.name, parameter.value});
  }
}

QList<DrawnParameter> ParametersModel::parameters() const {
  QList<DrawnParameter> parameters;
  for (const Row& row : m_rows) {
    if (!row.name.isEmpty() || !row.value.isEmpty()) {
      parameters += DrawnParameter{row.name, row.value};
    }
  }
  return parameters;
}

QHash<QString, QString> ParametersModel::newNames() const {
  QHash<QString, QString> names;
  for (const Row& row : m_rows) {
    if (!row.original.isEmpty() && !row.name.isEmpty() && row.name != row.original) {
      names.insert(row.original, row.name);
    }
  }
  return names;
}

QString ParametersModel::fault() const {
  for (int row = 0; row < rowCount(); ++row) {
    for (const Column column : {kName, kValue}) {
      if (const QString why = faultOf(row, column); !why.isEmpty()) {
        return why;
      }
    }
  }
  return {};
}

QString ParametersModel::faultOf(int row, Column column) const {
  const Row& own = m_rows[static_cast<std::size_t>(row)];
  if (column == kName) {
    if (own.name.isEmpty()) {
      return own.value.isEmpty() ? QString() : tr("A value has no name: \"%1\".").arg(own.value);
    }
    if (own.name.contains(u'}')) {
      return tr("'%1' cannot be referred to: a name has no '}'.").arg(own.name);
    }
    return indexOf(own.name) == row ? QString()
                                    : tr("Two parameters are called '%1'.").arg(own.name);
  }
  const QStringList known = namesAbove(row);
  for (const QString& name : parametersIn(own.value)) {
    if (!known.contains(name)) {
      return indexOf(name) < 0 ? tr("The value of '%1' refers to '%2', which is no parameter.")
                                     .arg(own.name, name)
                               : tr("The value of '%1' refers to '%2', which must stand above it.")
                                     .arg(own.name, name);
    }
  }
  return {};
}

std::vector<ParametersModel::Missing> ParametersModel::missing() const {
  const QHash<QString, QString> renamed = newNames();
  std::vector<Missing> missing;
  for (const ActionId id : m_graph.actions()) {
    const QString element = QString::fromUtf8(m_graph.element(id));
    for (const QString& used : parametersOfElement(element)) {
      const QString name = renamed.value(used, used);
      if (indexOf(name) >= 0) {
        continue;
      }
      auto known = std::ranges::find(missing, name, &Missing::name);
      if (known == missing.end()) {
        known = missing.insert(missing.end(), {name, {}});
      }
      known->users += m_graph.name(id);
    }
  }
  return missing;
}

QStringList ParametersModel::namesAbove(int row) const {
  QStringList names;
  for (int above = 0; above < row; ++above) {
    names += m_rows[static_cast<std::size_t>(above)].name;
  }
  return names;
}

QModelIndex ParametersModel::add(const QString& name) {
  const int row = rowCount();
  beginInsertRows({}, row, row);
  m_rows.push_back({{}, name, {}});
  endInsertRows();
  emit edited();
  return index(row, name.isEmpty() ? kName : kValue);
}

void ParametersModel::removeAt(int row) {
  beginRemoveRows({}, row, row);
  m_rows.erase(m_rows.begin() + row);
  endRemoveRows();
  emit edited();
}

int ParametersModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ParametersModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

int ParametersModel::indexOf(const QString& name) const {
  const auto found = std::ranges::find(m_rows, name, &Row::name);
  return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

QStringList ParametersModel::usersOf(const Row& row) const {
  QStringList users;
  if (!row.original.isEmpty()) {
    for (const ActionId id : m_graph.usersOfParameter(row.original)) {
      users += m_graph.name(id);
    }
  }
  for (const Row& other : m_rows) {
    if (!row.name.isEmpty() && parametersIn(other.value).contains(row.name)) {
      users += QStringLiteral("${%1}").arg(other.name);
    }
  }
  return users;
}

QVariant ParametersModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const Row& row = m_rows[static_cast<std::size_t>(index.row())];
  const auto column = static_cast<Column>(index.column());
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return column == kName ? row.name : column == kValue ? row.value : usersOf(row).join(u", ");
    case Qt::ToolTipRole: {
      const QString why = column == kUsedBy ? QString() : faultOf(index.row(), column);
      return why.isEmpty() ? data(index, Qt::DisplayRole) : why;
    }
    case Qt::ForegroundRole:
      return column == kUsedBy || faultOf(index.row(), column).isEmpty()
                 ? QVariant()
                 : severityColor(Severity::error, QGuiApplication::palette());
    default:
      return {};
  }
}

bool ParametersModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || data(index, role) == value) {
    return false;
  }
  if (index.column() == kName) {
    rename(index.row(), value.toString().trimmed());
  } else {
    m_rows[static_cast<std::size_t>(index.row())].value = value.toString();
  }
  emit dataChanged(this->index(0, 0), this->index(rowCount() - 1, kColumnCount - 1));
  emit edited();
  return true;
}

// A name that two rows have for a while refers to the first one.
void ParametersModel::rename(int row, const QString& name) {
  Row& renamed = m_rows[static_cast<std::size_t>(row)];
  const bool isReferredTo = !renamed.name.isEmpty() && indexOf(renamed.name) == row;
  if (isReferredTo && !name.isEmpty() && indexOf(name) < 0) {
    for (Row& other : m_rows) {
      other.value = withRenamedParameters(other.value, {{renamed.name, name}});
    }
  }
  renamed.name = name;
}

Qt::ItemFlags ParametersModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  return index.column() == kUsedBy ? flags : flags | Qt::ItemIsEditable;
}

QVariant ParametersModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) {
    return {};
  }
  return section == kName ? tr("Name") : section == kValue ? tr("Value") : tr("Used by");
}

}  // namespace kelvarin
