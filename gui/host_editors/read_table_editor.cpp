#include "gui/host_editors/read_table_editor.h"

#include <QEvent>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QTabWidget>

#include "gui/host_editors/choice_field.h"
#include "gui/host_editors/column_type_delegate.h"
#include "gui/host_editors/declared_columns.h"
#include "gui/host_editors/table_columns_model.h"
#include "gui/host_editors/table_rows_model.h"
#include "host/files/file_hints.h"
#include "host/tables/files/table_source.h"
#include "host/widgets/icons.h"
#include "host/widgets/info_line.h"
#include "host/widgets/path_field.h"
#include "host/widgets/search_field.h"

namespace kelvarin {

namespace {

constexpr int kSearchedColumns = 10;  // fewer are seen at a glance

QTableView* newTable(QAbstractItemModel* model, const QString& name) {
  auto* table = new QTableView;
  table->setModel(model);
  table->setAccessibleName(name);
  table->setWordWrap(false);
  table->setTabKeyNavigation(false);
  table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 8);
  table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table->setMinimumHeight(table->fontMetrics().height() * 9);
  return table;
}

}  // namespace

ReadTableEditor::ReadTableEditor(ActionItem& action, QWidget* parent)
    : HostEditor(action, parent),
      m_columns(element()),
      m_settings(newForm()),
      m_pages(new QTabWidget),
      m_state(new InfoLine),
      m_columnsModel(new TableColumnsModel(this)),
      m_foundColumns(new QSortFilterProxyModel(this)),
      m_rowsModel(new TableRowsModel(this)) {
  m_state->setObjectName(QStringLiteral("state"));
  m_pages->setObjectName(QStringLiteral("pages"));
  m_pages->setDocumentMode(true);
  connect(m_columnsModel, &TableColumnsModel::typeChosen, this, &ReadTableEditor::setType,
          Qt::QueuedConnection);
  connect(m_columnsModel, &TableColumnsModel::renamed, this, &ReadTableEditor::rename,
          Qt::QueuedConnection);
}

void ReadTableEditor::addPages() {
  addFileGroup();
  page().addLayout(m_settings);
  addLine(*m_settings, QStringLiteral("columns"), tr("Columns to read:"))
      ->setPlaceholderText(tr("all; or for instance: id|price"));
  addChoice(*m_settings, QStringLiteral("onBadValue"), tr("Values that &do not fit:"),
            new ChoiceField({{QStringLiteral("abort"), tr("Stop the run")},
                             {QStringLiteral("null"), tr("Make them null")}}));
  m_pages->insertTab(0, newColumnsPage(), tr("Colu&mns"));
  m_pages->insertTab(1, newRowsPage(), tr("&Rows"));
  m_pages->setCurrentIndex(0);
  page().addWidget(m_pages, 1);
  look();
}

void ReadTableEditor::addFileGroup() {
  auto* form = newForm();
  addPath(*form, QStringLiteral("file"), tr("F&ile:"))->setFilter(filter());
  auto* again = new QPushButton(icon(IconName::reload), tr("Loo&k again"));
  again->setObjectName(QStringLiteral("lookAgain"));
  again->setToolTip(tr("Looks into the file again, after it has changed."));
  connect(again, &QPushButton::clicked, this, [this] { look(); });
  auto* state = new QHBoxLayout;
  state->setSpacing(8);
  state->addWidget(m_state, 1);
  state->addWidget(again, 0, Qt::AlignTop);
  page().insertLayout(1, form);
  page().insertLayout(2, state);
}

QWidget* ReadTableEditor::newColumnsPage() {
  m_foundColumns->setSourceModel(m_columnsModel);
  m_foundColumns->setFilterCaseSensitivity(Qt::CaseInsensitive);
  m_foundColumns->setFilterKeyColumn(TableColumnsModel::kName);
  QTableView* table = newTable(m_foundColumns, tr("Columns"));
  table->setObjectName(QStringLiteral("columns"));
  table->setItemDelegateForColumn(TableColumnsModel::kType, new ColumnTypeDelegate(table));
  table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                         QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
  table->setToolTip(tr("Double-click a type, or press F2, to fix it."));
  table->horizontalHeader()->setStretchLastSection(true);
  table->horizontalHeader()->resizeSection(TableColumnsModel::kName,
                                           table->fontMetrics().averageCharWidth() * 22);
  table->horizontalHeader()->resizeSection(TableColumnsModel::kType,
                                           table->fontMetrics().averageCharWidth() * 20);
  auto* search = new SearchField;
  search->setObjectName(QStringLiteral("searchColumns"));
  search->setAccessibleName(tr("Search columns"));
  search->setPlaceholderText(tr("Search columns"));
  search->setList(table);
  connect(search, &SearchField::searched, m_foundColumns,
          &QSortFilterProxyModel::setFilterFixedString);
  connect(m_columnsModel, &QAbstractItemModel::modelReset, search,
          [this, search] { search->setVisible(m_columnsModel->rowCount() > kSearchedColumns); });
  auto* columns = new QWidget;
  auto* layout = new QVBoxLayout(columns);
  layout->setContentsMargins(0, 8, 0, 0);
  layout->setSpacing(8);
  layout->addWidget(search);
  layout->addWidget(table, 1);
  return columns;
}

