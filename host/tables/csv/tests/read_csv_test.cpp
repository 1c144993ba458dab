#include "host/tables/csv/read_csv.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

#include "host/tables/csv/tests/read_csv_run.h"

namespace kelvarin {

using testing::expectFailure;
using testing::ReadCsvRun;
using testing::RowHarness;
using testing::Rows;
using testing::Strings;
using testing::TableFolder;
using testing::Value;
using testing::Values;

namespace {

constexpr double kInf = kInfinity;

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) {
    all += text;
  }
  return all;
}

}  // namespace

TEST(ReadCsv, infersNumbersAndTexts) {
  const ReadCsvRun run("n,word,mixed,empty,t\n1, NaN ,7,,x\n-2.5e3,INF,no,,\n,-Inf,9,,y\n");
  EXPECT_EQ(run.columns(), "n:F word:F mixed:U empty:U t:U");
  EXPECT_EQ(run.rows(), (Rows{{1, std::nan(""), "7", nullptr, "x"},
                              {-2500, kInf, "no", nullptr, nullptr},
                              {nullptr, -kInf, "9", nullptr, "y"}}));
  EXPECT_EQ(ReadCsvRun("a,b,c,d\n0x10,infinity,1e,nan(1)\n").columns(), "a:U b:U c:U d:U");
  EXPECT_EQ(ReadCsvRun("a,b\n+5, 7\n1e999,-1e-999\n").rows(), (Rows{{5, 7}, {kInf, -0.0}}));
}

TEST(ReadCsv, missingAndEmptyFields) {
  EXPECT_EQ(ReadCsvRun("a,b\n,1\n\"\",\"\"\n").rows(), (Rows{{nullptr, 1}, {"", nullptr}}));
  const ReadCsvRun other("a,b,c\nNA,NA,5\n,,\n\"NA\",1,\"\"\n", "nullText='NA'");
  EXPECT_EQ(other.columns(), "a:U b:F c:F");
  EXPECT_EQ(other.rows(),
            (Rows{{nullptr, nullptr, 5}, {"", nullptr, nullptr}, {"NA", 1, nullptr}}));
  // A quoted null text is a text.
  EXPECT_EQ(ReadCsvRun("b\n\"NA\"\n1\n", "nullText='NA'").columns(), "b:U");
}

TEST(ReadCsv, emptyLines) {
  EXPECT_EQ(ReadCsvRun("\n\na,b\n\n1,2\r\n\r\n3,4\n\n").rows(), (Rows{{1, 2}, {3, 4}}));
  EXPECT_EQ(ReadCsvRun("a\n1\n\n3\n\n").rows(), (Rows{{1}, {nullptr}, {3}, {nullptr}}));
  EXPECT_EQ(ReadCsvRun("a\nx\n\n\"\"\n", "nullText='NA'").rows(), (Rows{{"x"}, {nullptr}, {""}}));
}

TEST(ReadCsv, filesWithoutRowsAnnounceTheirColumns) {
  for (const char* bytes : {"a,b", "a,b\n", "a,b\r\n",
                            "\xEF\xBB\xBF"
                            "a,b\n\n\n"}) {
    const ReadCsvRun run(bytes);
    EXPECT_EQ(run.columns(), "a:U b:U");
    EXPECT_EQ(run.log(), "");
    EXPECT_TRUE(run.rows().empty());
  }
  expectFailure(ReadCsvRun(""), {"'FILE' is empty"});
}

TEST(ReadCsv, dialects) {
  EXPECT_EQ(ReadCsvRun("a\tb\n'x\ty''s'\t1\n", "separator='\\t' quote=\"'\"").rows(),
            (Rows{{"x\ty's", 1}}));
  EXPECT_EQ(ReadCsvRun("a;b\n\"x;1\n", "separator=';' quote=''").rows(), (Rows{{"\"x", 1}}));
  EXPECT_EQ(ReadCsvRun("\xEF\xBB\xBF\"a\",b\r\"l1\r\nl2\",\"q\"\"q\"\r").rows(),
            (Rows{{"l1\r\nl2", "q\"q"}}));
  expectFailure(ReadCsvRun("a\n1\n", "separator='ab'"), {"separator 'ab'"});
  expectFailure(ReadCsvRun("a\n1\n", "quote=','"), {"quote ','"});
  expectFailure(ReadCsvRun("a\n1\n", "nullText='x,'"), {"nullText 'x,'"});
  expectFailure(ReadCsvRun("a\n1\n", "onBadValue='stop'"), {"onBadValue is 'stop'"});
}

