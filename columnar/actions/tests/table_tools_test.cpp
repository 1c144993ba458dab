// What editors do with tables outside a run: look into them, try a block filter, delete, salvage.
#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "columnar/actions/block_filter_trial.h"
#include "columnar/actions/split_examples.h"
#include "columnar/actions/split_names.h"
#include "columnar/actions/table_deletion.h"
#include "columnar/actions/table_salvage.h"
#include "columnar/actions/table_summary.h"
#include "columnar/format/file_names.h"
#include "columnar/reader/tests/made_file.h"
#include "host/testing/row_harness.h"

namespace kelvarin::testing {

namespace {

const std::vector<MadeColumn> kColumns{
    {"id", 'K', 0, StorageCode::ascendingKey}, {"price", 'F', 1}, {"name", 'U', 1}};

std::vector<Values> someRows(int count) {
  std::vector<Values> rows;
  for (int i = 0; i < count; ++i) {
    rows.push_back({i, i / 4.0, std::string(20, static_cast<char>('a' + i % 26))});
  }
  return rows;
}

class TableToolsTest : public ::testing::Test {
 protected:
  QString path(const QString& name) const { return m_folder.filePath(name); }
  QString main() const { return path(QStringLiteral("made.cgel_kelvarin")); }
  void save(const MemoryFiles& files) const { files.saveTo(m_folder.path().toStdString()); }
  QStringList entries() const { return QDir(m_folder.path()).entryList(QDir::Files); }
  std::string attribute() const { return "fileName='" + main().toStdString() + "'"; }

