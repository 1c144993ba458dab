// CSV files as other programs write them: what ReadCSV makes of them by its settings.
#include <zlib.h>

#include <unistd.h>

#include "host/tables/csv/tests/read_csv_run.h"

namespace kelvarin {

using testing::expectFailure;
using testing::ReadCsvRun;
using testing::RowHarness;
using testing::Rows;
using testing::Strings;
using testing::TableFolder;
using testing::Values;

namespace {

using std::string_literals::operator""s;

// The rows of a run over files of the folder.
struct FilesRun {
  FilesRun(const TableFolder& folder, const std::string& pattern, const std::string& attributes)
      : harness(RowHarness::of<ReadCsv>("<ReadCSV name='r' file='" + folder.path(pattern) + "' " +
                                        attributes + "/>")),
        rows(harness.rows(0)) {}

  std::string log() const {
    std::string all;
    for (const std::string& line : harness.log()) {
      all += line + '\n';
    }
    return all;
  }

  RowHarness harness;
  Rows rows;
};

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) {
    all += text;
  }
  return all;
}

}  // namespace

TEST(ForeignCsv, WhatIsLeftOpenIsFoundAndReported) {
  const ReadCsvRun run("na\xEFve;\"b;c\"\r\n1;2\r\n",
                       "separator='auto' quote='auto' encoding='auto'");
  EXPECT_EQ(run.columns(), "na\u00EFve:F b;c:F");
  EXPECT_EQ(run.log(),
            "info: file 'FILE': separator ';', quote '\"', encoding windows-1252, header.\n");
  EXPECT_EQ(ReadCsvRun("'a|b'\t'c'\n1\t2\n", "separator='auto' quote='auto'").columns(),
            "a|b:F c:F");
  EXPECT_EQ(ReadCsvRun("a;b\n1;2\n", "separator='auto' quote='' header='0'").log(),
            "info: file 'FILE': separator ';', no quote, encoding UTF-8, no header.\n");
  // A setting that is given stays.
  EXPECT_EQ(ReadCsvRun("a;b,c\n1;2,3\n", "separator=',' quote='auto'").columns(), "a;b:U c:F");
  EXPECT_EQ(ReadCsvRun("a;b\n1;2\n").log().find("encoding"), std::string::npos);
  expectFailure(ReadCsvRun("", "separator='auto' encoding='auto'"), {"is empty"});
}

TEST(ForeignCsv, EncodingsThatAreGiven) {
  EXPECT_EQ(ReadCsvRun("t\n\x80\n", "encoding='windows-1252'").rows(), (Rows{{"\u20AC"}}));
  EXPECT_EQ(ReadCsvRun("t\n\xE9\n", "encoding='latin1'").rows(), (Rows{{"\u00E9"}}));
  EXPECT_EQ(ReadCsvRun("\xFF\xFEt\0\n\0x\0\n\0"s, "encoding='UTF-16'").rows(), (Rows{{"x"}}));
  // Positions are those of the text.
  expectFailure(ReadCsvRun("a\0,\0b\0\r\0\n\0001\0,\0x\0\n\0002\0\n\0"s, "encoding='UTF-16LE'"),
                {"FILE', line 3: 1 fields where the file has 2 columns"});
  expectFailure(ReadCsvRun("a\0,\0b\0\n\0001\0,\0\x3D\xD8\n\0"s, "encoding='UTF-16LE'"),
                {"FILE', line 2, column 'b': the text is not UTF-16LE"});
  expectFailure(ReadCsvRun("a\n\xE9\n"), {"line 2, column 'a'", "set encoding='windows-1252'"});
  expectFailure(ReadCsvRun("a\n", "encoding='klingon'"), {"encoding 'klingon' is not known"});
  expectFailure(ReadCsvRun("\xFF\xFEt\0"s), {"Set encoding='auto'"});
}

TEST(ForeignCsv, SeveralTextsAreNull) {
  const ReadCsvRun run("a,b\nNA,x\n,n/a\n\"NA\",a|b\n1,\"\"\n", "nullTexts='NA|n/a|a\\|b'");
  EXPECT_EQ(run.columns(), "a:U b:U");
  EXPECT_EQ(run.rows(), (Rows{{nullptr, "x"}, {nullptr, nullptr}, {"NA", nullptr}, {"1", ""}}));
  // Without the empty text among them, an empty field is one.
  EXPECT_EQ(ReadCsvRun("a,b\nx,\n-,?\n", "nullText='-' nullTexts='?'").rows(),
            (Rows{{"x", ""}, {nullptr, nullptr}}));
  EXPECT_EQ(ReadCsvRun("a,b\nx,\n-,?\n", "nullText='-' nullTexts='?|'").rows(),
            (Rows{{"x", nullptr}, {nullptr, nullptr}}));
  // Null texts that look like numbers, beside numbers that are parsed several at once.
  const ReadCsvRun numbers("a\n" + repeated("-99\n5\n999999999\n", 100),
                           "nullTexts='-99|999999999'");
  EXPECT_EQ(numbers.columns(), "a:F");
  ASSERT_EQ(numbers.rows().size(), 300u);
  EXPECT_EQ(numbers.rows()[297], Values{nullptr});
  EXPECT_EQ(numbers.rows()[298], Values{5});
  EXPECT_EQ(numbers.rows()[299], Values{nullptr});
}

