#include "host/tables/arrow/arrow_actions.h"

#include "host/tables/arrow/arrow_batch_reader.h"

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

std::unique_ptr<BatchReader> readerOf(const QString& path, std::unique_ptr<ArrowFile> file) {
  return std::make_unique<ArrowBatchReader>(path, std::move(file));
}

}  // namespace

QString ReadParquet::toolTip() const {
  return QStringLiteral("Read a Parquet file");
}
QStringList ReadParquet::getFileTypes() const {
  return kParquetTypes;
}
QStringList ReadParquet::getKeywords() const {
  return sourceKeywords(QStringLiteral("parquet"));
}

void ReadParquet::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  out << L"/>\n";
}

ActionItem* ReadParquet::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new ReadParquet(node, parameters);
}

Result<std::unique_ptr<BatchReader>, QString> ReadParquet::makeReader(const QString& path) const {
  return readerOf(path, makeParquetFile());
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

void ReadArrow::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  out << L"/>\n";
}

ActionItem* ReadArrow::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new ReadArrow(node, parameters);
}

Result<std::unique_ptr<BatchReader>, QString> ReadArrow::makeReader(const QString& path) const {
  return readerOf(path, makeIpcFile());
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
