#include "expression/backends/string_operators.h"

#include <cmath>

#include <mpOprtBinAssign.h>
#include <mpOprtBinCommon.h>
#include <mpOprtNonCmplx.h>

#include "expression/backends/operator_replacement.h"
#include "expression/backends/string_values.h"
#include "expression/errors/messages.h"
#include "jit/arithmetic.h"

namespace kelvarin {

namespace {

bool isNumberOrBoolean(const mup::IValue& value) {
  return isNumber(value) || value.GetType() == 'b';
}

// `argument` counts from 0.
void refuseType(EvaluationLimits& limits, const mup::ICallback& callback, char found,
                int argument) {
  limits.keepingFault([&] {
    throw mup::ParserError(mup::ErrorContext(mup::ecTYPE_CONFLICT_FUN, callback.GetExprPos(),
                                             callback.GetIdent(), found, 'f', argument + 1));
  });
}

// The library's power takes truths, though its other operators do not, and anything else for 0.
class PowerOperator final : public mup::OprtPow {
 public:
  explicit PowerOperator(EvaluationLimits& limits) : m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    if (isNumberOrBoolean(*arguments[0]) && isNumberOrBoolean(*arguments[1])) {
      *result = jit::power(arguments[0]->GetFloat(), arguments[1]->GetFloat());
      return;
    }
    const int wrong = isNumberOrBoolean(*arguments[0]) ? 1 : 0;
    refuseType(m_limits, *this, arguments[wrong]->GetType(), wrong);
  }
  mup::IToken* Clone() const override { return new PowerOperator(*this); }

 private:
  EvaluationLimits& m_limits;
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
    m_limits.keepingFault([&] { LibraryOperator::Eval(result, arguments, count); });
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
  explicit ComparisonOperator(EvaluationLimits& limits) : m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (isNumberOrBoolean(*arguments[0]) && isNumberOrBoolean(*arguments[1])) {
      *result = compare(arguments[0]->GetFloat(), arguments[1]->GetFloat());
      return;
    }
    m_limits.keepingFault([&] { LibraryOperator::Eval(result, arguments, count); });
  }
  int GetPri() const override { return mup::prRELATIONAL2; }
  mup::IToken* Clone() const override { return new ComparisonOperator(*this); }

 private:
  EvaluationLimits& m_limits;
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
  LogicOperator(const char* sign, EvaluationLimits& limits)
      : mup::IOprtBin(sign, priority, mup::oaLEFT), m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    m_limits.keepingFault([&] {
      const bool left = arguments[0]->GetBool();
      const bool right = arguments[1]->GetBool();
      *result = join(left, right);
    });
  }
  const mup::char_type* GetDesc() const override { return "x&&y, x||y - logical and, or"; }
  mup::IToken* Clone() const override { return new LogicOperator(*this); }

 private:
  EvaluationLimits& m_limits;
};

class RemainderOperator final : public mup::IOprtBin {
 public:
  explicit RemainderOperator(EvaluationLimits& limits)
      : mup::IOprtBin("%", mup::prMUL_DIV, mup::oaLEFT), m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    for (int i = 0; i < 2; ++i) {
      if (!isNumber(*arguments[i])) {
        refuseType(m_limits, *this, arguments[i]->GetType(), i);
      }
    }
    *result = std::fmod(arguments[0]->GetFloat(), arguments[1]->GetFloat());
  }
  const mup::char_type* GetDesc() const override { return "x%y - remainder of x/y"; }
  mup::IToken* Clone() const override { return new RemainderOperator(*this); }

 private:
  EvaluationLimits& m_limits;
};

class MinusSign final : public mup::OprtSign {
 public:
  explicit MinusSign(EvaluationLimits& limits) : m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (isNumber(*arguments[0])) {
      *result = jit::negate(arguments[0]->GetFloat());
      return;
    }
    m_limits.keepingFault([&] { mup::OprtSign::Eval(result, arguments, count); });
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

}  // namespace

void addOperators(mup::ParserX& parser, EvaluationLimits& limits) {
  replaceOperator<NumberOperator<mup::OprtAdd, jit::add>>(parser, limits);
  replaceOperator<NumberOperator<mup::OprtSub, jit::subtract>>(parser, limits);
  replaceOperator<NumberOperator<mup::OprtMul, jit::multiply>>(parser, limits);
  replaceOperator<NumberOperator<mup::OprtDiv, jit::divide>>(parser, limits);
  replaceOperator<AssignOperator>(parser);
  replaceOperator<PowerOperator>(parser, limits);
  replaceOperator<RemainderOperator>(parser, limits);
  replaceOperator<ComparisonOperator<mup::OprtLT, isLess>>(parser, limits);
  replaceOperator<ComparisonOperator<mup::OprtLE, isLessOrEqual>>(parser, limits);
  replaceOperator<ComparisonOperator<mup::OprtGT, isGreater>>(parser, limits);
  replaceOperator<ComparisonOperator<mup::OprtGE, isGreaterOrEqual>>(parser, limits);
  replaceOperator<ComparisonOperator<mup::OprtEQ, isEqual>>(parser, limits);
  replaceOperator<ComparisonOperator<mup::OprtNEQ, isNotEqual>>(parser, limits);
  replaceOperator<LogicOperator<mup::prLOGIC_AND, both>>(parser, "&&", limits);
  replaceOperator<LogicOperator<mup::prLOGIC_OR, either>>(parser, "||", limits);
  parser.RemoveInfixOprt("-");
  parser.DefineInfixOprt(mup::TokenPtr<mup::IOprtInfix>(new MinusSign(limits)));
}

}  // namespace kelvarin