TEST(ForeignCsv, NumbersInOtherFormats) {
  const std::string german = "separator=';' decimal=',' thousands='.'";
  const ReadCsvRun run("n;m;t\n1.234,5;-1.000.000;1,5\n,5;\"7,25\";12.34\n1234,5;0;1\n", german);
  EXPECT_EQ(run.columns(), "n:F m:F t:U");
  EXPECT_EQ(run.rows(), (Rows{{1234.5, -1000000, "1,5"}, {0.5, 7.25, "12.34"}, {1234.5, 0, "1"}}));
  EXPECT_NE(run.log().find("line 3, column 't': '12.34' looks like a number, but numbers have ','"),
            std::string::npos)
      << run.log();
  const std::string declared = "<Column name='n' meta='F'/>";
  for (const char* wrong :
       {"1.23,4", "1.2345", ".123", "1..234", "1,234.567", "1,2,3", "12.34.567"}) {
    expectFailure(ReadCsvRun("n;x\n"s + wrong + ";1\n", german, declared),
                  {"line 2, column 'n'", "is not a number"});
  }
  EXPECT_EQ(ReadCsvRun("n;x\n1 234,5;1\n1\u00A0234,5;1\n1\u202F234;1\n",
                       "separator=';' decimal=',' thousands=' '")
                .rows(),
            (Rows{{1234.5, 1}, {1234.5, 1}, {1234, 1}}));
  EXPECT_EQ(ReadCsvRun("k\n4.294.967.293\n", german, "<Column name='k' meta='K'/>").rows(),
            (Rows{{4294967293u}}));
  // Digits are counted without what stands between them.
  EXPECT_EQ(ReadCsvRun("a;b\n0.012;9.007.199.254.740.993\n", german).columns(), "a:U b:U");
  expectFailure(ReadCsvRun("a\n1\n", "decimal=';'"), {"decimal is ';'"});
  expectFailure(ReadCsvRun("a\n1\n", "decimal=',' thousands=','"), {"thousands is ','"});
  expectFailure(ReadCsvRun("a\n1\n", "thousands='5'"), {"thousands is '5'"});
}

TEST(ForeignCsv, LinesThatAreNoRecords) {
  const std::string text =
      "Report \"of\nall, sales\r\n# \"a,b\na,b\r\n#,\"\n1,#2\n\"#3\",\"\n#x\"\n #4,5\n#";
  const ReadCsvRun run(text, "skipLines='2' comment='#'");
  EXPECT_EQ(run.rows(), (Rows{{"1", "#2"}, {"#3", "\n#x"}, {" #4", "5"}})) << run.log();
  // Lines are counted as they stand in the file.
  expectFailure(ReadCsvRun("x\n#\na,b\n#\n1,2\n#\r#\n3\n", "skipLines='1' comment='#'"),
                {"line 8: 1 fields"});
  expectFailure(ReadCsvRun("a,b\n1,2\n", "skipLines='9'"), {"is empty"});
  EXPECT_EQ(ReadCsvRun("x\r\n1,2\n3,4\n", "skipLines='1' header='0'").rows(),
            (Rows{{1, 2}, {3, 4}}));
  // A comment is no value of a single column.
  EXPECT_EQ(ReadCsvRun("a\n#\n1\n\n#x\n2\n", "comment='#'").rows(), (Rows{{1}, {nullptr}, {2}}));
  expectFailure(ReadCsvRun("a\n", "comment=','"), {"comment is ','"});
}

TEST(ForeignCsv, RowsOfOtherLengths) {
  const std::string text = "a,b,c\n1\n2,x\n3,x,y\n4,x,y,z\n\n5,\"p\nq\"\n6,x,y,\"1\n2\",,\n";
  const ReadCsvRun run(text, "short='null' long='ignore'");
  EXPECT_EQ(run.columns(), "a:F b:U c:U");
  EXPECT_EQ(run.rows(), (Rows{{1, nullptr, nullptr},
                              {2, "x", nullptr},
                              {3, "x", "y"},
                              {4, "x", "y"},
                              {5, "p\nq", nullptr},
                              {6, "x", "y"}}));
  // What is missing is null, also where an empty field is not.
  EXPECT_EQ(ReadCsvRun("a,b,c\nx\nx,,\n", "short='null' nullText='NA'").rows(),
            (Rows{{"x", nullptr, nullptr}, {"x", "", ""}}));
  expectFailure(ReadCsvRun(text, "short='null'"), {"line 5: 4 fields", "long='ignore'"});
  expectFailure(ReadCsvRun(text, "long='ignore'"), {"line 2: 1 fields", "short='null'"});
  expectFailure(ReadCsvRun("a,b\n1,\"x\n", "short='null' long='ignore'"), {"never closed"});
  expectFailure(ReadCsvRun("a\n", "short='fill'"), {"short is 'fill'. It takes 'error' or 'null'"});
}

