#include "expression/backends/string_operators.h"

#include <cmath>
#include <memory>
#include <utility>

#include <mpOprtBinAssign.h>
#include <mpOprtBinCommon.h>
#include <mpOprtNonCmplx.h>

#include "expression/errors/messages.h"
#include "jit/arithmetic.h"

namespace kelvarin {

namespace {

bool isNumber(const mup::IValue& value) {
  const char type = value.GetType();
  return type == 'f' || type == 'i';
}

bool isNumberOrBoolean(const mup::IValue& value) {
  return isNumber(value) || value.GetType() == 'b';
}

// The library's power takes truths, though its other operators do not, and anything else for 0.
class PowerOperator final : public mup::OprtPow {
 public:
  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    if (isNumberOrBoolean(*arguments[0]) && isNumberOrBoolean(*arguments[1])) {
      *result = jit::power(arguments[0]->GetFloat(), arguments[1]->GetFloat());
      return;
    }
    const int wrong = isNumberOrBoolean(*arguments[0]) ? 1 : 0;
    throw mup::ParserError(mup::ErrorContext(mup::ecTYPE_CONFLICT_FUN, GetExprPos(), GetIdent(),
                                             arguments[wrong]->GetType(), 'f', wrong + 1));
  }
  mup::IToken* Clone() const override { return new PowerOperator(*this); }
};

// What is no number gets the library's error, and an array its result.
template <typename LibraryOperator, double (*compute)(double, double)>
class NumberOperator final : public LibraryOperator {
 public:
  explicit NumberOperator(EvaluationLimits& limits) : m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    const mup::IValue& left = *arguments[0];
    const mup::IValue& right = *arguments[1];
    if (isNumber(left) && isNumber(right)) {
      *result = compute(left.GetFloat(), right.GetFloat());
      return;
    }
    const bool areArrays = left.IsMatrix() && right.IsMatrix();
    if (areArrays) {
      // The size of a product, and that of a sum; before the memory is taken.
      m_limits.takeArray(*this, static_cast<double>(left.GetRows()) * right.GetCols());
    }
    LibraryOperator::Eval(result, arguments, count);
    if (!areArrays) {
      m_limits.takeResult(*this, *result);
    }
  }
  mup::IToken* Clone() const override { return new NumberOperator(*this); }

 private:
  EvaluationLimits& m_limits;
};

// Keeps arrays out of variables, where no limit would count the copies that are read.
class AssignOperator final : public mup::OprtAssign {
 public:
  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (arguments[1]->IsMatrix()) {
      refuse(*this, messages::arrayAssigned());
    }
    mup::OprtAssign::Eval(result, arguments, count);
  }
  mup::IToken* Clone() const override { return new AssignOperator(*this); }
};

// All six comparisons have one priority and go from left to right; a truth counts as 1 or 0.
template <typename LibraryOperator, bool (*compare)(double, double)>
class ComparisonOperator final : public LibraryOperator {
 public:
  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (isNumberOrBoolean(*arguments[0]) && isNumberOrBoolean(*arguments[1])) {
      *result = compare(arguments[0]->GetFloat(), arguments[1]->GetFloat());
      return;
    }
    LibraryOperator::Eval(result, arguments, count);
  }
  int GetPri() const override { return mup::prRELATIONAL2; }
  mup::IToken* Clone() const override { return new ComparisonOperator(*this); }
};

bool both(bool left, bool right) {
  return left && right;
}
bool either(bool left, bool right) {
  return left || right;
}

// Both sides are evaluated, as in the other back-ends. The library's own operators give the side
// that decides as it is, be it no truth.
template <mup::EOprtPrecedence priority, bool (*join)(bool, bool)>
class LogicOperator final : public mup::IOprtBin {
 public:
  explicit LogicOperator(const char* sign) : mup::IOprtBin(sign, priority, mup::oaLEFT) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    const bool left = arguments[0]->GetBool();
    const bool right = arguments[1]->GetBool();
    *result = join(left, right);
  }
  const mup::char_type* GetDesc() const override { return "x&&y, x||y - logical and, or"; }
  mup::IToken* Clone() const override { return new LogicOperator(*this); }
};

class RemainderOperator final : public mup::IOprtBin {
 public:
  RemainderOperator() : mup::IOprtBin("%", mup::prMUL_DIV, mup::oaLEFT) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    for (int i = 0; i < 2; ++i) {
      if (!isNumber(*arguments[i])) {
        throw mup::ParserError(mup::ErrorContext(mup::ecTYPE_CONFLICT_FUN, GetExprPos(), GetIdent(),
                                                 arguments[i]->GetType(), 'f', i + 1));
      }
    }
    *result = std::fmod(arguments[0]->GetFloat(), arguments[1]->GetFloat());
  }
  const mup::char_type* GetDesc() const override { return "x%y - remainder of x/y"; }
  mup::IToken* Clone() const override { return new RemainderOperator(*this); }
};

class MinusSign final : public mup::OprtSign {
 public:
  explicit MinusSign(EvaluationLimits& limits) : m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (isNumber(*arguments[0])) {
      *result = jit::negate(arguments[0]->GetFloat());
      return;
    }
    mup::OprtSign::Eval(result, arguments, count);
    m_limits.takeResult(*this, *result);
  }
  mup::IToken* Clone() const override { return new MinusSign(*this); }

 private:
  EvaluationLimits& m_limits;
};

bool isLess(double x, double y) {
  return x < y;
}
bool isLessOrEqual(double x, double y) {
  return x <= y;
}
bool isGreater(double x, double y) {
  return x > y;
}
bool isGreaterOrEqual(double x, double y) {
  return x >= y;
}
bool isEqual(double x, double y) {
  return x == y;
}
bool isNotEqual(double x, double y) {
  return x != y;
}

template <typename Operator, typename... Arguments>
void replace(mup::ParserX& parser, Arguments&&... arguments) {
  auto replacement = std::make_unique<Operator>(std::forward<Arguments>(arguments)...);
  parser.RemoveOprt(replacement->GetIdent());
  parser.DefineOprt(mup::TokenPtr<mup::IOprtBin>(replacement.release()));
}

}  // namespace

void addOperators(mup::ParserX& parser, EvaluationLimits& limits) {
  replace<NumberOperator<mup::OprtAdd, jit::add>>(parser, limits);
  replace<NumberOperator<mup::OprtSub, jit::subtract>>(parser, limits);
  replace<NumberOperator<mup::OprtMul, jit::multiply>>(parser, limits);
  replace<NumberOperator<mup::OprtDiv, jit::divide>>(parser, limits);
  replace<AssignOperator>(parser);
  replace<PowerOperator>(parser);
  replace<RemainderOperator>(parser);
  replace<ComparisonOperator<mup::OprtLT, isLess>>(parser);
  replace<ComparisonOperator<mup::OprtLE, isLessOrEqual>>(parser);
  replace<ComparisonOperator<mup::OprtGT, isGreater>>(parser);
  replace<ComparisonOperator<mup::OprtGE, isGreaterOrEqual>>(parser);
  replace<ComparisonOperator<mup::OprtEQ, isEqual>>(parser);
  replace<ComparisonOperator<mup::OprtNEQ, isNotEqual>>(parser);
  replace<LogicOperator<mup::prLOGIC_AND, both>>(parser, "&&");
  replace<LogicOperator<mup::prLOGIC_OR, either>>(parser, "||");
  parser.RemoveInfixOprt("-");
  parser.DefineInfixOprt(mup::TokenPtr<mup::IOprtInfix>(new MinusSign(limits)));
}

}  // namespace kelvarin