TEST(ReadCsv, columnsOfFilesWithoutHeader) {
  EXPECT_EQ(ReadCsvRun("1,x\n2,y\n", "header='0'").columns(), "col1:F col2:U");
  EXPECT_EQ(ReadCsvRun("1,x\n", "header='0'").rows(), (Rows{{1, "x"}}));
  EXPECT_EQ(ReadCsvRun("1,x\n", "header='0'", "<Column name='id' meta='K'/>").columns(),
            "id:K col2:U");
  EXPECT_EQ(ReadCsvRun("1,2\n", "header='0'", "<Column name='col2' meta='U'/>").columns(),
            "col1:F col2:U");
  EXPECT_EQ(ReadCsvRun("", "header='0'", "<Column name='id' meta='K'/>").columns(), "id:K");
  expectFailure(ReadCsvRun("1,2\n", "header='0'",
                           "<Column name='col2' meta='U'/><Column name='x' meta='U'/>"
                           "<Column name='y' meta='U'/>"),
                {"3 columns are declared"});
  expectFailure(ReadCsvRun("1,2,3\n", "header='0'",
                           "<Column name='col3' meta='U'/><Column name='x' meta='U'/>"),
                {"several columns named 'col3'"});
}

TEST(ReadCsv, declaredColumns) {
  const ReadCsvRun run("k,n,t\n4294967293,,1\n 7 ,2,\n\"\",3,3\n", "",
                       "<Column name='t' meta='U'/><Column name='k' meta='K'/>");
  EXPECT_EQ(run.columns(), "k:K n:F t:U");
  EXPECT_EQ(run.rows(), (Rows{{4294967293u, nullptr, "1"}, {7, 2, nullptr}, {nullptr, 3, "3"}}));
  expectFailure(ReadCsvRun("k\n1\n4294967294\n", "", "<Column name='k' meta='K'/>"),
                {"line 3, column 'k'", "'4294967294' is not a key"});
  expectFailure(ReadCsvRun("a\n1\n", "", "<Column name='b' meta='F'/>"),
                {"no column 'b'", "are: a."});
  expectFailure(ReadCsvRun("a\n1\n", "", "<Column name='a' meta='D'/>"), {"type 'D'"});
  expectFailure(ReadCsvRun("a,b,a\n1,2,3\n"), {"several columns named 'a'"});
}

TEST(ReadCsv, linesOfErrorsCountHeaderAndBreaksInQuotes) {
  const std::string start = "\"a\nx\",b\r\n1,\"l\nl\n\"\r\n\r\n";
  expectFailure(ReadCsvRun(start + "2,x,surplus\n"),
                {"FILE', line 7: ", "3 fields", "2 columns", "'surplus'"});
  expectFailure(ReadCsvRun(start + "2\n3,4\n"),
                {"FILE', line 7: ", "1 fields", "column 'b' is missing"});
  expectFailure(ReadCsvRun(start + "2,\"open\n3,4\n"), {"FILE', line 7: ", "never closed"});
  expectFailure(ReadCsvRun(start + "2,\"op\nen"), {"FILE', line 7: ", "never closed"});
  expectFailure(ReadCsvRun(start + "2,\""), {"FILE', line 7: ", "never closed"});
  expectFailure(ReadCsvRun("\"a,b\n1,2\n"), {"FILE', line 1: ", "never closed"});
  expectFailure(ReadCsvRun("a,b\n1,x\n2,\xFFz\n"), {"line 3, column 'b'", "not UTF-8"});
  expectFailure(ReadCsvRun("a,b\n\xC3,\xA4\n"), {"line 2, column 'a'", "not UTF-8"});
}

