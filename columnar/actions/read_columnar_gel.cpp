#include "columnar/actions/read_columnar_gel.h"

#include "actions/frame/read_back.h"
#include "actions/frame/variables_xml.h"
#include "columnar/actions/claimed_tables.h"
#include "columnar/actions/messages.h"
#include "host/contract/attribute_table.h"
#include "host/contract/host_services.h"
#include "host/contract/late_texts.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

using Settings = ReadColumnarSettings;

constexpr char16_t kColumnsToRead[] = u"ColumnsToRead";
constexpr int kListedColumns = 1;
// Older hosts refuse a file with a time-out by this version.
constexpr double kVersionWithTimeOut = 2.3;

constexpr AllowedValues kNotNegative{.min = 0, .inWords = "0 or more"};
constexpr AllowedValues kSelections{
    0, 2, "", "0 (all columns), 1 (those of ColumnsToRead) or 2 (those named on an input pin)",
    "Any other value reads all columns."};

constexpr Attribute<Settings> kAttributes[] = {
    attribute<&Settings::fileNameFromPin>(
        u"fileNameFromPin", "takes the names from the first column of the table on input pin 0"),
    attribute<&Settings::accurateProgressBar>(
        u"accurateProgressBar", "progress bar by the rows of all files; 0: by the number of files"),
    attribute<&Settings::readIncompleteFile>(
        u"readIncompleteFile", "reads a file that its writer has not finished, with a warning"),
    attribute<&Settings::skipCorruptedBlocks>(
        u"skipCorruptedBlocks", "skips damaged blocks with a warning; 0: damage stops the run"),
    attribute<&Settings::filterRows>(u"filterRows",
                                     "applies the block filter of the element CFilterRows"),
    attribute<&Settings::abortIfMissing>(
        u"abortIfMissing", "a missing file stops the run; 0: it is skipped with a warning"),
    attribute<&Settings::blocksAhead>(
        u"nBlockForward", "blocks read and decoded ahead on other threads; 0: none", kNotNegative),
    attribute<&Settings::columnSelection>(u"columnSelection", "the columns that are read",
                                          kSelections),
    attribute<&Settings::fileName>(u"fileName",
                                   "the file, when its name does not come from the input pin"),
    attribute<&Settings::timeOutSeconds>(u"timeOut", "seconds to wait for a missing file"),
    attribute<&Settings::readAllColumns>(u"readAllColumns", "0 is the same as columnSelection='1'"),
};

ElementDescription columnsToReadElement() {
  return {.name = QString::fromUtf16(kColumnsToRead),
          .meaning = QStringLiteral("the columns that are read, in their order"),
          .children = {stringListElement(QStringLiteral("a column"))}};
}

int pinCount(const Settings& settings) {
  if (settings.columns() == Settings::Columns::fromPin) {
    return 2;
  }
  return settings.fileNameFromPin ? 1 : 0;
}

}  // namespace

const ActionDescription& ReadColumnarGel::catalogue() {
  static const ActionDescription entry{.typeName = "ReadColumnarGel",
                                       .toolTip = "Read a columnar .cgel_kelvarin file",
                                       .helpId = "5_2_7_kelvarin_columnar_gel_f",
                                       .tags = {"Common"},
                                       .keywords = {"columnar", "file", "import", "input", "load",
                                                    "cgel_kelvarin", "cgel", "gel", "read", "in"},
                                       .fileTypes = {"cgel_kelvarin"},
                                       .image = ":/KelvarinMathParser/columnarRead.svg",
                                       .version = 2.08,
                                       .attributes = described<Settings>(kAttributes),
                                       .children = {blockFilterElement(), columnsToReadElement()}};
  return entry;
}

ReadColumnarGel::ReadColumnarGel(XMLNode node, GlobalParameters* parameters)
    : Catalogued(node, parameters) {
  readAttributes<Settings>(node, kAttributes, m_settings, parameters);
  if (!m_settings.readAllColumns) {
    m_settings.columnSelection = kListedColumns;
  }
  m_blockFilter = readBlockFilter(node, parameters);
  m_columnsToRead = fromXMLSL(node.getChildNode(utf16(kColumnsToRead)));
  m_inputPinCount = pinCount(m_settings);
  m_outputPinCount = 1;
  m_endpoint = static_cast<std::int32_t>(Endpoint::reader);
  m_fileAccess = kReadsFiles;
}

void ReadColumnarGel::saveXML(std::wostringstream& out, QString name) {
  saveAI(out, name, m_settings.timeOutSeconds > 0 ? kVersionWithTimeOut : catalogue().version);
  writeAttributes<Settings>(out, kAttributes, m_settings);
  out << L">\n";
  writeBlockFilter(out, m_blockFilter);
  if (!m_columnsToRead.isEmpty()) {
    out << L"  <ColumnsToRead>";
    toXML(m_columnsToRead, out);
    out << L"</ColumnsToRead>\n";
  }
  out << L"</" << typeName() << L">\n";
}

