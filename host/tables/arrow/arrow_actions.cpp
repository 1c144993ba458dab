#include "host/tables/arrow/arrow_actions.h"

namespace kelvarin {

namespace {

const QStringList kParquetTypes{QStringLiteral("parquet")};
const QStringList kArrowTypes{QStringLiteral("arrow"), QStringLiteral("feather"),
                              QStringLiteral("ipc")};

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
                                const QStringList& fileTypes) {
  return {.typeName = typeName,
          .toolTip = toolTip,
          .keywords = {fileTypes.front(), "columnar", "file", "export", "output", "save", "write",
                       "out"},
          .fileTypes = fileTypes,
          .attributes = {TableSink::describedFile()}};
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

void ArrowSink::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  out << L"/>\n";
}

// A program without the library says so before the file is created.
Status<QString> ArrowSink::checkSettings() {
  const auto formats = ArrowFormats::load();
  if (!formats) {
    return Failure{formats.error()};
  }
  return Done{};
}

Status<QString> ArrowSink::begin(const OneRow& columns) {
  const auto formats = ArrowFormats::load();
  m_writer = (*formats)->makeWriter(arrowFormatOf(format()), output(), expandedFile(),
                                    run() == nullptr ? nullptr : run()->tasks);
  return m_writer->begin(columns);
}

const ActionDescription& ReadParquet::catalogue() {
  static const ActionDescription entry =
      describedSource("ReadParquet", "Read a Parquet file", kParquetTypes);
  return entry;
}

const ActionDescription& ReadArrow::catalogue() {
  static const ActionDescription entry =
      describedSource("ReadArrow", "Read an Arrow file", kArrowTypes);
  return entry;
}

const ActionDescription& WriteParquet::catalogue() {
  static const ActionDescription entry =
      describedSink("WriteParquet", "Write a Parquet file", kParquetTypes);
  return entry;
}

const ActionDescription& WriteArrow::catalogue() {
  static const ActionDescription entry =
      describedSink("WriteArrow", "Write an Arrow file", kArrowTypes);
  return entry;
}

}  // namespace kelvarin
