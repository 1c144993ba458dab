#include "gui/find/find_panel.h"

#include <algorithm>

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include "gui/find/found_text_delegate.h"
#include "host/widgets/icon_button.h"
#include "host/widgets/info_line.h"
#include "host/widgets/key_list.h"

namespace kelvarin {

namespace {

QLabel* labelOf(const QString& text, QWidget* buddy) {
  auto* label = new QLabel(text);
  label->setBuddy(buddy);
  return label;
}

QHBoxLayout* rowOf(QWidget* row) {
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  return layout;
}

// Names of the first few.
QString listed(const QStringList& names) {
  constexpr int kShown = 5;
  const QStringList shown = names.mid(0, kShown);
  const QString list = QStringLiteral("'%1'").arg(shown.join(QStringLiteral("', '")));
  return names.size() > kShown ? list + QStringLiteral(", \u2026") : list;
}

}  // namespace

FindPanel::FindPanel(GraphCommands& commands, QWidget* parent)
    : QWidget(parent),
      m_graph(commands.graph()),
      m_model(new FindModel(commands, this)),
      m_text(new QLineEdit),
      m_case(new QCheckBox(tr("Match case"))),
      m_word(new QCheckBox(tr("Whole words"))),
      m_count(new QLabel),
      m_replaceRow(nullptr),
      m_replacement(new QLineEdit),
      m_what(new QComboBox),
      m_replace(new QPushButton),
      m_note(new InfoLine),
      m_table(new QTableView) {
  setObjectName(QStringLiteral("find"));
  setAccessibleName(tr("Find"));
  makeTable();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(8, 4, 8, 8);
  layout->setSpacing(4);
  layout->addWidget(newFindRow());
  m_replaceRow = newReplaceRow();
  m_replaceRow->hide();
  layout->addWidget(m_replaceRow);
  layout->addWidget(m_note);
  layout->addWidget(m_table, 1);
  connect(m_model, &FindModel::ended, this, [this] {
    m_table->selectRow(m_row);  // the same search, after a change of the graph
    showOutcome();
  });
  connect(m_model, &FindModel::chosenChanged, this, &FindPanel::showReplaceButton);
  showOutcome();
}

void FindPanel::makeTable() {
  m_table->setObjectName(QStringLiteral("foundTexts"));
  m_table->setAccessibleName(tr("What was found"));
  m_table->setModel(m_model);
  m_table->setItemDelegateForColumn(FindModel::text, new FoundTextDelegate(m_table));
  m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_table->setSelectionMode(QAbstractItemView::SingleSelection);
  m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  m_table->setTabKeyNavigation(false);
  m_table->setShowGrid(false);
  m_table->setWordWrap(false);
  m_table->verticalHeader()->hide();
  m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  m_table->horizontalHeader()->setHighlightSections(false);
  m_table->horizontalHeader()->setStretchLastSection(true);
  const int unit = fontMetrics().averageCharWidth();
  m_table->setColumnWidth(FindModel::action, unit * 28);
  m_table->setColumnWidth(FindModel::where, unit * 28);
  m_table->setColumnWidth(FindModel::text, unit * 48);
  m_table->setColumnHidden(FindModel::now, true);
  connect(m_table, &QTableView::clicked, this,
          [this](const QModelIndex& index) { want(index.row(), false); });
  connect(m_table, &QTableView::activated, this,
          [this](const QModelIndex& index) { want(index.row(), true); });
}

QWidget* FindPanel::newFindRow() {
  m_text->setObjectName(QStringLiteral("findText"));
  m_text->setAccessibleName(tr("Find"));
  m_text->setPlaceholderText(tr("Actions, columns, expressions, settings, notes"));
  m_text->setClearButtonEnabled(true);
  m_text->setMinimumWidth(fontMetrics().averageCharWidth() * 16);
  m_text->installEventFilter(this);
  m_case->setObjectName(QStringLiteral("matchCase"));
  m_word->setObjectName(QStringLiteral("wholeWords"));
  m_count->setTextFormat(Qt::PlainText);
  auto* before = new IconButton(IconName::up, tr("Previous (Shift+F3)"));
  auto* after = new IconButton(IconName::down, tr("Next (F3)"));
  connect(before, &QToolButton::clicked, this, [this] { step(-1); });
  connect(after, &QToolButton::clicked, this, [this] { step(1); });
  connect(m_text, &QLineEdit::textChanged, this, &FindPanel::search);
  connect(m_case, &QCheckBox::toggled, this, &FindPanel::search);
  connect(m_word, &QCheckBox::toggled, this, &FindPanel::search);
  describeKey(*m_text, Qt::Key_Return, tr("Next text that was found"), tr("Find"));
  describeKey(*m_text, Qt::SHIFT | Qt::Key_Return, tr("Text before it"), tr("Find"));
  describeKey(*m_text, Qt::Key_Escape, tr("Close"), tr("Find"));
  auto* row = new QWidget;
  QHBoxLayout* layout = rowOf(row);
  layout->addWidget(labelOf(tr("Find:"), m_text));
  layout->addWidget(m_text, 2);
  layout->addWidget(before);
  layout->addWidget(after);
  layout->addWidget(m_case);
  layout->addWidget(m_word);
  layout->addWidget(m_count, 3);
  return row;
}

QWidget* FindPanel::newReplaceRow() {
  m_replacement->setObjectName(QStringLiteral("replacement"));
  m_replacement->setAccessibleName(tr("Replace by"));
  m_replacement->setClearButtonEnabled(true);
  m_replacement->setMinimumWidth(fontMetrics().averageCharWidth() * 16);
  m_replacement->installEventFilter(this);
  m_what->setObjectName(QStringLiteral("replaceWhat"));
  m_what->setAccessibleName(tr("What to replace"));
  m_what->addItem(tr("In texts"), static_cast<int>(FindQuery::Task::replaceTexts));
  m_what->addItem(tr("Column everywhere"), static_cast<int>(FindQuery::Task::renameColumn));
  m_what->setItemData(0,
                      tr("Replaces the text in names, expressions, settings and notes that "
                         "are ticked in the list."),
                      Qt::ToolTipRole);
  m_what->setItemData(1,
                      tr("The column of exactly this name gets another one, and all actions "
                         "that use it follow."),
                      Qt::ToolTipRole);
  m_replace->setObjectName(QStringLiteral("replace"));
  m_replace->setAutoDefault(false);
  connect(m_replacement, &QLineEdit::textChanged, this, &FindPanel::search);
  connect(m_what, &QComboBox::currentIndexChanged, this, &FindPanel::search);
  connect(m_replace, &QPushButton::clicked, this, &FindPanel::replace);
  auto* row = new QWidget;
  QHBoxLayout* layout = rowOf(row);
  layout->addWidget(labelOf(tr("Replace by:"), m_replacement));
  layout->addWidget(m_replacement, 2);
  layout->addWidget(m_what);
  layout->addWidget(m_replace);
  layout->addStretch(3);
  return row;
}

void FindPanel::open(FindQuery::Task task, const QString& text) {
  m_replaceRow->setVisible(task != FindQuery::Task::find);
  if (task != FindQuery::Task::find) {
    m_what->setCurrentIndex(m_what->findData(static_cast<int>(task)));
  }
  if (!text.isEmpty()) {
    m_text->setText(text);
  }
  m_text->setFocus(Qt::ShortcutFocusReason);
  m_text->selectAll();
  search();
}

FindQuery::Task FindPanel::task() const {
  return m_replaceRow->isHidden() ? FindQuery::Task::find
                                  : static_cast<FindQuery::Task>(m_what->currentData().toInt());
}

void FindPanel::search() {
  m_note->clear();
  m_table->setColumnHidden(FindModel::now, task() == FindQuery::Task::find);
  const FindQuery query{
      {m_text->text(), m_case->isChecked(), m_word->isChecked()}, task(), m_replacement->text()};
  m_row = query.search == m_model->query().search ? m_row : -1;
  m_model->setQuery(query);
  showOutcome();
}

// While nothing is about to change, the note of the last change stays.
void FindPanel::showOutcome() {
  m_count->setText(countText());
  showReplaceButton();
  if (m_model->chosenCount() == 0) {
    return;
  }
  if (const QStringList sources = m_model->sourcesToRename(); !sources.isEmpty()) {
    m_note->setMessage(Severity::warning,
                       tr("No action makes this column: what %1 reads has to have the new name.")
                           .arg(listed(sources)));
  } else {
    m_note->clear();
  }
}

QString FindPanel::countText() const {
  const int count = m_model->rowCount();
  const bool isRename = task() == FindQuery::Task::renameColumn;
  if (m_text->text().isEmpty()) {
    return {};
  }
  if (m_model->isSearching()) {
    return tr("Searching \u2026");
  }
  if (count == 0) {
    return isRename ? tr("No such column is used") : tr("Nothing found");
  }
  const QString shown = QLocale().toString(count);
  if (count == FindModel::kMaxRows) {
    return tr("The first %1").arg(shown);
  }
  return isRename ? tr("%1 would change").arg(shown) : tr("%1 found").arg(shown);
}

void FindPanel::showReplaceButton() {
  const bool isRename = task() == FindQuery::Task::renameColumn;
  const int count = m_model->chosenCount();
  m_replace->setText(isRename ? tr("Rename") : tr("Replace (%1)").arg(QLocale().toString(count)));
  m_replace->setEnabled(!m_model->isSearching() && count > 0 &&
                        (!isRename || !m_replacement->text().isEmpty()));
}

void FindPanel::replace() {
  emit aboutToReplace();
  if (task() == FindQuery::Task::renameColumn) {
    const qsizetype count = m_model->renameColumns().size();
    m_note->setMessage(Severity::success,
                       tr("Actions in which the column was renamed: %1.").arg(count));
    return;
  }
  const ReplacedTexts replaced = m_model->replaceChosen();
  const qsizetype count = replaced.changed.size() + replaced.noteCount;
  if (replaced.refused.isEmpty()) {
    m_note->setMessage(Severity::success,
                       tr("Actions and notes that were changed: %1.").arg(count));
    return;
  }
  QStringList names;
  for (const ActionId action : replaced.refused) {
    names.append(m_graph.name(action));
  }
  m_note->setMessage(Severity::warning,
                     tr("Actions and notes that were changed: %1. Not %2: the new text is no valid "
                        "setting there.")
                         .arg(count)
                         .arg(listed(names)));
}

void FindPanel::want(int row, bool takesFocus) {
  if (row >= 0 && row < m_model->rowCount()) {
    m_row = row;
    emit textWanted(FoundText(m_model->found(row)), takesFocus);
  }
}

void FindPanel::step(int direction) {
  const int count = m_model->rowCount();
  if (count == 0) {
    m_text->setFocus(Qt::ShortcutFocusReason);
    m_text->selectAll();
    return;
  }
  const int from = m_row < 0 && direction < 0 ? 0 : std::min(m_row, count - 1);
  const int row = (from + direction + count) % count;
  m_table->selectRow(row);
  m_table->scrollTo(m_model->index(row, FindModel::action));
  want(row, false);
}

bool FindPanel::actOnFieldKey(int key, Qt::KeyboardModifiers modifiers) {
  const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
  if (isEnter && modifiers.testFlag(Qt::ControlModifier)) {
    return false;
  }
  if (isEnter) {
    step(modifiers.testFlag(Qt::ShiftModifier) ? -1 : 1);
    return true;
  }
  if (key == Qt::Key_Down && m_model->rowCount() > 0) {
    m_table->setFocus(Qt::OtherFocusReason);
    if (!m_table->currentIndex().isValid()) {
      m_table->selectRow(0);
    }
    return true;
  }
  return false;
}

bool FindPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) {
    return QWidget::eventFilter(watched, event);
  }
  const auto& key = static_cast<const QKeyEvent&>(*event);
  return actOnFieldKey(key.key(), key.modifiers());
}

// Of any control in the panel that has no use for the key itself.
void FindPanel::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    emit closeWanted();
    return;
  }
  QWidget::keyPressEvent(event);
}

void FindPanel::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  m_model->setActive(true);
}

void FindPanel::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  m_model->setActive(false);
}

}  // namespace kelvarin
