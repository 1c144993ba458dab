#include "expression/functions/function_table.h"

#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

std::vector<FunctionLine> joinThemes() {
  std::vector<FunctionLine> table;
  for (const std::span<const FunctionLine> theme :
       {numericTests(), numericLibrary(), geography(), textParts(), numberTexts(), textCase(),
        rounding(), textSearch(), addresses(), encodings(), randomNumbers(), elapsedTimes(),
        dateTexts(), fileTexts(), regularExpressions(), textPadding()}) {
    table.insert(table.end(), theme.begin(), theme.end());
  }
  return table;
}

}  // namespace

const std::vector<FunctionLine>& functionTable() {
  static const std::vector<FunctionLine> table = joinThemes();
  return table;
}

}  // namespace kelvarin
