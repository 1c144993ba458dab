// Expressions with texts in memory on one core: nanoseconds a row on the String Parser, which gets
// one row after the other, and as column programs.
//
//   text_benchmark [--rows 100000] [--rounds 5] [--only date]

#include <algorithm>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "expression/batches/column_evaluation.h"
#include "expression/evaluator/expression_evaluator.h"

namespace kelvarin {
namespace {

struct Line {
  const char* name;
  const char* expression;
};

constexpr Line kLines[] = {
    {"upper", "toupper(s)"},
    {"part", "substr(s,2,5)"},
    {"replace", R"(replace(s,"a","xy"))"},
    {"contains", R"(contains(s,"rk"))"},
    {"concatenate", R"(s//"-"//t)"},
    {"equality", R"(s=="Sankt 1" ? a : a*2)"},
    {"trim and compare", R"(trim(s)>"M")"},
    {"strlen", "strlen(s)*2+a"},
    {"choice of texts", R"(a>10 ? left(s,3) : right(t,4))"},
    {"choice, one costly", R"(a>16 ? toupper(s) : s)"},
    {"choice of numbers", "a>10 ? strlen(s) : a*2"},
    {"choice of choices", R"(a<5 ? s : a<10 ? toupper(t) : a<15 ? right(s,3) : "-")"},
    {"texts compared", R"(s<t ? s : t)"},
    {"costly second side", R"(a>10 && contains(s,"rk"))"},
    {"choice of dates", "a>10 ? dateAdd(d,0,0,10) : d"},
    {"number to text", "itoa(a)"},
    {"text to number", R"(atof(t)+1)"},
    {"real to text", "ftoa(a/7)"},
    {"number to hexadecimal", "ftoh(a*1000)"},
    {"test for a number", "isNumberStrict(t)"},
    {"chosen for a number", "nvl2(a,s,t)"},
    {"codepoint", "codepoint(t)"},
    {"position from right", R"(lastIndexOf(s,"n"))"},
    {"null replaced", "nvl(s,t)"},
    {"encoded for XML", "xmlEncode(s)"},
    {"base64", "atob64(s)"},
    {"date to elapsed", "toET(d)"},
    {"elapsed to date", "toDate(a)"},
    {"date reformatted", R"(datePrint(d,"dd/MM/yyyy"))"},
    {"date and days", "dateAdd(d,0,0,10)"},
    {"dates compared", R"(dateLT(d,"2024-06-30"))"},
    {"regex match", R"(regexMatch(s,"[0-9]{3}$"))"},
    {"regex extract", R"~(regexExtract(t,"([0-9]+)-([0-9]+)",2))~"},
    {"regex replace", R"(regexReplace(s,"[aeiou]","_"))"},
    {"split", R"(split(t,"-",1))"},
    {"pad", R"(padLeft(t,12,"0"))"}};

constexpr const char* kCities[] = {"Sankt", "Villanueva", "Newark",
                                   "Ürgüp", "Gent",       "Buenos Aires"};

struct Table {
  std::vector<std::string> bytes;
  std::vector<ColumnText> s;
  std::vector<ColumnText> t;
  std::vector<ColumnText> d;
  std::vector<double> a;
};

Table tableOf(std::size_t rows) {
  Table table;
  std::mt19937 random(1);
  table.bytes.reserve(3 * rows);
  for (std::size_t i = 0; i < rows; ++i) {
    const std::string number = std::to_string(random() % 300);
    table.bytes.push_back(std::string(kCities[random() % std::size(kCities)]) + " " + number);
    table.s.emplace_back(table.bytes.back());
    table.bytes.push_back("2024-" + number);
    table.t.emplace_back(table.bytes.back());
    table.bytes.push_back(
        fmt::format("20{:02}-{:02}-{:02}", random() % 30, 1 + random() % 12, 1 + random() % 28));
    table.d.emplace_back(table.bytes.back());
    table.a.push_back(static_cast<double>(random() % 20));
  }
  return table;
}

class Contest {
 public:
  Contest(const char* expression, const Table& table) : m_table(table) {
    std::vector<InputVariable> inputs(4);
    inputs[0].label = QStringLiteral("a");
    inputs[1].label = QStringLiteral("s");
    inputs[2].label = QStringLiteral("t");
    inputs[3].label = QStringLiteral("d");
    inputs[1].isNumber = inputs[2].isNumber = inputs[3].isNumber = false;
    EvaluationOptions options;
    options.time.dateFormat = QStringLiteral("yyyy-MM-dd");
    options.time.referenceTime = QStringLiteral("20000101 00:00:00");
    options.time.elapsedTimeUnit = 3;
    m_evaluator.expressions.configure(options, inputs, nullptr, false);
    m_evaluator.expressions.requireBackend(BackendKind::string);
    m_evaluator.expressions.prepareDateContext({QString::fromUtf8(expression)});
    OutputVariable output;
    output.expression = QString::fromUtf8(expression);
    output.meta = MetaTypeColumn::text;
    m_isCompiled = static_cast<bool>(m_evaluator.expressions.compile(output)) &&
                   m_evaluator.expressions.output(0).columnProgram != nullptr;
  }
  bool isCompiled() const { return m_isCompiled; }

