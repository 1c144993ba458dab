// Searching in texts. What is not found is at -1; an empty text is found at once and counts
// nowhere.

#include <algorithm>
#include <cstring>

#include "expression/functions/text_bodies.h"
#include "expression/functions/text_positions.h"
#include "expression/functions/themes.h"
#include "expression/functions/utf8_units.h"

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

// The position in units of what was found at a byte of a text whose encodings have the same
// meaning.
double positionOf(std::string_view text, std::size_t found) {
  return found == std::string_view::npos
             ? -1.0
             : static_cast<double>(unitCount(text.substr(0, found)).value_or(0));
}

// Whole characters are found in UTF-8 where they are in UTF-16.
bool canBeSearchedAsBytes(std::string_view text, std::string_view wanted) {
  return unitCount(text) && unitCount(wanted);
}

double firstFromUnit(const QString& text, const QString& wanted, double start) {
  return static_cast<double>(text.indexOf(wanted, limitedPosition(start, text.size())));
}

double firstFrom(std::string_view text, std::string_view wanted, double start) {
  if (!isAscii(text) || !isAscii(wanted)) {
    return firstFromUnit(qstringOf(text), qstringOf(wanted), start);
  }
  const qsizetype from = limitedPosition(start, static_cast<qsizetype>(text.size()));
  const std::size_t found = text.find(wanted, static_cast<std::size_t>(from));
  return found == std::string_view::npos ? -1.0 : static_cast<double>(found);
}

double first(std::string_view text, std::string_view wanted) {
  return canBeSearchedAsBytes(text, wanted) ? positionOf(text, text.find(wanted))
                                            : firstFrom(text, wanted, 0.0);
}

// As rfind(), which compares at every byte.
std::size_t lastOf(std::string_view text, std::string_view wanted, std::size_t from) {
  if (wanted.empty() || wanted.size() > text.size()) {
    return wanted.empty() ? std::min(from, text.size()) : std::string_view::npos;
  }
  std::size_t end = std::min(from, text.size() - wanted.size()) + 1;
  while (const void* first = ::memrchr(text.data(), wanted.front(), end)) {
    end = static_cast<std::size_t>(static_cast<const char*>(first) - text.data());
    if (text.substr(end).starts_with(wanted)) {
      return end;
    }
  }
  return std::string_view::npos;
}

double lastFromUnit(const QString& text, const QString& wanted, double start) {
  const qsizetype last = text.size() - wanted.size();
  if (last < 0) {
    return -1.0;
  }
  return static_cast<double>(text.lastIndexOf(wanted, limitedPosition(start, last)));
}

// Starting at `start` or before.
double lastFrom(std::string_view text, std::string_view wanted, double start) {
  if (!isAscii(text) || !isAscii(wanted)) {
    return lastFromUnit(qstringOf(text), qstringOf(wanted), start);
  }
  const qsizetype from = limitedPosition(start, static_cast<qsizetype>(text.size()));
  const std::size_t found = lastOf(text, wanted, static_cast<std::size_t>(from));
  return found == std::string_view::npos ? -1.0 : static_cast<double>(found);
}

double last(std::string_view text, std::string_view wanted) {
  return canBeSearchedAsBytes(text, wanted)
             ? positionOf(text, lastOf(text, wanted, text.size()))
             : lastFrom(text, wanted, static_cast<double>(text.size()));
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
    {"startsWith", 2, kInString, kTest, testBodies<startsWith>,
     "startsWith(x,s) - return true if the string x starts with the string s"},
    {"endsWith", 2, kInString, kTest, testBodies<endsWith>,
     "endsWith(x,s) - return true if the string x ends with the string s"},
    {"contains", 2, kInString, kTest, testBodies<contains>,
     "contains(x,y) - Is y contained in x?"},
    {"indexof", 2, kInString, kNumber, searchBodies<first, kNotFound>,
     kIndexOfHelp},
    {"indexOf", 2, kInString, kNumber, searchBodies<first, kNotFound>,
     kIndexOfHelp},
    {"indexof2", 3, kInString, kNumber, searchBodies<firstFrom, kNotFound>,
     kIndexOf2Help},
    {"indexOf2", 3, kInString, kNumber, searchBodies<firstFrom, kNotFound>,
     kIndexOf2Help},
    {"lastindexof", 2, kInString, kNumber, searchBodies<last, kNotFound>,
     kLastIndexOfHelp},
    {"lastIndexOf", 2, kInString, kNumber, searchBodies<last, kNotFound>,
     kLastIndexOfHelp},
    {"lastindexof2", 3, kInString, kNumber, searchBodies<lastFrom, kNotFound>,
     kLastIndexOf2Help},
    {"lastIndexOf2", 3, kInString, kNumber, searchBodies<lastFrom, kNotFound>,
     kLastIndexOf2Help},
    {"countText", 2, kInString, kNumber, searchBodies<countOf, kNone>,
     "countText(x,y) - count the number of occurrences of y in x"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> textSearch() {
  return kLines;
}

}  // namespace kelvarin
