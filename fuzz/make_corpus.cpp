// Writes the first inputs of every fuzz target: make_corpus FOLDER. Inputs that a fuzzer found are
// added by hand, under a name that says what they are.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/snappy_stream.h"
#include "fuzz/packed_files.h"

namespace kelvarin {

namespace {

using testing::Value;
using testing::Values;

void save(const std::filesystem::path& folder, const std::string& name, const std::string& bytes) {
  std::filesystem::create_directories(folder);
  std::ofstream(folder / name, std::ios::binary) << bytes;
}

Value cell(char type, int row) {
  if (row % 11 == 5) {
    return nullptr;
  }
  return type == 'U' ? Value("t" + std::to_string(row % 9)) : Value(row * 3 + row % 2);
}

std::vector<Values> rowsOf(const std::vector<testing::MadeColumn>& columns, int count) {
  std::vector<Values> rows;
  for (int row = 0; row < count; ++row) {
    Values values;
    for (const testing::MadeColumn& column : columns) {
      values.push_back(cell(column.type, row));
    }
    rows.push_back(values);
  }
  return rows;
}

void saveFiles(const std::filesystem::path& folder) {
  const std::vector<testing::MadeColumn> columns{{"k", 'K'},
                                                 {"up", 'K', 0, StorageCode::ascendingKey},
                                                 {"down", 'K', 0, StorageCode::descendingKey},
                                                 {"n", 'F'},
                                                 {"t", 'U'}};
  testing::FileShape shape{.name = kFuzzedFile, .rowsInBlock = 150, .blocksInRecord = 2};
  const testing::MemoryFiles whole = makeFile(columns, rowsOf(columns, 700), shape);
  save(folder / "file", "complete", packFiles(whole));
  save(folder / "header", "complete", whole.at(kFuzzedFile).substr(0, 400));
  shape.isComplete = shape.hasFinalHeader = shape.hasEndMarker = false;
  shape.rowsInBlock = 10;
  const testing::MemoryFiles cut = makeFile(columns, rowsOf(columns, 25), shape);
  save(folder / "file", "killed_writer", packFiles(cut));
  save(folder / "header", "provisional", cut.at(kFuzzedFile));
}

// One chunk a kind, taken from the beginning of a file with that column alone.
void saveChunks(const std::filesystem::path& folder) {
  constexpr std::uint32_t kRows = 300;
  constexpr StorageCode kCodes[] = {StorageCode::raw, StorageCode::key, StorageCode::ascendingKey,
                                    StorageCode::descendingKey, StorageCode::raw};
  for (std::size_t kind = 0; kind < std::size(kCodes); ++kind) {
    const char type = kind == 0 ? 'F' : kind == 4 ? 'U' : 'K';
    const std::vector<testing::MadeColumn> columns{{"c", type, 0, kCodes[kind]}};
    const testing::MemoryFiles files =
        makeFile(columns, rowsOf(columns, kRows), {.name = kFuzzedFile, .rowsInBlock = kRows});
    const std::string& chunk = files.at(sideFileName(kFuzzedFile, 0));
    const Bytes stream = asBytes(chunk).subspan(kChunkChecksumSize);
    ByteBuffer raw;
    (void)uncompressSnappy(stream, kMaximumRawSize, raw);
    const std::string rows(reinterpret_cast<const char*>(&kRows), sizeof kRows);
    const std::string name = "kind_" + std::to_string(kind);
    save(folder / "chunk", name, static_cast<char>(kind) + rows + std::string(asText(raw.bytes())));
    save(folder / "chunk", name + "_stream",
         static_cast<char>(kind | 0x80) + rows + std::string(asText(stream)));
  }
}

void saveRecords(const std::filesystem::path& folder) {
  constexpr std::size_t kWidth = 40;
  ByteBuffer record;
  appendSnappy(std::vector<unsigned char>(20 * kWidth, 7), record);
  save(folder / "descriptor_record", "twenty",
       static_cast<char>(kWidth - 1) + std::string(asText(record.bytes())));
}

}  // namespace

}  // namespace kelvarin

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_corpus FOLDER\n");
    return 2;
  }
  kelvarin::saveFiles(argv[1]);
  kelvarin::saveChunks(argv[1]);
  kelvarin::saveRecords(argv[1]);
  return 0;
}
