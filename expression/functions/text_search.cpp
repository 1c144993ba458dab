// Searching in texts. What is not found is at -1; an empty text is found at once and counts
// nowhere.

#include "expression/functions/text_bodies.h"
#include "expression/functions/text_positions.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

bool startsWith(std::string_view text, std::string_view wanted) {
  return text.starts_with(wanted);
}

bool endsWith(std::string_view text, std::string_view wanted) {
  return text.ends_with(wanted);
}

bool contains(std::string_view text, std::string_view wanted) {
  return text.find(wanted) != std::string_view::npos;
}

double firstFrom(const QString& text, const QString& wanted, double start) {
  return static_cast<double>(text.indexOf(wanted, limitedPosition(start, text.size())));
}

double first(const QString& text, const QString& wanted) {
  return firstFrom(text, wanted, 0.0);
}

// Starting at `start` or before.
double lastFrom(const QString& text, const QString& wanted, double start) {
  const qsizetype last = text.size() - wanted.size();
  if (last < 0) {
    return -1.0;
  }
  return static_cast<double>(text.lastIndexOf(wanted, limitedPosition(start, last)));
}

double last(const QString& text, const QString& wanted) {
  return lastFrom(text, wanted, static_cast<double>(text.size()));
}

// Occurrences do not overlap.
double countOf(std::string_view text, std::string_view wanted) {
  if (wanted.empty()) {
    return 0.0;
  }
  double count = 0.0;
  std::size_t found = text.find(wanted);
  while (found != std::string_view::npos) {
    ++count;
    found = text.find(wanted, found + wanted.size());
  }
  return count;
}

constexpr int kNotFound = -1;
constexpr int kNone = 0;

constexpr const char* kIndexOfHelp = "indexOf(x,y) - returns the position of y inside x";
constexpr const char* kIndexOf2Help =
    "indexOf2(x,y,p) - returns the position of y inside x starting at position p";
// kept: three arguments in the text, two in the function.
constexpr const char* kLastIndexOfHelp =
    "lastindexof(x,y,p) - returns the last position of y inside x";
constexpr const char* kLastIndexOf2Help =
    "lastindexof2(x,y,p) - returns the last position of y inside x starting at position p";

// clang-format off
constexpr FunctionLine kLines[] = {
    {"startsWith", 2, kInString, kTest, testBody<startsWith>,
     "startsWith(x,s) - return true if the string x starts with the string s"},
    {"endsWith", 2, kInString, kTest, testBody<endsWith>,
     "endsWith(x,s) - return true if the string x ends with the string s"},
    {"contains", 2, kInString, kTest, testBody<contains>,
     "contains(x,y) - Is y contained in x?"},
    {"indexof", 2, kInString, kNumber, searchBody<first, kNotFound>,
     kIndexOfHelp},
    {"indexOf", 2, kInString, kNumber, searchBody<first, kNotFound>,
     kIndexOfHelp},
    {"indexof2", 3, kInString, kNumber, searchBody<firstFrom, kNotFound>,
     kIndexOf2Help},
    {"indexOf2", 3, kInString, kNumber, searchBody<firstFrom, kNotFound>,
     kIndexOf2Help},
    {"lastindexof", 2, kInString, kNumber, searchBody<last, kNotFound>,
     kLastIndexOfHelp},
    {"lastIndexOf", 2, kInString, kNumber, searchBody<last, kNotFound>,
     kLastIndexOfHelp},
    {"lastindexof2", 3, kInString, kNumber, searchBody<lastFrom, kNotFound>,
     kLastIndexOf2Help},
    {"lastIndexOf2", 3, kInString, kNumber, searchBody<lastFrom, kNotFound>,
     kLastIndexOf2Help},
    {"countText", 2, kInString, kNumber, searchBody<countOf, kNone>,
     "countText(x,y) - count the number of occurrences of y in x"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> textSearch() {
  return kLines;
}

}  // namespace kelvarin
