#include "host/tables/arrow/arrow_actions.h"

#include <algorithm>
#include <iterator>

#include <QFileInfo>

#include "host/contract/attribute_table.h"
#include "host/tables/arrow/messages.h"

namespace kelvarin {

namespace {

const QStringList kParquetTypes{QStringLiteral("parquet")};
const QStringList kArrowTypes{QStringLiteral("arrow"), QStringLiteral("arrows"),
                              QStringLiteral("feather"), QStringLiteral("ipc")};

constexpr char16_t kFormat[] = u"format";
const QString kFile = QStringLiteral("file");
const QString kStream = QStringLiteral("stream");

constexpr char16_t kUnreadable[] = u"unreadable";
const QString kError = QStringLiteral("error");
const QString kText = QStringLiteral("text");
const QString kSkip = QStringLiteral("skip");

std::vector<AttributeDescription> sourceAttributes() {
  std::vector<AttributeDescription> attributes = ColumnSettings::describedAttributes();
  attributes.insert(attributes.begin(), TableSource::describedFile());
  attributes.push_back(
      {QString::fromUtf16(kUnreadable), AttributeKind::text,
       QStringLiteral("what becomes of columns whose type is not read, such as lists"), kError,
       AllowedValues{.inWords = "error, text (JSON) or skip (leaves them out)"}});
  return attributes;
}

QString faultOfFormat(const QString& format) {
  const bool isAllowed = format.isEmpty() || format == kFile || format == kStream;
  return isAllowed ? QString() : table_messages::badIpcForm(format);
}

ActionDescription describedSource(const char* typeName, const char* toolTip,
                                  const QStringList& fileTypes) {
  return {
      .typeName = typeName,
      .toolTip = toolTip,
      .tags = {"Common"},
      .keywords = {fileTypes.front(), "columnar", "file", "import", "input", "load", "read", "in"},
      .fileTypes = fileTypes,
      .attributes = sourceAttributes(),
      .children = {ColumnSettings::describedElement()}};
}

ActionDescription describedSink(const char* typeName, const char* toolTip,
                                const QStringList& fileTypes,
                                std::vector<AttributeDescription> attributes = {}) {
  attributes.push_back(WrittenColumns::describedAttribute());
  return {.typeName = typeName,
          .toolTip = toolTip,
          .keywords = {fileTypes.front(), "columnar", "file", "export", "output", "save", "write",
                       "out"},
          .fileTypes = fileTypes,
          .attributes = TableSink::describedAttributes(std::move(attributes)),
          .children = {WrittenColumns::describedElement()}};
}

ArrowFormat arrowFormatOf(FileFormat format) {
  return format == FileFormat::parquet ? ArrowFormat::parquet : ArrowFormat::arrow;
}

}  // namespace

ArrowSource::ArrowSource(XMLNode node, GlobalParameters* parameters)
    : WithDescription(node, parameters), m_columns(node, parameters), m_unreadable(kError) {
  readAttribute(node, kUnreadable, m_unreadable, parameters);
}

void ArrowSource::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  m_columns.saveAttributes(out);
  if (m_unreadable != kError) {
    writeAttribute(out, kUnreadable, m_unreadable);
  }
  m_columns.saveChildrenAndEnd(out, typeName());
}

std::vector<ElementFault> ArrowSource::settingFaults() const {
  std::vector<ElementFault> faults =
      m_columns.faults(node(), [this](const QString& text) { return expandString(text); });
  if (const auto given = unreadable(); !given) {
    faults.push_back({LogLevel::error, node(), given.error()});
  }
  return faults;
}

Result<UnreadableColumns, QString> ArrowSource::unreadable() const {
  const QString word = expandString(m_unreadable);
  if (word == kText) {
    return UnreadableColumns::text;
  }
  if (word == kSkip) {
    return UnreadableColumns::skip;
  }
  return word == kError ? Result<UnreadableColumns, QString>(UnreadableColumns::error)
                        : Failure{table_messages::badUnreadable(word)};
}

Result<ArrowRules, QString> ArrowSource::rules() const {
  Result<ColumnRules, QString> columns =
      m_columns.rules([this](const QString& text) { return expandString(text); });
  if (!columns) {
    return Failure{columns.error()};
  }
  const auto given = unreadable();
  if (!given) {
    return Failure{given.error()};
  }
  return ArrowRules{std::move(*columns), *given, true};
}

