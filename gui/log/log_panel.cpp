#include "gui/log/log_panel.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include "host/widgets/icons.h"

namespace kelvarin {

namespace {

QToolButton* newButton(const QString& label, const QString& toolTip) {
  auto* button = new QToolButton;
  button->setText(label);
  button->setToolTip(toolTip);
  button->setAccessibleName(toolTip);
  button->setFocusPolicy(Qt::StrongFocus);
  button->setAutoRaise(true);
  return button;
}

}  // namespace

LogPanel::LogPanel(QWidget* parent)
    : QWidget(parent), m_model(new LogModel(this)), m_table(new QTableView) {
  m_table->setObjectName(QStringLiteral("log"));
  m_table->setAccessibleName(tr("Log"));
  m_table->setModel(m_model);
  m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  m_table->setTabKeyNavigation(false);
  m_table->setShowGrid(false);
  m_table->setWordWrap(false);
  m_table->verticalHeader()->hide();
  m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  m_table->horizontalHeader()->setHighlightSections(false);
  m_table->horizontalHeader()->setStretchLastSection(true);
  m_table->setColumnWidth(LogModel::level, fontMetrics().averageCharWidth() * 16);
  m_table->setColumnWidth(LogModel::action, fontMetrics().averageCharWidth() * 22);

  auto* title = new QLabel(tr("&Log"));
  title->setBuddy(m_table);
  QToolButton* copyButton = newButton(tr("Copy"), tr("Copy the selected lines, or all"));
  QToolButton* clearButton = newButton(tr("Clear"), tr("Remove all lines from the log"));
  connect(copyButton, &QToolButton::clicked, this, &LogPanel::copy);
  connect(clearButton, &QToolButton::clicked, m_model, &LogModel::clear);
  connect(m_table, &QTableView::activated, this, &LogPanel::open);
  connect(m_table, &QTableView::clicked, this, &LogPanel::open);

  auto* copyKey = new QAction(tr("Copy log lines"), m_table);
  copyKey->setShortcut(QKeySequence::Copy);
  copyKey->setShortcutContext(Qt::WidgetShortcut);
  connect(copyKey, &QAction::triggered, this, &LogPanel::copy);
  m_table->addAction(copyKey);

  auto* head = new QHBoxLayout;
  head->addWidget(title);
  head->addStretch();
  head->addWidget(copyButton);
  head->addWidget(clearButton);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(8, 4, 8, 8);
  layout->setSpacing(4);
  layout->addLayout(head);
  layout->addWidget(m_table);
}

void LogPanel::append(const std::vector<LogEntry>& entries) {
  m_model->append(entries);
  m_table->scrollToBottom();
}

void LogPanel::copy() {
  QModelIndexList rows = m_table->selectionModel()->selectedRows();
  if (rows.isEmpty()) {
    for (int row = 0; row < m_model->rowCount(); ++row) {
      rows += m_model->index(row, 0);
    }
  }
  QGuiApplication::clipboard()->setText(m_model->asText(rows));
}

void LogPanel::open(const QModelIndex& index) {
  const LogEntry& line = m_model->entry(index.row());
  if (!line.action.isEmpty()) {
    emit actionWanted(LogEntry(line));  // the log may change meanwhile
  }
}

}  // namespace kelvarin
