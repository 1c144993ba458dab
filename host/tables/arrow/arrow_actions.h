// The actions ReadParquet, ReadArrow, WriteParquet and WriteArrow.
//
// Attribute of all: file. The readers also have onBadValue, and children Column (name, meta) that
// declare the types of columns.
#pragma once

#include "host/tables/arrow/arrow_formats.h"
#include "host/tables/arrow/arrow_sink.h"
#include "host/tables/files/table_source.h"
#include "host/tables/settings/column_settings.h"

namespace kelvarin {

class ArrowSource : public TableSource {
 public:
  ArrowSource(XMLNode node, GlobalParameters* parameters);
  void saveXML(std::wostringstream& out, QString name) override;

 protected:
  virtual ArrowFormat arrowFormat() const = 0;
  Result<std::unique_ptr<BatchReader>, QString> makeReader(const QString& path) const override;

 private:
  ColumnSettings m_columns;
};

class ReadParquet : public ArrowSource {
 public:
  using ArrowSource::ArrowSource;
  const char* typeName() const override { return "ReadParquet"; }
  QString toolTip() const override;
  QStringList getFileTypes() const override;
  QStringList getKeywords() const override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 protected:
  FileFormat format() const override { return FileFormat::parquet; }
  ArrowFormat arrowFormat() const override { return ArrowFormat::parquet; }
};

class ReadArrow : public ArrowSource {
 public:
  using ArrowSource::ArrowSource;
  const char* typeName() const override { return "ReadArrow"; }
  QString toolTip() const override;
  QStringList getFileTypes() const override;
  QStringList getKeywords() const override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 protected:
  FileFormat format() const override { return FileFormat::arrow; }
  ArrowFormat arrowFormat() const override { return ArrowFormat::arrow; }
};

class WriteParquet : public ArrowSink {
 public:
  using ArrowSink::ArrowSink;
  const char* typeName() const override { return "WriteParquet"; }
  QString toolTip() const override;
  QStringList getFileTypes() const override;
  QStringList getKeywords() const override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 protected:
  FileFormat format() const override { return FileFormat::parquet; }
  ArrowFormat arrowFormat() const override { return ArrowFormat::parquet; }
};

class WriteArrow : public ArrowSink {
 public:
  using ArrowSink::ArrowSink;
  const char* typeName() const override { return "WriteArrow"; }
  QString toolTip() const override;
  QStringList getFileTypes() const override;
  QStringList getKeywords() const override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 protected:
  FileFormat format() const override { return FileFormat::arrow; }
  ArrowFormat arrowFormat() const override { return ArrowFormat::arrow; }
};

}  // namespace kelvarin
