// Why the compiler refuses an expression, in words. A `%1` stands for the name or the text
// concerned.
#pragma once

namespace kelvarin::jit::messages {

inline constexpr const char* kEmpty = "the expression is empty";
inline constexpr const char* kTooLong = "the expression has more than %1 characters";
inline constexpr const char* kTooDeep = "the expression nests more than %1 levels";
inline constexpr const char* kTooLarge = "the expression needs more memory than one call may use";
inline constexpr const char* kUnexpectedCharacter = "unexpected character";
inline constexpr const char* kNumberOutOfRange = "the number '%1' is out of range";
inline constexpr const char* kNameTooLong = "a name has more than %1 characters";
inline constexpr const char* kUnknownUnit = "'%1' is no unit";
inline constexpr const char* kText = "texts are not available in native code";
inline constexpr const char* kAssignment = "'=' assigns, which native code does not";
inline constexpr const char* kSeveralResults = "the expression has several results";
inline constexpr const char* kValueExpected = "a value is missing here";
inline constexpr const char* kUnexpectedText = "'%1' does not fit here";
inline constexpr const char* kBracketExpected = "a closing bracket is missing";
inline constexpr const char* kColonExpected = "'?' has no ':'";
inline constexpr const char* kUnknownVariable = "'%1' is no variable and no constant";
inline constexpr const char* kUnknownFunction = "'%1' is no function";
inline constexpr const char* kTooFewArguments = "'%1' has too few arguments";
inline constexpr const char* kTooManyArguments = "'%1' has too many arguments";
inline constexpr const char* kElementOutOfRange = "the place of variable '%1' is out of range";

}  // namespace kelvarin::jit::messages
