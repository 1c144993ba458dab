#include "gui/run/run_report_panel.h"

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QSortFilterProxyModel>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QTreeView>
#include <QUrl>
#include <QVBoxLayout>

#include "gui/run/run_report_model.h"
#include "host/widgets/empty_state.h"

namespace kelvarin {

namespace {

// Actions by the clicked column; what belongs to one stays as it is.
class SortedReport final : public QSortFilterProxyModel {
 public:
  using QSortFilterProxyModel::QSortFilterProxyModel;

 protected:
  bool lessThan(const QModelIndex& left, const QModelIndex& right) const override {
    if (left.parent().isValid()) {
      return sortOrder() == Qt::AscendingOrder ? left.row() < right.row()
                                               : left.row() > right.row();
    }
    return QSortFilterProxyModel::lessThan(left, right);
  }
};

// Rows with some air between them.
class AiryRows final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 8);
  }
};

QToolButton* newButton(const QString& label, const QString& toolTip) {
  auto* button = new QToolButton;
  button->setText(label);
  button->setToolTip(toolTip);
  button->setAccessibleDescription(toolTip);
  button->setFocusPolicy(Qt::StrongFocus);
  button->setAutoRaise(true);
  return button;
}

QString wordFor(GlobalParameters::RunningState state) {
  switch (state) {
    case GlobalParameters::RunningState::endedNormally:
      return QCoreApplication::translate("RunReport", "ok");
    case GlobalParameters::RunningState::stoppedByUser:
      return QCoreApplication::translate("RunReport", "stopped");
    default:
      return QCoreApplication::translate("RunReport", "failed");
  }
}

}  // namespace

QString summaryOf(const RunResult& result) {
  long long rows = 0;
  for (const ActionResult& action : result.actions) {
    for (const long long ofPin : action.rowsOut) {
      rows += action.source < 0 ? ofPin : 0;
    }
  }
  return QCoreApplication::translate("RunReport", "%1, %2 rows, %3 s")
      .arg(wordFor(result.state), QLocale().toString(rows),
           QLocale().toString(result.seconds, 'f', 2));
}

RunReportPanel::RunReportPanel(GraphRun& run, QWidget* parent)
    : QWidget(parent),
      m_run(run),
      m_model(new RunReportModel(this)),
      m_sorted(new SortedReport(this)),
      m_tree(new QTreeView),
      m_summary(new QLabel),
      m_copy(newButton(tr("&Copy"), tr("Copy the report as text"))),
      m_openFolder(newButton(tr("&Open folder"), tr("Open the folder of the selected file"))),
      m_openFolderHere(new QAction(tr("&Open folder"), this)),
      m_pages(new QStackedWidget) {
  makeTree();
  auto* report = new QWidget;
  auto* layout = new QVBoxLayout(report);
  layout->setContentsMargins(8, 4, 8, 8);
  layout->setSpacing(4);
  layout->addWidget(newHead());
  layout->addWidget(m_tree);
  m_pages->addWidget(new EmptyState(
      IconName::play, tr("Nothing has been run yet. Run the graph with F5: this shows the rows, "
                         "the time and the files of each action.")));
  m_pages->addWidget(report);
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->addWidget(m_pages);
  connect(&m_run, &GraphRun::ended, this, &RunReportPanel::showResult);
  showResult();
}

QWidget* RunReportPanel::newHead() {
  auto* head = new QWidget;
  auto* layout = new QHBoxLayout(head);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout->addWidget(m_summary);
  layout->addStretch();
  layout->addWidget(m_openFolder);
  layout->addWidget(m_copy);
  connect(m_copy, &QToolButton::clicked, this, &RunReportPanel::copy);
  connect(m_openFolder, &QToolButton::clicked, this, &RunReportPanel::openFolder);
  return head;
}

void RunReportPanel::makeTree() {
  m_sorted->setSourceModel(m_model);
  m_sorted->setSortRole(RunReportModel::sortRole);
  m_tree->setObjectName(QStringLiteral("runReport"));
  m_tree->setAccessibleName(tr("Run report"));
  m_tree->setModel(m_sorted);
  m_tree->setSortingEnabled(true);
  m_tree->sortByColumn(-1, Qt::AscendingOrder);  // as in the graph
  m_tree->setItemDelegate(new AiryRows(m_tree));
  m_tree->setUniformRowHeights(true);
  m_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
  m_tree->setTextElideMode(Qt::ElideMiddle);
  m_tree->header()->setStretchLastSection(false);
  m_tree->header()->setSectionResizeMode(RunReportModel::actionColumn, QHeaderView::Stretch);
  for (int column = RunReportModel::stateColumn; column < RunReportModel::columnCountOfReport;
       ++column) {
    m_tree->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
  }
  connect(m_tree, &QTreeView::clicked, this, &RunReportPanel::chooseAction);
  connect(m_tree, &QTreeView::activated, this, [this](const QModelIndex& index) {
    if (currentFile().isEmpty()) {
      chooseAction(index);
    } else {
      openFolder();
    }
  });
  auto* copyKey = new QAction(tr("&Copy the report"), m_tree);
  copyKey->setShortcut(QKeySequence::Copy);
  copyKey->setShortcutContext(Qt::WidgetShortcut);
  connect(copyKey, &QAction::triggered, this, &RunReportPanel::copy);
  m_tree->addActions({m_openFolderHere, copyKey});
  m_tree->setContextMenuPolicy(Qt::ActionsContextMenu);
  connect(m_openFolderHere, &QAction::triggered, this, &RunReportPanel::openFolder);
  connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
          &RunReportPanel::enableOpenFolder);
}

void RunReportPanel::enableOpenFolder() {
  const bool isFile = !currentFile().isEmpty();
  m_openFolder->setEnabled(isFile);
  m_openFolderHere->setEnabled(isFile);
}

void RunReportPanel::showResult() {
  const RunResult* result = m_run.result();
  m_pages->setCurrentIndex(result == nullptr ? 0 : 1);
  if (result == nullptr) {
    m_model->clear();
    enableOpenFolder();
    return;
  }
  m_summary->setText(summaryOf(*result));
  m_model->setResult(*result);
  enableOpenFolder();
  for (int row = 0; row < m_sorted->rowCount(); ++row) {
    const QModelIndex action = m_sorted->index(row, 0);
    for (int detail = 0; detail < m_sorted->rowCount(action); ++detail) {
      m_tree->setFirstColumnSpanned(detail, action, true);
    }
  }
}

void RunReportPanel::copy() const {
  QGuiApplication::clipboard()->setText(m_model->asText());
}

void RunReportPanel::chooseAction(const QModelIndex& index) {
  emit actionWanted(index.data(RunReportModel::actionRole).toString());
}

QString RunReportPanel::currentFile() const {
  return m_tree->currentIndex().siblingAtColumn(0).data(RunReportModel::fileRole).toString();
}

void RunReportPanel::openFolder() const {
  const QString file = currentFile();
  if (!file.isEmpty()) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
  }
}

}  // namespace kelvarin
