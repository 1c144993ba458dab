// What functions with a memory work on: the random generators, the dates' settings, compiled
// patterns and the files of one evaluator.
//
// Owned by ExpressionEvaluator; bodies of the function table that need it take it as their first
// argument.
#pragma once

#include <cstddef>
#include <optional>

#include <QString>

#include "expression/dates/date_context.h"
#include "expression/dates/recent_date_printers.h"
#include "expression/functions/random_generator.h"
#include "expression/functions/recent_patterns.h"

namespace kelvarin {

// The file that load() read last.
struct LoadedFile {
  bool isLoaded = false;
  QString name;
  QString text;
};

// What an evaluation may do, for those that are tried while somebody types.
struct EvaluationBounds {
  bool readsFiles = true;                // false: texts of files are missing
  std::optional<std::size_t> textBytes;  // of all texts that arise; none: as in a run
};

struct FunctionContext {
  RandomGenerator random;        // of the numeric random functions
  RandomGenerator secondRandom;  // of the text functions
  DateContext dates;
  RecentDatePrinters datePrinters;  // for formats that are arguments
  RecentPatterns patterns;
  QString filesFolder;  // where relative file names start; empty: the working directory
  LoadedFile lastLoaded;
  EvaluationBounds bounds;

  void seed(std::uint32_t seed) {
    random.seed(seed);
    secondRandom.seed(seed);
  }
};

}  // namespace kelvarin
