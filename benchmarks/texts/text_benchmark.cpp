// Expressions with texts in memory on one core: nanoseconds a row on the String Parser, which gets
// one row after the other, and by the batch.
//
//   text_benchmark [--rows 100000] [--rounds 5] [--only date]

#include <algorithm>
#include <ctime>
#include <random>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "benchmarks/texts/contender.h"

namespace kelvarin {
namespace {

struct Line {
  const char* name;
  const char* expression;
  bool yieldsText;
};

constexpr Line kLines[] = {
    {"upper", "toupper(s)", true},
    {"part", "substr(s,2,5)", true},
    {"replace", R"(replace(s,"a","xy"))", true},
    {"contains", R"(contains(s,"rk"))", false},
    {"concatenate", R"(s//"-"//t)", true},
    {"equality", R"(s=="Sankt 1" ? a : a*2)", false},
    {"trim and compare", R"(trim(p)>"M")", false},
    {"strlen", "strlen(s)*2+a", false},
    {"choice of texts", R"(a>10 ? left(s,3) : right(t,4))", true},
    {"choice, one costly", "a>16 ? toupper(s) : s", true},
    {"choice of numbers", "a>10 ? strlen(s) : a*2", false},
    {"choice of choices", R"(a<5 ? s : a<10 ? toupper(t) : a<15 ? right(s,3) : "-")", true},
    {"texts compared", "s<t ? s : t", true},
    {"costly second side", R"(a>10 && contains(s,"rk"))", false},
    {"choice of dates", "a>10 ? dateAdd(d,0,0,10) : d", true},
    {"number to text", "itoa(a)", true},
    {"text to number", R"(atof(t)+1)", false},
    {"real to text", "ftoa(a/7)", true},
    {"number to hexadecimal", "ftoh(a*1000)", true},
    {"test for a number", "isNumberStrict(t)", false},
    {"chosen for a number", "nvl2(a,s,t)", true},
    {"codepoint", "codepoint(t)", false},
    {"position from right", R"(lastIndexOf(s,"n"))", false},
    {"null replaced", "nvl(s,t)", true},
    {"encoded for XML", "xmlEncode(s)", true},
    {"base64", "atob64(s)", true},
    {"date to elapsed", "toET(d)", false},
    {"elapsed to date", "toDate(e)", true},
    {"date reformatted", R"(datePrint(d,"dd/MM/yyyy"))", true},
    {"date and days", "dateAdd(d,0,0,10)", true},
    {"dates compared", R"(dateLT(d,"2024-06-30"))", false},
    {"regex match", R"(regexMatch(s,"[0-9]{3}$"))", false},
    {"regex extract", R"~(regexExtract(t,"([0-9]+)-([0-9]+)",2))~", true},
    {"regex replace", R"(regexReplace(s,"[aeiou]","_"))", true},
    {"split", R"(split(t,"-",1))", true},
    {"pad", R"(padLeft(t,12,"0"))", true}};

constexpr const char* kCities[] = {"Sankt", "Villanueva", "Newark",
                                   "Ürgüp", "Gent",       "Buenos Aires"};

TextTable tableOf(std::size_t rows) {
  TextTable table;
  std::mt19937 random(1);
  for (std::size_t i = 0; i < rows; ++i) {
    const std::string number = std::to_string(random() % 300);
    const std::string city = kCities[random() % std::size(kCities)];
    table.texts[table.s].push_back(city + " " + number);
    table.texts[table.t].push_back("2024-" + number);
    table.texts[table.p].push_back(" " + city + std::string(random() % 3, ' '));
    table.texts[table.d].push_back(
        fmt::format("20{:02}-{:02}-{:02}", random() % 30, 1 + random() % 12, 1 + random() % 28));
    table.numbers[table.a].push_back(static_cast<double>(random() % 20));
    table.numbers[table.e].push_back(static_cast<double>(random() % 10958));
  }
  table.makeBatches();
  return table;
}

// The best of the rounds, in nanoseconds of processor time a row.
double timeOf(Contender& contender, const TextTable& table, int rounds) {
  double best = 1e300;
  for (int i = 0; i < rounds; ++i) {
    const std::clock_t start = std::clock();
    contender.run(table);
    best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best / static_cast<double>(table.rows()) * 1e9;
}

bool haveSameResults(const Contender& one, const Contender& other) {
  const ContenderResults results = one.results();
  const ContenderResults others = other.results();
  return results.texts == others.texts && results.numbers == others.numbers;
}

// Lines whose name contains `only`.
int compare(std::size_t rows, int rounds, const std::string& only) {
  const TextTable table = tableOf(rows);
  fmt::print("{:20} {:>8} {:>8} {:>6}\n", "ns a row", "String", "batches", "ratio");
  for (const Line& line : kLines) {
    if (std::string_view(line.name).find(only) == std::string_view::npos) {
      continue;
    }
    const auto parser = stringParserContender(line.expression, line.yieldsText);
    const auto batches = batchContender(line.expression, line.yieldsText);
    if (parser == nullptr || batches == nullptr) {
      fmt::print("{}: not evaluated by the batch\n", line.name);
      return 1;
    }
    const double byRows = timeOf(*parser, table, rounds);
    const double byBatches = timeOf(*batches, table, rounds);
    fmt::print("{:20} {:8.1f} {:8.1f} {:6.2f}\n", line.name, byRows, byBatches, byBatches / byRows);
    if (!haveSameResults(*parser, *batches)) {
      fmt::print("{}: the results differ\n", line.name);
      return 1;
    }
  }
  return 0;
}

}  // namespace
}  // namespace kelvarin

int main(int argc, char** argv) {
  CLI::App app("Expressions with texts, row by row and by the batch");
  std::size_t rows = 100'000;
  int rounds = 5;
  app.add_option("--rows", rows)->check(CLI::PositiveNumber);
  app.add_option("--rounds", rounds)->check(CLI::PositiveNumber);
  std::string only;
  app.add_option("--only", only);
  CLI11_PARSE(app, argc, argv);
  return kelvarin::compare(rows, rounds, only);
}
