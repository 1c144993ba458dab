// The themes that make up the function table, and the words of their lines.
#pragma once

#include <span>

#include "expression/functions/function_line.h"

namespace kelvarin {

using jit::Intrinsic;

inline constexpr ResultKind kNumber = ResultKind::number;
inline constexpr ResultKind kTest = ResultKind::test;
inline constexpr ResultKind kText = ResultKind::text;
inline constexpr ResultKind kArgument = ResultKind::argument;
inline constexpr int kAnyCount = kAnyArgumentCount;
inline constexpr DateNeeds kReference{.reference = true};
inline constexpr DateNeeds kFormat{.format = true};
inline constexpr DateNeeds kReferenceAndFormat{.reference = true, .format = true};

std::span<const FunctionLine> numericTests();
std::span<const FunctionLine> numericLibrary();
std::span<const FunctionLine> rounding();
std::span<const FunctionLine> geography();
std::span<const FunctionLine> randomNumbers();
std::span<const FunctionLine> textParts();
std::span<const FunctionLine> textSearch();
std::span<const FunctionLine> textCase();
std::span<const FunctionLine> numberTexts();
std::span<const FunctionLine> encodings();
std::span<const FunctionLine> addresses();
std::span<const FunctionLine> elapsedTimes();
std::span<const FunctionLine> dateTexts();
std::span<const FunctionLine> fileTexts();
std::span<const FunctionLine> regularExpressions();
std::span<const FunctionLine> textPadding();

}  // namespace kelvarin
