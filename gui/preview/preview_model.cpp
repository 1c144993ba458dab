#include "gui/preview/preview_model.h"

#include <algorithm>
#include <utility>

#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

// More than a line shows; a cell of a mebibyte is not converted to be painted.
constexpr std::size_t kBytesOfLine = 2000;

QString fromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

PreviewModel::PreviewModel(QObject* parent) : QAbstractTableModel(parent) {}

PreviewModel::~PreviewModel() {
  if (m_rows != nullptr) {
    m_rows->setListener({});
  }
}

void PreviewModel::setRows(std::shared_ptr<PreviewRows> rows, long long rowCount) {
  beginResetModel();
  if (m_rows != nullptr) {
    m_rows->setListener({});
  }
  m_rows = std::move(rows);
  m_sourceRowCount = std::min(rowCount, kMaximumRows);
  m_order.reset();
  if (m_rows != nullptr) {
    m_rows->setListener([this] { m_calls.post([this] { valuesCame(); }); });
  }
  endResetModel();
}

void PreviewModel::setSourceRowCount(long long count) {
  count = std::min(count, kMaximumRows);
  if (m_order != nullptr || count == m_sourceRowCount) {
    m_sourceRowCount = count;
    return;
  }
  const int before = shownRowCount();
  const int after = static_cast<int>(count);
  if (after > before) {
    beginInsertRows({}, before, after - 1);
    m_sourceRowCount = count;
    endInsertRows();
  } else {
    beginRemoveRows({}, after, before - 1);
    m_sourceRowCount = count;
    endRemoveRows();
  }
}

void PreviewModel::setOrder(std::shared_ptr<const RowNumbers> order) {
  beginResetModel();
  m_order = std::move(order);
  endResetModel();
}

long long PreviewModel::sourceRow(int row) const {
  return m_order == nullptr ? row : (*m_order)[static_cast<std::size_t>(row)];
}

PreviewModel::Cell PreviewModel::cell(int row, int column) const {
  const PreviewValue value = m_rows->value(sourceRow(row), column);
  if (!value.isThere) {
    return {false, {}};
  }
  const MetaTypeColumn type = typeOf(column);
  if (fixedSizeOf(type) != 0 || isNullText(value.bytes)) {
    return {true, shownBytes(type, value.bytes)};
  }
  return {true, shownText(fromUtf8(textFromBytes(value.bytes).substr(0, kBytesOfLine)))};
}

PreviewModel::Cell PreviewModel::wholeCell(int row, int column) const {
  const PreviewValue value = m_rows->value(sourceRow(row), column);
  return {value.isThere, value.isThere ? shownBytes(typeOf(column), value.bytes) : ShownValue()};
}

MetaTypeColumn PreviewModel::typeOf(int column) const {
  return m_rows->columns()[static_cast<std::size_t>(column)].meta;
}

QString PreviewModel::nameOf(int column) const {
  return m_rows->columns()[static_cast<std::size_t>(column)].name;
}

int PreviewModel::shownRowCount() const {
  return static_cast<int>(m_order == nullptr ? m_sourceRowCount
                                             : static_cast<long long>(m_order->size()));
}

int PreviewModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || m_rows == nullptr ? 0 : shownRowCount();
}

int PreviewModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() || m_rows == nullptr ? 0 : static_cast<int>(m_rows->columns().size());
}

QVariant PreviewModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole: {
      const Cell shown = cell(index.row(), index.column());
      return shown.isThere ? shown.value.text : tr("reading");
    }
    case Qt::ToolTipRole: {
      const QString whole = cell(index.row(), index.column()).value.whole;
      return whole.isEmpty() ? QVariant() : whole;
    }
    case Qt::TextAlignmentRole:
      return int(Qt::AlignVCenter) |
             int(fixedSizeOf(typeOf(index.column())) != 0 ? Qt::AlignRight : Qt::AlignLeft);
    default:
      return {};
  }
}

QVariant PreviewModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (m_rows == nullptr) {
    return {};
  }
  if (role == kTypeNameRole && orientation == Qt::Horizontal && section < columnCount()) {
    return nameOfType(typeOf(section));
  }
  if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole) {
    return {};
  }
  if (orientation == Qt::Horizontal) {
    return section < columnCount() ? nameOf(section) : QVariant();
  }
  return section < shownRowCount() ? QString::number(sourceRow(section)) : QVariant();
}

QString nameOfType(MetaTypeColumn type) {
  switch (type) {
    case MetaTypeColumn::number:
      return PreviewModel::tr("number");
    case MetaTypeColumn::key:
      return PreviewModel::tr("key");
    default:
      return PreviewModel::tr("text");
  }
}

}  // namespace kelvarin
