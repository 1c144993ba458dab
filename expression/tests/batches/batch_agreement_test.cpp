// Random expressions row by row on the String Parser and as column programs: the same values, byte
// for byte and bit for bit, and no value by a program where the String Parser fails.
//
//   batch_agreement_test --expressions=1000000 --seed=7

#include <gtest/gtest.h>

#include <bit>
#include <iostream>
#include <optional>

#include "expression/batches/column_evaluation.h"
#include "expression/batches/entry_program.h"
#include "expression/evaluator/expression_evaluator.h"
#include "expression/tests/batches/random_typed_expression.h"
#include "jit/tests/expression_draw.h"

namespace kelvarin {
namespace {

ExpressionDraw draw{.count = 30'000};

constexpr std::size_t kRows = 5;

struct Row {
  std::vector<double> numbers;
  std::vector<std::optional<std::string>> texts;
};

std::vector<InputVariable> variables() {
  std::vector<InputVariable> list;
  for (const char* name : RandomTypedExpression::kNumbers) {
    list.emplace_back().label = QString::fromLatin1(name);
  }
  for (const char* name : RandomTypedExpression::kTexts) {
    InputVariable& text = list.emplace_back();
    text.label = QString::fromLatin1(name);
    text.isNumber = false;
  }
  return list;
}

std::string shown(const EvaluatedValue& value) {
  if (value.isText()) {
    return value.type == EvaluatedValue::Type::nullText ? "null text"
                                                        : "text " + std::string(value.text);
  }
  return "number " + std::to_string(std::bit_cast<std::uint64_t>(value.number));
}

// One expression on both engines.
class Comparison {
 public:
  explicit Comparison(bool isCut) : m_isCut(isCut) {}

  // False where the String Parser does not compile it.
  bool compile(const QString& expression) {
    static const std::vector<InputVariable> inputs = variables();
    EvaluationOptions options;
    options.time.seed = 1;
    options.time.dateFormat = QStringLiteral("yyyy-MM-dd");
    options.time.referenceTime = QStringLiteral("20000101 00:00:00");
    m_evaluator.expressions.configure(options, inputs, nullptr, false);
    m_evaluator.expressions.requireBackend(BackendKind::string);
    m_evaluator.expressions.prepareDateContext({expression});
    OutputVariable output;
    output.expression = expression;
    output.meta = MetaTypeColumn::text;  // for which numbers are texts, too
    return static_cast<bool>(m_evaluator.expressions.compile(output));
  }

  const CompiledOutput& output() const { return m_evaluator.expressions.output(0); }
  const ColumnProgram* program() const { return output().columnProgram.get(); }

  // Of each row; empty where it fails.
  std::vector<std::string> byRows(const std::vector<Row>& rows) {
    std::vector<std::string> results;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      load(rows[i], static_cast<double>(i));
      EvaluatedValue value;
      const bool isEvaluated = output().expression->evaluate(value);
      results.push_back(isEvaluated ? shown(value) : std::string());
    }
    return results;
  }

  // Of each row; empty where the program leaves it to the String Parser.
  std::vector<std::string> byColumns(const std::vector<Row>& rows) {
    ColumnEvaluation evaluation(m_evaluator.expressions.functions());
    std::vector<std::string> results;
    for (std::size_t begin = 0; begin < rows.size();) {
      const std::size_t done = evaluateColumns(evaluation, rows, begin, results);
      if (done == 0) {
        results.emplace_back();
      }
      begin += std::max<std::size_t>(done, 1);
    }
    return results;
  }

 private:
  void load(const Row& row, double number) {
    VariableStore& store = m_evaluator.expressions.variables();
    store.numbers()[0] = number;
    std::copy(row.numbers.begin(), row.numbers.end(), store.numbers() + 1);
    for (std::size_t i = 0; i < row.texts.size(); ++i) {
      store.text(i) = {row.texts[i].value_or(std::string()), !row.texts[i].has_value()};
      if (row.texts[i]) {
        store.text(i).bytes = *row.texts[i];
      }
    }
    m_evaluator.expressions.stringBackend().load(store);
  }

  // All rows from `begin` on at once.
  std::size_t evaluateColumns(ColumnEvaluation& evaluation, const std::vector<Row>& rows,
                              std::size_t begin, std::vector<std::string>& results) {
    const std::size_t count = rows.size() - begin;
    std::vector<std::vector<double>> numbers(rows[0].numbers.size() + 1);
    std::vector<std::vector<ColumnText>> texts(rows[0].texts.size());
    for (std::size_t row = begin; row < rows.size(); ++row) {
      numbers[0].push_back(static_cast<double>(row));
      for (std::size_t i = 1; i < numbers.size(); ++i) {
        numbers[i].push_back(rows[row].numbers[i - 1]);
      }
      for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::optional<std::string>& text = rows[row].texts[i];
        texts[i].push_back(text && *text != kNullBytes ? ColumnText(*text) : ColumnText());
      }
    }
    std::vector<const double*> numberColumns;
    std::vector<const ColumnText*> textColumns;
    for (const auto& column : numbers) {
      numberColumns.push_back(column.data());
    }
    for (const auto& column : texts) {
      textColumns.push_back(column.data());
    }
    const ColumnProgram* rest = addParts(count, numberColumns, textColumns);
    const std::size_t done = evaluation.evaluate(rest == nullptr ? *program() : *rest,
                                                 {numberColumns.data(), textColumns.data()}, count);
    for (std::size_t i = 0; i < done; ++i) {
      EvaluatedValue value;
      if (program()->yieldsText()) {
        const ColumnText& text = evaluation.texts()[i];
        value.type = text.isNull() ? EvaluatedValue::Type::nullText : EvaluatedValue::Type::text;
        value.text = text.view();
      } else {
        value.number = evaluation.numbers()[i];
      }
      results.push_back(shown(value));
    }
    return done;
  }

