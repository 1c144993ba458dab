#include "expression/backends/string_bits.h"

#include <memory>

#include <mpOprtBinCommon.h>

#include "expression/backends/bit_operations.h"
#include "expression/backends/operator_replacement.h"
#include "expression/backends/string_values.h"

namespace kelvarin {

namespace {

// What is no number gets the library's error.
template <typename LibraryOperator, double (*compute)(double, double)>
class BitOperator final : public LibraryOperator {
 public:
  explicit BitOperator(EvaluationLimits& limits) : m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (isNumber(*arguments[0]) && isNumber(*arguments[1])) {
      *result = compute(arguments[0]->GetFloat(), arguments[1]->GetFloat());
    } else {
      m_limits.keepingFault([&] { LibraryOperator::Eval(result, arguments, count); });
    }
  }
  mup::IToken* Clone() const override { return new BitOperator(*this); }

 private:
  EvaluationLimits& m_limits;
};

template <typename LibraryOperator, double (*compute)(double)>
class Cast final : public LibraryOperator {
 public:
  explicit Cast(EvaluationLimits& limits) : m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (isNumber(*arguments[0])) {
      *result = compute(arguments[0]->GetFloat());
    } else {
      m_limits.keepingFault([&] { LibraryOperator::Eval(result, arguments, count); });
    }
  }
  mup::IToken* Clone() const override { return new Cast(*this); }

 private:
  EvaluationLimits& m_limits;
};

template <typename Operator>
void replaceInfix(mup::ParserX& parser, EvaluationLimits& limits) {
  auto replacement = std::make_unique<Operator>(limits);
  parser.RemoveInfixOprt(replacement->GetIdent());
  parser.DefineInfixOprt(mup::TokenPtr<mup::IOprtInfix>(replacement.release()));
}

}  // namespace

void addBitOperators(mup::ParserX& parser, EvaluationLimits& limits) {
  replaceOperator<BitOperator<mup::OprtAnd, bits::bitAnd>>(parser, limits);
  replaceOperator<BitOperator<mup::OprtOr, bits::bitOr>>(parser, limits);
  replaceOperator<BitOperator<mup::OprtShl, bits::shiftLeft>>(parser, limits);
  replaceOperator<BitOperator<mup::OprtShr, bits::shiftRight>>(parser, limits);
  replaceInfix<Cast<mup::OprtCastToInt, bits::toInteger>>(parser, limits);
  replaceInfix<Cast<mup::OprtCastToFloat, bits::toFloat>>(parser, limits);
}

}  // namespace kelvarin
