// Stores of rows, orders and profiles of them, without a widget.
#include <cmath>
#include <random>
#include <thread>

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QElapsedTimer>

#include "actions/filter_rows/filter_rows.h"
#include "gui/preview/column_profile.h"
#include "gui/preview/row_condition.h"
#include "gui/preview/row_order.h"
#include "gui/preview/row_store.h"
#include "gui/preview/row_texts.h"
#include "gui/preview/tests/made_rows.h"
#include "host/testing/full_disk.h"
#include "host/testing/row_harness.h"
#include "host/xml/xml_node.h"

namespace kelvarin::testing {
namespace {

using Rows = std::vector<Values>;
using Numbers = std::vector<std::uint32_t>;

constexpr auto null = nullptr;
const StopFlag kGoOn{false};

class PreviewRowsTest : public ::testing::Test {
 protected:
  std::shared_ptr<RowStore> store(const PreviewRows::Columns& columns, const Rows& rows,
                                  std::size_t memory = 1 << 20, std::size_t rowsInBatch = 3) {
    auto made = std::make_shared<RowStore>(columns, std::make_shared<PreviewMemory>(memory), queue);
    for (std::size_t i = 0; i < rows.size(); i += rowsInBatch) {
      const auto end =
          rows.begin() + static_cast<std::ptrdiff_t>(std::min(i + rowsInBatch, rows.size()));
      EXPECT_TRUE(made->append(*madeRows(columns, static_cast<long long>(i),
                                         {rows.begin() + static_cast<std::ptrdiff_t>(i), end})));
    }
    return made;
  }
  static Numbers order(const PreviewRows& rows, const char* filter, int sortColumn = -1,
                       bool isDescending = false, int column = 0) {
    RowOrder wanted{{}, sortColumn, isDescending};
    if (*filter != 0) {
      auto parsed = CellFilter::parse(QString::fromUtf8(filter),
                                      rows.columns()[static_cast<std::size_t>(column)].meta);
      EXPECT_TRUE(parsed) << filter;
      wanted.filters.push_back({column, *parsed});
    }
    return rowsInOrder(rows, rows.rowCount(), wanted, kGoOn).value();
  }

