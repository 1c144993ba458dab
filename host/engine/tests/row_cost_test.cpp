// What a row costs: on a straight chain no copy and no allocation; in a large diamond a bounded
// amount of memory.
#include <cstdlib>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "host/engine/tests/made_actions.h"

namespace {
long long allocations = 0;
}

// Counts what the whole process asks for, Qt's texts included; the sanitizers have an allocator of
// their own.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
extern "C" void* __libc_malloc(std::size_t size);
extern "C" __attribute__((visibility("default"))) void* malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}
#endif

namespace kelvarin::testing {
namespace {

long long peakMebibytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

// The large case of a diamond; scripts set it to 20 million rows.
long long diamondRows() {
  const char* given = std::getenv("KELVARIN_DIAMOND_ROWS");
  return given == nullptr ? 3'000'000 : std::atoll(given);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(RowCost, IsCountedInLibrariesToo) {
  const long long before = allocations;
  const QString text(100, u'x');
  EXPECT_EQ(allocations - before, 1);
}
#endif

TEST(RowCost, AStraightChainNeitherCopiesNorAllocates) {
  TestGraph t(
      "<Count name='s' rows='101000'/><Pass name='p'/><EveryNth name='f' n='2'/><Collect name='w' "
      "quiet='1'/>",
      "s p, p f, f w");
  long long atStart = 0;
  long long atEnd = 0;
  t.seen.onSourceRow = [&](long long row) {
    if (row == 1000) {
      atStart = allocations;
    } else if (row == 100999) {
      atEnd = allocations;
    }
  };
  // The source keeps its value in a member: the sink must see that very address.
  EXPECT_TRUE(t.run().isOk());
  const unsigned char* const address = t.seen.lastValue["w"];
  EXPECT_GE(address, reinterpret_cast<const unsigned char*>(t.graph.actions[0].item.get()));
  EXPECT_LT(address,
            reinterpret_cast<const unsigned char*>(t.graph.actions[0].item.get()) + sizeof(Count));
  EXPECT_EQ(atEnd - atStart, 0);
}

TEST(RowCost, TwoReadersInTurnsAllocateForBatchesOnly) {
  TestGraph t(
      "<Count name='s' rows='101000' texts='0'/><Collect name='a' quiet='1'/><Collect name='b' "
      "quiet='1'/>",
      "s a, s b");
  long long atStart = 0;
  long long atEnd = 0;
  t.seen.onSourceRow = [&](long long row) {
    if (row == 1000) {
      atStart = allocations;
    } else if (row == 100999) {
      atEnd = allocations;
    }
  };
  EXPECT_TRUE(t.run().isOk());
  EXPECT_LT(atEnd - atStart, 1000);  // some for each batch
}

TEST(RowCost, ADiamondStaysSmall) {
  const long long rows = diamondRows();
  TestGraph t("<Count name='s' texts='1' rows='" + std::to_string(rows) +
                  "'/><EveryNth name='f' n='" + std::to_string(rows / 10) +
                  "'/><WithTable name='c'/><Collect name='w' quiet='1'/>",
              "s c, s f, f c:1, c w");
  t.options.queueMemoryBytes = 16 << 20;
  const long long before = peakMebibytes();
  const RunResult result = t.run();
  EXPECT_TRUE(result.isOk());
  EXPECT_EQ(t.of(result, "w").rowsIn, (std::vector<long long>{rows}));
  EXPECT_EQ(t.seen.values["c"].size(), 10u);
  EXPECT_LT(peakMebibytes() - before, 40);
  RecordProperty("seconds", std::to_string(result.seconds));
}

}  // namespace
}  // namespace kelvarin::testing
