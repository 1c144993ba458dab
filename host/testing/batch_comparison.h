// Whether an action does with batches what it does row by row.
//
//   for (const BatchShape& shape : kBatchShapes) {
//     EXPECT_EQ(outcomeOf<FilterRows>(xml, "a:F", rows, shape), rowByRow);
//   }
#pragma once

#include <functional>
#include <optional>

#include <gtest/gtest.h>

#include "host/testing/row_harness.h"

namespace kelvarin::testing {

inline constexpr BatchShape kBatchShapes[] = {
    {1},       {2, 1},    {7},       {7, 5},          {1000},
    {1000, 1}, {1000, 5}, {3000, 1}, {1000, 0, true}, {1000, 1, true}};

// All that a run shows.
struct RunOutcome {
  std::vector<Rows> rows;            // by output pin
  std::vector<long long> published;  // the same, those included that nobody reads
  std::vector<long long> counts;     // nulls and NaNs of each output
  Strings log;
  bool hasFailed = false;

  bool operator==(const RunOutcome&) const = default;
};

inline void PrintTo(const RunOutcome& outcome, std::ostream* out) {
  for (std::size_t pin = 0; pin < outcome.rows.size(); ++pin) {
    *out << "pin " << pin << ": " << outcome.published[pin] << " rows, " << outcome.rows[pin].size()
         << " of them read, the last one "
         << ::testing::PrintToString(outcome.rows[pin].empty() ? Values()
                                                               : outcome.rows[pin].back())
         << "\n";
  }
  *out << ::testing::PrintToString(outcome.counts) << ::testing::PrintToString(outcome.log);
}

// Without a shape row by row. Checks that the rows of a shape came in batches, but for the first
// one and one that the routine was left.
template <typename Action>
RunOutcome outcomeOf(const std::string& xml, const std::string& columns, const Rows& rows,
                     std::optional<BatchShape> shape = {},
                     const std::function<void(RowHarness&)>& prepare = {}) {
  auto h = RowHarness::of<Action>(xml, columns);
  h.run().countsValues = true;
  h.push(rows);
  if (shape) {
    h.pullInBatches(*shape);
  }
  if (prepare) {
    prepare(h);
  }
  RunOutcome outcome;
  long long inBatches = 0;
  long long published = 0;
  for (int pin = 0; pin < h.action().outputPinCount(); ++pin) {
    outcome.rows.push_back(h.output(pin).isRead ? h.rows(pin) : (h.finish(), Rows()));
    outcome.published.push_back(h.output(pin).rowsPublished);
    inBatches += h.rowsInBatches(pin);
    published += static_cast<long long>(outcome.rows.back().size());
  }
  for (const OutputReport& output : h.host().report().outputs) {
    outcome.counts.insert(outcome.counts.end(), {output.nulls, output.nans});
  }
  outcome.log = h.log();
  outcome.hasFailed = h.hasFailed();
  if (shape) {
    EXPECT_GE(inBatches, published - 2);
  }
  return outcome;
}

}  // namespace kelvarin::testing
