#include "gui/host_editors/inline_table_editor.h"

#include <algorithm>
#include <set>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>

#include "gui/host_editors/inline_table_model.h"
#include "gui/host_editors/table_columns_model.h"
#include "host/widgets/icon_button.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

namespace {

constexpr int kRestMilliseconds = 400;
constexpr int kLongestRestMilliseconds = 10'000;
// A large table is committed only when its user rests for so many times as long as that takes.
constexpr qint64 kRestShare = 20;
const QString kCells = QStringLiteral("cells");  // in the state that is not committed

template <typename Act>
IconButton* addButton(QBoxLayout& layout, IconName name, const char* object, const QString& text,
                      QObject* receiver, Act act) {
  auto* button = new IconButton(name, text);
  button->setObjectName(QLatin1String(object));
  QObject::connect(button, &IconButton::clicked, receiver, act);
  layout.addWidget(button);
  return button;
}

}  // namespace

InlineTableEditor::InlineTableEditor(ActionItem& action, QWidget* parent)
    : HostEditor(action, parent),
      m_model(new InlineTableModel(this)),
      m_table(new QTableView),
      m_question(new InfoLine),
      m_state(new InfoLine),
      m_name(new QLineEdit),
      m_type(new QComboBox) {
  m_model->setContent(InlineContent::of(element()));
  m_rest.setSingleShot(true);
  m_rest.setInterval(kRestMilliseconds);
  m_question->setObjectName(QStringLiteral("question"));
  m_state->setObjectName(QStringLiteral("state"));
  addColumnFields();
  addTable();
  addActions();
  addRowButtons();
  page().addWidget(m_question);
  page().addWidget(m_state);
  auto* form = newForm();
  addLine(*form, QStringLiteral("sortedOn"), tr("S&orted on:"))
      ->setPlaceholderText(tr("for instance: id 0, name A"));
  page().addLayout(form);
  connect(m_model, &InlineTableModel::edited, this, &InlineTableEditor::noteEdit);
  connect(&m_rest, &QTimer::timeout, this, &InlineTableEditor::commit);
  connect(m_question, &InfoLine::linkActivated, this, &InlineTableEditor::answerPaste);
  goTo(0, 0);
  showFaults();
  showColumn();
  showButtons();
}

void InlineTableEditor::addTable() {
  m_table->setModel(m_model);
  m_table->setObjectName(QStringLiteral("table"));
  m_table->setAccessibleName(tr("Table"));
  m_table->setWordWrap(false);
  m_table->setTabKeyNavigation(false);
  m_table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
  m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  m_table->setMinimumHeight(m_table->fontMetrics().height() * 12);
  m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
  page().addWidget(m_table, 1);
  connect(m_table->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
    showColumn();
    showButtons();
  });
  const auto editName = [this] { m_name->setFocus(Qt::OtherFocusReason); };
  connect(m_table->horizontalHeader(), &QHeaderView::sectionDoubleClicked, this, editName);
}

void InlineTableEditor::addTableAction(const QString& text, const QKeySequence& key,
                                       void (InlineTableEditor::*act)()) {
  auto* action = new QAction(text, m_table);
  action->setShortcut(key);
  action->setShortcutContext(Qt::WidgetShortcut);
  connect(action, &QAction::triggered, this, act);
  m_table->addAction(action);
}

void InlineTableEditor::addActions() {
  addTableAction(tr("Copy"), QKeySequence::Copy, &InlineTableEditor::copy);
  addTableAction(tr("Paste"), QKeySequence::Paste, &InlineTableEditor::paste);
  addTableAction(tr("Make null"), Qt::Key_Delete, &InlineTableEditor::makeNull);
  addTableAction(tr("Add a row"), {}, &InlineTableEditor::addRow);
  addTableAction(tr("Remove rows"), {}, &InlineTableEditor::removeRows);
}

void InlineTableEditor::addRowButtons() {
  auto* layout = new QHBoxLayout;
  layout->setSpacing(4);
  layout->addWidget(new QLabel(tr("Rows:")));
  const auto add = [&](IconName name, const char* object, const QString& text, auto act) {
    return addButton(*layout, name, object, text, this, act);
  };
  add(IconName::add, "addRow", tr("Add a row below this one"), [this] { addRow(); });
  m_removeRows =
      add(IconName::remove, "removeRows", tr("Remove the selected rows"), [this] { removeRows(); });
  m_rowUp = add(IconName::up, "rowUp", tr("Move the row up"), [this] { moveRow(-1); });
  m_rowDown = add(IconName::down, "rowDown", tr("Move the row down"), [this] { moveRow(1); });
  layout->addStretch();
  page().addLayout(layout);
}

