#include "expression/help/language_search.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "expression/help/foreign_names.h"

namespace kelvarin {

namespace {

using Words = std::vector<std::string>;

// What people say, and what stands in names and comments for it.
constexpr std::pair<std::string_view, std::string_view> kMeanings[] = {
    {"absent", "null"},        {"after", "lt"},        {"average", "avg"},
    {"before", "lt"},          {"blank", "missing"},   {"concatenate", "concatenation"},
    {"conversion", "conver"},  {"convert", "conver"},  {"difference", "diff"},
    {"elapsed", "et"},         {"end", "eom"},         {"empty", "missing"},
    {"find", "position"},      {"format", "print"},    {"if", "true"},
    {"join", "concatenation"}, {"length", "strlen"},   {"lowercase", "lower"},
    {"maximum", "max"},        {"minimum", "min"},     {"missing", "null"},
    {"modulo", "remainder"},   {"parse", "number"},    {"pattern", "regex"},
    {"random", "rand"},        {"regexp", "regex"},    {"remove", "without"},
    {"replace", "vl"},         {"search", "position"}, {"split", "part"},
    {"text", "string"},        {"uppercase", "upper"}, {"weekday", "dayofweek"},
};
constexpr std::string_view kSmallWords[] = {"a",  "an", "and", "as", "by",  "for", "from", "in",
                                            "is", "of", "on",  "or", "the", "to",  "value"};

std::string lowered(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](unsigned char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : static_cast<char>(c);
  });
  return lower;
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || static_cast<unsigned char>(c) >= 128;
}

// Without the ending of a plural, and without words that say nothing.
Words wordsOf(const std::string& text) {
  Words words;
  const std::string lower = lowered(text);
  for (std::size_t i = 0; i < lower.size();) {
    std::size_t end = i;
    while (end < lower.size() && isLetter(lower[end])) {
      ++end;
    }
    if (end == i) {
      ++i;
      continue;
    }
    std::string word = lower.substr(i, end - i);
    i = end;
    if (std::ranges::find(kSmallWords, word) != std::end(kSmallWords)) {
      continue;
    }
    if (word.size() > 3 && word.ends_with('s') && !word.ends_with("ss")) {
      word.pop_back();
    }
    words.push_back(std::move(word));
  }
  return words;
}

bool contains(std::string_view text, const std::string& word) {
  return text.find(word) != std::string_view::npos;
}

// What the search looks at of one entry, in small letters.
struct Searched {
  std::vector<std::string> names;
  std::vector<std::string> foreignNames;
  std::string comment;
  std::string rest;  // the group, the whole help and the note
};

Searched searchedOf(const LanguageEntry& entry) {
  Searched searched;
  for (const std::string& name : entry.names) {
    searched.names.push_back(lowered(name));
    for (const ForeignName& foreign : foreignNames()) {
      if (std::ranges::find(foreign.meant, std::string_view(name)) != foreign.meant.end()) {
        searched.foreignNames.push_back(lowered(foreign.name));
      }
    }
  }
  searched.comment = lowered(entry.entry->comment);
  const char* note = entry.entry->note == nullptr ? "" : entry.entry->note;
  searched.rest = lowered(std::string(entry.group) + ' ' + entry.help + ' ' + note);
  return searched;
}

// 0: it is nowhere.
int scoreOf(const std::string& word, const Searched& searched) {
  constexpr int kIsName = 100;
  constexpr int kBeginsName = 40;
  constexpr int kInName = 25;
  constexpr int kIsForeignName = 20;
  constexpr int kInComment = 10;
  constexpr int kInForeignName = 6;
  constexpr int kElsewhere = 2;
  int score = contains(searched.rest, word) ? kElsewhere : 0;
  for (const std::string& name : searched.foreignNames) {
    score = std::max(score, name == word           ? kIsForeignName
                            : contains(name, word) ? kInForeignName
                                                   : 0);
  }
  score = std::max(score, contains(searched.comment, word) ? kInComment : 0);
  for (const std::string& name : searched.names) {
    score = std::max(score, name == word             ? kIsName
                            : name.starts_with(word) ? kBeginsName
                            : contains(name, word)   ? kInName
                                                     : 0);
  }
  return score;
}

int scoreOfMeanings(const std::string& word, const Searched& searched) {
  int score = scoreOf(word, searched);
  for (const auto& [said, meant] : kMeanings) {
    if (said == word) {
      score = std::max(score, scoreOf(std::string(meant), searched) / 2);
    }
  }
  return score;
}

}  // namespace

std::vector<const LanguageEntry*> searchLanguage(const std::string& text) {
  const Words words = wordsOf(text);
  std::vector<std::pair<int, const LanguageEntry*>> found;
  for (const LanguageEntry& entry : languageEntries()) {
    const Searched searched = searchedOf(entry);
    int total = 0;
    for (const std::string& word : words) {
      const int score = scoreOfMeanings(word, searched);
      total = score == 0 ? 0 : total + score;
      if (score == 0) {
        break;
      }
    }
    if (total > 0) {
      found.emplace_back(total, &entry);
    }
  }
  std::ranges::stable_sort(found, std::greater<>(), [](const auto& each) { return each.first; });
  std::vector<const LanguageEntry*> entries;
  entries.reserve(found.size());
  for (const auto& [score, entry] : found) {
    entries.push_back(entry);
  }
  return entries;
}

}  // namespace kelvarin
