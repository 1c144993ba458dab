#include "ui/language/operator_table.h"

#include <algorithm>
#include <map>
#include <set>

#include "expression/help/language_entries.h"

namespace kelvarin {

namespace {

constexpr BinaryOperator kBinaryOperators[] = {
    {"=", 0, false, true},
    {"+=", 0, false, true},
    {"-=", 0, false, true},
    {"*=", 0, false, true},
    {"/=", 0, false, true},
    {"||", 2},
    {"&&", 3},
    {"|", 4},
    {"&", 5},
    {"==", 6},
    {"!=", 6},
    {"<", 6},
    {"<=", 6},
    {">", 6},
    {">=", 6},
    {"<<", 7},
    {">>", 7},
    {"+", 8},
    {"-", 8},
    {"//", 8},
    {"*", 9},
    {"/", 9},
    {"%", 9},
    {"^", 10, true},
};

// Words among the names of signs, each with the sign.
std::map<QString, std::string_view> wordOperators() {
  std::map<QString, std::string_view> words;
  for (const LanguageEntry& entry : languageEntries()) {
    for (const std::string& name : entry.names) {
      const QString word = QString::fromStdString(name);
      if (entry.kind == HelpKind::sign && word.front().isLetter()) {
        words[word] = entry.names.front();
      }
    }
  }
  return words;
}

std::set<QString> castNames() {
  std::set<QString> casts;
  for (const LanguageEntry& entry : languageEntries()) {
    for (const std::string& name : entry.names) {
      const bool isCast = name.size() > 2 && name.front() == '(' && name.back() == ')';
      if (entry.kind == HelpKind::sign && isCast) {
        casts.insert(QString::fromStdString(name.substr(1, name.size() - 2)));
      }
    }
  }
  return casts;
}

}  // namespace

const BinaryOperator* binaryOperator(std::string_view sign) {
  const auto* const found =
      std::find_if(std::begin(kBinaryOperators), std::end(kBinaryOperators),
                   [sign](const BinaryOperator& line) { return line.sign == sign; });
  return found == std::end(kBinaryOperators) ? nullptr : found;
}

bool isPrefixSign(std::string_view sign) {
  return sign == "-" || sign == "+";
}

bool isPostfixSign(std::string_view sign) {
  return sign == "!" || sign == "'";
}

std::string_view signOfWord(QStringView word) {
  static const std::map<QString, std::string_view> words = wordOperators();
  const auto found = words.find(word.toString());
  return found == words.end() ? std::string_view() : found->second;
}

bool isCastName(QStringView name) {
  static const std::set<QString> casts = castNames();
  return casts.contains(name.toString());
}

}  // namespace kelvarin