void ReadColumnarGel::setSettings(ReadColumnarSettings settings) {
  setAsReadBack(*this, &ReadColumnarGel::m_settings, std::move(settings));
  m_inputPinCount = pinCount(m_settings);
}

void ReadColumnarGel::setBlockFilter(BlockFilter filter) {
  setAsReadBack(*this, &ReadColumnarGel::m_blockFilter, std::move(filter));
}

void ReadColumnarGel::setColumnsToRead(QStringList columns) {
  setAsReadBack(*this, &ReadColumnarGel::m_columnsToRead, std::move(columns));
}

char ReadColumnarGel::init() {
  ActionItem::init();
  m_rows.clear();
  m_read.reset();
  m_names.giveBack();
  warnOfIdleSettings();
  return !mustComputeFull() || claimFiles() ? 0 : 1;
}

bool ReadColumnarGel::claimFiles() {
  if (m_settings.fileNameFromPin) {
    m_names.awaitReads();
  }
  for (const UsedFile& file : usedFiles()) {
    if (const auto hindrance = m_names.claim(*this, file)) {
      MainUI::addLog(LogLevel::error, *hindrance);
      return false;
    }
  }
  return true;
}

QList<UsedFile> ReadColumnarGel::usedFiles() const {
  if (m_settings.fileNameFromPin || m_settings.fileName.isEmpty()) {
    return {};
  }
  return {usedTable(expandFile(m_settings.fileName), FileUse::reads)};
}

void ReadColumnarGel::warnOfIdleSettings() const {
  const bool hasExpression = !m_blockFilter.expression.trimmed().isEmpty();
  if (hasExpression && !m_settings.filterRows) {
    MainUI::addLog(LogLevel::warning, columnar_messages::filterOff());
  } else if (!hasExpression && m_settings.filterRows) {
    MainUI::addLog(LogLevel::warning, columnar_messages::filterEmpty());
  }
  // A dialog keeps a list that is not in use, and a run need not speak of it each time.
  if (!mustComputeFull() && !m_columnsToRead.isEmpty() &&
      m_settings.columns() == ReadColumnarSettings::Columns::all) {
    MainUI::addLog(LogLevel::warning, columnar_messages::listOff());
  }
}

char ReadColumnarGel::close() {
  if (HostServices* services = hostServices();
      services != nullptr && m_read != nullptr && mustComputeFull()) {
    ActionReport report;
    report.blocksRead = m_read->blocksRead();
    report.blocksSkipped = m_read->blocksSkipped();
    services->actionReported(*this, report);
  }
  m_rows.clear();
  m_read.reset();
  m_names.giveBack();
  return 0;
}

float ReadColumnarGel::computeCompletion() const {
  return m_read ? m_read->fractionDone() : -1.0f;
}

// The columns depend on the files or names that come from a pin.
char ReadColumnarGel::fullTableRequiredToComputeMetas(int pin, bool* isKnown) {
  if (isKnown != nullptr) {
    *isKnown = true;
  }
  const bool givesFiles = pin == 0 && m_settings.fileNameFromPin;
  const bool givesColumns =
      pin == 1 && m_settings.columns() == ReadColumnarSettings::Columns::fromPin;
  return givesFiles || givesColumns ? 1 : 0;
}

void ReadColumnarGel::setComputeRoutine() {
  computeRoutine = &ReadColumnarGel::computeFirstRow;
}

bool ReadColumnarGel::computeFirstRow(ActionItem* action) {
  auto& self = static_cast<ReadColumnarGel&>(*action);
  self.m_read =
      std::make_unique<ColumnarRead>(self, self.m_settings, self.m_blockFilter,
                                     self.m_columnsToRead, self.m_part, self.m_names, self.m_pause);
  if (!self.m_read->begin() || !self.mustComputeFull()) {
    return true;
  }
  self.computeRoutine = &ReadColumnarGel::computeRow;
  return false;
}

// Called where no unit can be read: at the end, or for rows that follow damage.
bool ReadColumnarGel::computeRow(ActionItem* action) {
  auto& self = static_cast<ReadColumnarGel&>(*action);
  while (self.m_rows.rowsLeft() == 0) {
    const RowBatchPointer rows = withTexts(self.m_read->nextRows());
    if (rows == nullptr) {
      return !self.canReadUnits();
    }
    self.m_rows.start(rows);
  }
  self.m_rows.take(self.getOutputRowForOutputPin(0)->getAllColForWrite());
  self.setRowReadyForOutput(0);
  return false;
}

}  // namespace kelvarin
