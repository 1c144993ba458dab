// Lower case, upper case, and the case that comparisons without regard to case use. The same in
// every locale.

#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

QString lowered(const QString& text) {
  return text.toLower();
}
QString raised(const QString& text) {
  return text.toUpper();
}
QString folded(const QString& text) {
  return text.toCaseFolded();
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"tolower", 1, kInString, kText, valueBody<lowered>,
     "tolower(s) - Converts the string s to lowercase characters."},
    {"toupper", 1, kInString, kText, valueBody<raised>,
     "toupper(s) - Converts the string s to uppercase characters."},
    {"toCaseFolded", 1, kInString, kText, valueBody<folded>,
     "toCaseFolded(s) - Converts the string s to CaseFolded characters."},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> textCase() {
  return kLines;
}

}  // namespace kelvarin
