#include "ui/columnar/interface_read_columnar_gel.h"

#include "columnar/actions/messages.h"
#include "columnar/actions/read_columnar_gel.h"
#include "columnar/format/file_names.h"
#include "host/widgets/file_question.h"
#include "ui/columnar/action_copy.h"
#include "ui/columnar/block_filter_page.h"
#include "ui/columnar/read_columns_page.h"
#include "ui/columnar/read_file_page.h"
#include "ui/columnar/read_reliability_page.h"
#include "ui/columnar/table_work_dialog.h"
#include "ui/language/outside_sources.h"

namespace kelvarin {

namespace {

QString proposalFor(const QString& damaged) {
  const std::string path = damaged.toStdString();
  return QString::fromStdString(std::string(stemOfMainFile(path)) + "_salvaged" +
                                std::string(kMainFileExtension));
}

}  // namespace

Interface_readColumnarGel::Interface_readColumnarGel(QWidget* parent, ReadColumnarGel& action)
    : ColumnarEditor(parent),
      m_action(action),
      m_filePage(new ReadFilePage(action)),
      m_columnsPage(new ReadColumnsPage),
      m_filterPage(new BlockFilterPage(action)),
      m_reliabilityPage(new ReadReliabilityPage) {
  setObjectName(QStringLiteral("Interface_readColumnarGel"));
  addPage(m_filePage, tr("File"));
  addPage(m_columnsPage, tr("Columns"));
  addPage(m_filterPage, tr("Blocks"));
  addPage(m_reliabilityPage, tr("Reliability"));
  addHelpPage();
  watch(m_filterPage->field(), "expression");
  m_askForNewFile = [this](const QString& proposal, std::function<void(const QString&)> chosen) {
    askForFile(this,
               {.kind = FileQuestion::Kind::saveFile,
                .caption = tr("Salvage to a new table"),
                .start = proposal,
                .filter = tr("Columnar files (*.cgel_kelvarin)"),
                .confirmsOverwrite = false},
               std::move(chosen));
  };
  connectPages();
  reload();
  committed();
}

Interface_readColumnarGel::~Interface_readColumnarGel() {
  endEditing();
}

void Interface_readColumnarGel::connectPages() {
  connect(m_filePage, &ReadFilePage::lookAgainWanted, this, [this] {
    m_shownFile = QString();
    lookIntoFile();
  });
  connect(m_filePage, &ReadFilePage::verifyWanted, this, &Interface_readColumnarGel::verify);
  connect(m_filePage, &ReadFilePage::salvageWanted, this, &Interface_readColumnarGel::salvage);
  connect(m_filePage, &ReadFilePage::columnsWanted, this, [this] { showPage(m_columnsPage); });
  connect(m_filePage, &ReadFilePage::blocksWanted, this, [this] { showPage(m_filterPage); });
  connect(m_filterPage, &BlockFilterPage::helpWanted, this, &Interface_readColumnarGel::showHelp);
  connect(m_filterPage, &BlockFilterPage::pageWanted, this, [this] { showPage(m_filterPage); });
  connect(m_filterPage, &BlockFilterPage::trialWanted, this, &Interface_readColumnarGel::tryFilter);
}

void Interface_readColumnarGel::insertIntoExpression(const QString& text) {
  showPage(m_filterPage);
  m_filterPage->field()->insertText(text);
}

void Interface_readColumnarGel::load() {
  const ReadColumnarSettings& settings = m_action.settings();
  m_filePage->load(settings);
  m_columnsPage->load(settings, m_action.columnsToRead());
  m_filterPage->load(settings, m_action.blockFilter());
  m_reliabilityPage->load(settings);
}

bool Interface_readColumnarGel::store() {
  bool isChanged = false;
  ReadColumnarSettings settings = m_action.settings();
  m_filePage->store(settings);
  m_columnsPage->store(settings);
  m_filterPage->store(settings);
  m_reliabilityPage->store(settings);
  if (settings != m_action.settings()) {
    m_action.setSettings(settings);
    isChanged = true;
  }
  const QStringList columns = m_columnsPage->model().listed();
  if (columns != m_action.columnsToRead()) {
    m_action.setColumnsToRead(columns);
    isChanged = true;
  }
  if (m_filterPage->isEdited(m_action.blockFilter())) {
    m_action.setBlockFilter(m_filterPage->filter());
    isChanged = true;
  }
  return isChanged;
}

void Interface_readColumnarGel::committed() {
  lookIntoFile();
  showExtent();
}

QString Interface_readColumnarGel::file() const {
  return m_action.expandFile(m_action.settings().fileName);
}

void Interface_readColumnarGel::lookIntoFile() {
  if (m_action.settings().fileNameFromPin) {
    forgetSummary(columnar_messages::filesKnownInRun(), false);
    return;
  }
  const QString name = file();
  if (name.isEmpty()) {
    forgetSummary(tr("Choose a file to see what is in it."), false);
    return;
  }
  if (name == m_shownFile) {
    return;
  }
  m_shownFile = name;
  m_filePage->showBusy();
  m_summaryTask.start<TableSummary>(
      [name](const BackgroundTask::IsStopped& isStopped) { return summaryOf(name, isStopped); },
      [this](const Result<TableSummary, QString>& summary) { takeSummary(summary); });
}

void Interface_readColumnarGel::takeSummary(const Result<TableSummary, QString>& summary) {
  if (!summary) {
    const QString name = m_shownFile;
    forgetSummary(summary.error(), true);
    m_shownFile = name;
    return;
  }
  m_summary = *summary;
  m_filePage->showSummary(*m_summary);
  m_columnsPage->setFile(&*m_summary);
  m_filterPage->setFile(&*m_summary);
  showExtent();
}

void Interface_readColumnarGel::forgetSummary(const QString& reason, bool isFailure) {
  m_summaryTask.forget();
  m_shownFile = QString();
  m_summary.reset();
  m_filePage->showNoSummary(reason, isFailure);
  m_columnsPage->setFile(nullptr);
  m_filterPage->setFile(nullptr);
  showExtent();
}

// The expression as it is typed, not yet the action's.
void Interface_readColumnarGel::tryFilter() {
  const BlockFilter filter = m_filterPage->filter();
  if (const OutsideSources sources(filter.expression, {}); sources.readsFile()) {
    m_trialTask.forget();
    m_filterPage->showNoTrial(
        {Severity::information, tr("What it skips is known in a run only, since %1 reads a file.")
                                    .arg(sources.fileFunction())});
    return;
  }
  const auto copy = std::make_shared<ActionCopy<ReadColumnarGel>>(m_action);
  (*copy)->setBlockFilter(filter);
  m_trialTask.start<BlockFilterTrial>(
      [copy](const BackgroundTask::IsStopped& isStopped) {
        return tryBlockFilter(**copy, isStopped);
      },
      [this, isEmpty = filter.expression.trimmed().isEmpty()](
          const Result<BlockFilterTrial, QString>& trial) {
        if (!trial) {
          m_filterPage->showNoTrial(wordsOnTrial({Severity::information, trial.error()}, isEmpty));
          return;
        }
        m_filterPage->showTrial(*trial, wordsOnTrial(trialText(*trial), isEmpty));
      });
}

ShownText Interface_readColumnarGel::wordsOnTrial(const ShownText& words, bool isEmpty) const {
  if (isEmpty) {
    return {Severity::information, tr("Without an expression every block is read.")};
  }
  if (m_action.settings().filterRows) {
    return words;
  }
  return {Severity::warning,
          tr("The filter is switched off: every block is read. %1").arg(words.text)};
}

void Interface_readColumnarGel::showExtent() {
  const bool isFiltered =
      m_action.settings().filterRows && !m_action.blockFilter().expression.trimmed().isEmpty();
  m_filePage->showExtent(m_columnsPage->extent(),
                         isFiltered ? tr("The blocks that the filter leaves") : tr("All blocks"));
}

void Interface_readColumnarGel::verify() {
  auto* dialog = new TableWorkDialog(this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->open();
  dialog->verify(file(), knownRows());
}

void Interface_readColumnarGel::salvage() {
  m_askForNewFile(proposalFor(file()), [this](const QString& newFile) { salvageTo(newFile); });
}

void Interface_readColumnarGel::salvageTo(const QString& newFile) {
  auto* dialog = new TableWorkDialog(this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->open();
  dialog->salvage(file(), newFile, knownRows());
}

}  // namespace kelvarin