  // Both return something of the results, so that these are computed.
  double runRows() {
    ExpressionSet& expressions = m_evaluator.expressions;
    CompiledExpression& expression = *expressions.output(0).expression;
    VariableStore& store = expressions.variables();
    double sum = 0.0;
    for (std::size_t i = 0; i < m_table.a.size(); ++i) {
      store.numbers()[1] = m_table.a[i];
      store.text(0) = {m_table.s[i].view(), false};
      store.text(1) = {m_table.t[i].view(), false};
      store.text(2) = {m_table.d[i].view(), false};
      expressions.stringBackend().load(store);
      EvaluatedValue value;
      expression.evaluate(value);
      sum += value.isText() ? static_cast<double>(value.text.size()) : value.number;
    }
    return sum;
  }

  double runColumns() {
    const ColumnProgram& program = *m_evaluator.expressions.output(0).columnProgram;
    ColumnEvaluation evaluation(m_evaluator.expressions.functions());
    double sum = 0.0;
    std::size_t done = 0;
    for (std::size_t row = 0; row < m_table.a.size(); row += done) {
      const double* numbers[] = {nullptr, m_table.a.data() + row};
      const ColumnText* texts[] = {m_table.s.data() + row, m_table.t.data() + row,
                                   m_table.d.data() + row};
      done = evaluation.evaluate(program, {numbers, texts},
                                 std::min(ColumnProgram::kMaxRows, m_table.a.size() - row));
      for (std::size_t i = 0; i < done; ++i) {
        sum += program.yieldsText() ? static_cast<double>(evaluation.texts()[i].view().size())
                                    : evaluation.numbers()[i];
      }
    }
    return sum;
  }

 private:
  const Table& m_table;
  ExpressionEvaluator m_evaluator;
  bool m_isCompiled = false;
};

// The best of the rounds, in nanoseconds of processor time a row.
template <typename Run>
double timeOf(int rounds, std::size_t rows, double& sum, Run run) {
  double best = 1e300;
  for (int i = 0; i < rounds; ++i) {
    const std::clock_t start = std::clock();
    sum = run();
    best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best / static_cast<double>(rows) * 1e9;
}

// Lines whose name contains `only`.
int compare(std::size_t rows, int rounds, const std::string& only) {
  const Table table = tableOf(rows);
  fmt::print("{:20} {:>8} {:>8} {:>6}\n", "ns a row", "String", "columns", "ratio");
  for (const Line& line : kLines) {
    if (std::string_view(line.name).find(only) == std::string_view::npos) {
      continue;
    }
    Contest contest(line.expression, table);
    if (!contest.isCompiled()) {
      fmt::print("{}: no column program\n", line.expression);
      return 1;
    }
    double sums[2] = {};
    const double byRows = timeOf(rounds, rows, sums[0], [&] { return contest.runRows(); });
    const double byColumns = timeOf(rounds, rows, sums[1], [&] { return contest.runColumns(); });
    fmt::print("{:20} {:8.1f} {:8.1f} {:6.2f}\n", line.name, byRows, byColumns, byColumns / byRows);
    if (sums[0] != sums[1]) {
      fmt::print("{}: the results differ\n", line.expression);
      return 1;
    }
  }
  return 0;
}

}  // namespace
}  // namespace kelvarin

int main(int argc, char** argv) {
  CLI::App app("Expressions with texts, row by row and as column programs");
  std::size_t rows = 100'000;
  int rounds = 5;
  app.add_option("--rows", rows)->check(CLI::PositiveNumber);
  app.add_option("--rounds", rounds)->check(CLI::PositiveNumber);
  std::string only;
  app.add_option("--only", only);
  CLI11_PARSE(app, argc, argv);
  return kelvarin::compare(rows, rounds, only);
}
