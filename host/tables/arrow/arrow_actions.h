// The actions ReadParquet, ReadArrow, WriteParquet and WriteArrow.
#pragma once

#include "host/tables/arrow/arrow_formats.h"
#include "host/tables/arrow/arrow_sink.h"
#include "host/tables/files/table_source.h"
#include "host/tables/settings/column_settings.h"

namespace kelvarin {

class ArrowSource : public WithDescription<TableSource> {
 public:
  ArrowSource(XMLNode node, GlobalParameters* parameters);
  void saveXML(std::wostringstream& out, QString name) override;
  std::vector<ElementFault> settingFaults() const override;

 protected:
  virtual ArrowFormat arrowFormat() const = 0;
  Result<std::unique_ptr<BatchReader>, QString> makeReader(const QString& path) const override;

 private:
  ColumnSettings m_columns;
};

class ReadParquet : public Described<ReadParquet, ArrowSource> {
 public:
  using Described::Described;
  static const ActionDescription& catalogue();

 protected:
  FileFormat format() const override { return FileFormat::parquet; }
  ArrowFormat arrowFormat() const override { return ArrowFormat::parquet; }
};

class ReadArrow : public Described<ReadArrow, ArrowSource> {
 public:
  using Described::Described;
  static const ActionDescription& catalogue();

 protected:
  FileFormat format() const override { return FileFormat::arrow; }
  ArrowFormat arrowFormat() const override { return ArrowFormat::arrow; }
};

class WriteParquet : public Described<WriteParquet, ArrowSink> {
 public:
  using Described::Described;
  static const ActionDescription& catalogue();

 protected:
  FileFormat format() const override { return FileFormat::parquet; }
  ArrowFormat arrowFormat() const override { return ArrowFormat::parquet; }
};

class WriteArrow : public Described<WriteArrow, ArrowSink> {
 public:
  using Described::Described;
  static const ActionDescription& catalogue();

 protected:
  FileFormat format() const override { return FileFormat::arrow; }
  ArrowFormat arrowFormat() const override { return ArrowFormat::arrow; }
};

}  // namespace kelvarin