Result<std::unique_ptr<BatchReader>, QString> ArrowSource::makeReaderOf(const QString& path) const {
  Result<ArrowRules, QString> settled = rules();
  if (!settled) {
    return Failure{settled.error()};
  }
  const auto formats = ArrowFormats::load();
  if (!formats) {
    return Failure{formats.error()};
  }
  return (*formats)->makeReader(arrowFormatOf(format()), path, std::move(*settled));
}

ArrowSink::ArrowSink(XMLNode node, GlobalParameters* parameters)
    : TableSink(node, parameters), m_columns(node, parameters) {}

void ArrowSink::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  saveAttributes(out);
  m_columns.saveAttribute(out);
  saveOutput(out);
  m_columns.saveChildrenAndEnd(out, typeName());
}

std::vector<ElementFault> ArrowSink::settingFaults() const {
  std::vector<ElementFault> faults = TableSink::settingFaults();
  std::ranges::move(
      m_columns.faults(node(), [this](const QString& text) { return expandString(text); }),
      std::back_inserter(faults));
  return faults;
}

ColumnFate ArrowSink::followColumn(const QString& oldName, const QString& newName) {
  m_columns.renameColumn(oldName, newName);
  return TableSink::followColumn(oldName, newName);
}

// A program without the library says so before the file is created.
Status<QString> ArrowSink::checkSettings() {
  const auto formats = ArrowFormats::load();
  if (!formats) {
    return Failure{formats.error()};
  }
  return Done{};
}

Status<QString> ArrowSink::checkColumns(const OneRow& columns) {
  auto stored =
      m_columns.storedColumns(columns, [this](const QString& text) { return expandString(text); });
  if (!stored) {
    return Failure{stored.error()};
  }
  m_stored = std::move(*stored);
  return Done{};
}

std::unique_ptr<BatchEncoder> ArrowSink::makeEncoder(const OneRow& /*columns*/) {
  return (*ArrowFormats::load())->makeEncoder();
}

std::unique_ptr<TableFileWriter> ArrowSink::makeWriter(SinkFile& file) {
  return (*ArrowFormats::load())
      ->makeWriter(written(file), file.output, file.path, m_stored,
                   run() == nullptr ? nullptr : run()->tasks);
}

const ActionDescription& ReadParquet::catalogue() {
  static const ActionDescription entry =
      describedSource("ReadParquet", "Read a Parquet file", kParquetTypes);
  return entry;
}

const ActionDescription& ReadArrow::catalogue() {
  static const ActionDescription entry =
      describedSource("ReadArrow", "Read an Arrow file or stream", kArrowTypes);
  return entry;
}

const ActionDescription& WriteParquet::catalogue() {
  static const ActionDescription entry =
      describedSink("WriteParquet", "Write a Parquet file", kParquetTypes);
  return entry;
}

const ActionDescription& WriteArrow::catalogue() {
  static const ActionDescription entry = describedSink(
      "WriteArrow", "Write an Arrow file or stream", kArrowTypes,
      {{QString::fromUtf16(kFormat), AttributeKind::text,
        QStringLiteral("the form of the output; without it, .arrows, pipes and standard output are "
                       "streams, all else files"),
        QStringLiteral(""), AllowedValues{.inWords = "file, stream or empty"}}});
  return entry;
}

WriteArrow::WriteArrow(XMLNode node, GlobalParameters* parameters) : Described(node, parameters) {
  readAttribute(node, kFormat, m_format, parameters);
}

std::vector<ElementFault> WriteArrow::settingFaults() const {
  std::vector<ElementFault> faults = ArrowSink::settingFaults();
  if (const QString fault = faultOfFormat(expandString(m_format)); !fault.isEmpty()) {
    faults.push_back({LogLevel::error, node(), fault});
  }
  return faults;
}

Status<QString> WriteArrow::checkSettings() {
  const QString fault = faultOfFormat(expandString(m_format));
  return fault.isEmpty() ? ArrowSink::checkSettings() : Failure{fault};
}

ArrowFormat WriteArrow::written(const SinkFile& file) const {
  const QString format = expandString(m_format);
  const bool isStream = format.isEmpty()
                            ? file.output.isStream() || QFileInfo(file.path).suffix().compare(
                                                            u"arrows", Qt::CaseInsensitive) == 0
                            : format == kStream;
  return isStream ? ArrowFormat::arrowStream : ArrowFormat::arrow;
}

void WriteArrow::saveAttributes(std::wostringstream& out) const {
  if (!m_format.isEmpty()) {
    writeAttribute(out, kFormat, m_format);
  }
}

}  // namespace kelvarin
