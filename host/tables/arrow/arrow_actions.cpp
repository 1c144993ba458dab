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
      .attributes = {TableSource::describedFile(), ColumnSettings::describedAttribute()},
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
    : WithDescription(node, parameters), m_columns(node, parameters) {}

void ArrowSource::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  m_columns.saveAttribute(out);
  m_columns.saveChildrenAndEnd(out, typeName());
}

std::vector<ElementFault> ArrowSource::settingFaults() const {
  return m_columns.faults(node(), [this](const QString& text) { return expandString(text); });
}

Result<std::unique_ptr<BatchReader>, QString> ArrowSource::makeReaderOf(const QString& path) const {
  Result<ColumnRules, QString> rules =
      m_columns.rules([this](const QString& text) { return expandString(text); });
  if (!rules) {
    return Failure{rules.error()};
  }
  const auto formats = ArrowFormats::load();
  if (!formats) {
    return Failure{formats.error()};
  }
  return (*formats)->makeReader(arrowFormatOf(format()), path, std::move(*rules));
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