  // The expression may be cut, with a part for each text alone, and the values of the parts
  // are columns of what is returned. Null: it is not cut, or a part leaves out a row.
  const ColumnProgram* addParts(std::size_t count, std::vector<const double*>& numbers,
                                std::vector<const ColumnText*>& texts) {
    const EntryProgram* entries = output().entryProgram.get();
    if (entries == nullptr || !m_isCut) {
      return nullptr;
    }
    numbers.resize(std::max(numbers.size(), entries->endOfColumns()));
    texts.resize(std::max(texts.size(), entries->endOfColumns()));
    for (std::size_t part = 0; part < entries->parts().size(); ++part) {
      m_parts.push_back(std::make_unique<ColumnEvaluation>(m_evaluator.expressions.functions()));
      ColumnEvaluation& values = *m_parts.back();
      const ColumnProgram& program = *entries->parts()[part].program;
      if (values.evaluate(program, {nullptr, texts.data()}, count) < count) {
        return nullptr;
      }
      if (program.yieldsText()) {
        texts[entries->columnOf(part)] = values.texts();
      } else {
        numbers[entries->columnOf(part)] = values.numbers();
      }
    }
    return entries->rest((1u << entries->variables().size()) - 1, 0);
  }

  static constexpr std::string_view kNullBytes{"\xFF\x00\xFF", 3};

