#include <bit>
#include <limits>

#include <gtest/gtest.h>

#include "host/contract/global_parameters.h"
#include "host/contract/one_row.h"

using kelvarin::kNullKey;
using kelvarin::kNullNumber;

namespace {

PinOutMetaData threeColumns() {
  PinOutMetaData columns;
  columns.setColumnCount(3);
  columns.setNames({"number", "key", "text"});
  columns.setMetas(
      {{MetaTypeColumn::number, 0}, {MetaTypeColumn::key, 0}, {MetaTypeColumn::text, 0}});
  columns.setSortOrder({{1, SortType::numberAscending}, {2, SortType::textDescending}});
  return columns;
}

class Rows : public ::testing::Test {
 protected:
  void fill(double number, unsigned key, const QString& text) {
    unsigned char** values = row.getAllColForWrite();
    values[0] = bytesFromDouble(&buffer, number, 0);
    values[1] = bytesFromKey(&buffer, key);
    values[2] = bytesFromQString(&buffer, text);
  }

  PinOutMetaData columns = threeColumns();
  OneRow row{&columns};
  RowBuffer buffer{64};
};

TEST_F(Rows, ValuesComeBackInEveryForm) {
  fill(0.1, 4294967293u, QString::fromUtf8("h\xC3\xA9"));
  bool isMissing = true;
  unsigned short isNull = 1;
  EXPECT_EQ(row.colAsDouble(0, &isMissing), 0.1);
  EXPECT_FALSE(isMissing);
  EXPECT_EQ(row.colAsDouble(1, nullptr), 4294967293.0);
  bool isKey = false;
  EXPECT_EQ(row.colAsKey(1, &isKey), 4294967293u);
  EXPECT_TRUE(isKey);
  EXPECT_EQ(row.col(0, &isNull), "0.1");
  EXPECT_EQ(isNull, 0);
  EXPECT_EQ(row.col(1, nullptr), "4294967293");
  EXPECT_EQ(row.col(2, nullptr), QString::fromUtf8("h\xC3\xA9"));
  EXPECT_EQ(row.colAsUtf8(2, &isMissing), "h\xC3\xA9");
  row.colAsKey(0, &isKey);
  EXPECT_FALSE(isKey);
}

TEST_F(Rows, MissingValuesAreMissingInEveryForm) {
  for (const bool arePointersNull : {false, true}) {
    fill(kNullNumber, 0xFFFFFFFEu, QString());
    if (arePointersNull) {
      std::fill_n(row.getAllColForWrite(), 3, nullptr);
    }
    for (int column = 0; column < 3; ++column) {
      bool isMissing = false;
      unsigned short isNull = 0;
      row.colAsDouble(column, &isMissing);
      EXPECT_TRUE(isMissing) << column;
      EXPECT_TRUE(row.col(column, &isNull).isNull()) << column;
      EXPECT_EQ(isNull, 1) << column;
      EXPECT_TRUE(row.colForHash(column).empty()) << column;
    }
    EXPECT_TRUE(kelvarin::isNullNumber(row.colAsDouble(1, nullptr)));
  }
}

TEST_F(Rows, TheEmptyTextIsNotMissing) {
  fill(0, 0, "");
  bool isMissing = true;
  EXPECT_FALSE(row.col(2, nullptr).isNull());
  row.colAsUtf8(2, &isMissing);
  EXPECT_FALSE(isMissing);
  EXPECT_EQ(row.colForHash(2).size(), 4u);
}

TEST_F(Rows, EqualNumbersHaveEqualHashBytes) {
  fill(0.0, 1, "a");
  const std::string zero(row.colForHash(0));
  fill(-0.0, 1, "a");
  EXPECT_EQ(zero, row.colForHash(0));
}

TEST_F(Rows, AViewFollowsTheBytesAndACopyDoesNot) {
  fill(1, 2, "three");
  const OneRow view(row);
  PinOutMetaData none;
  OneRow copy(&none);
  copy.copyFrom(&row);
  *row.getAllColForWrite()[0] = 0xFF;
  row.getAllColForWrite()[2][4] = 'T';
  EXPECT_EQ(view.col(2, nullptr), "Three");
  EXPECT_EQ(copy.col(2, nullptr), "three");
  EXPECT_EQ(copy.colAsDouble(0, nullptr), 1);
  EXPECT_EQ(copy.getColNamesDeep(), row.getColNamesDeep());
  EXPECT_EQ(copy.sortInfos(), row.sortInfos());

  OneRow shown(&columns);
  shown.showValuesOf(&copy);
  EXPECT_EQ(shown.col(2, nullptr), "three");
  EXPECT_EQ(shown.getAllColForWrite()[2], nullptr);
}

TEST_F(Rows, ColumnsAreFoundByNameAlsoAfterARename) {
  EXPECT_EQ(row.getIndexOfColumn("key"), 1);
  row.setColName(1, "other");
  EXPECT_EQ(row.getIndexOfColumn("key"), -1);
  EXPECT_EQ(row.getIndexOfColumn("other"), 1);
  row.setNumberOfColumns(2);
  EXPECT_EQ(row.getIndexOfColumn("text"), -1);
  EXPECT_EQ(row.sortInfos(), (QVector<SortInfos>{{1, SortType::numberAscending}}));
}

TEST(RowBuffer, BytesStayWhereTheyAreUntilTheReset) {
  RowBuffer buffer(64);
  std::vector<unsigned char*> addresses;
  for (int i = 0; i < 1000; ++i) {
    addresses.push_back(bytesFromDouble(&buffer, i, 8));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(addresses.back()) % 8, 0u);
  }
  const unsigned char* large = buffer.allocate(100000);
  for (int i = 0; i < 1000; ++i) {
    EXPECT_EQ(kelvarin::numberFromBytes(addresses[static_cast<std::size_t>(i)]), i);
  }
  EXPECT_FALSE(buffer.isEmpty());
  buffer.reset();
  EXPECT_TRUE(buffer.isEmpty());
  EXPECT_EQ(buffer.allocate(1), addresses[0] - reinterpret_cast<std::uintptr_t>(addresses[0]) % 8);
  EXPECT_EQ(buffer.allocate(100000), large);
  buffer.deepReset(0);
  EXPECT_TRUE(buffer.isEmpty());
  std::memset(buffer.allocate(64), 1, 64);
}

