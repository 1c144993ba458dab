#include "expression/backends/fast_functions.h"

#include <string>

#include "expression/backends/fast_signs.h"
#include "expression/functions/function_table.h"

namespace kelvarin {

namespace {

// Calls a body that has a memory; `data` is its BoundFunction.
template <typename... Numbers>
double callBound(void* data, Numbers... numbers) {
  const auto& bound = *static_cast<const BoundFunction*>(data);
  const auto* body =
      std::get_if<double (*)(FunctionContext&, Numbers...)>(&bound.line->body.number);
  return (*body)(*bound.context, numbers...);
}

// Folding constant arguments would draw a random number once for all rows.
constexpr bool kNeverFold = false;

template <typename... Numbers>
void define(mu::Parser& parser, BoundFunction& bound, double (*body)(Numbers...)) {
  parser.DefineFun(bound.line->name, body);
}

template <typename... Numbers>
void define(mu::Parser& parser, BoundFunction& bound, double (*)(FunctionContext&, Numbers...)) {
  double (*call)(void*, Numbers...) = callBound<Numbers...>;
  parser.DefineFunUserData(bound.line->name, call, &bound, kNeverFold);
}

double callWithMany(void* data, const double* numbers, int count) {
  const auto& bound = *static_cast<const BoundFunction*>(data);
  const auto body = *std::get_if<NumberMany>(&bound.line->body.number);
  return body({numbers, static_cast<std::size_t>(count)});
}

void define(mu::Parser& parser, BoundFunction& bound, NumberMany) {
  double (*call)(void*, const double*, int) = callWithMany;
  parser.DefineFunUserData(bound.line->name, call, &bound, kNeverFold);
}

// Calls a body that takes a text literal, which comes in Latin-1.
double callWithText(void* data, const char* latin1) {
  const auto& bound = *static_cast<const BoundFunction*>(data);
  const std::string text = QString::fromLatin1(withoutEscapes(latin1).c_str()).toStdString();
  const FunctionArgument argument{std::string_view(text)};
  FunctionResult result;
  bound.line->body.value(*bound.context, {&argument, 1}, result);
  return result.kind() == FunctionResult::Kind::number ? result.number() : kNullNumber;
}

void define(mu::Parser& parser, BoundFunction& bound, std::monostate) {
  double (*call)(void*, const char*) = callWithText;
  parser.DefineFunUserData(bound.line->name, call, &bound, kNeverFold);
}

}  // namespace

BoundFunctions addFunctions(mu::Parser& parser, FunctionContext& context) {
  BoundFunctions functions;
  for (const FunctionLine& line : functionTable()) {
    if ((line.backends & kInFast) == 0) {
      continue;
    }
    functions.push_back(std::make_unique<BoundFunction>(BoundFunction{&context, &line}));
    std::visit([&](auto body) { define(parser, *functions.back(), body); }, line.body.number);
  }
  return functions;
}

}  // namespace kelvarin