  ExpressionEvaluator m_evaluator;
  const bool m_isCut;
  std::vector<std::unique_ptr<ColumnEvaluation>> m_parts;  // whose values are looked at
};

Row randomRow(RandomTypedExpression& random) {
  Row row;
  for (std::size_t i = 0; i < RandomTypedExpression::kNumbers.size(); ++i) {
    row.numbers.push_back(random.number());
  }
  for (std::size_t i = 0; i < RandomTypedExpression::kTexts.size(); ++i) {
    row.texts.push_back(random.isChance(12) ? std::nullopt : std::optional(random.text()));
  }
  return row;
}

TEST(BatchAgreement, ColumnProgramsGiveWhatTheStringParserGives) {
  RandomTypedExpression random(draw.seed);
  int compiled = 0;
  int compared = 0;
  long long rowsLeftOut = 0;
  long long leftOutInVain = 0;  // rows that the String Parser has a value for
  for (int i = 0; i < draw.count && !HasFailure(); ++i) {
    const std::string text = random.expression();
    std::vector<Row> rows;
    for (std::size_t row = 0; row < kRows; ++row) {
      rows.push_back(randomRow(random));
    }
    Comparison comparison(i % 2 == 0);
    if (!comparison.compile(QString::fromStdString(text))) {
      continue;
    }
    ++compiled;
    if (comparison.program() == nullptr) {
      continue;
    }
    ++compared;
    const std::vector<std::string> expected = comparison.byRows(rows);
    const std::vector<std::string> actual = comparison.byColumns(rows);
    for (std::size_t row = 0; row < kRows; ++row) {
      const bool isLeftOut = actual[row].empty();
      rowsLeftOut += isLeftOut ? 1 : 0;
      leftOutInVain += isLeftOut && !expected[row].empty() ? 1 : 0;
      EXPECT_TRUE(isLeftOut || actual[row] == expected[row])
          << text << "\n  row " << row << "\n  expected " << expected[row] << "\n  actual   "
          << actual[row];
    }
  }
  std::cout << compiled << " of " << draw.count << " expressions compiled, " << compared
            << " as column programs; they left out " << rowsLeftOut << " rows, " << leftOutInVain
            << " in vain\n";
  // The comparison is worth something only where programs take most expressions and rows.
  EXPECT_GT(compared, draw.count / 3);
  EXPECT_LT(rowsLeftOut, compared / 10 + 1);
  EXPECT_LT(leftOutInVain, compared / 1000 + 1);
}

TEST(BatchAgreement, RowsFailOnlyInTheBranchThatTheyTake) {
  const auto rowOf = [](double a, const char* pattern) {
    Row row{{a, 0.0, 0.0, 0.0}, {"text", pattern, "", ""}};
    return row;
  };
  const std::vector<Row> rows = {rowOf(0, "("), rowOf(1, "x"), rowOf(0, "[a"),
                                 rowOf(1, "("), rowOf(0, "("), rowOf(1, "t")};
  const auto leftOut = [&](const char* expression) {
    Comparison comparison(false);
    if (!comparison.compile(QString::fromLatin1(expression)) || comparison.program() == nullptr) {
      return std::string("no program");
    }
    const std::vector<std::string> expected = comparison.byRows(rows);
    const std::vector<std::string> actual = comparison.byColumns(rows);
    EXPECT_EQ(actual, expected) << expression;
    std::string numbers;
    for (std::size_t i = 0; i < actual.size(); ++i) {
      numbers += actual[i].empty() ? std::to_string(i) : std::string();
    }
    return numbers;
  };
  // The pattern of row 3 has a fault; those of the rows 0, 2 and 4 have one, too.
  EXPECT_EQ(leftOut(R"(a>0 ? regexReplace(s,t,"-") : s)"), "3");
  EXPECT_EQ(leftOut(R"(a<1 ? s : regexReplace(s,t,"-"))"), "3");
  EXPECT_EQ(leftOut(R"(b==0 ? (a>0 ? regexReplace(s,t,"-") : toupper(s)) : t//t)"), "3");
  EXPECT_EQ(leftOut(R"(a>0 ? (b>0 ? regexReplace(s,t,"-") : toupper(s)) : t//t)"), "");
  EXPECT_EQ(
      leftOut(R"(strlen(a>0 ? regexExtract(s,t,0) : s)+(a<1 ? regexMatch(s,t) : isMissing(t)))"),
      "0234");
  // Both sides of a logical operator are evaluated, whatever the first one is.
  EXPECT_EQ(leftOut(R"(a>0 && regexMatch(s,t))"), "0234");
  EXPECT_EQ(leftOut(R"(a<1 || contains(s,t))"), "");
}

}  // namespace

}  // namespace kelvarin

int main(int argc, char** argv) {
  return kelvarin::runTests(argc, argv, kelvarin::draw);
}
