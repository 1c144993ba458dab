// Writes the first inputs of every fuzz target: make_corpus FOLDER. Inputs that a fuzzer found are
// added by hand, under a name that says what they are.
#include <algorithm>
#include <cmath>
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

// A column whose values are stored in one of the ways that there are.
struct Seed {
  const char* name;
  testing::MadeColumn column;
  Value (*value)(int row);
};

// Numbers that look random, and are the same every time.
std::uint64_t mixed(int row) {
  std::uint64_t bits = static_cast<std::uint64_t>(row) * 0x9E3779B97F4A7C15ull;
  bits ^= bits >> 29;
  return bits * 0xBF58476D1CE4E5B9ull >> 11;
}

Value orNull(int row, double number) {
  return row % 11 == 5 ? Value(nullptr) : Value(number);
}

double key(int row) {
  return static_cast<double>(row % 50 == 7 ? mixed(row) >> 22 : mixed(row) % 1000);
}

std::string word(int row) {
  return std::string(static_cast<std::size_t>(row % 5) * 70, 'b') + std::to_string(row % 40);
}

// One for each storage code and each layout, in the order of a column set.
const std::vector<Seed> kSeeds{
    {"key", {"k", 'K'}, [](int row) { return orNull(row, key(row)); }},
    {"few_keys", {"l", 'K'}, [](int row) { return Value(row % 3); }},
    {"ascending",
     {"up", 'K', 0, StorageCode::ascendingKey},
     [](int row) { return Value(row * 9); }},
    {"descending",
     {"down", 'K', 0, StorageCode::descendingKey},
     [](int row) { return Value(9000 - row * 9); }},
    {"plain", {"p", 'F'}, [](int row) { return Value(std::exp(double(mixed(row) % 900) - 450)); }},
    {"scaled", {"s", 'F'}, [](int row) { return orNull(row, double(mixed(row) % 99'999) / 100); }},
    {"one_number", {"o", 'F'}, [](int) { return Value(2.5); }},
    {"dictionary", {"d", 'F'}, [](int row) { return Value(std::sqrt(double(mixed(row) % 50))); }},
    {"significance",
     {"g", 'F'},
     [](int row) { return Value(1 + double(mixed(row) >> 23) * 1e-12 / 3); }},
    {"sparse",
     {"r", 'F'},
     [](int row) { return Value(row % 10 == 3 ? double(mixed(row)) / 3 : 0.0); }},
    {"differences",
     {"n", 'F'},
     [](int row) { return orNull(row, double(row * 3700 + int(mixed(row) % 90)) / 10); }},
    {"texts",
     {"t", 'U'},
     [](int row) { return Value(std::to_string(mixed(row)).substr(0, mixed(row) % 17)); }},
    {"words",
     {"w", 'U'},
     [](int row) { return row % 11 == 5 ? Value(nullptr) : Value(word(row)); }},
    {"one_text", {"x", 'U'}, [](int) { return Value("one"); }}};

const Seed& seed(std::string_view name) {
  return *std::find_if(kSeeds.begin(), kSeeds.end(),
                       [&](const Seed& each) { return each.name == name; });
}

std::vector<Values> rowsOf(const std::vector<Seed>& seeds, int count) {
  std::vector<Values> rows(static_cast<std::size_t>(count));
  for (int row = 0; row < count; ++row) {
    for (const Seed& seed : seeds) {
      rows[static_cast<std::size_t>(row)].push_back(seed.value(row));
    }
  }
  return rows;
}

testing::MemoryFiles filesOf(const std::vector<Seed>& seeds, int rows,
                             const testing::FileShape& shape) {
  std::vector<testing::MadeColumn> columns;
  for (const Seed& seed : seeds) {
    columns.push_back(seed.column);
  }
  return makeFile(columns, rowsOf(seeds, rows), shape);
}

void saveFiles(const std::filesystem::path& folder) {
  testing::FileShape shape{.name = kFuzzedFile, .rowsInBlock = 140, .blocksInRecord = 2};
  const testing::MemoryFiles whole =
      filesOf({seed("key"), seed("ascending"), seed("descending"), seed("scaled"), seed("words")},
              300, shape);
  save(folder / "file", "complete", packFiles(whole));
  save(folder / "header", "complete", whole.at(kFuzzedFile).substr(0, 400));
  shape.isComplete = shape.hasFinalHeader = shape.hasEndMarker = false;
  shape.rowsInBlock = 10;
  const testing::MemoryFiles cut =
      filesOf({seed("few_keys"), seed("differences"), seed("texts")}, 25, shape);
  save(folder / "file", "killed_writer", packFiles(cut));
  save(folder / "header", "provisional", cut.at(kFuzzedFile));
}

char kindOf(const testing::MadeColumn& column) {
  switch (column.type) {
    case 'F':
      return 0;
    case 'U':
      return 4;
    default:
      return column.storage == StorageCode::raw ? 1 : static_cast<char>(column.storage);
  }
}

// A chunk of each seed, taken from a file with that column alone.
void saveChunks(const std::filesystem::path& folder) {
  constexpr std::uint32_t kRows = 300;
  for (const Seed& seed : kSeeds) {
    const testing::MemoryFiles files =
        filesOf({seed}, kRows, {.name = kFuzzedFile, .rowsInBlock = kRows});
    const std::string& chunk = files.at(sideFileName(kFuzzedFile, 0));
    const Bytes stream = asBytes(chunk).subspan(kChunkChecksumSize);
    ByteBuffer raw;
    (void)uncompressSnappy(stream, kMaxRawSize, raw);
    const std::string rows(reinterpret_cast<const char*>(&kRows), sizeof kRows);
    const char kind = kindOf(seed.column);
    const std::string name = seed.name;
    save(folder / "chunk", name, kind + rows + std::string(asText(raw.bytes())));
    save(folder / "chunk", name + "_stream",
         static_cast<char>(kind | 0x80) + rows + std::string(asText(stream)));
  }
}

// Numbers with codes of every width, and with every number of planes; the fuzzer does not come upon
// the sizes that go with them.
void saveWidths(const std::filesystem::path& folder) {
  constexpr std::uint32_t kRows = 9;  // a group of 8 codes and a rest
  const auto saveNumbers = [&](const std::string& name, std::string raw, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
      raw += static_cast<char>(mixed(static_cast<int>(i)));
    }
    const std::string rows(reinterpret_cast<const char*>(&kRows), sizeof kRows);
    save(folder / "chunk", name, '\0' + rows + raw);
  };
  for (int bits = 0; bits <= 32; ++bits) {
    if (const auto width = codeWidthOf(bits)) {
      const std::string head = std::string("\1\2", 2) + static_cast<char>(bits);
      saveNumbers("codes_of_" + std::to_string(bits) + "_bits", head + std::string(9, '\0'),
                  codesSize(kRows, *width));
    }
  }
  for (int planes = 1; planes <= kMaxPlanes; ++planes) {
    saveNumbers("planes_" + std::to_string(planes),
                '\3' + std::string(1, static_cast<char>(planes)), kRows * sizeof(double));
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
  kelvarin::saveWidths(argv[1]);
  kelvarin::saveRecords(argv[1]);
  return 0;
}
