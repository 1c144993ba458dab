// How many random expressions a test compares engines on, and the seed that they are drawn from.
//
// The command line has both: jit_agreement_test --expressions=100000 --seed=7
// Used by: the tests of agreement in jit and in expression.
#pragma once

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace kelvarin {

struct ExpressionDraw {
  int count;
  unsigned seed = 1;
};

// The main function of such a test.
inline int runTests(int argumentCount, char** arguments, ExpressionDraw& draw) {
  testing::InitGoogleTest(&argumentCount, arguments);
  for (int i = 1; i < argumentCount; ++i) {
    const std::string argument = arguments[i];
    const int value = std::atoi(argument.c_str() + argument.find('=') + 1);
    if (argument.starts_with("--expressions=")) {
      draw.count = value;
    } else if (argument.starts_with("--seed=")) {
      draw.seed = static_cast<unsigned>(value);
    }
  }
  return RUN_ALL_TESTS();
}

}  // namespace kelvarin