void InlineTableEditor::addColumnFields() {
  auto* label = new QLabel(tr("Col&umn:"));
  label->setBuddy(m_name);
  m_name->setObjectName(QStringLiteral("columnName"));
  m_name->setAccessibleName(tr("Name of the column"));
  m_type->setObjectName(QStringLiteral("columnType"));
  m_type->setAccessibleName(tr("Type of the column"));
  for (const char* meta : {"F", "K", "U"}) {
    m_type->addItem(TableColumnsModel::typeInWords(QLatin1String(meta)), QLatin1String(meta));
  }
  auto* layout = new QHBoxLayout;
  layout->setSpacing(4);
  layout->addWidget(label);
  layout->addWidget(m_name, 1);
  layout->addWidget(m_type);
  const auto add = [&](IconName name, const char* object, const QString& text, auto act) {
    return addButton(*layout, name, object, text, this, act);
  };
  add(IconName::add, "addColumn", tr("Add a column behind this one"), [this] { addColumn(); });
  m_removeColumn =
      add(IconName::remove, "removeColumn", tr("Remove the column"), [this] { removeColumn(); });
  m_columnLeft =
      add(IconName::left, "columnLeft", tr("Move the column left"), [this] { moveColumn(-1); });
  m_columnRight =
      add(IconName::right, "columnRight", tr("Move the column right"), [this] { moveColumn(1); });
  page().addLayout(layout);
  connect(m_name, &QLineEdit::editingFinished, this, &InlineTableEditor::renameColumn);
  connect(m_type, &QComboBox::activated, this,
          [this] { m_model->setColumnType(currentColumn(), m_type->currentData().toString()); });
}

int InlineTableEditor::currentRow() const {
  return m_table->currentIndex().row();
}

// The first one where the table has no rows, and -1 where it has no columns.
int InlineTableEditor::currentColumn() const {
  const int column = m_table->currentIndex().column();
  return column < 0 && m_model->columnCount() > 0 ? m_model->columnCount() - 1 : column;
}

void InlineTableEditor::goTo(int row, int column) {
  const int lastRow = m_model->rowCount() - 1;
  const int lastColumn = m_model->columnCount() - 1;
  m_table->setCurrentIndex(m_model->index(std::min(row, lastRow), std::min(column, lastColumn)));
  showColumn();
  showButtons();
}

std::vector<int> InlineTableEditor::selectedRows() const {
  std::set<int> rows;
  for (const QModelIndex& cell : selectedCells()) {
    rows.insert(cell.row());
  }
  return {rows.begin(), rows.end()};
}

QModelIndexList InlineTableEditor::selectedCells() const {
  return m_table->selectionModel()->selectedIndexes();
}

void InlineTableEditor::showColumn() {
  const int column = currentColumn();
  const bool hasColumn = column >= 0;
  m_name->setEnabled(hasColumn);
  m_type->setEnabled(hasColumn);
  if (!hasColumn) {
    m_name->clear();
    return;
  }
  const InlineContent::Column& shown = m_model->content().columns[static_cast<std::size_t>(column)];
  m_name->setText(shown.name);
  m_type->setCurrentIndex(
      m_type->findData(shown.meta.isEmpty() ? QStringLiteral("U") : shown.meta));
}

void InlineTableEditor::showButtons() {
  const int row = currentRow();
  const int column = currentColumn();
  m_removeRows->setEnabled(row >= 0);
  m_rowUp->setEnabled(row > 0);
  m_rowDown->setEnabled(row >= 0 && row + 1 < m_model->rowCount());
  m_removeColumn->setEnabled(column >= 0);
  m_columnLeft->setEnabled(column > 0);
  m_columnRight->setEnabled(column >= 0 && column + 1 < m_model->columnCount());
}

void InlineTableEditor::noteEdit() {
  m_question->clear();
  m_withDecimalCommas.clear();
  m_areCellsCommitted = false;
  m_rest.start();
  showButtons();
}

void InlineTableEditor::showFaults() {
  const InlineContent& content = m_model->content();
  if (content.columns.empty()) {
    m_state->setMessage(Severity::information,
                        tr("Paste a table from a spreadsheet, or add a column."));
    return;
  }
  const QStringList faults = content.faults();
  if (faults.isEmpty()) {
    m_state->clear();
  } else {
    m_state->setMessage(Severity::error, faults.join(u'\n'));
  }
}

void InlineTableEditor::collect(EditedElement& element) const {
  m_model->content().writeTo(element);
}

