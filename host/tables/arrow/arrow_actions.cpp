#include "host/tables/arrow/arrow_actions.h"

namespace kelvarin {

namespace {

const QStringList kParquetTypes{QStringLiteral("parquet")};
const QStringList kArrowTypes{QStringLiteral("arrow"), QStringLiteral("feather"),
                              QStringLiteral("ipc")};

QStringList sourceKeywords(const QString& format) {
  return {format,
          QStringLiteral("columnar"),
          QStringLiteral("file"),
          QStringLiteral("import"),
          QStringLiteral("input"),
          QStringLiteral("load"),
          QStringLiteral("read"),
          QStringLiteral("in")};
}

QStringList sinkKeywords(const QString& format) {
  return {format,
          QStringLiteral("columnar"),
          QStringLiteral("file"),
          QStringLiteral("export"),
          QStringLiteral("output"),
          QStringLiteral("save"),
          QStringLiteral("write"),
          QStringLiteral("out")};
}

}  // namespace

ArrowSource::ArrowSource(XMLNode node, GlobalParameters* parameters)
    : TableSource(node, parameters), m_columns(node) {
  checkContentWhileLoading(node, kColumnElements);
}

void ArrowSource::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  m_columns.saveAttributes(out);
  m_columns.saveChildrenAndEnd(out, typeName());
}

Result<std::unique_ptr<BatchReader>, QString> ArrowSource::makeReader(const QString& path) const {
  Result<ColumnRules, QString> rules =
      m_columns.rules([this](const QString& text) { return expandString(text); });
  if (!rules) {
    return Failure{rules.error()};
  }
  const auto formats = ArrowFormats::load();
  if (!formats) {
    return Failure{formats.error()};
  }
  return (*formats)->makeReader(arrowFormat(), path, std::move(*rules));
}

QString ReadParquet::toolTip() const {
  return QStringLiteral("Read a Parquet file");
}
QStringList ReadParquet::getFileTypes() const {
  return kParquetTypes;
}
QStringList ReadParquet::getKeywords() const {
  return sourceKeywords(QStringLiteral("parquet"));
}

ActionItem* ReadParquet::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new ReadParquet(node, parameters);
}

QString ReadArrow::toolTip() const {
  return QStringLiteral("Read an Arrow file");
}
QStringList ReadArrow::getFileTypes() const {
  return kArrowTypes;
}
QStringList ReadArrow::getKeywords() const {
  return sourceKeywords(QStringLiteral("arrow"));
}

ActionItem* ReadArrow::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new ReadArrow(node, parameters);
}

QString WriteParquet::toolTip() const {
  return QStringLiteral("Write a Parquet file");
}
QStringList WriteParquet::getFileTypes() const {
  return kParquetTypes;
}
QStringList WriteParquet::getKeywords() const {
  return sinkKeywords(QStringLiteral("parquet"));
}

ActionItem* WriteParquet::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new WriteParquet(node, parameters);
}

QString WriteArrow::toolTip() const {
  return QStringLiteral("Write an Arrow file");
}
QStringList WriteArrow::getFileTypes() const {
  return kArrowTypes;
}
QStringList WriteArrow::getKeywords() const {
  return sinkKeywords(QStringLiteral("arrow"));
}

ActionItem* WriteArrow::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new WriteArrow(node, parameters);
}

}  // namespace kelvarin
