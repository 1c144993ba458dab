// The actions ReadParquet, ReadArrow, WriteParquet and WriteArrow.
#pragma once

#include <memory>

#include "host/tables/arrow/arrow_formats.h"
#include "host/tables/arrow/written_columns.h"
#include "host/tables/files/table_sink.h"
#include "host/tables/files/table_source.h"
#include "host/tables/settings/column_settings.h"

namespace kelvarin {

class ArrowSource : public WithDescription<TableSource> {
 public:
  ArrowSource(XMLNode node, GlobalParameters* parameters);
  void saveXML(std::wostringstream& out, QString name) override;
  std::vector<ElementFault> settingFaults() const override;
  // The settings with graph parameters replaced.
  Result<ArrowRules, QString> rules() const;

 protected:
  Result<std::unique_ptr<BatchReader>, QString> makeReaderOf(const QString& path) const override;

 private:
  Result<UnreadableColumns, QString> unreadable() const;

  ColumnSettings m_columns;
  QString m_unreadable;
};

class ArrowSink : public TableSink {
 public:
  ArrowSink(XMLNode node, GlobalParameters* parameters);
  void saveXML(std::wostringstream& out, QString name) override;
  std::vector<ElementFault> settingFaults() const override;
  ColumnFate followColumn(const QString& oldName, const QString& newName) override;

 protected:
  virtual ArrowFormat written(const SinkFile& file) const = 0;
  // Behind the attribute `file`.
  virtual void saveAttributes(std::wostringstream& /*out*/) const {}
  Status<QString> checkSettings() override;
  Status<QString> checkColumns(const OneRow& columns) override;
  std::unique_ptr<BatchEncoder> makeEncoder(const OneRow& columns) override;
  std::unique_ptr<TableFileWriter> makeWriter(SinkFile& file) override;

 private:
  WrittenColumns m_columns;
  StoredColumns m_stored;  // of the run
};

class ReadParquet : public Described<ReadParquet, ArrowSource> {
 public:
  using Described::Described;
  static const ActionDescription& catalogue();

 protected:
  FileFormat format() const override { return FileFormat::parquet; }
};

class ReadArrow : public Described<ReadArrow, ArrowSource> {
 public:
  using Described::Described;
  static const ActionDescription& catalogue();

 protected:
  FileFormat format() const override { return FileFormat::arrow; }
};

class WriteParquet : public Described<WriteParquet, ArrowSink> {
 public:
  using Described::Described;
  static const ActionDescription& catalogue();

 protected:
  FileFormat format() const override { return FileFormat::parquet; }
  ArrowFormat written(const SinkFile&) const override { return ArrowFormat::parquet; }
};

class WriteArrow : public Described<WriteArrow, ArrowSink> {
 public:
  WriteArrow(XMLNode node, GlobalParameters* parameters);
  static const ActionDescription& catalogue();
  std::vector<ElementFault> settingFaults() const override;

 protected:
  FileFormat format() const override { return FileFormat::arrow; }
  Status<QString> checkSettings() override;
  // Where the attribute says nothing, what has no end yet is a stream: standard output, a pipe, a
  // name with the extension of streams.
  ArrowFormat written(const SinkFile& file) const override;
  void saveAttributes(std::wostringstream& out) const override;

 private:
  QString m_format;
};

}  // namespace kelvarin
