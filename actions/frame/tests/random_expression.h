// Expressions made at random, of native code and with texts, and rows to evaluate them on.
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

  // A text, with the text column t too.
  std::string nextText(int depth = 3) {
    if (depth == 0) {
      static constexpr const char* kLeaves[] = {"t", "t", "&quot;&quot;", "&quot;x-y&quot;",
                                                "_nullS"};
      return kLeaves[pick(std::size(kLeaves))];
    }
    const std::string text = nextText(depth - 1);
    switch (pick(7)) {
      case 0:
        return "toupper(" + text + ")";
      case 1:
        return "substr(" + text + ",1,k)";
      case 2:
        return "replace(" + text + ",&quot;x&quot;,t)";
      case 3:
        return "itoa(" + nextTextNumber(depth - 1) + ")";
      case 4:
        return "(" + nextTextTest(depth - 1) + "?" + text + ":" + nextText(depth - 1) + ")";
      case 5:
        return "nvl(" + text + "," + nextText(depth - 1) + ")";
      default:
        return "(" + text + "//" + nextText(depth - 1) + ")";
    }
  }
  // A number that depends on texts.
  std::string nextTextNumber(int depth = 3) {
    const std::string text = nextText(depth - 1 < 0 ? 0 : depth - 1);
    switch (pick(4)) {
      case 0:
        return "strlen(" + text + ")*a+_n";
      case 1:
        return "(" + nextTextTest(depth) + " ? k : round(b))";
      case 2:
        return "isNull(" + text + ")";
      default:
        return "indexOf(" + text + ",&quot;t&quot;)";
    }
  }
  // A condition that depends on texts.
  std::string nextTextTest(int depth = 3) {
    const std::string text = nextText(depth - 1 < 0 ? 0 : depth - 1);
    switch (pick(4)) {
      case 0:
        return "(" + text + "==t)";
      case 1:
        return "contains(" + text + ",&quot;t&quot;)";
      case 2:
        return "(trim(t) &gt; " + text + " || isNull(a))";
      default:
        return "(strlen(" + text + ") &lt; k)";
    }
  }

  // Columns: a:F b:F k:K t:U.
  Values row() {
    const Value numbers[] = {nullptr, 0, -0.0, 1, -7.25, 3e9, 1e300, std::nan("1"), -5, 12, 0.1};
    const Value keys[] = {nullptr, 0, 1, 77, 4294967293.0};
    const Value texts[] = {nullptr, "", "x", "a longer text", " tx t ", "xÄxß漢\xF0\x9F\x98\x80"};
    return {numbers[pick(std::size(numbers))], numbers[pick(std::size(numbers))],
            keys[pick(std::size(keys))], texts[pick(std::size(texts))]};
  }

 private:
  std::size_t pick(std::size_t count) { return m_random() % count; }

  std::mt19937 m_random;
};

}  // namespace kelvarin::testing