TEST(ReadCsv, textAfterTheInferredRowsOfANumberColumn) {
  const std::string bytes = "a,b\n" + repeated("1,x\n", 200000) + "oops,y\n" + "2,\nbad,z\n";
  const ReadCsvRun strict(bytes);
  expectFailure(strict, {"FILE', line 200002, column 'a': 'oops' is not a number"});
  const ReadCsvRun tolerant(bytes, "onBadValue='null'");
  EXPECT_FALSE(tolerant.hasFailed());
  ASSERT_EQ(tolerant.rows().size(), 200003u);
  EXPECT_EQ(tolerant.rows()[200000], (Values{nullptr, "y"}));
  EXPECT_EQ(tolerant.rows()[200001], (Values{2, nullptr}));
  EXPECT_EQ(tolerant.log(),
            "warning: file 'FILE', line 200002: 2 values of column 'a' do not fit its type and "
            "were read as "
            "null; this is the first.\n");
  // Types come from the first 10,000 rows, and no more.
  EXPECT_EQ(ReadCsvRun("a\n" + repeated("1\n", 9999) + "x\n").columns(), "a:U");
  EXPECT_EQ(ReadCsvRun("a\n" + repeated("1\n", 10000) + "x\n", "onBadValue='null'").columns(),
            "a:F");
}

TEST(ReadCsv, numbersThatWouldLoseDigitsMakeTheirColumnText) {
  const std::string bytes =
      "zip,id,d,both,k\n10115,9007199254740992,0.5,1,1\n"
      "01234,9007199254740993,-0,007,01234\n";
  const ReadCsvRun run(bytes, "", "<Column name='k' meta='K'/>");
  EXPECT_EQ(run.columns(), "zip:U id:U d:F both:U k:K");
  EXPECT_EQ(run.rows()[1], (Values{"01234", "9007199254740993", -0.0, "007", 1234u}));
  EXPECT_EQ(
      run.log(),
      "info: file 'FILE', line 3, column 'zip': '01234' has a leading zero, which a number would "
      "lose: the column is read as text. To read numbers all the same, declare it: <Column "
      "name='zip' meta='F'/>.\n"
      "info: file 'FILE', line 3, column 'id': '9007199254740993' has more digits than a number "
      "can hold: the column is read as text. To read numbers all the same, declare it: <Column "
      "name='id' meta='F'/>.\n"
      "info: file 'FILE', line 3, column 'both': '007' has a leading zero, which a number would "
      "lose: the column is read as text. To read numbers all the same, declare it: <Column "
      "name='both' meta='F'/>.\n");
  // Where other fields are texts, there is nothing to explain.
  EXPECT_EQ(ReadCsvRun("a\n007\nx\n").log(), "");
  const ReadCsvRun declared(bytes, "",
                            "<Column name='zip' meta='F'/><Column name='id' meta='F'/>"
                            "<Column name='both' meta='F'/><Column name='k' meta='F'/>");
  EXPECT_EQ(declared.log(), "");
  EXPECT_EQ(declared.rows()[1], (Values{1234, 9007199254740992.0, -0.0, 7, 1234}));
}

TEST(ReadCsv, numbersThatLoseDigitsAfterTheInferredRows) {
  const std::string start = "a\n" + repeated("1\n", 10000);
  expectFailure(ReadCsvRun(start + "0.5\n01234\n"),
                {"FILE', line 10003, column 'a': '01234' has a leading zero, ",
                 "<Column name='a' meta='U'/>"});
  expectFailure(ReadCsvRun(start + "\" -007\"\n"),
                {"line 10002, column 'a': ' -007' has a leading zero"});
  expectFailure(ReadCsvRun(start + "1234567890123456789\n"),
                {"line 10002, column 'a': '1234567890123456789' has more digits than"});
  const ReadCsvRun tolerant(start + "007\n8\n", "onBadValue='null'");
  EXPECT_EQ(tolerant.rows()[10000], Values{nullptr});
  EXPECT_EQ(tolerant.rows()[10001], Values{8});
  EXPECT_EQ(ReadCsvRun(start + "007\n", "", "<Column name='a' meta='F'/>").rows()[10000],
            Values{7});
}

