// The regular expressions that were used last, so that each is compiled once and not for every row.
//
// Part of FunctionContext. Copies share what is compiled, and so do their threads: the memory of
// all of them is bounded by that of a few patterns. Threads: one an object; copies may be used at
// the same time.
#pragma once

#include <memory>
#include <string_view>

#include "expression/functions/text_pattern.h"

namespace kelvarin {

class RecentPatterns {
 public:
  RecentPatterns();

  // Until the next call.
  const TextPattern& of(std::string_view pattern);

 private:
  class Shared;

  std::shared_ptr<Shared> m_shared;
  std::shared_ptr<const TextPattern> m_last;
};

}  // namespace kelvarin
