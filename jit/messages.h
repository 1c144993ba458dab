// Why the compiler refuses an expression, in words.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvarin::jit::messages {

inline std::string quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

inline std::string empty() {
  return "the expression is empty";
}
inline std::string tooLong(std::size_t maximum) {
  return "the expression has more than " + std::to_string(maximum) + " characters";
}
inline std::string tooDeep(std::size_t maximum) {
  return "the expression nests more than " + std::to_string(maximum) + " levels";
}
inline std::string unexpectedCharacter() {
  return "unexpected character";
}
inline std::string numberOutOfRange(std::string_view text) {
  return "the number " + quoted(text) + " is out of range";
}
inline std::string nameTooLong(std::size_t maximum) {
  return "a name has more than " + std::to_string(maximum) + " characters";
}
inline std::string unknownUnit(std::string_view text) {
  return quoted(text) + " is no unit";
}
inline std::string textInExpression() {
  return "texts are not available in native code";
}
inline std::string assignment() {
  return "'=' assigns, which native code does not";
}
inline std::string severalResults() {
  return "the expression has several results";
}
inline std::string valueExpected() {
  return "a value is missing here";
}
inline std::string unexpectedText(std::string_view text) {
  return quoted(text) + " does not fit here";
}
inline std::string bracketExpected() {
  return "a closing bracket is missing";
}
inline std::string colonExpected() {
  return "'?' has no ':'";
}
inline std::string unknownVariable(std::string_view name) {
  return quoted(name) + " is no variable and no constant";
}
inline std::string unknownFunction(std::string_view name) {
  return quoted(name) + " is no function";
}
inline std::string tooFewArguments(std::string_view function) {
  return quoted(function) + " has too few arguments";
}
inline std::string tooManyArguments(std::string_view function) {
  return quoted(function) + " has too many arguments";
}
inline std::string elementOutOfRange(std::string_view variable) {
  return "the index of variable " + quoted(variable) + " is out of range";
}

}  // namespace kelvarin::jit::messages
