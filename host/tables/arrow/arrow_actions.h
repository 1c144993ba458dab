// The actions ReadParquet, ReadArrow, WriteParquet and WriteArrow. Their one attribute is `file`.
#pragma once

#include "host/tables/arrow/arrow_sink.h"
#include "host/tables/files/table_source.h"

namespace kelvarin {

class ReadParquet : public TableSource {
 public:
  ReadParquet(XMLNode node, GlobalParameters* parameters) : TableSource(node, parameters) {}
  const char* typeName() const override { return "ReadParquet"; }
  QString toolTip() const override;
  QStringList getFileTypes() const override;
  QStringList getKeywords() const override;
  void saveXML(std::wostringstream& out, QString name) override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 protected:
  Result<std::unique_ptr<BatchReader>, QString> makeReader(const QString& path) const override;
};

class ReadArrow : public TableSource {
 public:
  ReadArrow(XMLNode node, GlobalParameters* parameters) : TableSource(node, parameters) {}
  const char* typeName() const override { return "ReadArrow"; }
  QString toolTip() const override;
  QStringList getFileTypes() const override;
  QStringList getKeywords() const override;
  void saveXML(std::wostringstream& out, QString name) override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 protected:
  Result<std::unique_ptr<BatchReader>, QString> makeReader(const QString& path) const override;
};

class WriteParquet : public ArrowSink {
 public:
  WriteParquet(XMLNode node, GlobalParameters* parameters) : ArrowSink(node, parameters) {}
  const char* typeName() const override { return "WriteParquet"; }
  QString toolTip() const override;
  QStringList getFileTypes() const override;
  QStringList getKeywords() const override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 protected:
  std::unique_ptr<ArrowWriter> makeWriter() const override;
};

class WriteArrow : public ArrowSink {
 public:
  WriteArrow(XMLNode node, GlobalParameters* parameters) : ArrowSink(node, parameters) {}
  const char* typeName() const override { return "WriteArrow"; }
  QString toolTip() const override;
  QStringList getFileTypes() const override;
  QStringList getKeywords() const override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 protected:
  std::unique_ptr<ArrowWriter> makeWriter() const override;
};

}  // namespace kelvarin
