#include "expression/backends/string_bits.h"

#include <memory>

#include <mpOprtBinCommon.h>

#include "expression/backends/bit_operations.h"

namespace kelvarin {

namespace {

bool isNumber(const mup::IValue& value) {
  const char type = value.GetType();
  return type == 'f' || type == 'i';
}

// What is no number gets the library's error.
template <typename LibraryOperator, double (*compute)(double, double)>
class BitOperator final : public LibraryOperator {
 public:
  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (isNumber(*arguments[0]) && isNumber(*arguments[1])) {
      *result = compute(arguments[0]->GetFloat(), arguments[1]->GetFloat());
    } else {
      LibraryOperator::Eval(result, arguments, count);
    }
  }
  mup::IToken* Clone() const override { return new BitOperator(*this); }
};

template <typename LibraryOperator, double (*compute)(double)>
class Cast final : public LibraryOperator {
 public:
  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (isNumber(*arguments[0])) {
      *result = compute(arguments[0]->GetFloat());
    } else {
      LibraryOperator::Eval(result, arguments, count);
    }
  }
  mup::IToken* Clone() const override { return new Cast(*this); }
};

template <typename Operator>
void replaceBinary(mup::ParserX& parser) {
  auto replacement = std::make_unique<Operator>();
  parser.RemoveOprt(replacement->GetIdent());
  parser.DefineOprt(mup::TokenPtr<mup::IOprtBin>(replacement.release()));
}

template <typename Operator>
void replaceInfix(mup::ParserX& parser) {
  auto replacement = std::make_unique<Operator>();
  parser.RemoveInfixOprt(replacement->GetIdent());
  parser.DefineInfixOprt(mup::TokenPtr<mup::IOprtInfix>(replacement.release()));
}

}  // namespace

void addBitOperators(mup::ParserX& parser) {
  replaceBinary<BitOperator<mup::OprtAnd, bits::bitAnd>>(parser);
  replaceBinary<BitOperator<mup::OprtOr, bits::bitOr>>(parser);
  replaceBinary<BitOperator<mup::OprtShl, bits::shiftLeft>>(parser);
  replaceBinary<BitOperator<mup::OprtShr, bits::shiftRight>>(parser);
  replaceInfix<Cast<mup::OprtCastToInt, bits::toInteger>>(parser);
  replaceInfix<Cast<mup::OprtCastToFloat, bits::toFloat>>(parser);
}

}  // namespace kelvarin
