#include "library/arrow_streams/array_memory.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

using Values = std::shared_ptr<std::uint64_t[]>;

Values filled(ArrayMemory& memory, std::size_t column, std::size_t count, std::uint64_t value) {
  Values values = memory.allocate<std::uint64_t>(column, count);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(values.get()) % alignof(std::max_align_t), 0u);
  std::fill_n(values.get(), count, value);
  return values;
}

bool areAll(const Values& values, std::size_t count, std::uint64_t value) {
  return std::all_of(values.get(), values.get() + count,
                     [value](std::uint64_t found) { return found == value; });
}

// More than comes from the allocator, and more than one piece holds.
TEST(ArrayMemory, ArraysThatAreKeptShareNoByteAndOutliveIt) {
  for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{20'001},
                                  std::size_t{150'000}, std::size_t{2'000'000}}) {
    std::optional<ArrayMemory> memory(std::in_place);
    const std::size_t arrays = count > 1'000'000 ? 4 : 64;
    std::vector<Values> kept;
    for (std::size_t i = 0; i < arrays; ++i) {
      kept.push_back(filled(*memory, i % 3, count, i));
      if (i % 5 == 4) {
        kept[i - 2].reset();
      }
    }
    memory.reset();
    for (std::size_t i = 0; i < arrays; ++i) {
      EXPECT_TRUE(kept[i] == nullptr || areAll(kept[i], count, i)) << count << ", array " << i;
    }
  }
}

// The first ones stay where they are, and later ones are copied.
TEST(ArrayMemory, ValuesOfTheHeapAreCopiedWhereManyAreKept) {
  constexpr std::size_t kCount = 50'000;
  ArrayMemory memory;
  std::vector<std::shared_ptr<const std::uint64_t[]>> kept;
  std::vector<std::weak_ptr<const void>> owners;
  const auto keepMore = [&](std::uint64_t value) {
    const auto owner = std::make_shared<std::vector<std::uint64_t>>(kCount, value);
    kept.push_back(memory.keep(0, owner, owner->data(), kCount));
    owners.emplace_back(owner);
    return kept.back().get() == owner->data();
  };
  EXPECT_TRUE(keepMore(0));
  std::uint64_t value = 1;
  while (keepMore(value)) {
    ASSERT_LT(++value, 100u);
  }
  EXPECT_TRUE(owners.back().expired());
  for (std::uint64_t i = 0; i <= value; ++i) {
    EXPECT_TRUE(std::all_of(kept[i].get(), kept[i].get() + kCount,
                            [i](std::uint64_t found) { return found == i; }));
  }
  kept.clear();
  EXPECT_TRUE(owners.front().expired());
}

TEST(ArrayMemory, ThreadsTakeAndReleaseAtTheSameTime) {
  ArrayMemory memory;
  std::vector<std::jthread> threads;
  for (std::size_t thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&memory, thread] {
      std::vector<Values> kept;
      for (std::size_t i = 0; i < 200; ++i) {
        kept.push_back(filled(memory, i % 2, 5000, thread * 1000 + i));
        if (kept.size() == 40) {
          EXPECT_TRUE(areAll(kept[0], 5000, thread * 1000 + i - 39));
          kept.clear();
        }
      }
    });
  }
}

}  // namespace
}  // namespace kelvarin
