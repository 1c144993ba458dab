// The base of the actions that read a table from a file.
//
// Threads and errors: those of ReaderSource.
#pragma once

#include <memory>

#include "host/contract/claimed_names.h"
#include "host/files/file_hints.h"
#include "host/tables/files/reader_source.h"

namespace kelvarin {

class TableSource : public ReaderSource, public FileUser {
 public:
  char init() override;
  char close() override;

  QList<UsedFile> usedFiles() const override;

  const QString& file() const { return m_file; }
  // With its folder; "-" is standard input.
  QString expandedFile() const;
  // The attribute `file`.
  static AttributeDescription describedFile();

 protected:
  TableSource(XMLNode node, GlobalParameters* parameters);

  // The reader of `path`, which is expanded. Errors are those of the settings.
  virtual Result<std::unique_ptr<BatchReader>, QString> makeReaderOf(const QString& path) const = 0;
  // For the hint at a file of another format.
  virtual FileFormat format() const = 0;

  void setSortedOn(const QString& text) { m_sortedOn = text; }
  const QString& sortedOn() const { return m_sortedOn; }
  // Writes the element's head and the attribute `file`.
  void saveHead(std::wostringstream& out, const QString& name) const;

 private:
  Result<std::unique_ptr<BatchReader>, QString> makeReader() final;
  Result<QVector<SortInfos>, QString> declaredOrder(const PinOutMetaData& columns) const final;
  void explainFailureToOpen() const final;

  QString m_file;
  QString m_sortedOn;
  ClaimedNames m_names;
};

}  // namespace kelvarin
