#include "columnar/actions/write_columnar_gel.h"

#include "actions/frame/read_back.h"
#include "columnar/actions/claimed_tables.h"
#include "columnar/actions/messages.h"
#include "columnar/actions/previous_file.h"
#include "host/contract/main_ui.h"
#include "host/files/file_hints.h"
#include "host/files/messages.h"
#include "host/files/split_values.h"

namespace kelvarin {

namespace {

using Settings = WriteColumnarSettings;

constexpr char16_t kColumnStrategy[] = u"ColumnStrategy";
constexpr char16_t kColumn[] = u"C";

constexpr AllowedValues kOneOrMore{.min = 1, .inWords = "1 or more"};
constexpr AllowedValues kNotNegative{.min = 0, .inWords = "0 or more"};
constexpr AllowedValues kStrategies{
    0, 2, "",
    "0 (one column set), 1 (those listed in ColumnStrategy) or 2 (a set for each column)"};
constexpr AllowedValues kSplits{0, 2, "",
                                "0 (one file), 1 (by size) or 2 (by the value of splitVar)"};

constexpr Attribute<Settings> kAttributes[] = {
    attribute<&Settings::threadCount>(
        u"nThread", "how many threads encode at one time; below 1 the host decides"),
    attribute<&Settings::rowsInBlock>(u"nRowsInBlock", "rows in one block", kOneOrMore),
    attribute<&Settings::columnStrategy>(u"columnStrategy", "the column sets", kStrategies),
    attribute<&Settings::split>(u"split", "the files that are written", kSplits),
    attribute<&Settings::segmentSize>(
        u"segmentSize", "with split='1': MiB after which the next file begins", kNotNegative),
    attribute<&Settings::splitColumn>(u"splitVar", "the column to split on"),
    attribute<&Settings::testColumn>(u"testCol", "with writeAllRows='0': the column to test"),
    attribute<&Settings::testValue>(
        u"testValue",
        "its value in the rows that are written; empty: rows where it is missing or empty"),
    attribute<&Settings::deleteTimeOutSeconds>(u"deleteTimeOut",
                                               "seconds to wait for an old file that is in use"),
    attribute<&Settings::checkNameCollision>(
        u"checkNameCollision",
        "no other action of the graph may read or write the file; 0: not checked"),
    attribute<&Settings::alwaysDelete>(u"alwaysDelete",
                                       "deletes the old file even when there is no row"),
    attribute<&Settings::createDirectory>(u"createDir", "creates the file's folder"),
    attribute<&Settings::advancedNaming>(u"advancedNaming",
                                         "with split='2': file contains expressions over SplitVal"),
    attribute<&Settings::writeAllRows>(u"writeAllRows",
                                       "0: writes only rows whose testCol equals testValue"),
    attribute<&Settings::file>(u"file", "the file; relative names start at the graph's folder"),
    attribute<&Settings::replaceAtEnd>(u"replaceAtEnd",
                                       "the old table stays until the new one is whole"),
};

// A line of the column strategy.
struct ListedColumn {
  QString column = QStringLiteral("");
  int set = 0;
};
constexpr Attribute<ListedColumn> kListedColumn[] = {
    attribute<&ListedColumn::column>(u"n", "the column"),
    attribute<&ListedColumn::set>(u"s", "the number of its set, 0 to 254; below 0: not written"),
};

ElementDescription columnStrategyElement() {
  ElementDescription line{.name = QString::fromUtf16(kColumn),
                          .meaning = QStringLiteral("a column and its set"),
                          .mayRepeat = true,
                          .attributes = described<ListedColumn>(kListedColumn)};
  return {.name = QString::fromUtf16(kColumnStrategy),
          .meaning = QStringLiteral("the column sets of columnStrategy='1'"),
          .children = {std::move(line)}};
}

ListedColumnSets readColumnSets(const XMLNode& node, const GlobalParameters* parameters) {
  ListedColumnSets sets;
  for (int i = 0; i < node.nChildNode(); ++i) {
    const XMLNode child = node.getChildNode(i);
    if (child.name() == kColumn) {
      ListedColumn line;
      readAttributes<ListedColumn>(child, kListedColumn, line, parameters);
      sets.emplace_back(line.column, line.set);
    }
  }
  return sets;
}

void writeColumnSets(std::wostream& out, const ListedColumnSets& sets) {
  out << L"  <ColumnStrategy>";
  for (const auto& [column, set] : sets) {
    out << L"<C";
    writeAttribute(out, u"n", column);
    writeAttribute(out, u"s", textOfValue(set));
    out << L"/>";
  }
  out << L"</ColumnStrategy>\n";
}

}  // namespace

const ActionDescription& WriteColumnarGel::catalogue() {
  static const ActionDescription entry{
      .typeName = "writeColumnarGel",  // kept: graph files have it with a small letter
      .toolTip = "Write a columnar .cgel_kelvarin file",
      .helpId = "5_27_3_kelvarin_columnar_gel_",
      .keywords = {"columnar", "file", "export", "output", "save", "cgel_kelvarin", "cgel", "gel",
                   "write", "out"},
      .image = ":/KelvarinMathParser/columnarWrite.svg",
      .version = 3.19,
      .attributes = described<Settings>(kAttributes),
      .children = {columnStrategyElement()}};
  return entry;
}

WriteColumnarGel::WriteColumnarGel(XMLNode node, GlobalParameters* parameters)
    : Catalogued(node, parameters) {
  m_inputPinCount = 1;
  m_outputPinCount = 0;
  m_endpoint = static_cast<std::int32_t>(Endpoint::writer);
  m_fileAccess = kWritesFiles;
  readAttributes<Settings>(node, kAttributes, m_settings, parameters);
  m_columnSets = readColumnSets(node.getChildNode(utf16(kColumnStrategy)), parameters);
}

void WriteColumnarGel::saveXML(std::wostringstream& out, QString name) {
  saveAI(out, name, catalogue().version);
  writeAttributes<Settings>(out, kAttributes, m_settings);
  out << L">\n";
  if (!m_columnSets.empty()) {
    writeColumnSets(out, m_columnSets);
  }
  out << L"</" << typeName() << L">\n";
}

void WriteColumnarGel::setSettings(WriteColumnarSettings settings) {
  setAsReadBack(*this, &WriteColumnarGel::m_settings, std::move(settings));
}

void WriteColumnarGel::setColumnSets(ListedColumnSets sets) {
  setAsReadBack(*this, &WriteColumnarGel::m_columnSets, std::move(sets));
}

ColumnFate WriteColumnarGel::followColumn(const QString& oldName, const QString& newName) {
  WriteColumnarSettings settings = m_settings;
  for (QString* column : {&settings.splitColumn, &settings.testColumn}) {
    *column = *column == oldName ? newName : *column;
  }
  setSettings(std::move(settings));
  ListedColumnSets sets = m_columnSets;
  for (auto& [column, set] : sets) {
    column = column == oldName ? newName : column;
  }
  setColumnSets(std::move(sets));
  return ColumnFate::ends;
}

char WriteColumnarGel::init() {
  ActionItem::init();
  m_write.reset();
  if (!claimFiles()) {
    return 1;
  }
  const QString warning = warningAboutExtension();
  if (mustComputeFull() && !warning.isEmpty()) {
    MainUI::addLog(LogLevel::warning, warning);
  }
  return 0;
}

// Names of split files are claimed when they are known.
bool WriteColumnarGel::claimFiles() {
  m_names.giveBack();
  for (const UsedFile& file : usedFiles()) {
    if (const auto hindrance = m_names.claim(*this, file)) {
      MainUI::addLog(LogLevel::error, *hindrance);
      return false;
    }
  }
  return true;
}

// Splits stand for all their files: two of one name would meet in the names they make of it.
QList<UsedFile> WriteColumnarGel::usedFiles() const {
  const QString file = expandOutputFile(m_settings.file, QString());
  if (!m_settings.checkNameCollision || file.isEmpty()) {
    return {};
  }
  const bool isSplit = m_settings.splitKind() != WriteColumnarSettings::Split::none;
  return {usedTable(isSplit ? insertedBeforeExtension(file, QStringLiteral("*")) : file,
                    FileUse::writes)};
}

QString WriteColumnarGel::warningAboutExtension() const {
  return foreignExtensionHint(expandOutputFile(m_settings.file, QString()), FileFormat::columnar);
}

QStringList WriteColumnarGel::warningsAboutFiles() const {
  const QString file = expandOutputFile(m_settings.file, QString());
  QStringList warnings{warningAboutExtension()};
  if (m_settings.splitKind() == WriteColumnarSettings::Split::none && isForeignFile(file)) {
    warnings += columnar_messages::foreignFile(file);
  }
  warnings.removeAll(QString());
  return warnings;
}

char WriteColumnarGel::close() {
  const bool isStored = m_write == nullptr || m_write->end();
  m_write.reset();
  m_names.giveBack();
  return isStored ? 0 : 1;
}

void WriteColumnarGel::checkOutput() {
  warnOfSettingsWithoutEffect();
  const QString file = expandOutputFile(m_settings.file, QString());
  const bool isNameKnown = !m_settings.advancedNaming || m_settings.split == 0;
  const QString reason = !isNameKnown || file.isEmpty() ? QString()
                         : m_settings.createDirectory   ? whyNotCreatable(file)
                                                        : whyNotWritable(file);
  if (!reason.isEmpty()) {
    MainUI::addLog(LogLevel::error, reason);
    failRun();
  }
  if (const OneRow* columns = announcedColumnsOfInPin(0)) {
    (void)ColumnarWrite(*this, m_settings, m_columnSets, m_names, m_pause).plan(*columns);
  }
}

// In a check only: a dialog keeps what is not in use, and a run need not speak of it each time.
void WriteColumnarGel::warnOfSettingsWithoutEffect() const {
  const auto warn = [](bool isIdle, const QString& text) {
    if (isIdle) {
      MainUI::addLog(LogLevel::warning, text);
    }
  };
  warn(!m_settings.splitColumn.isEmpty() && m_settings.splitKind() != Settings::Split::byValue,
       messages::splitOff());
  warn(!m_settings.testColumn.isEmpty() && m_settings.writeAllRows, columnar_messages::testOff());
  warn(!m_columnSets.empty() && m_settings.columnSets() != Settings::ColumnSets::listed,
       columnar_messages::strategyOff());
}

void WriteColumnarGel::setComputeRoutine() {
  computeRoutine = &WriteColumnarGel::computeFirstRow;
}

bool WriteColumnarGel::computeFirstRow(ActionItem* action) {
  auto& self = static_cast<WriteColumnarGel&>(*action);
  self.m_write = std::make_unique<ColumnarWrite>(self, self.m_settings, self.m_columnSets,
                                                 self.m_names, self.m_pause);
  const OneRow* row = self.getNextRowFromInPin(0);
  if (row == nullptr) {
    self.m_write->endOfRows();
    return true;
  }
  self.computeRoutine = &WriteColumnarGel::computeBatch;
  return !self.m_write->plan(*row) || !self.m_write->write(*row);
}

bool WriteColumnarGel::computeBatch(ActionItem* action) {
  auto& self = static_cast<WriteColumnarGel&>(*action);
  const TakenBatch taken = self.getNextBatchFromInPin(0);
  if (taken.batch == nullptr) {
    self.m_write->endOfRows();
    return true;
  }
  return !self.m_write->write(taken.batch);
}

}  // namespace kelvarin
