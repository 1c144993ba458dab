#include "ui/columnar/interface_write_columnar_gel.h"

#include <algorithm>

#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include "columnar/actions/messages.h"
#include "columnar/actions/split_examples.h"
#include "columnar/actions/table_deletion.h"
#include "columnar/actions/table_summary.h"
#include "host/contract/main_ui.h"
#include "ui/columnar/action_copy.h"
#include "ui/columnar/previous_file_page.h"
#include "ui/columnar/write_blocks_page.h"
#include "ui/columnar/write_columns_page.h"
#include "ui/columnar/write_file_page.h"
#include "ui/language/shown_value.h"

namespace kelvarin {

namespace {

constexpr long long kRowsForExamples = 200;
constexpr qsizetype kExamples = 4;

// Stand for the values of a column that is not known.
const QStringList kInventedValues{QStringLiteral("A"), QStringLiteral("B")};

}  // namespace

Interface_writeColumnarGel::Interface_writeColumnarGel(QWidget* parent, WriteColumnarGel& action)
    : ColumnarEditor(parent),
      m_action(action),
      m_filePage(new WriteFilePage(action)),
      m_columnsPage(new WriteColumnsPage),
      m_blocksPage(new WriteBlocksPage),
      m_previousPage(new PreviousFilePage),
      m_input(action, 0, kRowsForExamples) {
  setObjectName(QStringLiteral("Interface_writeColumnarGel"));
  addPage(m_filePage, tr("File"));
  addPage(m_columnsPage, tr("Rows and columns"));
  addPage(m_blocksPage, tr("Blocks"));
  addPage(m_previousPage, tr("Old file"));
  addHelpPage();
  watch(m_filePage->namingField(), "naming");
  connect(m_filePage, &WriteFilePage::helpWanted, this, &Interface_writeColumnarGel::showHelp);
  connect(m_filePage, &WriteFilePage::pageWanted, this, [this] { showPage(m_filePage); });
  connect(m_filePage, &WriteFilePage::examplesWanted, this,
          &Interface_writeColumnarGel::showExamples);
  connect(&m_input, &InputRows::changed, this, &Interface_writeColumnarGel::takeInput);
  connect(m_previousPage, &PreviousFilePage::deletionWanted, this,
          &Interface_writeColumnarGel::prepareDeletion);
  reload();
  takeInput();
  committed();
}

Interface_writeColumnarGel::~Interface_writeColumnarGel() {
  endEditing();
}

void Interface_writeColumnarGel::load() {
  const WriteColumnarSettings& settings = m_action.settings();
  m_filePage->load(settings);
  m_columnsPage->load(settings, m_action.columnSets());
  m_blocksPage->load(settings);
  m_previousPage->load(settings);
}

bool Interface_writeColumnarGel::store() {
  bool isChanged = false;
  WriteColumnarSettings settings = m_action.settings();
  m_filePage->store(settings);
  m_columnsPage->store(settings);
  m_blocksPage->store(settings);
  m_previousPage->store(settings);
  if (settings != m_action.settings()) {
    m_action.setSettings(settings);
    isChanged = true;
  }
  const ListedColumnSets sets = m_columnsPage->model().sets();
  if (sets != m_action.columnSets()) {
    m_action.setColumnSets(sets);
    isChanged = true;
  }
  return isChanged;
}

void Interface_writeColumnarGel::insertIntoExpression(const QString& text) {
  showPage(m_filePage);
  if (m_filePage->namingField()->isVisible()) {
    m_filePage->namingField()->insertText(text);
  }
}

void Interface_writeColumnarGel::committed() {
  showExamples();
  const bool isOneFile = m_action.settings().splitKind() == WriteColumnarSettings::Split::none;
  m_previousPage->setDeletable(
      isOneFile && !file().isEmpty(),
      isOneFile ? QString() : tr("The names of several files are known in a run only."));
  lookAtOldFile();
}

void Interface_writeColumnarGel::lookAtOldFile() {
  const bool isOneFile = m_action.settings().splitKind() == WriteColumnarSettings::Split::none;
  const QString name = isOneFile ? file() : QString();
  if (name == m_shownOldFile) {
    return;
  }
  m_shownOldFile = name;
  m_previousPage->showOldFile({});
  if (name.isEmpty()) {
    m_oldFileTask.forget();
    return;
  }
  m_oldFileTask.start<ShownText>(
      [name](const BackgroundTask::IsStopped& isStopped) -> Result<ShownText, QString> {
        if (!QFileInfo::exists(name)) {
          return ShownText{Severity::information, tr("There is no such file yet.")};
        }
        const auto summary = summaryOf(name, isStopped);
        if (!summary) {
          return Failure{summary.error()};
        }
        return ShownText{Severity::information,
                         tr("There is a table: %1").arg(contentsText(*summary))};
      },
      [this](const Result<ShownText, QString>& found) {
        m_previousPage->showOldFile(found ? *found : ShownText{Severity::warning, found.error()});
      });
}

void Interface_writeColumnarGel::takeInput() {
  m_filePage->setColumns(m_input.columns());
  m_columnsPage->setColumns(m_input.columns());
  m_blocksPage->setInput(m_input.columns(), m_input.rows());
  showExamples();
}

QStringList Interface_writeColumnarGel::splitValues() const {
  const std::shared_ptr<const PinRows> rows = m_input.rows();
  QStringList values;
  if (rows == nullptr) {
    return values;
  }
  const auto& columns = rows->columns().columns;
  const auto found = std::ranges::find(
      columns, m_action.expandString(m_action.settings().splitColumn), &PinColumns::Column::name);
  if (found == columns.end()) {
    return values;
  }
  const auto column = static_cast<std::size_t>(found - columns.begin());
  for (std::size_t row = 0; row < rows->rowCount() && values.size() < kExamples; ++row) {
    const ShownValue value = shownValue(*rows, row, column);
    const QString text = value.kind == ShownValue::Kind::null ? QString()
                         : value.whole.isNull()               ? QStringLiteral("")
                                                              : value.whole;
    const bool isKnown = std::ranges::any_of(values, [&](const QString& other) {
      return other == text && other.isNull() == text.isNull();
    });
    if (!isKnown) {
      values += text;
    }
  }
  return values;
}

void Interface_writeColumnarGel::showExamples() {
  const QStringList known = splitValues();
  const bool isInvented = known.isEmpty();
  const QStringList values = isInvented ? kInventedValues : known;
  m_filePage->setSplitValue(values.first());
  const auto copy = std::make_shared<ActionCopy<WriteColumnarGel>>(m_action);
  WriteColumnarSettings settings = m_action.settings();
  settings.file = m_filePage->typedFile();
  (*copy)->setSettings(settings);
  m_examplesTask.start<QStringList>(
      [copy, values](const BackgroundTask::IsStopped&) { return exampleNames(**copy, values); },
      [this, isInvented](const Result<QStringList, QString>& names) {
        using Split = WriteColumnarSettings::Split;
        const Split split = m_action.settings().splitKind();
        if (!names) {
          m_filePage->showExamples({}, {Severity::warning, names.error()});
          return;
        }
        ShownText note;
        if (split == Split::byValue && isInvented) {
          note.text = tr("For values such as 'A' and 'B'.");
        } else if (split == Split::byValue) {
          note.text = tr("For values in the first rows.");
        } else if (split == Split::bySize) {
          note.text = tr("And so on.");
        }
        m_filePage->showExamples(*names, note);
      });
}

QString Interface_writeColumnarGel::file() const {
  return m_action.expandOutputFile(m_action.settings().file, QString());
}

void Interface_writeColumnarGel::prepareDeletion() {
  const QString name = file();
  m_deletionTask.start<QStringList>(
      [name](const BackgroundTask::IsStopped&) -> Result<QStringList, QString> {
        const QStringList files = filesOfTable(name);
        return files.isEmpty()
                   ? Result<QStringList, QString>(Failure{columnar_messages::nothingToDelete(name)})
                   : files;
      },
      [this, name](const Result<QStringList, QString>& files) {
        if (!files) {
          m_previousPage->showDeletion({Severity::information, files.error()});
          return;
        }
        askBeforeDeletion(name, *files);
      });
}

void Interface_writeColumnarGel::askBeforeDeletion(const QString& name, const QStringList& files) {
  auto* box =
      new QMessageBox(QMessageBox::Warning, tr("Delete a table"),
                      tr("Delete '%1' and its column sets? They cannot be brought back.").arg(name),
                      QMessageBox::NoButton, this);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setTextFormat(Qt::PlainText);
  box->setInformativeText(files.join(u'\n'));
  QPushButton* remove = box->addButton(tr("&Delete"), QMessageBox::DestructiveRole);
  QPushButton* keep = box->addButton(tr("&Keep"), QMessageBox::RejectRole);
  remove->setObjectName(QStringLiteral("pbConfirmDelete"));
  box->setDefaultButton(keep);
  box->setEscapeButton(keep);
  connect(remove, &QPushButton::clicked, this, [this, name] { deleteFiles(name); });
  box->open();
}

void Interface_writeColumnarGel::deleteFiles(const QString& name) {
  m_deletionTask.start<TableDeletion>(
      [name](const BackgroundTask::IsStopped&) -> Result<TableDeletion, QString> {
        return deleteTable(name);
      },
      [this](const Result<TableDeletion, QString>& deletion) {
        m_shownOldFile = QString();
        lookAtOldFile();
        if (!deletion) {
          m_previousPage->showDeletion({Severity::error, deletion.error()});
          return;
        }
        for (const QString& success : deletion->successes) {
          MainUI::addLog(LogLevel::information, success);
        }
        if (!deletion->failure.isEmpty()) {
          MainUI::addLog(LogLevel::error, deletion->failure);
        }
        QStringList lines = deletion->successes;
        lines += deletion->failure;
        lines.removeAll(QString());
        m_previousPage->showDeletion(
            {deletion->failure.isEmpty() ? Severity::success : Severity::error, lines.join(u'\n')});
      });
}

}  // namespace kelvarin