// Other kinds of files, and settings that do not fit the file.
TEST(ReadCsv, messyFilesAreExplained) {
  using std::string_literals::operator""s;
  expectFailure(ReadCsvRun("\xFF\xFE"s + "a\0,\0b\0\n\0"s), {"'FILE' is no CSV file", "UTF-16"});
  expectFailure(ReadCsvRun("a\0,\0b\0\n\0"s), {"'FILE' is no CSV file", "zero bytes"});
  expectFailure(ReadCsvRun("BZh91AY&SY1"), {"compressed by bzip2 or xz"});
  expectFailure(ReadCsvRun("PK\x03\x04xl"), {"ZIP archive"});
  expectFailure(ReadCsvRun("PAR1\x15\x04"), {"ReadParquet"});
  EXPECT_EQ(ReadCsvRun("PAR1,PAR2\n1,2\n").columns(), "PAR1:F PAR2:F");
  expectFailure(ReadCsvRun("a;b\n1,5;2\n"),
                {"info: file 'FILE', line 1: the first line is one field and has ';' in it. Is "
                 "separator=';' meant?",
                 "2 fields where the file has 1 columns"});
  EXPECT_NE(ReadCsvRun("a\tb\n1\t2\n").log().find("Is separator='\\t' meant?"), std::string::npos);
  EXPECT_EQ(ReadCsvRun("a\nx;y\n").log(), "");
  const ReadCsvRun people("a;b;c\n1,5;7;x,5\n2;12 %;1,5\n", "separator=';'");
  EXPECT_EQ(people.columns(), "a:U b:U c:U");
  EXPECT_EQ(
      people.log(),
      "info: file 'FILE', line 2, column 'a': '1,5' looks like a number, but numbers have '.' "
      "before their decimals, nothing between thousands and no percent sign: the column is "
      "read as text. See the attributes decimal and thousands.\n"
      "info: file 'FILE', line 3, column 'b': '12 %' looks like a number, but numbers have '.' "
      "before their decimals, nothing between thousands and no percent sign: the column is "
      "read as text. See the attributes decimal and thousands.\n");
  const ReadCsvRun missing("a,b,c\n1,NA,NA\nNA,x,\n");
  EXPECT_EQ(missing.columns(), "a:U b:U c:U");
  EXPECT_EQ(missing.log(),
            "info: file 'FILE', line 3, column 'a': 'NA' stands among numbers: the column is read "
            "as text. If it means a missing value, set nullText='NA'.\n");
  // Values keep every byte.
  EXPECT_EQ(ReadCsvRun("a,b\nx\0y,1\r2,3\r\n"s).rows(), (Rows{{"x\0y"s, 1}, {"2", 3}}));
}

TEST(ReadCsv, columnsWithoutNames) {
  const ReadCsvRun run("col3,,,\"\"\n1,2,3,4\n");
  EXPECT_EQ(run.columns(), "col3:F col2:F col3_:F col4:F");
  EXPECT_EQ(run.log(),
            "info: file 'FILE', line 1: the header has 3 empty names; the first such "
            "column is called 'col2'.\n");
  EXPECT_NE(ReadCsvRun("a,\n1,\n").log().find("'col2'. Does the line end with a separator?"),
            std::string::npos);
}

TEST(ReadCsv, manyColumnsAndManyMore) {
  std::string header;
  std::string row;
  for (int i = 0; i < 100000; ++i) {
    header += (i == 0 ? "n" : ",n") + std::to_string(i);
    row += i == 0 ? "7" : ",7";
  }
  const ReadCsvRun wide(header + '\n' + row + '\n' + row + '\n');
  EXPECT_FALSE(wide.hasFailed());
  ASSERT_EQ(wide.rows().size(), 2u);
  EXPECT_EQ(wide.rows()[1], Values(100000, Value(7)));

  const std::string commas(300000, ',');
  expectFailure(ReadCsvRun(commas + "\n"), {"line 1: the first line has more than 200000 columns"});
  expectFailure(ReadCsvRun(commas, "header='0'"), {"more than 200000 columns"});
  expectFailure(ReadCsvRun(commas.substr(0, 200000)), {"more than 200000 columns"});
  EXPECT_FALSE(ReadCsvRun(commas.substr(0, 199999)).hasFailed());
  expectFailure(ReadCsvRun("a,b\n1,2\n3,4," + commas + commas + "\n"),
                {"line 3: At least ", " fields where the file has 2 columns"});
  expectFailure(ReadCsvRun("a,b\n1,2\n3,4,5,6\n"), {"line 3: 4 fields where"});
}

