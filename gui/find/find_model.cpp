#include "gui/find/find_model.h"

#include <algorithm>
#include <utility>

#include <QElapsedTimer>

namespace kelvarin {

namespace {

constexpr int kPieceMilliseconds = 4;
constexpr int kRestMilliseconds = 200;     // after the last change of the graph
constexpr qsizetype kShownBefore = 24;     // of a long text, in front of the match
constexpr qsizetype kLongestShown = 1000;  // more is never seen in one line

// One line, with the match in sight.
struct ShownText {
  QString text;
  qsizetype begin = 0;
};

ShownText oneLine(const QString& text, qsizetype position) {
  const qsizetype first = position > 2 * kShownBefore ? position - kShownBefore : 0;
  QString line = text.mid(first, kLongestShown);
  line.replace(u'\n', u' ');
  return first == 0 ? ShownText{line, position}
                    : ShownText{QChar(0x2026) + line, position - first + 1};
}

}  // namespace

FindModel::FindModel(GraphCommands& commands, QObject* parent)
    : QAbstractTableModel(parent), m_commands(commands), m_texts(commands.graph()) {
  m_work.setInterval(0);
  m_rest.setSingleShot(true);
  m_rest.setInterval(kRestMilliseconds);
  connect(&m_work, &QTimer::timeout, this, &FindModel::work);
  connect(&m_rest, &QTimer::timeout, this, &FindModel::start);
  connect(&m_texts, &SearchedTexts::changed, this, [this] {
    m_job.reset();  // it may look at actions that are gone
    m_work.stop();
    if (m_isActive) {
      m_rest.start();
    } else {
      m_isOutdated = true;
    }
  });
}

FindModel::~FindModel() = default;

void FindModel::setQuery(const FindQuery& query) {
  if (query != m_query) {
    m_query = query;
    start();
  }
}

void FindModel::setActive(bool isActive) {
  m_isActive = isActive;
  if (isActive && std::exchange(m_isOutdated, false)) {
    start();
  }
}

void FindModel::start() {
  m_rest.stop();
  beginResetModel();
  m_found.clear();
  m_job = std::make_unique<FindJob>(m_texts, m_query);
  endResetModel();
  m_work.start();
}

void FindModel::work() {
  QElapsedTimer time;
  time.start();
  bool isLeft = true;
  while (isLeft && time.elapsed() < kPieceMilliseconds) {
    isLeft = m_job->advance();
  }
  append(m_job->take());
  if (!isLeft || m_found.size() >= kMaxRows) {
    m_work.stop();
    emit ended();
  }
}

void FindModel::append(std::vector<FoundText> found) {
  found.resize(std::min(found.size(), kMaxRows - m_found.size()));
  if (found.empty()) {
    return;
  }
  const int first = rowCount();
  beginInsertRows({}, first, first + static_cast<int>(found.size()) - 1);
  std::ranges::move(found, std::back_inserter(m_found));
  endInsertRows();
}

int FindModel::chosenCount() const {
  return static_cast<int>(std::ranges::count_if(m_found, &FoundText::isChosen));
}

QStringList FindModel::sourcesToRename() const {
  QStringList names;
  if (m_job == nullptr || isSearching()) {
    return names;
  }
  for (const auto& rename : m_job->renames()) {
    if (!rename->hasMaker()) {
      names.append(m_commands.graph().name(rename->origin()));
    }
  }
  return names;
}

ReplacedTexts FindModel::replaceChosen() {
  QList<SearchedText> texts;
  for (const FoundText& found : m_found) {
    if (found.isChosen) {
      texts.append(found.text);
    }
  }
  return replaceInGraph(m_commands, m_query.search, m_query.replacement, texts);
}

// An editor may have committed a change since the search ended.
void FindModel::finishJob() {
  if (m_job == nullptr) {
    m_job = std::make_unique<FindJob>(m_texts, m_query);
  }
  while (m_job->advance()) {
  }
}

QList<ActionId> FindModel::renameColumns() {
  QList<ActionId> changed;
  finishJob();
  const std::unique_ptr<FindJob> job = std::move(m_job);  // the graph changes below
  m_commands.together(tr("Rename column '%1'").arg(m_query.search.text), [&] {
    for (const auto& rename : job->renames()) {
      changed += m_commands.renameColumn(*rename);
    }
  });
  return changed;
}

// ---- The table.

int FindModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_found.size());
}

int FindModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columnCountOfFound;
}

QString FindModel::whereText(const FoundText& found) const {
  switch (found.text.kind) {
    case SearchedText::Kind::name:
      return tr("name");
    case SearchedText::Kind::type:
      return tr("type");
    case SearchedText::Kind::note:
      return tr("note");
    case SearchedText::Kind::expression:
      return found.text.output.isEmpty() ? tr("expression")
                                         : tr("expression of %1").arg(found.text.output);
    case SearchedText::Kind::column:
      return found.text.where.isEmpty() ? tr("column of the file") : found.text.where;
    case SearchedText::Kind::setting:
      return found.text.where;
  }
  return {};
}

QVariant FindModel::shown(const FoundText& found, int column) const {
  switch (column) {
    case action:
      return m_commands.graph().hasAction(found.text.action)
                 ? m_commands.graph().name(found.text.action)
                 : tr("(note)");
    case where:
      return whereText(found);
    case text:
      return oneLine(found.text.text, found.position).text;
    default:
      return found.now.isNull() ? tr("(stays)") : oneLine(found.now, found.position).text;
  }
}

QVariant FindModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};
  }
  const FoundText& row = found(index.row());
  switch (role) {
    case Qt::DisplayRole:
      return shown(row, index.column());
    case Qt::ToolTipRole:
      return index.column() == text  ? row.text.text
             : index.column() == now ? row.now
                                     : shown(row, index.column());
    case Qt::CheckStateRole:
      if (index.column() == action && m_query.task == FindQuery::Task::replaceTexts &&
          !row.now.isNull()) {
        return row.isChosen ? Qt::Checked : Qt::Unchecked;
      }
      return {};
    case matchBegin:
      return index.column() == text ? oneLine(row.text.text, row.position).begin : -1;
    case matchLength:
      return m_query.task == FindQuery::Task::renameColumn ? 0 : m_query.search.text.size();
    default:
      return {};
  }
}

bool FindModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || !flags(index).testFlag(Qt::ItemIsUserCheckable)) {
    return false;
  }
  m_found[static_cast<std::size_t>(index.row())].isChosen = value.toInt() == Qt::Checked;
  emit dataChanged(index, index, {Qt::CheckStateRole});
  emit chosenChanged();
  return true;
}

Qt::ItemFlags FindModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  if (data(index, Qt::CheckStateRole).isValid()) {
    flags |= Qt::ItemIsUserCheckable;
  }
  return flags;
}

QVariant FindModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return {};
  }
  switch (section) {
    case action:
      return tr("Action");
    case where:
      return tr("Where");
    case text:
      return tr("Text");
    default:
      return tr("Becomes");
  }
}

}  // namespace kelvarin