TEST(RowBuffer, TextsAreStoredAsUtf8) {
  RowBuffer buffer(64);
  const unsigned char* half = bytesFromQString(&buffer, QString(QChar(0xD83D)) + u'x');
  EXPECT_EQ(kelvarin::textFromBytes(half), "\xEF\xBF\xBDx");
  EXPECT_TRUE(qStringFromBytes(bytesFromQString(&buffer, QString())).isNull());
  unsigned char plain[16];
  const QString text = QString::fromUtf8("\xC3\xA9t\xC3\xA9");
  EXPECT_EQ(static_cast<std::size_t>(bytesFromQString(plain, text) - plain), bytesNeeded(text));
  EXPECT_EQ(qStringFromBytes(plain), text);
}

TEST(Numbers, ShortestTextReadsBack) {
  EXPECT_EQ(shortestText(1e22), "1e+22");
  EXPECT_EQ(shortestText(100000), "100000");
  EXPECT_EQ(shortestText(-0.0), "-0");
  EXPECT_EQ(shortestText(-1234567890123456), "-1234567890123456");
  EXPECT_EQ(shortestText(-std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(shortestText(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(shortestText(5e-324).toDouble(), 5e-324);
  EXPECT_TRUE(shortestText(kNullNumber).isNull());
}

TEST(SavedForms, MetasAndSortEntriesAreTheBytesOfTheContract) {
  unsigned char meta[8];
  MetaInfo(MetaTypeColumn::key, 0x01020304).saveInBuffer(meta);
  const unsigned char expectedMeta[8] = {'K', 0, 0, 0, 4, 3, 2, 1};
  EXPECT_EQ(std::memcmp(meta, expectedMeta, 8), 0);
  EXPECT_EQ(MetaInfo(meta), MetaInfo(MetaTypeColumn::key, 0x01020304));

  unsigned char sort[16] = {};
  int position = 3;
  SortInfos(258, SortType::numberDescending).write(sort, &position);
  EXPECT_EQ(position, 8);
  const unsigned char expectedSort[5] = {2, 1, 0, 0, 57};
  EXPECT_EQ(std::memcmp(sort + 3, expectedSort, 5), 0);
  position = 3;
  EXPECT_EQ(SortInfos(sort, &position), SortInfos(258, SortType::numberDescending));
  EXPECT_EQ(SortInfos(), SortInfos(-1, SortType::textAscending));
}

TEST(GlobalParameters, ReplacesKnownNamesOnce) {
  GlobalParameters parameters;
  parameters.setValue("a", "${b}");
  parameters.setValue("b", "x");
  QString unknown;
  EXPECT_EQ(parameters.expandString2("${b}/${a}$", &unknown), "x/${b}$");
  EXPECT_TRUE(unknown.isNull());
  EXPECT_EQ(parameters.expandString2("${c}${b}${d}${", &unknown), "${c}x${d}${");
  EXPECT_EQ(unknown, "c");
}

TEST(GlobalParameters, ContractsPathsBelowTheWorkingFolder) {
  GlobalParameters parameters;
  EXPECT_EQ(parameters.contractFile("/a/b.csv"), "/a/b.csv");
  parameters.setWorkingDir("/a");
  EXPECT_EQ(parameters.contractFile("/a/b/c.csv"), "b/c.csv");
  EXPECT_EQ(parameters.contractFile("/a/..b.csv"), "..b.csv");
  EXPECT_EQ(parameters.contractFile("/x/c.csv"), "/x/c.csv");
}

}  // namespace
