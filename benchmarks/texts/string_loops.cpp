// The twelve expressions as loops over std::string, as one writes them by hand: one string a row,
// the standard library and fmt, RE2 for the pattern.
#include <algorithm>
#include <cctype>
#include <charconv>
#include <chrono>
#include <string_view>
#include <type_traits>
#include <utility>

#include <fmt/format.h>
#include <re2/re2.h>

#include "benchmarks/texts/contender.h"

namespace kelvarin {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days kReference = std::chrono::year(2000) / 1 / 1;

bool isFirstByte(char byte) {
  return (static_cast<unsigned char>(byte) & 0xc0u) != 0x80u;
}

// Of ASCII and Latin-1, the letters of this table.
std::string upper(std::string text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80) {
      text[i] = static_cast<char>(std::toupper(byte));
    } else if (byte == 0xc3 && i + 1 < text.size()) {
      const auto next = static_cast<unsigned char>(text[++i]);
      if (next >= 0xa0 && next <= 0xbe && next != 0xb7) {
        text[i] = static_cast<char>(next - 0x20);
      }
    }
  }
  return text;
}

std::size_t startOfCharacter(const std::string& text, std::size_t from, std::size_t count) {
  for (; from < text.size(); ++from) {
    if (isFirstByte(text[from]) && count-- == 0) {
      break;
    }
  }
  return from;
}

std::string part(const std::string& text, std::size_t begin, std::size_t count) {
  const std::size_t first = startOfCharacter(text, 0, begin);
  return text.substr(first, startOfCharacter(text, first, count) - first);
}

std::string replaced(const std::string& text, std::string_view what, std::string_view by) {
  std::string result;
  std::size_t begin = 0;
  for (std::size_t at = 0; (at = text.find(what, begin)) != std::string::npos;) {
    result.append(text, begin, at - begin);
    result += by;
    begin = at + what.size();
  }
  result.append(text, begin);
  return result;
}

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

double isTrimmedBehindM(const std::string& text) {
  return trimmed(text) > "M" ? 1.0 : 0.0;
}

double length(const std::string& text) {
  double count = 0;
  for (const char byte : text) {
    count += isFirstByte(byte) ? 1 : 0;
  }
  return count;
}

year_month_day dateOf(const std::string& text) {
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  const char* begin = text.data();
  if (text.size() == 10) {
    std::from_chars(begin, begin + 4, year);
    std::from_chars(begin + 5, begin + 7, month);
    std::from_chars(begin + 8, begin + 10, day);
  }
  return std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day);
}

std::string printed(fmt::format_string<int, unsigned, unsigned> format, year_month_day date) {
  return fmt::format(format, static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                     static_cast<unsigned>(date.day()));
}

double elapsed(const std::string& text) {
  const year_month_day date = dateOf(text);
  return date.ok() ? static_cast<double>((sys_days(date) - kReference).count()) : -1.0;
}

std::string dayAfter(double days) {
  return printed("{:04}-{:02}-{:02}", kReference + std::chrono::days(static_cast<int>(days)));
}

std::string reformatted(const std::string& text) {
  const year_month_day date = dateOf(text);
  return date.ok() ? printed("{2:02}/{1:02}/{0:04}", date) : std::string();
}

std::string secondNumber(const std::string& text) {
  static const RE2 pattern("([0-9]+)-([0-9]+)");
  std::string group;
  RE2::PartialMatch(text, pattern, nullptr, &group);
  return group;
}

struct Row {
  const std::string& s;
  const std::string& t;
  const std::string& p;
  const std::string& d;
  double a;
  double e;
};

template <auto kValueOf>
class LoopContender final : public Contender {
 public:
  void run(const TextTable& table) override {
    std::vector<Value> values;
    values.reserve(table.rows());
    for (std::size_t i = 0; i < table.rows(); ++i) {
      values.push_back(kValueOf(Row{table.texts[table.s][i], table.texts[table.t][i],
                                    table.texts[table.p][i], table.texts[table.d][i],
                                    table.numbers[table.a][i], table.numbers[table.e][i]}));
    }
    m_values = std::move(values);
  }

  ContenderResults results() const override {
    ContenderResults found;
    if constexpr (std::is_same_v<Value, double>) {
      found.numbers = m_values;
    } else {
      found.texts = m_values;
    }
    return found;
  }

 private:
  using Value = decltype(kValueOf(std::declval<const Row&>()));

  std::vector<Value> m_values;
};

template <auto kValueOf>
std::unique_ptr<Contender> make() {
  return std::make_unique<LoopContender<kValueOf>>();
}

struct Loop {
  const char* name;
  std::unique_ptr<Contender> (*make)();
};

// clang-format off
constexpr Loop kLoops[] = {
    {"upper", make<[](const Row& row) { return upper(row.s); }>},
    {"part", make<[](const Row& row) { return part(row.s, 2, 5); }>},
    {"replace", make<[](const Row& row) { return replaced(row.s, "a", "xy"); }>},
    {"contains", make<[](const Row& row) { return row.s.find("rk") == row.s.npos ? 0.0 : 1.0; }>},
    {"concatenate", make<[](const Row& row) { return row.s + "-" + row.t; }>},
    {"equality", make<[](const Row& row) { return row.s == "Sankt 1" ? row.a : row.a * 2; }>},
    {"trim and compare", make<[](const Row& row) { return isTrimmedBehindM(row.p); }>},
    {"length", make<[](const Row& row) { return length(row.s) * 2 + row.a; }>},
    {"date to elapsed", make<[](const Row& row) { return elapsed(row.d); }>},
    {"elapsed to date", make<[](const Row& row) { return dayAfter(row.e); }>},
    {"date reformatted", make<[](const Row& row) { return reformatted(row.d); }>},
    {"regex extract", make<[](const Row& row) { return secondNumber(row.t); }>},
};
// clang-format on

}  // namespace

std::unique_ptr<Contender> loopContender(const std::string& name) {
  const Loop* loop =
      std::ranges::find_if(kLoops, [&name](const Loop& entry) { return entry.name == name; });
  return loop == std::end(kLoops) ? nullptr : loop->make();
}

}  // namespace kelvarin
