#include "ui/debugger/parts_model.h"

#include <QStringList>

#include "host/widgets/icons.h"
#include "ui/language/shown_value.h"
#include "ui/widgets/cell_roles.h"
#include "ui/widgets/fixed_font.h"

namespace kelvarin {

bool PartsModel::setValues(PartValues values) {
  const bool isSameTree = values.tree.expression() == m_values.tree.expression() &&
                          values.tree.size() == m_values.tree.size();
  if (isSameTree) {
    m_values = std::move(values);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
      emit dataChanged(createIndex(m_rows[i], valueColumn, i),
                       createIndex(m_rows[i], noteColumn, i));
    }
    return false;
  }
  beginResetModel();
  m_values = std::move(values);
  m_rows.assign(m_values.tree.size(), 0);
  for (const ExpressionPart& part : m_values.tree.parts()) {
    for (std::size_t i = 0; i < part.parts.size(); ++i) {
      m_rows[part.parts[i]] = static_cast<int>(i);
    }
  }
  endResetModel();
  return true;
}

std::vector<QModelIndex> PartsModel::origins() const {
  std::vector<QModelIndex> origins;
  for (std::size_t i = 0; i < m_values.tree.size(); ++i) {
    if (m_values.values[i].isOrigin) {
      origins.push_back(createIndex(m_rows[i], partColumn, i));
    }
  }
  return origins;
}

QModelIndex PartsModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) {
    return {};
  }
  const std::size_t part = parent.isValid()
                               ? m_values.tree[partOf(parent)].parts[static_cast<std::size_t>(row)]
                               : m_values.tree.root();
  return createIndex(row, column, part);
}

QModelIndex PartsModel::parent(const QModelIndex& index) const {
  if (!index.isValid()) {
    return {};
  }
  const std::size_t parent = m_values.tree[partOf(index)].parent;
  return parent == ExpressionPart::kNone ? QModelIndex()
                                         : createIndex(m_rows[parent], partColumn, parent);
}

int PartsModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) {
    return isEmpty() ? 0 : 1;
  }
  return parent.column() > 0 ? 0 : static_cast<int>(m_values.tree[partOf(parent)].parts.size());
}

int PartsModel::columnCount(const QModelIndex&) const {
  return columnTotal;
}

QString PartsModel::noteOf(const PartValue& part) const {
  QStringList notes;
  if (!part.isUsed) {
    notes += tr("not used in this row");
  }
  if (part.isOrigin) {
    notes += part.origin;
  }
  if (part.mayDiffer) {
    notes += tr("may differ");
  }
  if (!part.hasValue()) {
    notes += part.failure.section(u'\n', 0, 0);
  }
  return notes.join(QStringLiteral("; "));
}

QVariant PartsModel::valueData(const PartValue& part, int role) const {
  if (!part.hasValue()) {
    switch (role) {
      case Qt::DisplayRole:
        return tr("error");
      case Qt::ToolTipRole:
        return part.failure;
      case Qt::DecorationRole:
        return icon(Severity::error);
      default:
        return {};
    }
  }
  const ShownValue shown = shownValue(part.value);
  switch (role) {
    case Qt::DisplayRole:
      return shown.text;
    case Qt::ToolTipRole:
      return shown.whole;
    case Qt::DecorationRole:
      return part.isOrigin ? QVariant(icon(Severity::warning)) : QVariant();
    case kValueKindRole:
      return static_cast<int>(shown.kind);
    default:
      return {};
  }
}

QVariant PartsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const std::size_t at = partOf(index);
  const PartValue& part = m_values.values[at];
  if (index.column() == valueColumn && m_values.tree[at].hasValue()) {
    return valueData(part, role);
  }
  const bool isText = role == Qt::DisplayRole || role == Qt::ToolTipRole;
  if (index.column() == noteColumn) {
    return isText ? QVariant(noteOf(part)) : QVariant();
  }
  if (index.column() != partColumn) {
    return {};
  }
  if (role == Qt::FontRole) {
    return fixedFont();
  }
  return isText ? QVariant(m_values.tree.textOf(at).simplified()) : QVariant();
}

QVariant PartsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return {};
  }
  switch (section) {
    case partColumn:
      return tr("Part of the expression");
    case valueColumn:
      return tr("Value");
    default:
      return tr("Note");
  }
}

}  // namespace kelvarin
