// The offsets that are kept are those of the zone, at every change of its clock and between them.

#include "expression/dates/zone_offsets.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include <QDateTime>
#include <QTimeZone>

#include "expression/dates/clock_zone.h"
#include "expression/dates/tests/date_samples.h"

namespace kelvarin {
namespace {

constexpr std::int64_t kDay = 86'400;

ZoneOffsets offsetsOf(const QTimeZone& zone) {
  return ZoneOffsets([zone](std::int64_t seconds) {
    return std::int64_t{zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC))};
  });
}

// A few zones, or all where more samples are asked for.
QList<QByteArray> zoneNames() {
  return dateSampleCount(0) > 0
             ? QTimeZone::availableTimeZoneIds()
             : QList<QByteArray>{"Europe/Berlin",       "Europe/Dublin",     "America/St_Johns",
                                 "Australia/Lord_Howe", "Africa/Casablanca", "Africa/Cairo",
                                 "Asia/Gaza",           "Asia/Manila",       "Pacific/Apia",
                                 "Antarctica/Troll"};
}

TEST(ZoneOffsets, AreThoseOfTheZoneAroundItsChanges) {
  const bool isThorough = dateSampleCount(0) > 0;
  const QDateTime first(QDate(isThorough ? 1700 : 1900, 1, 1), QTime(0, 0), Qt::UTC);
  const QDateTime last(QDate(isThorough ? 2400 : 2100, 1, 1), QTime(0, 0), Qt::UTC);
  for (const QByteArray& name : zoneNames()) {
    const QTimeZone zone(name);
    const ZoneOffsets offsets = offsetsOf(zone);
    const auto expectSame = [&](Instant instant) {
      const auto time = QDateTime::fromMSecsSinceEpoch(instant, Qt::UTC);
      ASSERT_EQ(offsets.at(instant), Instant{zone.offsetFromUtc(time)} * 1000)
          << name.constData() << " at " << instant;
    };
    for (const QTimeZone::OffsetData& change : zone.transitions(first, last)) {
      const Instant instant = change.atUtc.toMSecsSinceEpoch();
      for (const Instant distance : {1LL, 1'000LL, 3'600'000LL, 86'400'000LL, 5'000'000'000LL}) {
        expectSame(instant - distance);
        expectSame(instant + distance);
      }
      expectSame(instant);
    }
    expectSame(-9'000'000'000'000);
    expectSame(99'000'000'000'000);
    for (std::int64_t second = first.toSecsSinceEpoch(); second < last.toSecsSinceEpoch();
         second += 13 * kDay + 4'321) {
      expectSame(second * 1000);
    }
  }
}

TEST(ZoneOffsets, StretchesWithManyChangesAreAskedForEachTime) {
  const auto offsetAt = [](std::int64_t seconds) {
    return flooredQuotient(seconds, 5 * kDay) % 2 == 0 ? std::int64_t{3600} : std::int64_t{-7200};
  };
  const ZoneOffsets offsets(offsetAt);
  for (std::int64_t second = -50 * kDay; second < 50 * kDay; second += 1'111) {
    ASSERT_EQ(offsets.at(second * 1000), offsetAt(second) * 1000) << second;
  }
}

TEST(ZoneOffsets, ThreadsFindTheSame) {
  const QTimeZone zone("Europe/Berlin");
  const ZoneOffsets offsets = offsetsOf(zone);
  std::vector<std::thread> threads;
  std::vector<std::int64_t> sums(4);
  for (std::int64_t& sum : sums) {
    threads.emplace_back([&offsets, &sum] {
      for (std::int64_t day = -20'000; day < 20'000; ++day) {
        sum = sum * 31 + offsets.at(day * kMillisecondsOfDay);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(sums, std::vector<std::int64_t>(4, sums[0]));
}

}  // namespace
}  // namespace kelvarin