  BackgroundQueue queue;
};

// Some blocks in memory, the others in the file: every value is the same by each way to read it.
TEST_F(PreviewRowsTest, ValuesComeBackFromMemoryAndFromTheFile) {
  const PreviewRows::Columns columns{{QStringLiteral("n"), MetaTypeColumn::number},
                                     {QStringLiteral("k"), MetaTypeColumn::key},
                                     {QStringLiteral("t"), MetaTypeColumn::text}};
  Rows rows;
  for (int i = 0; i < 50; ++i) {
    rows.push_back({i / 8.0, i == 7 || i == 30 ? Value(null) : Value(i),
                    i % 5 == 0 ? Value(null) : Value(std::string(i % 7, 'a'))});
  }
  const auto made = store(columns, rows, 300);
  std::atomic<int> calls{0};
  made->setListener([&calls] { ++calls; });
  EXPECT_TRUE(made->value(0, 0).isThere);
  EXPECT_FALSE(made->value(41, 2).isThere);
  QElapsedTimer timer;
  timer.start();
  while (calls == 0 && timer.elapsed() < 10'000) {
    std::this_thread::yield();
  }
  const PreviewValue loaded = made->value(41, 2);
  EXPECT_TRUE(loaded.isThere);
  EXPECT_EQ(valueFromBytes(loaded.bytes, MetaTypeColumn::text), rows[41][2]);
  made->setListener({});

  for (int column = 0; column < 3; ++column) {
    const MetaTypeColumn type = columns[static_cast<std::size_t>(column)].meta;
    const auto check = [&](long long row, const unsigned char* bytes) {
      const Values& expected = rows[static_cast<std::size_t>(row)];
      EXPECT_EQ(valueFromBytes(bytes, type), expected[static_cast<std::size_t>(column)]);
      return true;
    };
    EXPECT_TRUE(made->visit(column, 2, 50, check));
    const Numbers some{49, 0, 30, 31, 3};
    EXPECT_TRUE(made->visit(column, some, check));
  }
}

TEST_F(PreviewRowsTest, SortingKeepsTheOrderOfEqualRowsAndPutsMissingOnesAtTheirEnd) {
  const auto numbers = store({{QStringLiteral("n"), MetaTypeColumn::number}},
                             {{2}, {null}, {-1}, {kNotANumber}, {2}, {-0.0}, {0.0}, {kInfinity}});
  EXPECT_EQ(order(*numbers, "", 0), (Numbers{1, 2, 5, 6, 0, 4, 7, 3}));
  EXPECT_EQ(order(*numbers, "", 0, true), (Numbers{7, 0, 4, 5, 6, 2, 3, 1}));
  EXPECT_EQ(order(*numbers, ">= 0", 0, true), (Numbers{7, 0, 4, 5, 6}));

  const std::string stem(100, 'x');
  const auto texts = store({{QStringLiteral("t"), MetaTypeColumn::text}},
                           {{stem + "b"},
                            {""},
                            {stem},
                            {null},
                            {stem + "a"},
                            {"xxxxxxx"},
                            {stem},
                            {std::string("xxxxxxx\0", 8)},
                            {stem + "b"},
                            {"\xC3\xA9"},
                            {"B"}},
                           20);
  EXPECT_EQ(order(*texts, "", 0), (Numbers{3, 1, 10, 5, 7, 2, 6, 4, 0, 8, 9}));
  EXPECT_EQ(order(*texts, "", 0, true), (Numbers{9, 0, 8, 4, 2, 6, 7, 5, 10, 1, 3}));
}

TEST_F(PreviewRowsTest, FiltersUnderstandWhatIsTypedAboveAColumn) {
  const auto numbers = store({{QStringLiteral("n"), MetaTypeColumn::number}},
                             {{1}, {2.5}, {null}, {kNotANumber}, {-4}});
  EXPECT_EQ(order(*numbers, "1"), (Numbers{0}));
  EXPECT_EQ(order(*numbers, "!=1"), (Numbers{1, 3, 4}));
  EXPECT_EQ(order(*numbers, " <  2.5 "), (Numbers{0, 4}));
  EXPECT_EQ(order(*numbers, "-4..1"), (Numbers{0, 4}));
  EXPECT_EQ(order(*numbers, "null"), (Numbers{2}));
  EXPECT_EQ(order(*numbers, "!null"), (Numbers{0, 1, 3, 4}));
  EXPECT_EQ(order(*numbers, "nan"), (Numbers{3}));
  EXPECT_FALSE(CellFilter::parse(QStringLiteral("> x"), MetaTypeColumn::number));

  const auto texts = store({{QStringLiteral("t"), MetaTypeColumn::text}},
                           {{"Lyon"}, {"null"}, {null}, {""}, {"LYONS"}});
  EXPECT_EQ(order(*texts, "lyon"), (Numbers{0, 4}));
  EXPECT_EQ(order(*texts, "= Lyon"), (Numbers{0}));
  EXPECT_EQ(order(*texts, "null"), (Numbers{2}));
  EXPECT_EQ(order(*texts, "\"null\""), (Numbers{1}));
  EXPECT_EQ(order(*texts, "empty"), (Numbers{3}));
  EXPECT_EQ(order(*texts, "> M"), (Numbers{1}));
}

TEST_F(PreviewRowsTest, AProfileOfFewRowsIsExact) {
  const auto rows = store(
      {{QStringLiteral("n"), MetaTypeColumn::number}, {QStringLiteral("t"), MetaTypeColumn::text}},
      {{1, "b"}, {4, "b"}, {null, ""}, {kNotANumber, null}, {4, "abc"}});
  const ColumnProfile numbers = profileOf(*rows, 0, 5, kGoOn).value();
  EXPECT_EQ(numbers.nullCount, 1);
  EXPECT_EQ(numbers.notANumberCount, 1);
  EXPECT_EQ(numbers.distinctCount, 3);
  EXPECT_EQ(numbers.mean, 3);
  EXPECT_EQ(numbers.minimum, QStringLiteral("1"));
  EXPECT_EQ(numbers.maximum, QStringLiteral("4"));
  ASSERT_EQ(numbers.bins.size(), 4u);
  EXPECT_EQ(numbers.bins[0].count, 1);
  EXPECT_EQ(numbers.bins[3].count, 2);
  EXPECT_EQ(numbers.frequent[0].value, QStringLiteral("4"));
  EXPECT_EQ(numbers.frequent[0].count, 2);
  EXPECT_EQ(numbers.quantiles[3].value, 4);

  const ColumnProfile texts = profileOf(*rows, 1, 5, kGoOn).value();
  EXPECT_EQ(texts.nullCount, 1);
  EXPECT_EQ(texts.emptyCount, 1);
  EXPECT_EQ(texts.distinctCount, 3);
  EXPECT_EQ(texts.maximum, QStringLiteral("b"));
  EXPECT_EQ(texts.longestText, 3);
  EXPECT_EQ(texts.frequent[0].value, QStringLiteral("b"));
}

// One value in a hundred is frequent, the others are all different.
TEST_F(PreviewRowsTest, AProfileOfManyValuesIsAnEstimateButForTheFrequentOnes) {
  const PreviewRows::Columns columns{{QStringLiteral("k"), MetaTypeColumn::key}};
  constexpr int kRows = 400'000;
  Rows rows;
  for (int i = 0; i < kRows; ++i) {
    rows.push_back({i % 100 == 0 ? 7.0 : i + 1000.0});
  }
  const auto made = store(columns, rows, 1 << 22, 1000);
  const ColumnProfile profile = profileOf(*made, 0, kRows, kGoOn).value();
  EXPECT_FALSE(profile.isDistinctExact);
  EXPECT_NEAR(static_cast<double>(profile.distinctCount), 396'001, 20'000);
  EXPECT_EQ(profile.frequent[0].value, QStringLiteral("7"));
  EXPECT_EQ(profile.frequent[0].count, 4000);
  EXPECT_FALSE(profile.areQuantilesExact);
  EXPECT_NEAR(profile.quantiles[3].value, 200'000, 4'000);
  long long inBins = 0;
  for (const ColumnProfile::Bin& bin : profile.bins) {
    inBins += bin.count;
  }
  EXPECT_EQ(inBins, kRows);
}

TEST_F(PreviewRowsTest, AFullDiskIsSaidAndTheRowsBeforeItStay) {
  const PreviewRows::Columns columns{{QStringLiteral("n"), MetaTypeColumn::number}};
  const auto made = store(columns, Rows(100, {1.0}), 300);
  const FullDisk disk(0);
  EXPECT_FALSE(made->append(*madeRows(columns, 100, Rows(100, {2.0}))));
  EXPECT_FALSE(made->errorText().isEmpty());
  EXPECT_EQ(made->rowCount(), 100);
  EXPECT_TRUE(made->visit(0, 0, 100, [](long long, const unsigned char* bytes) {
    return valueFromBytes(bytes, MetaTypeColumn::number) == Value(1.0);
  }));
}

// As somebody does who does not wait: rows still come from the disk's side while they are sorted,
// filtered, profiled and looked at, and the preview is closed in the middle.
TEST_F(PreviewRowsTest, EverythingAtOnceIsLeftAtAnyMoment) {
  constexpr int kTimes = 200;
  const PreviewRows::Columns columns{{QStringLiteral("n"), MetaTypeColumn::number}};
  std::mt19937 random(7);
  for (int time = 0; time < kTimes; ++time) {
    auto made = std::make_shared<RowStore>(columns, std::make_shared<PreviewMemory>(2000), queue);
    made->setListener([] {});
    std::jthread source([made, &columns](const std::stop_token& stop) {
      for (int i = 0; i < 200 && !stop.stop_requested(); ++i) {
        EXPECT_TRUE(made->append(*madeRows(columns, 10LL * i, Rows(10, {i / 8.0}))));
      }
    });
    while (made->rowCount() == 0) {
      std::this_thread::yield();
    }
    const long long count = made->rowCount();
    const auto sorting = queue.add([made, count](const StopFlag& stop) -> BackgroundQueue::Report {
      (void)rowsInOrder(*made, count, {{}, 0, true}, stop);
      (void)profileOf(*made, 0, count, stop);
      return nullptr;
    });
    for (unsigned look = random() % 20; look > 0; --look) {
      (void)made->value(static_cast<long long>(random() % static_cast<unsigned>(count)), 0);
    }
    *sorting = random() % 2 == 0;
    made->setListener({});
    made.reset();
  }
}

TEST_F(PreviewRowsTest, WorkThatIsNotWantedAnyMoreEnds) {
  const PreviewRows::Columns columns{{QStringLiteral("k"), MetaTypeColumn::key}};
  const auto made = store(columns, Rows(100'000, {1.0}), 1 << 22, 1000);
  const StopFlag stop{true};
  EXPECT_FALSE(profileOf(*made, 0, 100'000, stop));
  EXPECT_FALSE(rowsInOrder(*made, 100'000, {{}, 0, false}, stop));
}

TEST_F(PreviewRowsTest, TextsAreTakenApartAgainBySpreadsheetsAndReadersOfCsv) {
  const auto rows = store({{QStringLiteral("a,b"), MetaTypeColumn::text},
                           {QStringLiteral("n"), MetaTypeColumn::number}},
                          {{"x\ty", 0.1}, {"say \"no\"", null}, {null, kNotANumber}, {"", 1e22}});
  const auto textOf = [&](RowTextRequest request) {
    QByteArray all;
    EXPECT_TRUE(writeRowTexts(*rows, request, kGoOn, [&all](const QByteArray& piece) {
      all += piece;
      return true;
    }));
    return all.toStdString();
  };
  EXPECT_EQ(textOf({TextFormat::tabs, false, {0, 1}, 0, 2, nullptr}),
            "\"x\ty\"\t0.1\n\"say \"\"no\"\"\"\t\n");
  const auto backwards = std::make_shared<const RowNumbers>(RowNumbers{3, 2, 1, 0});
  EXPECT_EQ(textOf({TextFormat::csv, true, {0, 1}, 0, 3, backwards}),
            "\"a,b\",n\n\"\",1e+22\n,nan\n\"say \"\"no\"\"\",\n");
}

// The condition of each row, in a filter, lets that row through and no other.
TEST_F(PreviewRowsTest, RowsLikeAChosenOneAreKeptByItsCondition) {
  const PreviewRows::Columns columns{{QStringLiteral("my text"), MetaTypeColumn::text},
                                     {QStringLiteral("v1"), MetaTypeColumn::number},
                                     {QStringLiteral("_n"), MetaTypeColumn::key}};
  const Rows rows{{"Lyon", 0.1, 3},        {null, 0.1, 3},          {"", 0.1, 3},
                  {"a\"b\\c\n\td", -4, 3}, {"Lyon", null, 3},       {"Lyon", -kNotANumber, 3},
                  {"Lyon", kInfinity, 3},  {"Lyon", -kInfinity, 3}, {"Lyon", 0.1, null}};
  for (const Values& row : rows) {
    std::vector<ChosenValues> chosen;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      chosen.push_back({columns[i], {}});
      chosen.back().values.push_back(row[i].isNull() ? std::vector<unsigned char>()
                                                     : bytesOf(row[i], columns[i].meta));
    }
    const RowCondition condition = conditionFor(chosen);
    ToXMLStringTool escape;
    std::wstring xml = L"<FilterRows name='f'><Expression>";
    xml += escape.toXML(condition.expression);
    xml += L"</Expression><InputVars>";
    for (const RowCondition::Variable& variable : condition.variables) {
      xml += L"<InputVar column='" + variable.column.toStdWString() + L"' label='" +
             variable.name.toStdWString() +
             (variable.type == MetaTypeColumn::text ? L"' isNumber='0'/>" : L"'/>");
    }
    xml += L"</InputVars></FilterRows>";
    auto filter = RowHarness::of<FilterRows>(QString::fromStdWString(xml).toStdString());
    PinOutMetaData metaData;
    metaData.setColumnCount(3);
    for (int i = 0; i < 3; ++i) {
      metaData.setName(i, columns[static_cast<std::size_t>(i)].name);
      metaData.setMeta(i, MetaInfo(columns[static_cast<std::size_t>(i)].meta, 0));
    }
    filter.columnsOfPin(0, metaData);
    filter.push(rows);
    EXPECT_EQ(filter.rows(0), Rows{row}) << condition.expression.toStdString();
    EXPECT_EQ(filter.log(), Strings{});
  }
  const RowCondition several =
      conditionFor({{columns[1],
                     {bytesOf(1, MetaTypeColumn::number), bytesOf(2, MetaTypeColumn::number),
                      bytesOf(1, MetaTypeColumn::number)}}});
  EXPECT_EQ(several.expression, QStringLiteral("v1 == 1 || v1 == 2"));
}

}  // namespace
}  // namespace kelvarin::testing
