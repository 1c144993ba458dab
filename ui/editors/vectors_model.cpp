#include "ui/editors/vectors_model.h"

namespace kelvarin {

namespace {

constexpr qsizetype kShownColumns = 20;

QString columnsText(const QStringList& columns) {
  const QString shown = columns.mid(0, kShownColumns).join(QStringLiteral(", "));
  return columns.size() > kShownColumns ? shown + QStringLiteral(", \u2026") : shown;
}

}  // namespace

void VectorsModel::setVectors(std::vector<InputVariable> vectors) {
  beginResetModel();
  m_vectors = std::move(vectors);
  endResetModel();
}

int VectorsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_vectors.size());
}

int VectorsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant VectorsModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const InputVariable& vector = at(index.row());
  if (role == Qt::ToolTipRole && index.column() == kColumns) {
    return columnsText(vector.columns);
  }
  if (role == Qt::TextAlignmentRole && index.column() == kLength) {
    return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  }
  if (role != Qt::DisplayRole) {
    return {};
  }
  switch (index.column()) {
    case kAlias:
      return vector.name();
    case kLength:
      return static_cast<int>(vector.columns.size());
    default:
      return columnsText(vector.columns);
  }
}

QVariant VectorsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return {};
  }
  switch (section) {
    case kAlias:
      return tr("Alias");
    case kLength:
      return tr("Length");
    case kColumns:
      return tr("Columns");
    default:
      return {};
  }
}

}  // namespace kelvarin
