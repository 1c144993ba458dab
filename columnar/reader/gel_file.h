// An opened columnar file: its header and its columns.
//
// Made by open(); blocks are read by block_reader.h, and each reader has its own position in the
// file.
// Layout: docs/gel-format.md, "Header" and "Metadata block".
// Threads: read-only once opened.
// Errors: OpenFailure; never logs, never throws.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/result.h"
#include "columnar/files/table_exchange.h"
#include "columnar/format/block_descriptor.h"
#include "columnar/format/file_header.h"
#include "columnar/format/metadata_block.h"
#include "columnar/reader/byte_source.h"
#include "host/contract/meta_info.h"

namespace kelvarin {

enum class IncompleteFiles { refuse, accept };

struct OpenFailure {
  enum class Problem {
    cannotOpen,      // the system cannot open or read it
    unreadable,      // not a columnar file, or one that is cut or damaged before its first block
    incomplete,      // and such files are refused
    exchangeDamaged  // the journal is, so it is unknown which files belong together
  };
  Problem problem = Problem::cannotOpen;
  bool isIncomplete = false;  // known before the problem was found
};

class GelFile {
 public:
  static Result<std::unique_ptr<GelFile>, OpenFailure> open(
      const std::string& path, IncompleteFiles incomplete,
      const OpenSource& openSource = openFileSource);

  const std::string& path() const { return m_path; }
  // The current path of a column set's side file.
  std::string sidePath(int columnSet) const;
  // Null also when another table has replaced this one meanwhile.
  std::unique_ptr<ByteSource> openSide(int columnSet) const;

  bool isComplete() const { return m_header.isComplete != 0; }
  const FileHeader& header() const { return m_header; }
  // As the header says; 0 in files that their writer has not finished.
  std::uint64_t rowCount() const { return m_header.rowCount; }
  std::uint32_t rowsInBlock() const { return m_metadata.rowsInBlock; }
  int columnSetCount() const { return m_metadata.columnSetCount; }

  // In stored order, set after set. Column indices refer to this list everywhere.
  const std::vector<GelColumn>& columns() const { return m_metadata.columns; }
  const GelColumn& column(std::size_t index) const { return m_metadata.columns[index]; }
  MetaInfo meta(std::size_t index) const;
  // The indices in the order of the columns of the written rows.
  std::vector<std::size_t> columnsInRowOrder() const;

  const DescriptorLayout& descriptorLayout() const { return m_layout; }
  const ByteSource& source() const { return *m_source; }
  // The offset of the first descriptor record in the main file.
  std::uint64_t firstRecordOffset() const;

 private:
  // Identifies the file behind a name; all zero where there is none.
  struct Identity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    bool operator==(const Identity&) const = default;
  };
  static Identity identityOf(const std::string& path);

  GelFile() = default;
  // False: the journal of an exchange is damaged.
  bool openMain();
  // No other table has replaced this one since it was opened.
  bool isCurrent() const;
  bool readHeader();

  std::string m_path;
  TableLocation m_location;
  Identity m_identity;  // of the main file
  OpenSource m_openSource;
  std::unique_ptr<ByteSource> m_source;
  FileHeader m_header;
  MetadataBlock m_metadata;
  DescriptorLayout m_layout;
};

}  // namespace kelvarin