// Few bytes that stand for many values must not take memory for all of them at once.
TEST(ForeignCsv, ShortRowsOfWideFiles) {
  const ReadCsvRun run(std::string(50'000, ',') + '\n' + repeated("1\n", 300), "short='null'");
  ASSERT_EQ(run.rows().size(), 300u);
  EXPECT_EQ(run.rows()[299][0], 1);
  EXPECT_EQ(run.rows()[299][50'000], nullptr);
  const std::string surplus(300'000, ',');
  EXPECT_EQ(ReadCsvRun("a,b\n1,2" + surplus + "\n3,4\n", "long='ignore'").rows(),
            (Rows{{1, 2}, {3, 4}}));
}

TEST(ForeignCsv, SeveralFilesAreOneTable) {
  const TableFolder folder;
  folder.write("2024-02.csv", "b,a\nx,3\n,4\n");
  folder.write("2024-01.csv", "a,b\n1,\n2,y\n");
  folder.write("2024-10.csv", "a,b\n");
  folder.write("2025-01.csv", "c\n1\n");
  const FilesRun run(folder, "2024-*.csv", "fileColumn='source'");
  EXPECT_EQ(run.harness.columns(0), "a:F b:U source:U");
  const std::string first = folder.path("2024-01.csv");
  const std::string second = folder.path("2024-02.csv");
  EXPECT_EQ(run.rows,
            (Rows{{1, nullptr, first}, {2, "y", first}, {3, "x", second}, {4, nullptr, second}}));
  EXPECT_EQ(run.log(), "");

  EXPECT_NE(FilesRun(folder, "202?-01.csv", "")
                .log()
                .find("2025-01.csv' has other columns than the first file, '"),
            std::string::npos);
  EXPECT_NE(FilesRun(folder, "x*.csv", "").log().find("No file has a name like"),
            std::string::npos);
  EXPECT_NE(FilesRun(folder, "2024-*.csv", "fileColumn='a'").log().find("has a column 'a' already"),
            std::string::npos);
  // A file of just that name is meant.
  folder.write("odd[1].csv", "z\n7\n");
  folder.write("odd1.csv", "z\n8\n");
  EXPECT_EQ(FilesRun(folder, "odd[1].csv", "").rows, (Rows{{7}}));
}

// Those that are not read need not have values that fit.
TEST(ForeignCsv, ChosenColumnsComeInTheirOrder) {
  const ReadCsvRun run("a,b,c\n1,NA,x\n2,\"\",y\n", "columns='c|a'", "<Column name='b' meta='K'/>");
  EXPECT_EQ(run.columns(), "c:U a:F");
  EXPECT_EQ(run.rows(), (Rows{{"x", 1}, {"y", 2}}));
  EXPECT_EQ(run.log(), "");
  expectFailure(ReadCsvRun("name,b\n1,2\n", "columns='b|nane'"),
                {"The file 'FILE' has no column 'nane', which is to be read. Did you mean name?"});
  expectFailure(ReadCsvRun("a,b\n1,2\n", "columns='a|a'"), {"'a' stands twice"});
  // Records are what they are, whichever of their fields are read.
  expectFailure(ReadCsvRun("a,b\n1,2\n3\n", "columns='a'"), {"line 3: 1 fields"});
  const TableFolder folder;
  folder.write("1.csv", "a,b,c\n1,x,5\n");
  folder.write("2.csv", "c,b,a\n6,y,2\n");
  const FilesRun several(folder, "?.csv", "columns='c|file|b' fileColumn='file'");
  EXPECT_EQ(several.harness.columns(0), "c:F b:U file:U");
  EXPECT_EQ(several.rows, (Rows{{5, "x", folder.path("1.csv")}, {6, "y", folder.path("2.csv")}}));
}

TEST(ForeignCsv, FaultsInSeveralFilesHaveTheirPositions) {
  const TableFolder folder;
  folder.write("1.csv", "a\n" + repeated("1\n", 70'000));
  folder.write("2.csv", "a\n2\nx\n");
  const FilesRun strict(folder, "?.csv", "");
  EXPECT_EQ(strict.rows.size(), 70'001u);
  EXPECT_NE(strict.log().find("2.csv', line 3, column 'a': 'x' is not a number"), std::string::npos)
      << strict.log();
  const FilesRun tolerant(folder, "?.csv", "onBadValue='null'");
  EXPECT_EQ(tolerant.rows.size(), 70'002u);
  EXPECT_NE(tolerant.log().find("2.csv', line 3"), std::string::npos) << tolerant.log();
  folder.write("2.csv", "a\n2\n0\n");
  EXPECT_NE(FilesRun(folder, "?.csv", "sortedOn='a 0'").log().find("2.csv', line 3"),
            std::string::npos);
}

}  // namespace kelvarin