QWidget* ReadTableEditor::newRowsPage() {
  QTableView* table = newTable(m_rowsModel, tr("First rows"));
  table->setObjectName(QStringLiteral("rows"));
  auto* rows = new QWidget;
  auto* layout = new QVBoxLayout(rows);
  layout->setContentsMargins(0, 8, 0, 0);
  layout->addWidget(table, 1);
  return rows;
}

QString ReadTableEditor::path() const {
  const auto& source = static_cast<const TableSource&>(action());
  return source.file().isEmpty() ? QString() : source.expandedFile();
}

void ReadTableEditor::collect(EditedElement& element) const {
  element.children = m_columns.children;
}

void ReadTableEditor::look() {
  const QString file = path();
  if (file.isEmpty()) {
    m_task.forget();
    showNoLook(tr("Choose the file to read."), false);
    return;
  }
  m_state->setMessage(Severity::information, tr("Looking into the file..."));
  ColumnRules rules;
  if (const auto given =
          ColumnSettings(action().node(), &parameters()).rules([this](const QString& text) {
            return action().expandString(text);
          })) {
    rules = *given;
  }
  m_task.start<TableLook>(
      [file, rules, format = format(), reader = reader(file)](
          const BackgroundTask::IsStopped& isStopped) -> Result<TableLook, QString> {
        if (const QString why = whyNotLookedInto(file); !why.isEmpty()) {
          return Failure{why};
        }
        const FileState state = stateOfFile(file);
        TableLook look = lookIntoTable(reader, rules, isStopped);
        look.state = state;
        if (look.columns.empty() && format != FileFormat::csv) {  // whose reader names others
          const QString hint = foreignFormatHint(file, format);
          look.fault += hint.isEmpty() ? QString() : u' ' + hint;
        }
        return look;
      },
      [this](const Result<TableLook, QString>& result) {
        if (result) {
          showLook(*result);
        } else {
          showNoLook(result.error(), true);
        }
      });
}

void ReadTableEditor::changeEvent(QEvent* event) {
  HostEditor::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
    compareWithDisk();
  }
}

void ReadTableEditor::compareWithDisk() {
  const QString file = path();
  if (file.isEmpty() || isBusy()) {
    return;
  }
  m_stateTask.start<FileState>(
      [file](const BackgroundTask::IsStopped&) -> Result<FileState, QString> {
        return stateOfFile(file);
      },
      [this](const Result<FileState, QString>& state) {
        if (state && *state != m_look.state && !isBusy()) {
          look();
        }
      });
}

void ReadTableEditor::showLook(const TableLook& look) {
  m_look = look;
  m_columnsModel->setColumns(look, columnElements(m_columns), areNamedInOrder());
  m_rowsModel->setLook(look);
  if (!look.fault.isEmpty()) {
    m_state->setMessage(Severity::error, look.fault);
    return;
  }
  const QString found = tr("Columns: %1").arg(look.columns.size());
  m_state->setMessage(look.notes.isEmpty() ? Severity::success : Severity::warning,
                      look.notes.isEmpty() ? found : look.notes.join(u'\n'));
}

void ReadTableEditor::showNoLook(const QString& why, bool isFault) {
  m_look = {};
  m_columnsModel->setColumns(m_look, columnElements(m_columns), false);
  m_rowsModel->setLook({});
  m_state->setMessage(isFault ? Severity::error : Severity::information, why);
}

bool ReadTableEditor::areNamedInOrder() const {
  return !hasHeader() && element().attribute(QStringLiteral("columns")).isEmpty();
}

void ReadTableEditor::setType(const QString& name, const QString& meta) {
  setColumnType(m_columns, m_look, name, meta, !areNamedInOrder());
  commit();
}

void ReadTableEditor::rename(int column, const QString& name) {
  renameColumn(m_columns, m_look, column, name);
  commit();
}

}  // namespace kelvarin
