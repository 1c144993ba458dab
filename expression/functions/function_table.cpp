#include "expression/functions/function_table.h"

#include <QCoreApplication>

#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

QString nullText() {
  return {};
}

// Empty rather than null in a program without an application object.
QString directoryOfApplication() {
  return QCoreApplication::instance() == nullptr ? QStringLiteral("")
                                                 : QCoreApplication::applicationDirPath();
}

constexpr ConstantLine kConstants[] = {
    {"_null", kInAll, kNullNumber, nullptr, "_null - the missing number"},
    {"_nan", kInAll, kNotANumber, nullptr, "_nan - not a number"},
    {"_infinity", kInAll, kInfinity, nullptr, "_infinity - positive infinity"},
    {"_nullS", kInString, 0.0, nullText, "_nullS - the missing text"},
    {"kelvarinDir", kInString, 0.0, directoryOfApplication,
     "kelvarinDir - the directory of the running application"},
};

std::vector<FunctionLine> joinThemes() {
  std::vector<FunctionLine> table;
  for (const std::span<const FunctionLine> theme :
       {numericTests(), geography(), textParts(), numberTexts(), textCase(), rounding(),
        textSearch(), addresses(), encodings(), randomNumbers(), elapsedTimes(), dateTexts()}) {
    table.insert(table.end(), theme.begin(), theme.end());
  }
  return table;
}

}  // namespace

const std::vector<FunctionLine>& functionTable() {
  static const std::vector<FunctionLine> table = joinThemes();
  return table;
}

std::span<const ConstantLine> constantTable() {
  return kConstants;
}

}  // namespace kelvarin
