// Times one evaluation of an expression on each back-end, beside the bare library behind it, so
// that the cost of what stands around the library is seen; and the time to build an evaluator. All
// take turns, and the median of the rounds is what counts.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <mpParser.h>
#include <muParser.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "expression/evaluator/expression_evaluator.h"
#include "expression/evaluator/tests/evaluator_fixture.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

constexpr std::array kExpressions = {
    "a+1",
    "a*b+c",
    "3*a/7",
    "(a-b)/(a+b)",
    "a+b*2-c/3",
    "((2*a+3)*a-4)*a+5",
    "sqrt(a*a+b*b)",
    "sin(a)*cos(b)",
    "exp(-(a*a))",
    "ln(a+2)*sqrt(b)",
    "a>b ? a : b",
    "a>1 ? b*0.9 : (b>2 ? c : 0)",
    "a>1 && b<3 || c==1",
    "-a+b-c",
    "a/b/c",
    "a>b",
    "tan(a)+atan(b)+log10(c)",
    "a+b+c+a+b+c+a+b+c+a+b+c",
    "t==u ? a : b",
    "t//u",
};

constexpr std::array kColumns = {"a", "b", "c", "t", "u"};
constexpr int kNumberCount = 3;
constexpr std::array kNumbers = {1.25, 2.5, 0.75};
constexpr std::array kTexts = {"Porto", "Lyon Part-Dieu, track 4"};

using Clock = std::chrono::steady_clock;

// What is timed: one evaluation, the first number as given. Its result keeps the compiler from
// leaving it out.
using Evaluation = std::function<double(int repetitions, double a)>;

struct Timed {
  Evaluation evaluate;
  std::vector<double> nanoseconds;
};

// The engines of one expression; those that do not know it are empty.
struct Line {
  const char* expression = nullptr;
  std::optional<Timed> native;
  std::optional<Timed> fast;
  std::optional<Timed> bareFast;
  std::optional<Timed> string;
  std::optional<Timed> bareString;

  std::array<std::optional<Timed>*, 5> all() {
    return {&native, &fast, &bareFast, &string, &bareString};
  }
};

std::vector<InputVariable> inputs() {
  std::vector<InputVariable> list;
  for (std::size_t i = 0; i < kColumns.size(); ++i) {
    list.push_back(inputOf(kColumns[i], i < kNumberCount ? 'F' : 'U'));
  }
  return list;
}

std::shared_ptr<TestTable> makeTable() {
  auto table = std::make_shared<TestTable>(QStringList(kColumns.begin(), kColumns.end()), "FFFUU");
  for (int i = 0; i < kNumberCount; ++i) {
    table->set(i, kNumbers[static_cast<std::size_t>(i)]);
    if (i < static_cast<int>(kTexts.size())) {
      table->set(kNumberCount + i, QString::fromUtf8(kTexts[static_cast<std::size_t>(i)]));
    }
  }
  return table;
}

double resultOf(ExpressionEvaluator& evaluator) {
  return numberFromBytes(evaluator.rows.resultCell(0));
}

double evaluateLoaded(ExpressionEvaluator& evaluator, int repetitions) {
  for (int i = 0; i < repetitions; ++i) {
    static_cast<void>(evaluator.rows.evaluate(0));
  }
  return resultOf(evaluator);
}

double evaluateRows(ExpressionEvaluator& evaluator, const OneRow& row, int repetitions) {
  for (int i = 0; i < repetitions; ++i) {
    static_cast<void>(evaluator.rows.loadRow(row));
    static_cast<void>(evaluator.rows.evaluate(0));
  }
  return resultOf(evaluator);
}

// The evaluator as an action uses it. Loading the row counts for texts only: numbers are loaded
// once for all outputs.
std::optional<Timed> ours(const char* expression, BackendKind kind) {
  auto evaluator = std::make_shared<ExpressionEvaluator>();
  const std::shared_ptr<TestTable> table = makeTable();
  evaluator->expressions.configure({}, inputs(), nullptr, false);
  evaluator->expressions.requireBackend(kind);
  evaluator->expressions.prepareDateContext({});
  const bool isText = std::string_view(expression).find("//") != std::string_view::npos;
  const bool isBound = static_cast<bool>(
      evaluator->expressions.bind(table->row(), [](const QString& text) { return text; }));
  if (!isBound || !evaluator->expressions.compile(outputOf(expression, isText ? 'U' : 'F'))) {
    return std::nullopt;
  }
  evaluator->start();
  if (evaluator->rows.loadRow(table->row()) != RowOutcome::ok) {
    return std::nullopt;
  }
  auto textResult = std::make_shared<unsigned char*>(nullptr);
  evaluator->rows.setTextTarget(0, textResult.get());
  const bool isLoading = kind == BackendKind::string;
  return Timed{[=, result = textResult](int repetitions, double a) {
                 evaluator->expressions.setNumber(0, a);
                 return isLoading ? evaluateRows(*evaluator, table->row(), repetitions)
                                  : evaluateLoaded(*evaluator, repetitions);
               },
               {}};
}

