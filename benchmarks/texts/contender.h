// Somebody who computes an expression for all rows of a table and leaves the results in memory.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "benchmarks/texts/text_table.h"

namespace kelvarin {

// Either texts or numbers, one a row.
struct ContenderResults {
  std::vector<std::string> texts;
  std::vector<double> numbers;
};

class Contender {
 public:
  virtual ~Contender() = default;
  // What is timed. The results of the previous time go when the new ones are there.
  virtual void run(const TextTable& table) = 0;
  // A copy of those of the last time.
  virtual ContenderResults results() const = 0;
};

// Null where the expression cannot be evaluated so. `yieldsText` is the type of the result.
std::unique_ptr<Contender> batchContender(const std::string& expression, bool yieldsText);
std::unique_ptr<Contender> stringParserContender(const std::string& expression, bool yieldsText);
// A loop over std::string as one writes it by hand; null for an unknown name.
std::unique_ptr<Contender> loopContender(const std::string& name);

}  // namespace kelvarin
