// The operators of expressions: how closely they bind in the String Parser, and the words and casts
// among them.
//
// Threads: read-only.
#pragma once

#include <string_view>

#include <QString>

namespace kelvarin {

struct BinaryOperator {
  std::string_view sign;
  int precedence;  // the higher, the closer it binds
  bool isRightAssociative = false;
  bool isAssignment = false;
};

// Of signs and casts before a value.
inline constexpr int kPrefixPrecedence = 9;

// Of `?:`, which is looser than all others but the assignments.
inline constexpr int kConditionPrecedence = 1;

const BinaryOperator* binaryOperator(std::string_view sign);
bool isPrefixSign(std::string_view sign);
bool isPostfixSign(std::string_view sign);

// The sign that a word such as `and` stands for; empty for other names.
std::string_view signOfWord(QStringView word);
// The name in the brackets of a cast, such as `(int)`.
bool isCastName(QStringView name);

}  // namespace kelvarin