std::optional<Timed> bareFast(const char* expression) {
  struct Bare {
    std::array<double, kNumberCount> numbers = kNumbers;
    double result = 0.0;
    mu::Parser parser;
  };
  auto bare = std::make_shared<Bare>();
  try {
    bare->parser.EnableOptimizer(false);
    for (std::size_t i = 0; i < kNumberCount; ++i) {
      bare->parser.DefineVar(kColumns[i], &bare->numbers[i]);
    }
    bare->parser.SetExpr(expression);
    bare->parser.Eval();
  } catch (const mu::ParserError&) {
    return std::nullopt;
  }
  return Timed{[=](int repetitions, double a) {
                 const mu::Parser& parser = bare->parser;
                 double& result = bare->result;
                 bare->numbers[0] = a;
                 for (int i = 0; i < repetitions; ++i) {
                   result = parser.Eval();
                 }
                 return result;
               },
               {}};
}

// Two texts and three numbers are passed before every evaluation, as for a row.
std::optional<Timed> bareString(const char* expression) {
  struct Bare {
    std::array<mup::Value, kColumns.size()> values;
    mup::ParserX parser{59};
  };
  auto bare = std::make_shared<Bare>();
  const auto load = [](Bare& target, double a) {
    for (std::size_t i = 0; i < kNumberCount; ++i) {
      target.values[i] = i == 0 ? a : kNumbers[i];
    }
    for (std::size_t i = 0; i < kTexts.size(); ++i) {
      target.values[kNumberCount + i] = mup::string_type(kTexts[i]);
    }
  };
  try {
    load(*bare, 1.0);
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
      bare->parser.RemovePostfixOprt(kColumns[i]);
      bare->parser.DefineVar(kColumns[i], mup::Variable(&bare->values[i]));
    }
    bare->parser.SetExpr(expression);
    bare->parser.Eval();
  } catch (const mup::ParserError&) {
    return std::nullopt;
  }
  return Timed{[=](int repetitions, double a) {
                 double sum = 0.0;
                 for (int i = 0; i < repetitions; ++i) {
                   load(*bare, a);
                   const mup::IValue& value = bare->parser.Eval();
                   sum += value.IsString() ? static_cast<double>(value.GetString().size())
                                           : value.GetFloat();
                 }
                 return sum;
               },
               {}};
}

double volatileSum = 0.0;