TEST(ReadCsv, rowsBeforeABadOneArePassedOn) {
  const std::string good = "a,b\n" + repeated("1,x\n", 20000);
  for (const char* bad : {"z,x\n", "1\n", "1,x,surplus\n", "1,\"open", "1,\xFF\n"}) {
    const ReadCsvRun run(good + bad + "2,y\n");
    expectFailure(run, {"FILE', line 20002"});
    EXPECT_EQ(run.rows().size(), 20000u) << bad;
  }
  EXPECT_EQ(ReadCsvRun("a,b\n1,x\n2,y\n3\n4,z\n").rows(), (Rows{{1, "x"}, {2, "y"}}));
}

TEST(ReadCsv, ofSeveralBadFieldsTheFirstInTheFileIsTold) {
  const std::string good = "a,b,c\n" + repeated("1,2,3\n", 10500);
  const std::string bad = "1,2,x\n1,y,3\nz,2,3\n";
  expectFailure(ReadCsvRun(good + bad), {"line 10502, column 'c': 'x' is not a number"});
  expectFailure(ReadCsvRun(good + "1,y,x\n" + bad),
                {"line 10502, column 'b': 'y' is not a number"});
}

TEST(ReadCsv, recordsLongerThanTheReadersBlock) {
  const std::string longText = repeated("0123456789\n", 600000);
  const ReadCsvRun run("a,b\n1,x\n2,\"" + longText + "\"\n" + repeated("3,y\n", 300000) + "4,\"" +
                       longText + "\"\n5,z\n");
  EXPECT_EQ(run.log(), "");
  ASSERT_EQ(run.rows().size(), 300004u);
  EXPECT_EQ(run.rows()[1], (Values{2, longText}));
  EXPECT_EQ(run.rows()[300002], (Values{4, longText}));
  EXPECT_EQ(run.rows()[300003], (Values{5, "z"}));
  expectFailure(ReadCsvRun("a,b\n1,x\n2,\"" + longText), {"FILE', line 3: ", "never closed"});
}

TEST(ReadCsv, declaredSortOrderIsChecked) {
  const ReadCsvRun run("id,n\n,a\n1,b\n1,a\n2,\n", "sortedOn='id 0'");
  EXPECT_FALSE(run.hasFailed()) << run.log();
  expectFailure(ReadCsvRun("id,n\n1,b\n\n2,a\n1,c\n", "sortedOn='id 0'"),
                {"FILE', line 5: ", "column 'id'"});
  expectFailure(ReadCsvRun("id\n1\n", "sortedOn='no 0'"), {"no column 'no'"});
  // The first row of a unit follows the last one of the unit before.
  const std::string longRow = "2," + std::string(300000, 'x') + '\n';
  const ReadCsvRun cut("id,n\n1,a\n" + longRow + longRow + "1,b\n", "sortedOn='id 0'");
  expectFailure(cut, {"FILE', line 5: ", "column 'id'"});
  EXPECT_EQ(cut.rows().size(), 3u);
}

TEST(ReadCsv, aCheckAnnouncesColumnsWithoutRows) {
  const TableFolder folder;
  auto check = RowHarness::of<ReadCsv>("<ReadCSV name='r' file='" +
                                       folder.write("a.csv", "a,b\n1,x\n") + "'/>");
  check.checkOnly();
  EXPECT_TRUE(check.rows(0).empty());
  EXPECT_EQ(check.columns(0), "a:F b:U");
  EXPECT_FALSE(check.hasFailed());

  auto absent = RowHarness::of<ReadCsv>("<ReadCSV name='r' file='" + folder.path("no.csv") + "'/>");
  absent.checkOnly();
  EXPECT_TRUE(absent.rows(0).empty());
  EXPECT_TRUE(absent.hasFailed());
  EXPECT_NE(absent.log().at(0).find("no.csv' cannot be read: No such file"), std::string::npos);
}

