#include <algorithm>
#include <cmath>
#include <numeric>

#include <gtest/gtest.h>

#include "base/mixed_bits.h"
#include "cli/look/column_statistics.h"
#include "cli/look/sampled_rows.h"
#include "host/contract/batch_collector.h"

namespace kelvarin {
namespace {

std::vector<double> shuffled(std::size_t count) {
  std::vector<double> numbers(count);
  std::iota(numbers.begin(), numbers.end(), 0.0);
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937_64(7));
  return numbers;
}

double shareBelow(double number, std::size_t count) {
  return number / static_cast<double>(count - 1);
}

TEST(QuantileSketch, IsExactWhileSmall) {
  QuantileSketch sketch;
  sketch.add(std::vector<double>{4.0, 1.0, 3.0, 2.0});
  const double shares[] = {0.0, 0.25, 0.5, 1.0};
  EXPECT_EQ(sketch.quantiles(shares), (std::vector<double>{1.0, 1.75, 2.5, 4.0}));
  EXPECT_TRUE(sketch.isExact());
}

TEST(ColumnStatistics, QuartilesOfFewDifferentNumbersAreExact) {
  BatchCollector collector({MetaTypeColumn::number}, {.rows = 200'000, .bytes = 200'000 * 8});
  for (int i = 0; i < 100'000; ++i) {
    const double number = i % 4;
    const auto* value = reinterpret_cast<const unsigned char*>(&number);
    collector.append(&value);
  }
  ColumnStatistics statistics(MetaTypeColumn::number, 1000);
  statistics.add(*collector.take(), 0);
  const ColumnSummary summary = statistics.summary();
  EXPECT_TRUE(summary.numbers->areQuartersExact);
  EXPECT_EQ(summary.numbers->quarters[0], 0.75);
  EXPECT_EQ(summary.numbers->quarters[1], 1.5);
  EXPECT_EQ(summary.numbers->quarters[2], 2.25);
}

TEST(QuantileSketch, RanksAreNearWhateverTheOrder) {
  constexpr std::size_t kCount = 2'000'000;
  std::vector<double> numbers = shuffled(kCount);
  const double shares[] = {0.001, 0.25, 0.5, 0.75, 0.999};
  for (const bool isSorted : {false, true}) {
    if (isSorted) {
      std::sort(numbers.begin(), numbers.end());
    }
    QuantileSketch sketch;
    for (std::size_t i = 0; i < kCount; i += 1000) {
      sketch.add(std::span(numbers).subspan(i, 1000));
    }
    EXPECT_FALSE(sketch.isExact());
    const std::vector<double> found = sketch.quantiles(shares);
    for (std::size_t i = 0; i < std::size(shares); ++i) {
      EXPECT_NEAR(shareBelow(found[i], kCount), shares[i], 0.003) << shares[i];
    }
  }
}

TEST(ValueCounts, EstimatesBeyondTheBoundWithinSomePercent) {
  for (const std::uint64_t distinct : {900u, 5'000u, 60'000u, 1'000'000u}) {
    ValueCounts values(1000);
    for (std::uint64_t i = 0; i < distinct; ++i) {
      values.addNumber(mixedBits(i), i);
      values.addNumber(mixedBits(i), i);
    }
    EXPECT_EQ(values.isExact(), distinct <= 1000);
    EXPECT_NEAR(static_cast<double>(values.distinctCount()), static_cast<double>(distinct),
                values.isExact() ? 0.0 : 0.03 * static_cast<double>(distinct));
  }
}

TEST(ValueCounts, FindsWhatIsFrequentAmongManyRareOnes) {
  ValueCounts values(1000);
  constexpr std::uint64_t kRare = 200'000;
  for (std::uint64_t i = 0; i < kRare; ++i) {
    const std::string rare = "rare " + std::to_string(i);
    values.addText(mixedBits(i + 1), rare);
    if (i % 50 == 0) {
      values.addText(mixedBits(0), "frequent");
    }
  }
  const auto frequent = values.mostFrequent(true);
  ASSERT_TRUE(frequent);
  EXPECT_EQ(frequent->text, "frequent");
  EXPECT_LE(frequent->count, kRare / 50);
  EXPECT_GE(frequent->count, kRare / 50 - kRare * 2 / 1000);
}

// Then nearly half of the values stay when the others go.
TEST(ValueCounts, LeavesExactCountsOfValuesThatComeSeveralTimes) {
  constexpr std::uint64_t kBound = 50'000;
  ValueCounts values(kBound);
  for (std::uint64_t i = 0; i <= kBound; ++i) {
    for (std::uint64_t times = 0; times <= i % 7; ++times) {
      values.addNumber(mixedBits(i + 1), i);
    }
  }
  for (int times = 0; times < 100; ++times) {
    values.addNumber(mixedBits(1), 0);
  }
  EXPECT_FALSE(values.isExact());
  EXPECT_NEAR(static_cast<double>(values.distinctCount()), kBound, 0.03 * kBound);
  const auto frequent = values.mostFrequent(false);
  ASSERT_TRUE(frequent);
  EXPECT_EQ(frequent->number, 0u);
  EXPECT_GE(frequent->count, 94u);
}

TEST(Moments, KeepNumbersThatDifferLittle) {
  Moments moments;
  std::vector<double> block(1000);
  for (int i = 0; i < 100; ++i) {
    for (std::size_t j = 0; j < block.size(); ++j) {
      block[j] = 1e9 + static_cast<double>(j % 2);
    }
    moments.addBlock(block);
  }
  EXPECT_DOUBLE_EQ(moments.mean(), 1e9 + 0.5);
  EXPECT_NEAR(moments.deviation(), 0.5 * std::sqrt(1e5 / (1e5 - 1.0)), 1e-9);
}

// Numbers, keys and texts with missing ones, in batches of so many rows.
std::vector<RowBatchPointer> rowsInBatches(std::size_t rowCount, std::size_t batchSize) {
  BatchCollector collector({MetaTypeColumn::number, MetaTypeColumn::key, MetaTypeColumn::text},
                           {.rows = batchSize, .bytes = 32 * batchSize});
  std::vector<RowBatchPointer> batches;
  std::string text;
  for (std::size_t i = 0; i < rowCount; ++i) {
    const double number = i % 10 == 3 ? kNullNumber : i % 10 == 4 ? kNotANumber : std::sqrt(i);
    const std::uint32_t key = i % 9 == 1 ? kNullKey : static_cast<std::uint32_t>(i % 7);
    const std::string word = "w\xC3\xA9 " + std::to_string(mixedBits(i) % 3000);
    const auto length = static_cast<std::uint32_t>(word.size());
    text.assign(reinterpret_cast<const char*>(&length), sizeof length);
    text += word;
    const unsigned char* values[] = {
        reinterpret_cast<const unsigned char*>(&number),
        reinterpret_cast<const unsigned char*>(&key),
        i % 5 == 0 ? nullptr : reinterpret_cast<const unsigned char*>(text.data())};
    collector.append(values);
    if (collector.isFull() || i + 1 == rowCount) {
      batches.push_back(collector.take());
    }
  }
  return batches;
}

ColumnSummary summaryOf(const std::vector<RowBatchPointer>& batches, std::size_t column) {
  ColumnStatistics statistics(batches.front()->column(column).type(), 1000);
  for (const RowBatchPointer& batch : batches) {
    statistics.add(*batch, column);
  }
  return statistics.summary();
}

TEST(ColumnStatistics, DoNotDependOnWhereBatchesEnd) {
  const auto large = rowsInBatches(70'000, 4096);
  const auto small = rowsInBatches(70'000, 37);
  for (const std::size_t column : {0u, 1u, 2u}) {
    const ColumnSummary a = summaryOf(large, column);
    const ColumnSummary b = summaryOf(small, column);
    EXPECT_EQ(a.nulls, b.nulls);
    EXPECT_EQ(a.distinct, b.distinct);
    EXPECT_EQ(a.mostFrequent.has_value(), b.mostFrequent.has_value());
    if (a.numbers) {
      EXPECT_EQ(a.numbers->mean, b.numbers->mean);
      EXPECT_EQ(a.numbers->deviation, b.numbers->deviation);
      EXPECT_EQ(a.numbers->quarters[1], b.numbers->quarters[1]);
    }
    if (a.mostFrequent) {
      EXPECT_EQ(a.mostFrequent->text, b.mostFrequent->text);
      EXPECT_EQ(a.mostFrequent->count, b.mostFrequent->count);
    }
  }
}

TEST(ColumnStatistics, CountWhatThereIs) {
  const auto batches = rowsInBatches(1000, 100);
  const ColumnSummary numbers = summaryOf(batches, 0);
  EXPECT_EQ(numbers.rows, 1000u);
  EXPECT_EQ(numbers.nulls, 100u);
  EXPECT_EQ(numbers.nans, 100u);
  EXPECT_EQ(numbers.distinct, 800u);
  EXPECT_EQ(numbers.numbers->low, 0.0);
  EXPECT_EQ(numbers.numbers->high, std::sqrt(999.0));
  EXPECT_FALSE(numbers.mostFrequent);
  const ColumnSummary keys = summaryOf(batches, 1);
  EXPECT_EQ(keys.nulls, 111u);
  EXPECT_EQ(keys.distinct, 7u);
  EXPECT_TRUE(keys.isDistinctExact);
  const ColumnSummary texts = summaryOf(batches, 2);
  EXPECT_EQ(texts.nulls, 200u);
  EXPECT_EQ(texts.texts->longest, 7u);
}

TEST(SampledRows, AreTheSameForASeedAndAsManyAsAskedFor) {
  const std::vector<MetaTypeColumn> types{MetaTypeColumn::number, MetaTypeColumn::key,
                                          MetaTypeColumn::text};
  const auto sampleOf = [&](std::size_t batchSize, std::uint64_t seed) {
    SampledRows sample(50, seed);
    for (const RowBatchPointer& batch : rowsInBatches(5000, batchSize)) {
      sample.add(*batch);
    }
    const RowBatchPointer rows = sample.take(types);
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < rows->rowCount(); ++i) {
      texts.emplace_back(textFromBytes(rows->column(2).text(i)));
    }
    return texts;
  };
  EXPECT_EQ(sampleOf(4096, 1), sampleOf(10, 1));
  EXPECT_NE(sampleOf(4096, 1), sampleOf(4096, 2));
  EXPECT_EQ(sampleOf(4096, 1).size(), 50u);
}

}  // namespace
}  // namespace kelvarin