void measure(Timed& timed, int repetitions) {
  constexpr int kBlocks = 16;
  const auto start = Clock::now();
  for (int block = 0; block < kBlocks; ++block) {
    volatileSum += timed.evaluate(repetitions / kBlocks, 0.5 + 0.125 * block);
  }
  const std::chrono::duration<double, std::nano> time = Clock::now() - start;
  timed.nanoseconds.push_back(time.count() / (repetitions / kBlocks * kBlocks));
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// Milliseconds to build an evaluator with 20 outputs.
double secondsToBuild(BackendKind kind) {
  const auto start = Clock::now();
  ExpressionEvaluator evaluator;
  evaluator.expressions.configure({}, inputs(), nullptr, false);
  evaluator.expressions.requireBackend(kind);
  evaluator.expressions.prepareDateContext({});
  for (int i = 0; i < 20; ++i) {
    static_cast<void>(
        evaluator.expressions.compile(outputOf(kExpressions[static_cast<std::size_t>(i) % 18])));
  }
  return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string shown(const std::optional<double>& value, int digits) {
  return value ? fmt::format("{:.{}f}", *value, digits) : "-";
}

std::optional<double> timeOf(const std::optional<Timed>& timed) {
  return timed ? std::optional(median(timed->nanoseconds)) : std::nullopt;
}

std::optional<double> ratio(const std::optional<double>& time, const std::optional<double>& bare) {
  return time && bare ? std::optional(*time / *bare) : std::nullopt;
}

// The geometric mean of the ratios.
struct Mean {
  double logarithms = 0.0;
  int count = 0;

  void add(const std::optional<double>& value) {
    if (value) {
      logarithms += std::log(*value);
      ++count;
    }
  }
  double value() const { return std::exp(logarithms / count); }
};

nlohmann::json jsonOf(const std::optional<double>& value) {
  return value ? nlohmann::json(*value) : nlohmann::json();
}

void report(std::vector<Line>& lines, const std::array<double, 3>& buildSeconds, bool isJson) {
  nlohmann::json list = nlohmann::json::array();
  Mean fastMean;
  Mean stringMean;
  if (!isJson) {
    fmt::print("{:<30}{:>9}{:>9}{:>9}{:>7}{:>9}{:>9}{:>7}\n", "ns an evaluation", "native", "Fast",
               "bare", "ratio", "String", "bare", "ratio");
  }
  for (Line& line : lines) {
    const auto native = timeOf(line.native);
    const auto fast = timeOf(line.fast);
    const auto bareFastTime = timeOf(line.bareFast);
    const auto string = timeOf(line.string);
    const auto bareStringTime = timeOf(line.bareString);
    const auto fastRatio = ratio(fast, bareFastTime);
    const auto stringRatio = ratio(string, bareStringTime);
    fastMean.add(fastRatio);
    stringMean.add(stringRatio);
    list.push_back({{"expression", line.expression},
                    {"native", jsonOf(native)},
                    {"fast", jsonOf(fast)},
                    {"bareFast", jsonOf(bareFastTime)},
                    {"fastRatio", jsonOf(fastRatio)},
                    {"string", jsonOf(string)},
                    {"bareString", jsonOf(bareStringTime)},
                    {"stringRatio", jsonOf(stringRatio)}});
    if (!isJson) {
      fmt::print("{:<30}{:>9}{:>9}{:>9}{:>7}{:>9}{:>9}{:>7}\n", line.expression, shown(native, 1),
                 shown(fast, 1), shown(bareFastTime, 1), shown(fastRatio, 2), shown(string, 1),
                 shown(bareStringTime, 1), shown(stringRatio, 2));
    }
  }
  if (isJson) {
    fmt::print("{}\n", nlohmann::json({{"expressions", list},
                                       {"fastRatio", fastMean.value()},
                                       {"stringRatio", stringMean.value()},
                                       {"buildSeconds", buildSeconds}})
                           .dump(2));
    return;
  }
  fmt::print("geometric mean of the ratios: Fast {:.2f}, String {:.2f}\n", fastMean.value(),
             stringMean.value());
  fmt::print(
      "ms to build an evaluator with 20 outputs: native {:.2f}, Fast {:.2f}, String {:.2f}\n",
      buildSeconds[0] * 1e3, buildSeconds[1] * 1e3, buildSeconds[2] * 1e3);
}

void runBenchmark(int repetitions, int rounds, bool isJson) {
  std::vector<Line> lines;
  for (const char* expression : kExpressions) {
    lines.push_back({expression, ours(expression, BackendKind::native),
                     ours(expression, BackendKind::fast), bareFast(expression),
                     ours(expression, BackendKind::string), bareString(expression)});
  }
  for (int round = 0; round < rounds; ++round) {
    for (Line& line : lines) {
      for (std::optional<Timed>* timed : line.all()) {
        if (*timed) {
          measure(**timed, repetitions);
        }
      }
    }
  }
  std::array<double, 3> buildSeconds{};
  for (const BackendKind kind : {BackendKind::native, BackendKind::fast, BackendKind::string}) {
    std::vector<double> times(9);
    std::generate(times.begin(), times.end(), [&] { return secondsToBuild(kind); });
    buildSeconds[static_cast<std::size_t>(kind)] = median(times);
  }
  report(lines, buildSeconds, isJson);
}

}  // namespace

}  // namespace kelvarin

int main(int argc, char** argv) {
  int repetitions = 100'000;
  int rounds = 9;
  bool isJson = false;
  CLI::App program("Times evaluations of expressions beside the bare libraries.",
                   "expression_benchmark");
  program.add_option("--evaluations", repetitions, "of each expression in a round")
      ->check(CLI::Range(16, 100'000'000))
      ->capture_default_str();
  program.add_option("--rounds", rounds, "how often all are timed")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  program.add_flag("--json", isJson, "print a JSON object");
  CLI11_PARSE(program, argc, argv);
  kelvarin::runBenchmark(repetitions, rounds, isJson);
  return 0;
}
