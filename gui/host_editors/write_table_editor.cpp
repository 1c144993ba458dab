#include "gui/host_editors/write_table_editor.h"

#include <QFileInfo>
#include <QLabel>
#include <QListWidget>

#include "gui/host_editors/choice_field.h"
#include "gui/host_editors/csv_settings_fields.h"
#include "gui/host_editors/table_columns_model.h"
#include "host/contract/file_user.h"
#include "host/contract/host_services.h"
#include "host/files/file_hints.h"
#include "host/files/output_check.h"
#include "host/widgets/info_line.h"
#include "host/widgets/path_field.h"
#include "host/widgets/search_field.h"

namespace kelvarin {

namespace {

constexpr int kAskAgainMilliseconds = 300;
constexpr std::size_t kSearchedColumns = 10;  // fewer are seen at a glance

}  // namespace

WriteTableEditor::WriteTableEditor(ActionItem& action, FileFormat format, QWidget* parent)
    : HostEditor(action, parent),
      m_inGraph(&action),
      m_format(format),
      m_state(new InfoLine),
      m_columnsLabel(new QLabel),
      m_search(new SearchField),
      m_columns(new QListWidget) {
  auto* form = newForm();
  addPath(*form, QStringLiteral("file"), tr("F&ile:"))->setFilter(filter());
  page().addLayout(form);
  m_state->setObjectName(QStringLiteral("state"));
  page().addWidget(m_state);
  if (m_format == FileFormat::csv) {
    addCsvFields();
  } else if (m_format == FileFormat::arrow) {
    addArrowFields();
  }
  addColumns();
  connect(this, &ElementEditor::committed, this, [this] {
    m_inGraph = nullptr;
    m_askAgain.stop();
  });
  connect(&m_askAgain, &QTimer::timeout, this, &WriteTableEditor::askForColumns);
  askForColumns();
  look();
}

QString WriteTableEditor::filter() const {
  switch (m_format) {
    case FileFormat::csv:
      return tr("CSV files (*.csv *.tsv *.txt);;All files (*)");
    case FileFormat::parquet:
      return tr("Parquet files (*.parquet);;All files (*)");
    default:
      return tr("Arrow files (*.arrow *.arrows *.feather *.ipc);;All files (*)");
  }
}

void WriteTableEditor::addCsvFields() {
  auto* form = newForm();
  addChoice(*form, QStringLiteral("separator"), tr("&Separator:"),
            newSeparatorField(CsvUse::writing));
  addChoice(*form, QStringLiteral("quote"), tr("&Quote:"), newQuoteField(CsvUse::writing));
  addFlag(*form, QStringLiteral("header"), tr("The first line &names the columns"));
  addChoice(*form, QStringLiteral("nullText"), tr("N&ull is written as:"), newNullTextField());
  page().addLayout(form);
}

void WriteTableEditor::addArrowFields() {
  auto* form = newForm();
  addChoice(*form, QStringLiteral("format"), tr("F&orm:"),
            new ChoiceField({{QString(), tr("By the name of the file")},
                             {QStringLiteral("file"), tr("File")},
                             {QStringLiteral("stream"), tr("Stream")}}));
  page().addLayout(form);
}

void WriteTableEditor::addColumns() {
  m_columnsLabel->setObjectName(QStringLiteral("columnCount"));
  m_columnsLabel->setTextFormat(Qt::PlainText);
  m_columnsLabel->setWordWrap(true);
  m_search->setObjectName(QStringLiteral("searchColumns"));
  m_search->setAccessibleName(tr("Search columns"));
  m_search->setPlaceholderText(tr("Search columns"));
  m_search->setList(m_columns);
  m_columns->setObjectName(QStringLiteral("columns"));
  m_columns->setAccessibleName(tr("Columns that are written"));
  m_columns->setUniformItemSizes(true);
  connect(m_search, &SearchField::searched, this, &WriteTableEditor::showMatches);
  page().addWidget(m_columnsLabel);
  page().addWidget(m_search);
  page().addWidget(m_columns, 1);
  page().addStretch();
}

void WriteTableEditor::look() {
  const auto files = dynamic_cast<const FileUser&>(action()).usedFiles();
  if (files.isEmpty()) {
    m_task.forget();
    m_state->setMessage(Severity::information, tr("Choose the file to write."));
    return;
  }
  if (isStandardOutput(files[0].path)) {
    m_task.forget();
    m_state->setMessage(Severity::information,
                        tr("The rows go to the standard output of the program."));
    return;
  }
  m_task.start<State>([file = files[0].path, format = m_format](const BackgroundTask::IsStopped&)
                          -> Result<State, QString> { return stateOf(file, format); },
                      [this](const Result<State, QString>& state) {
                        m_state->setMessage(state ? state->severity : Severity::error,
                                            state ? state->text : state.error());
                      });
}

WriteTableEditor::State WriteTableEditor::stateOf(const QString& file, FileFormat format) {
  if (const QString why = whyNotWritable(file); !why.isEmpty()) {
    return {Severity::error, why};
  }
  if (const QString hint = foreignExtensionHint(file, format); !hint.isEmpty()) {
    return {Severity::warning, hint};
  }
  const QFileInfo there(file);
  if (there.exists() && !there.isFile()) {
    return {Severity::information, tr("The rows go to the device or pipe '%1'.").arg(file)};
  }
  if (there.exists()) {
    return {Severity::warning,
            tr("The file '%1' is replaced when a run has ended well.").arg(file)};
  }
  return {Severity::information, tr("A run makes the file '%1'.").arg(file)};
}

void WriteTableEditor::askForColumns() {
  if (m_inGraph != nullptr) {
    showColumns(columnsOfInputPin(*m_inGraph, 0));
  }
}

void WriteTableEditor::showColumns(const PinColumns& columns) {
  if (columns.isBeingComputed) {
    m_askAgain.start(kAskAgainMilliseconds);
  } else {
    m_askAgain.stop();
  }
  m_columns->clear();
  for (const PinColumns::Column& column : columns.columns) {
    const QString type =
        TableColumnsModel::typeInWords(QString(QLatin1Char(static_cast<char>(column.meta))));
    m_columns->addItem(tr("%1 (%2)", "a column and its type").arg(column.name, type));
  }
  m_columns->setVisible(columns.isKnown);
  m_search->setVisible(columns.isKnown && columns.columns.size() > kSearchedColumns);
  if (columns.isKnown) {
    m_columnsLabel->setText(
        tr("Columns that are written, in this order: %1").arg(columns.columns.size()));
  } else if (columns.isBeingComputed) {
    m_columnsLabel->setText(tr("Finding out which columns are written..."));
  } else {
    m_columnsLabel->setText(
        columns.whyUnknown.isEmpty()
            ? tr("Which columns are written shows when rows are linked to this action.")
            : columns.whyUnknown);
  }
  showMatches(m_search->text());
}

void WriteTableEditor::showMatches(const QString& text) {
  for (int i = 0; i < m_columns->count(); ++i) {
    QListWidgetItem* column = m_columns->item(i);
    column->setHidden(!column->text().contains(text, Qt::CaseInsensitive));
  }
}

}  // namespace kelvarin
