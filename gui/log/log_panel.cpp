#include "gui/log/log_panel.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include "gui/log/log_filter.h"
#include "host/widgets/icons.h"
#include "host/widgets/search_field.h"

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
    : QWidget(parent),
      m_model(new LogModel(this)),
      m_filter(new LogFilter(*m_model, this)),
      m_table(new QTableView),
      m_level(new QComboBox),
      m_search(new SearchField) {
  makeTable();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(8, 4, 8, 8);
  layout->setSpacing(4);
  layout->addLayout(newHead());
  layout->addWidget(m_table);
}

void LogPanel::makeTable() {
  m_table->setObjectName(QStringLiteral("log"));
  m_table->setAccessibleName(tr("Log"));
  m_table->setModel(m_filter);
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
  m_table->setColumnWidth(LogModel::time, fontMetrics().averageCharWidth() * 12);
  connect(m_table, &QTableView::activated, this, &LogPanel::open);
  connect(m_table, &QTableView::clicked, this, &LogPanel::open);

  auto* copyKey = new QAction(tr("Copy log lines"), m_table);
  copyKey->setShortcut(QKeySequence::Copy);
  copyKey->setShortcutContext(Qt::WidgetShortcut);
  connect(copyKey, &QAction::triggered, this, &LogPanel::copy);
  m_table->addAction(copyKey);
}

QHBoxLayout* LogPanel::newHead() {
  auto* title = new QLabel(tr("&Log"));
  title->setBuddy(m_table);
  m_level->setObjectName(QStringLiteral("logLevel"));
  m_level->setAccessibleName(tr("Lines to show"));
  m_level->addItem(tr("All lines"), static_cast<int>(LogLevel::information));
  m_level->addItem(tr("Warnings and errors"), static_cast<int>(LogLevel::warning));
  m_level->addItem(tr("Errors"), static_cast<int>(LogLevel::error));
  m_search->setObjectName(QStringLiteral("logSearch"));
  m_search->setPlaceholderText(tr("Filter"));
  m_search->setAccessibleName(tr("Filter the log"));
  m_search->setList(m_table);
  m_search->setMaximumWidth(fontMetrics().averageCharWidth() * 32);
  connect(m_level, &QComboBox::currentIndexChanged, this, [this] {
    m_filter->setLeastLevel(static_cast<LogLevel>(m_level->currentData().toInt()));
  });
  connect(m_search, &SearchField::searched, m_filter, &LogFilter::setText);
  QToolButton* copyButton = newButton(tr("Copy"), tr("Copy the selected lines, or all"));
  QToolButton* clearButton = newButton(tr("Clear"), tr("Remove all lines from the log"));
  connect(copyButton, &QToolButton::clicked, this, &LogPanel::copy);
  connect(clearButton, &QToolButton::clicked, m_model, &LogModel::clear);

  auto* head = new QHBoxLayout;
  head->setSpacing(8);
  head->addWidget(title);
  head->addStretch();
  head->addWidget(m_search, 1);
  head->addWidget(m_level);
  head->addWidget(copyButton);
  head->addWidget(clearButton);
  return head;
}

// Who reads further up is not taken away from there.
void LogPanel::append(const std::vector<LogEntry>& entries) {
  const QScrollBar* bar = m_table->verticalScrollBar();
  const bool isAtEnd = bar->value() == bar->maximum();
  m_model->append(entries);
  if (isAtEnd) {
    m_table->scrollToBottom();
  }
}

void LogPanel::showLine(int row) {
  const QModelIndex shown = m_filter->mapFromSource(m_model->index(row, 0));
  if (shown.isValid()) {
    m_table->selectRow(shown.row());
    m_table->scrollTo(shown);
  }
}

void LogPanel::copy() {
  QModelIndexList rows = m_table->selectionModel()->selectedRows();
  if (rows.isEmpty()) {
    for (int row = 0; row < m_filter->rowCount(); ++row) {
      rows += m_filter->index(row, 0);
    }
  }
  for (QModelIndex& row : rows) {
    row = m_filter->mapToSource(row);
  }
  QGuiApplication::clipboard()->setText(m_model->asText(rows));
}

void LogPanel::open(const QModelIndex& index) {
  const LogEntry& line = m_filter->entry(index.row());
  if (!line.action.isEmpty()) {
    emit actionWanted(LogEntry(line));  // the log may change meanwhile
  }
}

}  // namespace kelvarin