  QTemporaryDir m_folder;
};

TEST_F(TableToolsTest, ASummaryHasColumnsBlocksOrderAndSizes) {
  const MemoryFiles files = makeFile(kColumns, someRows(10));
  save(files);
  const auto summary = summaryOf(main());
  ASSERT_TRUE(summary);
  EXPECT_EQ(summary->rows, 10u);
  EXPECT_EQ(summary->blocks, 3u);
  EXPECT_EQ(summary->rowsInBlock, 4u);
  EXPECT_EQ(summary->columnSets, 2);
  EXPECT_TRUE(summary->isComplete);
  EXPECT_FALSE(summary->isDamaged());
  ASSERT_EQ(summary->columns.size(), 3u);
  EXPECT_EQ(summary->columns[2].name, QStringLiteral("name"));
  EXPECT_EQ(summary->columns[2].type, GelType::text);
  EXPECT_EQ(summary->columns[2].set, 1);
  ASSERT_EQ(summary->order.size(), 1);
  EXPECT_EQ(summary->order.first(), SortInfos(0, SortType::numberAscending));
  // All bytes of the first side file are those of its only column.
  EXPECT_EQ(summary->columns[0].storedBytes, files.at("made.000.cs_kelvarin").size());
}

TEST_F(TableToolsTest, ASummaryShowsWhatIsNotWhole) {
  save(makeFile(kColumns, someRows(10), kKilledWriter));
  const auto incomplete = summaryOf(main());
  ASSERT_TRUE(incomplete);
  EXPECT_FALSE(incomplete->isComplete);
  EXPECT_FALSE(incomplete->isBeingWritten);
  EXPECT_EQ(incomplete->rows, 10u);

  MemoryFiles files = makeFile(kColumns, someRows(10), {.blocksInRecord = 1});
  files["made.cgel_kelvarin"][firstRecord(files.at("made.cgel_kelvarin")) + 12] ^= 1;
  save(files);
  const auto damaged = summaryOf(main());
  ASSERT_TRUE(damaged);
  EXPECT_TRUE(damaged->isDamaged());
  EXPECT_EQ(damaged->lostRows, 4u);

  QFile::remove(path(QStringLiteral("made.001.cs_kelvarin")));
  const auto missing = summaryOf(main());
  ASSERT_TRUE(missing);
  EXPECT_EQ(missing->missingSideFile, path(QStringLiteral("made.001.cs_kelvarin")));
}

TEST_F(TableToolsTest, ASummarySaysWhyThereIsNone) {
  const auto error = [](const QString& file) { return summaryOf(file).error(); };
  EXPECT_TRUE(error(path(QStringLiteral("x.cgel_kelvarin"))).contains("there is no such file"));
  save(makeFile(kColumns, someRows(2)));
  EXPECT_TRUE(error(path(QStringLiteral("made.000.cs_kelvarin"))).contains("Give the main file"));
  EXPECT_TRUE(error(QString()).contains("No file is chosen"));
}

TEST_F(TableToolsTest, ATrialCountsTheBlocksThatAreSkipped) {
  save(makeFile(kColumns, someRows(10)));
  const auto trial = [&](const std::string& expression, const std::string& attributes) {
    auto h = RowHarness::of<ReadColumnarGel>(
        "<ReadColumnarGel " + attributes + "><CFilterRows><Expression>" + expression +
        "</Expression><InputVars><CInputVar column='id'/></InputVars></CFilterRows>"
        "</ReadColumnarGel>");
    return tryBlockFilter(h.actionAs<ReadColumnarGel>());
  };
  const auto found = trial("id_max &gt;= 8", attribute());
  ASSERT_TRUE(found);
  EXPECT_EQ(found->blocks, 3u);
  EXPECT_EQ(found->skippedBlocks, 2u);
  EXPECT_EQ(found->rows, 10u);
  EXPECT_EQ(found->skippedRows, 8u);
  EXPECT_TRUE(trial("id_max +", attribute()).error().contains("in the block filter"));
  EXPECT_TRUE(trial("1", "fileNameFromPin='1'").error().contains("input pin"));
}

TEST_F(TableToolsTest, DeletionTakesTheTableAndNothingElse) {
  save(makeFile(kColumns, someRows(4)));
  for (const char* other : {"made.0000.cs_kelvarin", "made.12.cs_kelvarin", "other.csv"}) {
    QFile file(path(QLatin1String(other)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  EXPECT_EQ(filesOfTable(main()).size(), 3);
  const TableDeletion deletion = deleteTable(main());
  EXPECT_EQ(deletion.failure, QString());
  ASSERT_EQ(deletion.successes.size(), 3);
  EXPECT_EQ(deletion.successes.first(), "SUCCESS: File '" + main() + "' deleted.");
  EXPECT_EQ(entries(), (QStringList{"made.0000.cs_kelvarin", "made.12.cs_kelvarin", "other.csv"}));
  EXPECT_TRUE(deleteTable(main()).failure.contains("nothing was deleted"));
}

TEST_F(TableToolsTest, DeletionRefusesWhatIsNotItsOwn) {
  QFile foreign(main());
  ASSERT_TRUE(foreign.open(QIODevice::WriteOnly));
  foreign.write("name,price\n");
  foreign.close();
  EXPECT_TRUE(deleteTable(main()).failure.contains("no columnar file"));

  // Two tables whose side files have the same names.
  save(makeFile(kColumns, someRows(4), {.name = "x.2023"}));
  save(makeFile(kColumns, someRows(4), {.name = "x.2024"}));
  const qsizetype count = entries().size();
  EXPECT_TRUE(deleteTable(path(QStringLiteral("x.2023"))).failure.contains("x.2024"));
  EXPECT_EQ(entries().size(), count);
}

TEST_F(TableToolsTest, SalvageWritesWhatIsWhole) {
  MemoryFiles files = makeFile(kColumns, someRows(10), {.blocksInRecord = 1});
  std::string& side = files["made.001.cs_kelvarin"];
  side[side.size() - 10] ^= 4;  // in the last block
  save(files);
  const QString newFile = path(QStringLiteral("new.cgel_kelvarin"));
  const auto never = [] { return false; };
  std::uint64_t progress = 0;
  const auto outcome =
      salvageTable(main(), newFile, [&](std::uint64_t rows) { progress = rows; }, never);
  ASSERT_TRUE(outcome) << outcome.error().toStdString();
  EXPECT_EQ(outcome->rows, 8u);
  EXPECT_EQ(progress, 8u);
  EXPECT_TRUE(outcome->hasLoss());
  auto h = RowHarness::of<ReadColumnarGel>("<ReadColumnarGel fileName='" + newFile.toStdString() +
                                           "'/>");
  EXPECT_EQ(h.rows(0), someRows(8));
  EXPECT_EQ(summaryOf(newFile)->columnSets, 2);
  EXPECT_EQ(summaryOf(newFile)->order.size(), 1);

  // Never over another file, and nothing is left of one that was cancelled.
  EXPECT_TRUE(salvageTable(
                  main(), newFile, [](std::uint64_t) {}, never)
                  .error()
                  .contains("Choose another name"));
  const qsizetype count = entries().size();
  const auto cancelled = salvageTable(
      main(), path(QStringLiteral("third.cgel_kelvarin")), [](std::uint64_t) {},
      [] { return true; });
  ASSERT_TRUE(cancelled);
  EXPECT_EQ(cancelled->rows, 0u);
  EXPECT_EQ(entries().size(), count);
}

TEST(SplitExamples, AreTheNamesThatARunMakes) {
  const auto names = [](const std::string& attributes, const QStringList& values) {
    auto h = RowHarness::of<WriteColumnarGel>("<writeColumnarGel " + attributes + "/>");
    const auto made = exampleNames(h.actionAs<WriteColumnarGel>(), values);
    return made ? *made : QStringList{QStringLiteral("!") + made.error()};
  };
  const QStringList values{QStringLiteral("a/b"), QString()};
  EXPECT_EQ(names("file='s.gel'", {}), QStringList{"s.gel"});
  EXPECT_EQ(names("file='s.gel' split='1'", {}),
            (QStringList{"s_000.gel", "s_001.gel", "s_002.gel"}));
  EXPECT_EQ(names("file='s.gel' split='2'", values), (QStringList{"sa_b.gel", "s_null.gel"}));
  EXPECT_EQ(names("file='\"+toupper(SplitVal)+\".gel' split='2' advancedNaming='1'", values),
            (QStringList{"A_B.gel", "_NULL.gel"}));
  EXPECT_TRUE(names("file='\"+toupper(+\".gel' split='2' advancedNaming='1'", values)
                  .first()
                  .contains("toupper("));
}

TEST(NamingText, TakesOnlyExpressionsThatCanBeReadBack) {
  const NamingText text = NamingText::of(QStringLiteral("s\"+SplitVal+\".gel"));
  EXPECT_EQ(text.withExpression(QStringLiteral("\"a\"+SplitVal+\"b\"")).value_or(QString()),
            QStringLiteral("s\"+\"a\" +SplitVal+ \"b\"+\".gel"));
  EXPECT_FALSE(text.withExpression(QStringLiteral("replace(SplitVal, \" \", \"+\")")));
}

}  // namespace

}  // namespace kelvarin::testing
