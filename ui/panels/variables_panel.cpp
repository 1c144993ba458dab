#include "ui/panels/variables_panel.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "host/contract/screen.h"
#include "host/widgets/icons.h"
#include "host/widgets/info_line.h"
#include "host/widgets/wrapped_height.h"
#include "ui/language/sentence.h"
#include "ui/panels/form_layout.h"
#include "ui/widgets/enhanced_table_delegate.h"
#include "ui/widgets/my_table.h"

namespace kelvarin {

namespace {

constexpr int kShownRows = 2;  // at least

// Of the row and the column of a cell, counted from 0.
const QString kCellKey = QStringLiteral("inputVariable/%1/%2");

}  // namespace

class VariablesPanel::Parts {
 public:
  Parts(VariablesPanel& panel, VariablesModel& model, std::function<QStringList()> expressions);

  void setInputColumns(const PinColumns& columns, bool isComing);
  void updateMissingColumns();
  QMap<QString, QString> uncommitted() const;
  void restore(const QMap<QString, QString>& texts);
  void commit() { m_table->commitOpenCell(); }
  void disconnectModel() { m_model.disconnect(&m_panel); }

 private:
  QToolButton* button(const char* name, IconName icon, const QString& text, void (Parts::*act)());
  QHBoxLayout* tableButtons();
  QVBoxLayout* columnButtons();
  void makeTable();
  void addEmpty();
  void addColumns();
  void addMissing();
  void remove();
  void moveUp() { move(true); }
  void moveDown() { move(false); }
  void move(bool isUp);
  void copyNames();
  void updateButtons();

  // A field that loses the focus while it is destroyed may signal after this object's end.
  QObject m_lifetime;
  VariablesPanel& m_panel;
  VariablesModel& m_model;
  std::function<QStringList()> m_expressions;
  MyTable* m_table;
  QToolButton* m_addColumns;
  QToolButton* m_remove;
  QToolButton* m_up;
  QToolButton* m_down;
  QPushButton* m_addMissing;
  QPushButton* m_copyNames;
  InfoLine* m_note;
};

VariablesPanel::Parts::Parts(VariablesPanel& panel, VariablesModel& model,
                             std::function<QStringList()> expressions)
    : m_panel(panel), m_model(model), m_expressions(std::move(expressions)) {
  auto* layout = new QVBoxLayout(&panel);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kControlSpacing);
  makeTable();
  layout->addLayout(tableButtons());
  layout->addWidget(m_table, 1);
  layout->addLayout(columnButtons());
  m_note = new InfoLine(&panel);
  layout->addWidget(m_note);
  connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, &m_lifetime,
          [this] { updateButtons(); });
  connect(m_table, &MyTable::sortingChanged, &m_lifetime, [this] { updateButtons(); });
  connect(&model, &VariablesModel::edited, &m_lifetime, [this] {
    updateButtons();
    updateMissingColumns();
  });
  connect(&model, &QAbstractItemModel::rowsInserted, m_table, &MyTable::fitColumns);
  connect(&model, &QAbstractItemModel::modelReset, &m_lifetime, [this] {
    m_table->fitColumns();
    updateButtons();
  });
  updateButtons();
  updateMissingColumns();
}

void VariablesPanel::Parts::makeTable() {
  m_table = new MyTable(&m_panel);
  m_table->setObjectName(QStringLiteral("twVariables"));
  m_table->setAccessibleName(VariablesPanel::tr("Input variables"));
  m_table->setModel(&m_model);
  m_table->setRowsDraggable();
  m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_table->setTabKeyNavigation(false);
  m_table->verticalHeader()->hide();
  m_table->horizontalHeader()->setStretchLastSection(true);
  m_table->setMinimumHeight(m_table->horizontalHeader()->sizeHint().height() +
                            kShownRows * m_table->verticalHeader()->defaultSectionSize() + 4);
  auto* delegate = new EnhancedTableDelegate(m_table);
  m_table->setItemDelegate(delegate);
  connect(delegate, &EnhancedTableDelegate::rightClickPressed, &m_panel,
          &VariablesPanel::insertWanted);
}

QToolButton* VariablesPanel::Parts::button(const char* name, IconName iconName, const QString& text,
                                           void (Parts::*act)()) {
  auto* made = new QToolButton(&m_panel);
  made->setObjectName(QLatin1String(name));
  made->setIcon(icon(iconName));
  made->setToolTip(text);
  made->setAccessibleName(text);
  made->setFocusPolicy(Qt::TabFocus);
  connect(made, &QToolButton::clicked, &m_lifetime, [this, act] { (this->*act)(); });
  return made;
}

QHBoxLayout* VariablesPanel::Parts::tableButtons() {
  auto* row = new QHBoxLayout;
  row->setSpacing(kControlSpacing);
  auto* label = new QLabel(VariablesPanel::tr("&Input variables"), &m_panel);
  label->setBuddy(m_table);
  row->addWidget(label);
  row->addStretch(1);
  row->addWidget(
      button("pbAddInput", IconName::add, VariablesPanel::tr("Add a variable"), &Parts::addEmpty));
  m_addColumns = button("pbAddColumns", IconName::browse,
                        VariablesPanel::tr("Add columns of the input..."), &Parts::addColumns);
  m_remove = button("pbRemoveInput", IconName::remove,
                    VariablesPanel::tr("Remove the selected variables"), &Parts::remove);
  m_up = button("pbUp", IconName::up, VariablesPanel::tr("Move up"), &Parts::moveUp);
  m_down = button("pbDown", IconName::down, VariablesPanel::tr("Move down"), &Parts::moveDown);
  for (QToolButton* made : {m_addColumns, m_remove, m_up, m_down}) {
    row->addWidget(made);
  }
  return row;
}

