// What a check of a whole file finds, and where.
#include <gtest/gtest.h>

#include "columnar/format/file_names.h"
#include "columnar/reader/tests/made_file.h"
#include "columnar/reader/verification.h"

namespace kelvarin::testing {

namespace {

using Kind = GelDamage::Kind;

const std::string kMain = FileShape{}.name;

std::vector<GelDamage> damagesOf(const MemoryFiles& files) {
  std::vector<GelDamage> damages;
  const auto file = GelFile::open(kMain, IncompleteFiles::accept, files.opener());
  EXPECT_TRUE(file);
  const GelVerification found =
      verifyGelFile(**file, [&](const GelDamage& damage) { damages.push_back(damage); });
  EXPECT_EQ(found.damages, damages.size());
  return damages;
}

MemoryFiles someFile() {
  std::vector<Values> rows;
  for (int i = 0; i < 10; ++i) {
    rows.push_back({i == 3 ? Value(nullptr) : Value(i), i == 5 ? Value(nullptr) : Value(-i / 3.0),
                    i == 7 ? Value(nullptr) : Value(std::string(90, 'x') + std::to_string(i))});
  }
  return makeFile({{"id", 'K'}, {"price", 'F', 1}, {"name", 'U', 1}}, rows);
}

TEST(Verification, NamesBlockColumnAndOffsetOfAChunk) {
  MemoryFiles files = someFile();
  std::string& side = files[sideFileName(kMain, 1)];
  side[side.size() - 10] ^= 4;
  const std::vector<GelDamage> damages = damagesOf(files);
  ASSERT_EQ(damages.size(), 1u);
  EXPECT_EQ(damages[0].kind, Kind::chunk);
  EXPECT_EQ(damages[0].block, 2u);
  EXPECT_EQ(damages[0].column, "name");
  EXPECT_EQ(damages[0].file, "made.001.cs_kelvarin");
  EXPECT_EQ(damages[0].firstRow, 8u);
  EXPECT_EQ(damages[0].lastRow, 9u);
  EXPECT_LT(damages[0].offset, side.size());
  EXPECT_GT(damages[0].offset, side.size() / 2);
}

TEST(Verification, FindsWhatIsMissing) {
  MemoryFiles files = someFile();
  files.remove(sideFileName(kMain, 0));
  std::string& side = files[sideFileName(kMain, 1)];
  side.resize(side.size() / 2);
  files[kMain].resize(files[kMain].size() - 8);
  const std::vector<GelDamage> damages = damagesOf(files);
  ASSERT_EQ(damages.size(), 3u);
  EXPECT_EQ(damages[0].kind, Kind::sideFileMissing);
  EXPECT_EQ(damages[1].kind, Kind::sideFileCut);
  EXPECT_EQ(damages[2].kind, Kind::mainFileCut);
  EXPECT_EQ(damages[2].offset, files.at(kMain).size());
}

// The values of another file, with sound checksums.
TEST(Verification, ComparesValuesWithTheirStatistics) {
  for (const char type : {'K', 'F', 'U'}) {
    const auto value = [type](int number) {
      return type == 'U' ? Value(std::to_string(number)) : Value(number);
    };
    const std::vector<MadeColumn> columns{{"a", type}};
    MemoryFiles files = makeFile(columns, {{value(1)}, {value(2)}});
    const MemoryFiles other = makeFile(columns, {{value(1)}, {value(7)}});
    files[sideFileName(kMain, 0)] = other.at(sideFileName(kMain, 0));
    const std::vector<GelDamage> damages = damagesOf(files);
    ASSERT_EQ(damages.size(), 1u) << type;
    EXPECT_EQ(damages[0].kind, Kind::statistics);
  }
}

}  // namespace

}  // namespace kelvarin::testing
