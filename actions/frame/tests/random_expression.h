// Expressions of native code made at random, and rows to evaluate them on.
#pragma once

#include <random>
#include <string>

#include "host/testing/row_harness.h"

namespace kelvarin::testing {

class RandomExpressions {
 public:
  explicit RandomExpressions(unsigned seed) : m_random(seed) {}

  // Over the number columns a and b, the key column k and the number of the row; escaped for XML.
  std::string next(int depth = 3) {
    if (depth == 0) {
      static constexpr const char* kLeaves[] = {"a", "b", "k", "_n", "2", "0.5", "(0-3)", "_null"};
      return kLeaves[pick(std::size(kLeaves))];
    }
    static constexpr const char* kOperators[] = {"+",    "-",    "*",  "/",  "^",
                                                 "&lt;", "&gt;", "==", "!=", "%"};
    const std::string left = next(depth - 1);
    const std::string right = next(depth - 1);
    switch (pick(6)) {
      case 0:
        return "nvl(" + left + "," + right + ")";
      case 1:
        return "sqrt(" + left + ")";
      case 2:
        return "(" + left + " ? " + right + " : " + next(depth - 1) + ")";
      case 3:
        return "floor2(" + left + "," + right + ")";
      default:
        return "(" + left + kOperators[pick(std::size(kOperators))] + right + ")";
    }
  }

  // Columns: a:F b:F k:K t:U.
  Values row() {
    const Value numbers[] = {nullptr, 0, -0.0, 1, -7.25, 3e9, 1e300, std::nan("1"), -5, 12, 0.1};
    const Value keys[] = {nullptr, 0, 1, 77, 4294967293.0};
    const Value texts[] = {nullptr, "", "x", "a longer text"};
    return {numbers[pick(std::size(numbers))], numbers[pick(std::size(numbers))],
            keys[pick(std::size(keys))], texts[pick(std::size(texts))]};
  }

 private:
  std::size_t pick(std::size_t count) { return m_random() % count; }

  std::mt19937 m_random;
};

}  // namespace kelvarin::testing
