// Writes the first inputs of every fuzz target: make_corpus FOLDER. Inputs that a fuzzer found are
// added by hand, under a name that says what they are.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/number_integers.h"
#include "columnar/codecs/short_number.h"
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

std::string digits(int row, int base) {
  char text[32];
  std::snprintf(text, sizeof text, base == 16 ? "%08jx" : "%07ju",
                static_cast<std::uintmax_t>(mixed(row) % 4'000'000));
  return text;
}

std::string moment(int row) {
  char text[64];
  std::snprintf(text, sizeof text, "20%02d-%02d-%02d %02d:30:%02d", row % 40, row % 12 + 1,
                row % 31 + 1, row % 24, row % 60);
  return text;
}

std::string name(int row) {
  std::string letters;
  for (std::uint64_t rest = mixed(row) % 30'000; rest > 0; rest /= 24) {
    letters += static_cast<char>('a' + rest % 24);
  }
  return letters;
}

// One of sixty words of a few letters.
std::string fewLetters(int row) {
  std::string letters;
  std::uint64_t rest = mixed(static_cast<int>(mixed(row) % 60));
  for (int i = 0; i < 14; ++i, rest /= 4) {
    letters += static_cast<char>('a' + rest % 4);
  }
  return letters;
}

// Frequent words with rare ones between them.
std::string sentence(int row) {
  constexpr const char* kWords[] = {"the", "chunk", "of", "a", "column", "has", "no", "end"};
  std::string text = "When";
  for (int i = 0; i < row % 7; ++i) {
    const std::uint64_t pick = mixed(row * 7 + i);
    text += ' ';
    text += pick % 9 == 8 ? std::to_string(pick) + "th" : kWords[pick % 9];
  }
  return text + (row % 3 == 0 ? "." : "");
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
    {"products",
     {"q", 'F'},
     [](int row) {
       return row % 17 == 3 ? Value(double(mixed(row)) / 3)
                            : Value(double(mixed(row) % 50'000) / 100 * double(row % 19 + 1));
     }},
    {"wide",
     {"v", 'F'},
     [](int row) { return orNull(row, double(mixed(row) % (1u << 27)) * 5 / 4096); }},
    {"single",
     {"b", 'F'},
     [](int row) { return Value(double(float(double(mixed(row) >> 20) * 1e-7))); }},
    {"sums",
     {"c", 'F'},
     [](int row) {
       double sum = 0.1;
       for (int i = 0; i < row; ++i) {
         sum += double(mixed(i) % 1000) / 10;
       }
       return Value(sum);
     }},
    {"texts",
     {"t", 'U'},
     [](int row) { return Value(std::to_string(mixed(row)).substr(0, mixed(row) % 17)); }},
    {"words",
     {"w", 'U'},
     [](int row) { return row % 11 == 5 ? Value(nullptr) : Value(word(row)); }},
    {"one_text", {"x", 'U'}, [](int) { return Value("one"); }},
    {"moments", {"m", 'U'}, [](int row) { return Value(moment(row) + ".25Z"); }},
    {"amounts",
     {"a", 'U'},
     [](int row) { return Value(std::to_string(double(mixed(row) % 99'999) / 100)); }},
    {"identifiers",
     {"i", 'U'},
     [](int row) { return Value("0" + digits(row, 16) + "-" + digits(row * 31, 7)); }},
    {"named",
     {"y", 'U'},
     [](int row) {
       return Value("id " + std::to_string(row * 3) + ": " + name(row) + "." + name(row * 7));
     }},
    {"two_shapes",
     {"z", 'U'},
     [](int row) {
       return row % 11 == 5 ? Value(nullptr)
                            : Value(row % 13 == 2  ? "?"
                                    : row % 3 == 0 ? moment(row)
                                                   : name(row));
     }},
    {"coded_entries",
     {"c", 'U'},
     [](int row) { return row % 11 == 5 ? Value(nullptr) : Value(fewLetters(row)); }},
    {"endings",
     {"e", 'U'},
     [](int row) {
       return Value(fewLetters(row) + std::to_string(row % 7) + (row % 3 == 0 ? "@a.b.c" : "@a.b"));
     }},
    {"skewed",
     {"q", 'U'},
     [](int row) { return Value(name(int(mixed(row) % 7 * (mixed(row) % 5) * 3))); }},
    {"few_moments", {"u", 'U'}, [](int row) { return Value(moment(int(mixed(row) % 60))); }},
    {"sentences", {"f", 'U'}, [](int row) {
       return row % 11 == 5 ? Value(nullptr) : Value(sentence(row));
     }}};

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
      const std::string head =
          '\2' + std::string(1, static_cast<char>(bits)) + std::string(9, '\0');
      const std::string ending = "_of_" + std::to_string(bits) + "_bits";
      saveNumbers("codes" + ending, '\1' + head, codesSize(kRows, *width));
      saveNumbers("differences" + ending, '\5' + head, codesSize(kRows, *width));
    }
  }
  for (int planes = 1; planes <= kMaxPlanes; ++planes) {
    saveNumbers("planes_" + std::to_string(planes),
                '\3' + std::string(1, static_cast<char>(planes)), kRows * sizeof(double));
  }
}

// Integers of each kind with marks of every width. Of 9 rows the second one has another number.
void saveMarks(const std::filesystem::path& folder) {
  constexpr std::uint32_t kRows = 9;
  const std::string rows(reinterpret_cast<const char*>(&kRows), sizeof kRows);
  for (const int bits : {1, 2, 4, 8, 16}) {
    const auto inItem = static_cast<int>(marksInItem(bits));
    ByteBuffer items;
    IntegerColumnEncoder column;
    std::vector<std::uint64_t> marks((kRows + marksInItem(bits) - 1) / marksInItem(bits));
    marks[inItem > 1 ? 0 : 1] = std::uint64_t{markOfOthers(bits)} << (inItem > 1 ? bits : 0);
    column.append(marks, items);
    for (char kind = 0; kind < 3; ++kind) {
      ByteBuffer counts;
      appendShortNumber(7, counts);  // from -4 on
      appendShortNumber(3, counts);
      column.append(std::vector<std::uint64_t>{1, 5, 9, 2, 6, 4, 0, 3}, counts);
      const std::string head = {6, 9, 0, 0, 0, kind, 2, static_cast<char>(bits)};
      save(folder / "chunk", "marks_of_" + std::to_string(bits) + "_bits_" + std::to_string(kind),
           '\0' + rows + head + std::string(asText(items.bytes())) +
               std::string(asText(counts.bytes())) + std::string(9, '\0'));
    }
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
  kelvarin::saveMarks(argv[1]);
  kelvarin::saveRecords(argv[1]);
  return 0;
}
