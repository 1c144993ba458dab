#include "gui/host_editors/write_table_editor.h"

#include <algorithm>

#include <QFileInfo>

#include "gui/host_editors/choice_field.h"
#include "gui/host_editors/csv_settings_fields.h"
#include "gui/host_editors/written_columns_view.h"
#include "host/contract/file_user.h"
#include "host/contract/host_services.h"
#include "host/files/file_hints.h"
#include "host/files/output_check.h"
#include "host/tables/arrow/stored_type.h"
#include "host/tables/files/table_sink.h"
#include "host/widgets/info_line.h"
#include "host/widgets/path_field.h"

namespace kelvarin {

namespace {

constexpr int kAskAgainMilliseconds = 300;
const QString kColumn = QStringLiteral("Column");
const QString kName = QStringLiteral("name");
const QString kType = QStringLiteral("type");

}  // namespace

WriteTableEditor::WriteTableEditor(ActionItem& action, FileFormat format, QWidget* parent)
    : HostEditor(action, parent),
      m_inGraph(&action),
      m_format(format),
      m_state(new InfoLine),
      m_columns(
          new WrittenColumnsView(format == FileFormat::csv ? QStringList() : storedTypeNames())),
      m_typedColumns(element()) {
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
  addOutputFields();
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

void WriteTableEditor::addOutputFields() {
  auto* form = newForm();
  if (m_format != FileFormat::csv) {
    addChoice(*form, QStringLiteral("onBadValue"), tr("Values that &do not fit:"),
              new ChoiceField({{QStringLiteral("abort"), tr("Stop the run")},
                               {QStringLiteral("null"), tr("Make them null")}}));
  }
  addFlag(*form, QStringLiteral("createDir"), tr("Ma&ke the folder of the file"));
  addChoice(*form, QStringLiteral("split"), tr("W&rite:"),
            new ChoiceField({{QStringLiteral("0"), tr("One file")},
                             {QStringLiteral("2"), tr("A file for each value of a column")}}));
  addLine(*form, QStringLiteral("splitVar"), tr("Colu&mn of the values:"));
  page().addLayout(form);
}

void WriteTableEditor::addColumns() {
  connect(m_columns, &WrittenColumnsView::typeChosen, this, &WriteTableEditor::setType,
          Qt::QueuedConnection);
  page().addWidget(m_columns, 1);
  page().addStretch();
}

void WriteTableEditor::collect(EditedElement& element) const {
  element.children = m_typedColumns.children;
}

void WriteTableEditor::setType(const QString& column, const QString& type) {
  auto& children = m_typedColumns.children;
  const auto isIt = [&](const EditedElement& child) {
    return child.name == kColumn && child.attribute(kName) == column;
  };
  const auto child = std::ranges::find_if(children, isIt);
  if (type.isEmpty()) {
    std::erase_if(children, isIt);
  } else if (child != children.end()) {
    child->setAttribute(kType, type);
  } else {
    EditedElement added;
    added.name = kColumn;
    added.attributes = {{kName, column}, {kType, type}};
    children.push_back(added);
  }
  commit();
  showColumns();
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
  m_task.start<State>(
      [file = files[0].path, format = m_format,
       settings = static_cast<const TableSink&>(action()).settings()](
          const BackgroundTask::IsStopped&) -> Result<State, QString> {
        return stateOf(file, format, settings);
      },
      [this](const Result<State, QString>& state) {
        m_state->setMessage(state ? state->severity : Severity::error,
                            state ? state->text : state.error());
      });
}

WriteTableEditor::State WriteTableEditor::stateOf(const QString& file, FileFormat format,
                                                  const OutputSettings& settings) {
  const QString why = settings.createDirectory ? whyNotCreatable(file) : whyNotWritable(file);
  if (!why.isEmpty()) {
    return {Severity::error, why};
  }
  if (const QString hint = foreignExtensionHint(file, format); !hint.isEmpty()) {
    return {Severity::warning, hint};
  }
  if (settings.isSplit()) {
    return {
        Severity::information,
        tr("A run makes files of the names '%1', and replaces those that are there.").arg(file)};
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
  if (m_inGraph == nullptr) {
    return;
  }
  m_pinColumns = columnsOfInputPin(*m_inGraph, 0);
  if (m_pinColumns.isBeingComputed) {
    m_askAgain.start(kAskAgainMilliseconds);
  } else {
    m_askAgain.stop();
  }
  showColumns();
}

void WriteTableEditor::showColumns() {
  QMap<QString, QString> types;
  for (const EditedElement& child : m_typedColumns.children) {
    if (child.name == kColumn) {
      types.insert(child.attribute(kName), child.attribute(kType));
    }
  }
  m_columns->showColumns(m_pinColumns, types);
}

}  // namespace kelvarin
