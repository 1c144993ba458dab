// Random expressions through machine code of every kind, the reference evaluator and the expression
// library.
//
//   jit_agreement_test --expressions=100000 --seed=7

#include <gtest/gtest.h>

#include <bit>
#include <string_view>

#include "jit/tests/expression_draw.h"
#include "jit/tests/library_parser.h"
#include "jit/tests/random_expression.h"
#include "jit/tests/system_functions.h"

namespace kelvarin::jit {

namespace {

ExpressionDraw draw{.count = 10'000};

constexpr std::size_t kRows = 11;  // two times four and a rest

using Bits = std::uint64_t;

Bits bitsOf(double value) {
  return std::bit_cast<Bits>(value);
}

struct Rows {
  std::vector<std::vector<double>> rows;
  std::vector<std::vector<double>> columns;
  std::vector<const double*> pointers;
};

Rows makeRows(RandomExpression& random) {
  Rows rows;
  rows.columns.resize(LibraryParser::kVariables.size());
  for (std::size_t i = 0; i < kRows; ++i) {
    rows.rows.push_back(random.row());
    for (std::size_t k = 0; k < rows.columns.size(); ++k) {
      rows.columns[k].push_back(rows.rows.back()[k]);
    }
  }
  for (const std::vector<double>& column : rows.columns) {
    rows.pointers.push_back(column.data());
  }
  return rows;
}

std::string describe(const std::string& expression, const std::vector<double>& row) {
  std::string text = expression + " with";
  char number[64];
  for (const double value : row) {
    std::snprintf(number, sizeof number, " %.17g (%016lx)", value, bitsOf(value));
    text += number;
  }
  return text;
}

std::vector<Bits> resultsOf(LibraryParser& parser, const Rows& rows) {
  std::vector<Bits> results;
  for (const std::vector<double>& row : rows.rows) {
    results.push_back(bitsOf(parser.evaluate(row.data())));
  }
  return results;
}

void expectResults(const std::string& expression, const CompiledFunction& function,
                   const Rows& rows, const std::vector<Bits>& expected) {
  std::vector<double> byColumns(kRows);
  function.evaluateColumns(rows.pointers.data(), kRows, byColumns.data());
  for (std::size_t i = 0; i < kRows; ++i) {
    ASSERT_EQ(bitsOf(function(rows.rows[i].data())), expected[i])
        << describe(expression, rows.rows[i]);
    ASSERT_EQ(bitsOf(byColumns[i]), expected[i])
        << "by columns, row " << i << ": " << describe(expression, rows.rows[i]);
  }
}

TEST(Agreement, RandomExpressionsGiveTheSameBitsEverywhere) {
  RandomExpression random(draw.seed);
  LibraryParser parser;
  int compiledCount = 0;
  for (int i = 0; i < draw.count; ++i) {
    const std::string expression = random.expression();
    const Rows rows = makeRows(random);
    ASSERT_TRUE(parser.setExpression(expression)) << expression;
    const std::vector<Bits> expected = resultsOf(parser, rows);
    for (const InstructionSet set : {InstructionSet::none, InstructionSet::sse2,
                                     InstructionSet::sse41, InstructionSet::avx2}) {
      if (set > bestInstructionSet()) {
        break;
      }
      SCOPED_TRACE("instruction set " + std::to_string(static_cast<int>(set)));
      CompilerContext context(systemContext());
      for (std::size_t k = 0; k < LibraryParser::kVariables.size(); ++k) {
        context.addVariable(LibraryParser::kVariables[k], k);
      }
      context.setInstructionSet(set);
      CompileFailure failure;
      const auto function = context.compile(expression, failure);
      if (function == nullptr) {
        ASSERT_EQ(failure.reason.find("out of range") != std::string::npos, true)
            << expression << ": " << failure.reason << " at " << failure.position;
        break;
      }
      ASSERT_EQ(function->isMachineCode(), set != InstructionSet::none) << expression;
      expectResults(expression, *function, rows, expected);
      if (HasFatalFailure()) {
        return;
      }
      ++compiledCount;
    }
  }
  EXPECT_GT(compiledCount, draw.count);
}

}  // namespace

}  // namespace kelvarin::jit

int main(int argc, char** argv) {
  return kelvarin::runTests(argc, argv, kelvarin::jit::draw);
}
