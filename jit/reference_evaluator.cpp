#include "jit/reference_evaluator.h"

#include "jit/arithmetic.h"

namespace kelvarin::jit {

namespace {

double binary(StepKind kind, double a, double b) {
  switch (kind) {
    case StepKind::add:
      return add(a, b);
    case StepKind::subtract:
      return subtract(a, b);
    case StepKind::multiply:
      return multiply(a, b);
    case StepKind::divide:
      return divide(a, b);
    case StepKind::remainder:
      return std::fmod(a, b);
    case StepKind::power:
      return power(a, b);
    case StepKind::smaller:
      return smaller(b, a);
    case StepKind::larger:
      return larger(b, a);
    case StepKind::less:
      return numberOf(a < b);
    case StepKind::lessOrEqual:
      return numberOf(a <= b);
    case StepKind::greater:
      return numberOf(a > b);
    case StepKind::greaterOrEqual:
      return numberOf(a >= b);
    case StepKind::equal:
      return numberOf(a == b);
    case StepKind::notEqual:
      return numberOf(a != b);
    case StepKind::both:
      return numberOf(isTruth(a) && isTruth(b));
    default:
      return numberOf(isTruth(a) || isTruth(b));
  }
}

double call(const Function& function, const double* arguments) {
  if (const auto* unary = std::get_if<Function1>(&function)) {
    return (*unary)(arguments[0]);
  }
  if (const auto* binary = std::get_if<Function2>(&function)) {
    return (*binary)(arguments[0], arguments[1]);
  }
  return std::get<Function3>(function)(arguments[0], arguments[1], arguments[2]);
}

}  // namespace

double evaluate(const Expression& expression, const double* values) {
  double stack[kMaximumStackDepth];
  double* top = stack;  // past the last value
  const std::size_t count = expression.steps.size();
  for (std::size_t i = 0; i < count; ++i) {
    const Step& step = expression.steps[i];
    switch (step.kind) {
      case StepKind::constant:
        *top++ = step.number;
        break;
      case StepKind::variable:
        *top++ = values[step.element];
        break;
      case StepKind::negate:
        top[-1] = negate(top[-1]);
        break;
      case StepKind::call:
        top -= argumentCountOf(step.function.function);
        *top = call(step.function.function, top);
        ++top;
        break;
      case StepKind::skipUnless:
        --top;
        i = isTruth(*top) ? i : step.element - 1;
        break;
      case StepKind::skip:
        i = step.element - 1;
        break;
      case StepKind::choose:
        break;
      default:
        --top;
        top[-1] = binary(step.kind, top[-1], *top);
    }
  }
  return stack[0];
}

}  // namespace kelvarin::jit