void InlineTableEditor::commit() {
  QWidget* focused = QApplication::focusWidget();
  if (focused != nullptr && m_table->viewport()->isAncestorOf(focused)) {
    m_table->setFocus();  // commits the cell that is being edited
  }
  renameColumn();
  m_rest.stop();
  if (m_areCellsCommitted && HostEditor::uncommittedState().isEmpty()) {
    return;  // a large table takes long to be compared
  }
  showFaults();
  QElapsedTimer timer;
  timer.start();
  m_areCellsCommitted = commitTyped();
  m_rest.setInterval(static_cast<int>(std::clamp<qint64>(
      kRestShare * timer.elapsed(), kRestMilliseconds, kLongestRestMilliseconds)));
}

QMap<QString, QString> InlineTableEditor::uncommittedState() const {
  QMap<QString, QString> texts = HostEditor::uncommittedState();
  if (!m_areCellsCommitted) {
    EditedElement edited = element();
    collect(edited);
    texts[kCells] = QString::fromUtf8(edited.document());
  }
  return texts;
}

void InlineTableEditor::restoreUncommitted(const QMap<QString, QString>& texts) {
  HostEditor::restoreUncommitted(texts);
  if (!texts.contains(kCells)) {
    return;
  }
  if (const auto node = parseXml(texts[kCells].toUtf8())) {
    m_model->setContent(InlineContent::of(EditedElement::of(*node)));
    goTo(0, 0);
    noteEdit();
  }
}

void InlineTableEditor::copy() {
  QApplication::clipboard()->setText(m_model->copied(selectedCells()));
}

void InlineTableEditor::paste() {
  const int row = std::max(0, currentRow());
  const int column = std::max(0, m_table->currentIndex().column());
  const InlineTableModel::Paste pasted =
      m_model->paste(QApplication::clipboard()->text(), row, column);
  goTo(row, column);
  m_withDecimalCommas = pasted.withDecimalCommas;
  if (!m_withDecimalCommas.isEmpty()) {
    m_question->setMessage(
        Severity::warning,
        tr("Pasted values look like numbers with a decimal comma: %1, for instance '%2'.")
            .arg(m_withDecimalCommas.size())
            .arg(m_withDecimalCommas.front().data(Qt::EditRole).toString()),
        {{QStringLiteral("numbers"), tr("Make them numbers")},
         {QStringLiteral("keep"), tr("Keep the texts")}});
  } else if (pasted.tookNames) {
    m_question->setMessage(Severity::information,
                           tr("The first line gave the columns their names."),
                           {{QStringLiteral("row"), tr("Make it a row")},
                            {QStringLiteral("keep"), tr("Keep the names")}});
  }
}

void InlineTableEditor::answerPaste(const QString& id) {
  const QModelIndexList cells = m_withDecimalCommas;
  const int row = currentRow();
  const int column = currentColumn();
  m_question->clear();
  if (id == u"numbers") {
    m_model->useDecimalPoints(cells);
  } else if (id == u"row") {
    m_model->makeNamesARow();
  }
  goTo(row, column);
}

void InlineTableEditor::makeNull() {
  m_model->setNull(selectedCells());
}

void InlineTableEditor::addRow() {
  if (m_model->columnCount() == 0) {
    m_model->addColumn(0);
  }
  const int row = currentRow() < 0 ? m_model->rowCount() : currentRow() + 1;
  const int column = std::max(0, currentColumn());
  m_model->addRow(row);
  goTo(row, column);
}

void InlineTableEditor::removeRows() {
  const int row = currentRow();
  const int column = currentColumn();
  m_model->removeRowsAt(selectedRows());
  goTo(row, column);
}

void InlineTableEditor::moveRow(int step) {
  const int row = currentRow();
  const int column = currentColumn();
  m_model->moveRowTo(row, row + step);
  goTo(row + step, column);
}

void InlineTableEditor::addColumn() {
  const int row = currentRow();
  const int column = currentColumn() + 1;
  m_model->addColumn(column);
  goTo(row, column);
  m_name->setFocus(Qt::OtherFocusReason);
  m_name->selectAll();
}

void InlineTableEditor::removeColumn() {
  const int row = currentRow();
  const int column = currentColumn();
  m_model->removeColumnAt(column);
  goTo(row, column);
}

void InlineTableEditor::moveColumn(int step) {
  const int row = currentRow();
  const int column = currentColumn();
  m_model->moveColumnTo(column, column + step);
  goTo(row, column + step);
}

void InlineTableEditor::renameColumn() {
  const int column = currentColumn();
  if (column >= 0 &&
      m_model->content().columns[static_cast<std::size_t>(column)].name != m_name->text()) {
    m_model->renameColumn(column, m_name->text());
  }
}

}  // namespace kelvarin