TEST(ReadCsv, pipesAreReadOnce) {
  const TableFolder folder;
  const std::string path = folder.path("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const auto read = [&](const std::string& bytes) {
    std::thread writer([&] { folder.write("pipe", bytes); });
    auto harness = RowHarness::of<ReadCsv>("<ReadCSV name='r' file='" + path + "'/>");
    const Rows rows = harness.rows(0);
    writer.join();
    return std::pair(rows.size(), harness.log());
  };
  const std::string rows = repeated("1,\"x\ny\"\n", 300000);
  EXPECT_EQ(read("a,b\n" + rows), std::pair(std::size_t{300000}, Strings{}));
  EXPECT_EQ(
      read("a,b\n" + rows + "2,\"z").second,
      Strings{"error: file '" + path + "', line 600002: the quote opened here is never closed."});
}

// Before the header, and among the first rows.
TEST(ReadCsv, aStopEndsTheWaitForAPipe) {
  for (const std::string bytes : {"", "a,b\n1,2\n"}) {
    const TableFolder folder;
    const std::string path = folder.path("pipe");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const int pipe = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::write(pipe, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    auto harness = RowHarness::of<ReadCsv>("<ReadCSV name='r' file='" + path + "'/>");
    harness.init();
    std::thread stop([&] { harness.action().wakeAll(); });
    const auto rows = harness.rows(0);
    EXPECT_LE(rows.size(), bytes.empty() ? 0u : 1u);
    EXPECT_EQ(harness.log(), Strings{});
    stop.join();
    ::close(pipe);
  }
}

// Rows of a pipe that stays open go on when their writer pauses, since nothing is inferred of them.
TEST(ReadCsv, aLookAtThePipeEndsAtAPause) {
  const TableFolder folder;
  const std::string path = folder.path("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const int pipe = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
  const std::string bytes = "a;b\n1;\x80\n";
  ASSERT_EQ(::write(pipe, bytes.data(), 2), 2);
  // Within a line there is no pause.
  std::thread rest([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_EQ(::write(pipe, bytes.data() + 2, bytes.size() - 2),
              static_cast<ssize_t>(bytes.size()) - 2);
  });
  CsvFileSettings settings;
  settings.guessed = {true, true};
  settings.encoding.reset();
  const ColumnRules rules{false, {{"a", MetaTypeColumn::number}, {"b", MetaTypeColumn::text}}};
  CsvBatchReader reader(QString::fromStdString(path), settings, rules);
  const auto columns = reader.open([] { return false; });
  rest.join();
  ASSERT_TRUE(columns);
  EXPECT_EQ(columns->names, (QVector<QString>{"a", "b"}));
  EXPECT_TRUE(reader.notes().at(0).contains(QStringLiteral("separator ';'")));
  EXPECT_TRUE(reader.notes().at(0).contains(QStringLiteral("windows-1252")));
  const auto unit = reader.readUnit();
  unit->parse();
  ASSERT_NE(unit->batch(), nullptr);
  EXPECT_EQ(unit->batch()->rowCount(), 1u);
  ::close(pipe);
}

TEST(ReadCsv, aRunMayEndInTheMiddle) {
  const TableFolder folder;
  const std::string path = folder.write("a.csv", "a\n" + repeated("1\n", 2000000));
  auto harness = RowHarness::of<ReadCsv>("<ReadCSV name='r' file='" + path + "'/>");
  const long long rows = harness.runWithoutReading(10);
  EXPECT_GT(rows, 0);
  EXPECT_LT(rows, 2000000);
  EXPECT_GT(harness.action().completion(), 0.0f);
  EXPECT_LT(harness.action().completion(), 0.9f);
  harness.close();
  EXPECT_EQ(harness.log(), Strings{});
}

TEST(ReadCsv, savesWhatDiffersFromTheDefaults) {
  const std::string plain = "<ReadCSV name='r' version='1' file='a.csv'/>\n";
  EXPECT_EQ(RowHarness::of<ReadCsv>(plain).saved(), plain);
  const std::string full =
      "<ReadCSV name='r' version='1' x='3' y='4' file='a &amp; b.csv' separator='\\t' quote='' "
      "header='0' "
      "nullText='N&lt;A' sortedOn='id 0' onBadValue='null'>\n<Column name='id' "
      "meta='K'/>\n</ReadCSV>\n";
  EXPECT_EQ(RowHarness::of<ReadCsv>(full).saved(), full);
}

}  // namespace kelvarin