QVBoxLayout* VariablesPanel::Parts::columnButtons() {
  auto* column = new QVBoxLayout;
  column->setSpacing(kControlSpacing);
  m_addMissing =
      new QPushButton(VariablesPanel::tr("A&dd all columns that the expression names"), &m_panel);
  m_addMissing->setObjectName(QStringLiteral("pbAddNamed"));
  m_copyNames = new QPushButton(VariablesPanel::tr("Copy all Column Names to Clipboard"), &m_panel);
  m_copyNames->setObjectName(QStringLiteral("pbGetColumnNames"));
  connect(m_addMissing, &QPushButton::clicked, &m_lifetime, [this] { addMissing(); });
  connect(m_copyNames, &QPushButton::clicked, &m_lifetime, [this] { copyNames(); });
  column->addWidget(m_addMissing);
  column->addWidget(m_copyNames);
  return column;
}

void VariablesPanel::Parts::addEmpty() {
  const int row = m_model.rowCount();
  m_model.addEmpty(row);
  m_table->setCurrentCell(row, VariablesModel::kColumn);
  m_table->setFocus();
  m_table->editCell(row, VariablesModel::kColumn);
}

void VariablesPanel::Parts::addColumns() {
  if (kelvarin::screen() == nullptr) {
    return;
  }
  const QPointer<QObject> lifetime(&m_lifetime);  // it may end while the user chooses
  const QStringList chosen =
      kelvarin::screen()->pickColumns(m_model.inputColumnNames(), QStringList(), &m_panel);
  if (lifetime != nullptr) {
    m_model.addColumns(chosen);
  }
}

void VariablesPanel::Parts::addMissing() {
  m_model.addColumns(m_model.missingColumns(m_expressions()));
}

void VariablesPanel::Parts::remove() {
  m_model.removeVariables(m_table->selectedRows());
}

void VariablesPanel::Parts::move(bool isUp) {
  m_model.move(m_table->selectedRows(), isUp);
}

void VariablesPanel::Parts::copyNames() {
  QApplication::clipboard()->setText(m_model.inputColumnNames().join(u'\n'));
}

void VariablesPanel::Parts::updateButtons() {
  const bool isAnySelected = !m_table->selectedRows().empty();
  m_remove->setEnabled(isAnySelected);
  m_up->setEnabled(isAnySelected && !m_table->isSorted());
  m_down->setEnabled(isAnySelected && !m_table->isSorted());
}

void VariablesPanel::Parts::updateMissingColumns() {
  const QStringList missing = m_model.missingColumns(m_expressions());
  m_addMissing->setEnabled(!missing.isEmpty());
  m_addMissing->setToolTip(missing.isEmpty()
                               ? VariablesPanel::tr("The expression names no further column.")
                               : missing.join(QStringLiteral(", ")));
}

void VariablesPanel::Parts::setInputColumns(const PinColumns& columns, bool isComing) {
  m_model.setInputColumns(columns);
  m_table->fitColumns();
  m_copyNames->setEnabled(!columns.columns.empty());
  m_addColumns->setEnabled(!columns.columns.empty());
  updateMissingColumns();
  if (columns.isKnown) {
    m_note->clear();
  } else if (isComing) {
    m_note->setMessage(Severity::information,
                       VariablesPanel::tr("The columns of the input are being looked up."));
  } else {
    const QString why = columns.whyUnknown.isEmpty()
                            ? VariablesPanel::tr(
                                  "Nothing is linked to the input, or it has not "
                                  "been read.")
                            : columns.whyUnknown;
    m_note->setMessage(
        Severity::warning,
        VariablesPanel::tr("The columns of the input are not known, so there are no values. %1 "
                           "Names of columns can be typed.")
            .arg(asSentence(why)));
  }
}

QMap<QString, QString> VariablesPanel::Parts::uncommitted() const {
  const auto cell = m_table->openCell();
  if (!cell) {
    return {};
  }
  const QModelIndex index = m_model.index(cell->row, cell->column);
  return index.data(Qt::EditRole).toString() == cell->text
             ? QMap<QString, QString>()
             : QMap<QString, QString>{{kCellKey.arg(cell->row).arg(cell->column), cell->text}};
}

void VariablesPanel::Parts::restore(const QMap<QString, QString>& texts) {
  for (int row = 0; row < m_model.rowCount(); ++row) {
    for (int column = 0; column < VariablesModel::kDebugValue; ++column) {
      const auto text = texts.find(kCellKey.arg(row).arg(column));
      if (text != texts.end()) {
        m_table->reopen({row, column, *text});
      }
    }
  }
}

VariablesPanel::VariablesPanel(VariablesModel& model, std::function<QStringList()> expressions,
                               QWidget* parent)
    : QWidget(parent), m_parts(std::make_unique<Parts>(*this, model, std::move(expressions))) {
  new WrappedHeight(*this);
}

// A cell that is being edited loses the focus while its table goes away, after the parts.
VariablesPanel::~VariablesPanel() {
  m_parts->disconnectModel();
}

void VariablesPanel::setInputColumns(const PinColumns& columns, bool isComing) {
  m_parts->setInputColumns(columns, isComing);
}

QMap<QString, QString> VariablesPanel::uncommitted() const {
  return m_parts->uncommitted();
}

void VariablesPanel::restore(const QMap<QString, QString>& texts) {
  m_parts->restore(texts);
}

void VariablesPanel::commit() {
  m_parts->commit();
}

void VariablesPanel::updateMissingColumns() {
  m_parts->updateMissingColumns();
}

}  // namespace kelvarin
