#include "gui/edit/action_list.h"

#include <QLabel>
#include <QListView>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "host/widgets/action_icon.h"
#include "host/widgets/search_field.h"

namespace kelvarin {

namespace {

constexpr int kPictureSize = 24;

// Finds actions by their names and their types.
class FoundActions final : public QSortFilterProxyModel {
 public:
  using QSortFilterProxyModel::QSortFilterProxyModel;

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
    const QModelIndex index = sourceModel()->index(row, 0, parent);
    return QSortFilterProxyModel::filterAcceptsRow(row, parent) ||
           index.data(ActionListModel::typeRole).toString().contains(filterRegularExpression());
  }
};

}  // namespace

ActionListModel::ActionListModel(EditedGraph& graph, QObject* parent)
    : QAbstractListModel(parent), m_graph(graph), m_shown(graph.actions()) {
  for (const auto change : {&EditedGraph::loaded, &EditedGraph::modifiedChanged}) {
    connect(&graph, change, this, &ActionListModel::refresh);
  }
}

void ActionListModel::refresh() {
  if (const QList<ActionId> actions = m_graph.actions(); actions != m_shown) {
    beginResetModel();
    m_shown = actions;
    endResetModel();
  } else if (!m_shown.isEmpty()) {
    emit dataChanged(index(0), index(static_cast<int>(m_shown.size()) - 1));
  }
}

int ActionListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

QModelIndex ActionListModel::indexOf(ActionId id) const {
  return index(static_cast<int>(m_shown.indexOf(id)));
}

QVariant ActionListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const ActionId id = m_shown[index.row()];
  const ActionItem& action = m_graph.action(id);
  const QString type = m_graph.typeName(id);
  const QString name = m_graph.name(id);
  const bool isModified = m_graph.isModified(id);
  switch (role) {
    case idRole:
      return id;
    case nameRole:
      return name;
    case typeRole:
      return type;
    case Qt::DisplayRole:
      return QStringLiteral("%1%2\n%3")
          .arg(name, isModified ? QStringLiteral(" *") : QString(), type);
    case Qt::AccessibleTextRole:
      return isModified ? tr("%1, %2, changed").arg(name, type)
                        : QStringLiteral("%1, %2").arg(name, type);
    case Qt::ToolTipRole:
      return action.toolTip();
    case Qt::DecorationRole:
      return actionIcon(action, kPictureSize);
    default:
      return {};
  }
}

ActionList::ActionList(EditedGraph& graph, QWidget* parent)
    : QWidget(parent),
      m_model(new ActionListModel(graph, this)),
      m_found(new FoundActions(this)),
      m_list(new QListView) {
  m_found->setSourceModel(m_model);
  m_found->setFilterRole(ActionListModel::nameRole);
  m_found->setFilterCaseSensitivity(Qt::CaseInsensitive);
  m_list->setObjectName(QStringLiteral("actions"));
  m_list->setAccessibleName(tr("Actions of the graph"));
  m_list->setModel(m_found);
  m_list->setIconSize({kPictureSize, kPictureSize});
  m_list->setUniformItemSizes(true);
  m_list->setSpacing(4);
  m_list->setTextElideMode(Qt::ElideMiddle);
  m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

  auto* title = new QLabel(tr("&Actions"));
  auto* field = new SearchField;
  field->setPlaceholderText(tr("Search names and types"));
  field->setAccessibleName(tr("Search actions"));
  field->setList(m_list);
  title->setBuddy(m_list);
  connect(field, &SearchField::searched, this, &ActionList::search);
  connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
          &ActionList::choose);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(8, 8, 8, 8);
  layout->setSpacing(4);
  layout->addWidget(title);
  layout->addWidget(field);
  layout->addWidget(m_list);
}

void ActionList::search(const QString& text) {
  const QSignalBlocker noChoice(m_list->selectionModel());
  m_found->setFilterFixedString(text);
}

void ActionList::setCurrent(ActionId action) {
  const QSignalBlocker noChoice(m_list->selectionModel());
  const QModelIndex index = m_found->mapFromSource(m_model->indexOf(action));
  m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
  m_list->viewport()->update();
}

void ActionList::choose(const QModelIndex& index) {
  if (index.isValid()) {
    emit chosen(index.data(ActionListModel::idRole).toInt());
  }
}

}  // namespace kelvarin
