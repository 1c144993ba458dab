// Columnar files in memory, made by a test from typed rows without the writer.
//
//   MemoryFiles files = makeFile({{"id", 'K'}, {"name", 'U', 1}}, rows, {.rowsInBlock = 4});
//
// Column sets, the size of records, the form of the header and the end marker can be chosen.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "columnar/format/metadata_block.h"
#include "columnar/format/storage_code.h"
#include "columnar/reader/byte_source.h"
#include "host/testing/value.h"

namespace kelvarin::testing {

// Names and bytes.
class MemoryFiles {
 public:
  std::string& operator[](const std::string& name) { return m_files[name]; }
  const std::string& at(const std::string& name) const { return m_files.at(name); }
  const std::map<std::string, std::string>& all() const { return m_files; }
  void remove(const std::string& name) { m_files.erase(name); }

  // The files must outlive what is opened.
  OpenSource opener() const;
  void saveTo(const std::string& folder) const;

 private:
  std::map<std::string, std::string> m_files;
};

struct MadeColumn {
  std::string name;
  char type = 'F';
  int set = 0;
  StorageCode storage = StorageCode::raw;  // keys: raw means plain
};

struct FileShape {
  std::string name = "made.cgel_kelvarin";
  std::uint32_t rowsInBlock = 4;
  std::size_t blocksInRecord = 1000;
  bool isComplete = true;
  bool hasFinalHeader = true;  // otherwise the one written with the first row
  bool hasEndMarker = true;
};

inline const FileShape kKilledWriter{
    .isComplete = false, .hasFinalHeader = false, .hasEndMarker = false};

// Columns must come set after set, and inside a set in the order of the format.
MemoryFiles makeFile(const std::vector<MadeColumn>& columns, const std::vector<Values>& rows,
                     const FileShape& shape = {});

// Header, slot table and metadata block.
std::string headOf(const MetadataBlock& metadata, std::uint64_t rows, const FileShape& shape);
// The offset of the first descriptor record.
std::size_t firstRecord(const std::string& mainFile);
// With its checksum.
std::string sealedChunk(const std::string& stream);

}  // namespace kelvarin::testing
