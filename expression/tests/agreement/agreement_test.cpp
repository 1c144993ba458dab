// Random expressions on every back-end: those that accept one give the same number, bit for bit.
//
//   expression_agreement_test --expressions=100000 --seed=7
//
// See README.md in this folder.

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <map>
#include <optional>

#include "expression/evaluator/expression_evaluator.h"
#include "expression/tests/agreement/random_expression.h"
#include "jit/tests/expression_draw.h"

namespace kelvarin {
namespace {

ExpressionDraw draw{.count = 2'000};

constexpr std::array kKinds = {BackendKind::native, BackendKind::fast, BackendKind::string};
constexpr std::size_t kRows = 6;

using Rows = std::vector<std::vector<double>>;
using Bits = std::vector<std::uint64_t>;

std::vector<InputVariable> variables() {
  std::vector<InputVariable> list;
  for (const char* name : RandomExpression::kNumbers) {
    list.emplace_back().label = QString::fromLatin1(name);
  }
  for (const char* name : RandomExpression::kTexts) {
    InputVariable& text = list.emplace_back();
    text.label = QString::fromLatin1(name);
    text.isNumber = false;
  }
  // Of two variables with one name every back-end sees the first.
  for (const bool isNumber : {true, false}) {
    InputVariable& second = list.emplace_back();
    second.label =
        QString::fromLatin1(isNumber ? RandomExpression::kTexts[0] : RandomExpression::kNumbers[0]);
    second.isNumber = isNumber;
  }
  return list;
}

// The results of all rows; nothing when the back-end refuses the expression, be it at a row.
std::optional<Bits> resultsOn(BackendKind kind, const QString& expression, const Rows& rows) {
  static const std::vector<InputVariable> inputs = variables();
  ExpressionEvaluator evaluator;
  EvaluationOptions options;
  options.time.seed = 1;
  evaluator.expressions.configure(options, inputs, nullptr, false);
  evaluator.expressions.requireBackend(kind);
  evaluator.expressions.prepareDateContext({expression});
  OutputVariable output;
  output.expression = expression;
  if (!evaluator.expressions.compile(output, ResultUse::anyValue)) {
    return std::nullopt;
  }
  evaluator.start();
  Bits bits;
  for (const std::vector<double>& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      evaluator.expressions.setNumber(static_cast<int>(i), row[i]);
    }
    evaluator.rows.startRow();
    if (evaluator.rows.evaluate(0) != RowOutcome::ok) {
      return std::nullopt;
    }
    bits.push_back(std::bit_cast<std::uint64_t>(evaluator.rows.value(0).number));
    evaluator.rows.advanceRow();
  }
  return bits;
}

std::string described(const QString& expression, const std::vector<double>& row) {
  std::string text = expression.toStdString() + "\n  with";
  for (std::size_t i = 0; i < row.size(); ++i) {
    std::array<char, 80> value;
    std::snprintf(value.data(), value.size(), "=%.17g (%016llx)", row[i],
                  static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(row[i])));
    text += " " + QString::fromLatin1(RandomExpression::kNumbers[i]).toStdString() + value.data();
  }
  return text;
}

TEST(Agreement, BackendsThatAcceptAnExpressionGiveTheSameBits) {
  RandomExpression random(draw.seed);
  std::map<std::pair<BackendKind, BackendKind>, int> compared;
  for (int i = 0; i < draw.count && !HasFailure(); ++i) {
    const QString expression = QString::fromLatin1(random.expression().c_str());
    Rows rows(kRows);
    for (std::vector<double>& row : rows) {
      row = random.row();
    }
    std::vector<std::pair<BackendKind, Bits>> accepted;
    for (const BackendKind kind : kKinds) {
      if (auto bits = resultsOn(kind, expression, rows)) {
        accepted.emplace_back(kind, std::move(*bits));
      }
    }
    for (std::size_t k = 1; k < accepted.size(); ++k) {
      const auto& [first, expected] = accepted[k - 1];
      const auto& [second, actual] = accepted[k];
      ++compared[{first, second}];
      for (std::size_t row = 0; row < kRows; ++row) {
        EXPECT_EQ(expected[row], actual[row])
            << std::hex << expected[row] << " on " << backendLabel(first) << ", " << actual[row]
            << " on " << backendLabel(second) << "\n  " << described(expression, rows[row]);
      }
    }
  }
  // The comparison is worth something only where the back-ends take most expressions.
  EXPECT_GT((compared[{BackendKind::fast, BackendKind::string}]), draw.count / 3);
  std::cout << "native and Fast: " << compared[{BackendKind::native, BackendKind::fast}]
            << ", Fast and String: " << compared[{BackendKind::fast, BackendKind::string}]
            << ", of " << draw.count << " expressions\n";
}

}  // namespace

}  // namespace kelvarin

int main(int argc, char** argv) {
  return kelvarin::runTests(argc, argv, kelvarin::draw);
}
