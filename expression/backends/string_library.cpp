#include "expression/backends/string_library.h"

#include <cmath>
#include <mutex>
#include <string>

#include <mpFuncMatrix.h>
#include <mpOprtBinCommon.h>
#include <mpOprtMatrix.h>

#include <QString>

#include "expression/backends/expression_text.h"
#include "expression/backends/string_bits.h"
#include "expression/backends/string_operators.h"
#include "expression/backends/string_values.h"
#include "expression/errors/messages.h"
#include "host/contract/process_wide.h"
#include "jit/arithmetic.h"

namespace kelvarin {

namespace {

// Common, unit, non-complex, string and matrix.
constexpr unsigned kPackages = 59;

// Joins two texts; null when one of them is.
class Concatenation final : public mup::OprtStrAdd {
 public:
  explicit Concatenation(EvaluationLimits& limits) : m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    m_limits.keepingFault([&] { join(result, arguments); });
  }
  mup::IToken* Clone() const override { return new Concatenation(*this); }

 private:
  void join(mup::ptr_val_type& result, const mup::ptr_val_type* arguments) const {
    const mup::string_type& left = arguments[0]->GetString();
    const mup::string_type& right = arguments[1]->GetString();
    if (left == kNullTextBytes || right == kNullTextBytes) {
      *result = mup::string_type(kNullTextBytes);
      return;
    }
    m_limits.takeJoinedText(*this, left.size() + right.size());
    *result = left + right;
  }

  EvaluationLimits& m_limits;
};

// `eye`, `ones` and `zeros`, which the library lets take any size.
template <typename LibraryFunction>
class LimitedArray final : public LibraryFunction {
 public:
  explicit LimitedArray(EvaluationLimits& limits) : m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    const double rows = count > 0 ? sizeOf(*arguments[0]) : 0.0;
    const double columns = count > 1 ? sizeOf(*arguments[1]) : rows;  // one argument: a square
    m_limits.takeArray(*this, rows * columns);
    LibraryFunction::Eval(result, arguments, count);
  }
  mup::IToken* Clone() const override { return new LimitedArray(*this); }

 private:
  // NaN where it is none.
  static double sizeOf(const mup::IValue& argument) {
    const double size = argument.GetFloat();
    return size >= 1.0 ? size : kNotANumber;
  }

  EvaluationLimits& m_limits;
};

class Transposition final : public mup::OprtTranspose {
 public:
  explicit Transposition(EvaluationLimits& limits) : m_limits(limits) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    mup::OprtTranspose::Eval(result, arguments, count);
    m_limits.takeResult(*this, *result);
  }
  mup::IToken* Clone() const override { return new Transposition(*this); }

 private:
  EvaluationLimits& m_limits;
};

// The factorial; the library's loops as often as the number says.
class Factorial final : public mup::IOprtPostfix {
 public:
  Factorial() : mup::IOprtPostfix("!") {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    const char type = arguments[0]->GetType();
    const bool isNumber = type == 'i' || type == 'f';
    const double number = isNumber ? arguments[0]->GetFloat() : kNullNumber;
    if (number != std::floor(number)) {
      throw mup::ParserError(
          mup::ErrorContext(mup::ecTYPE_CONFLICT_FUN, GetExprPos(), GetIdent(), type, 'i', 1));
    }
    if (number < 0.0) {
      throw mup::ParserError(mup::ErrorContext(mup::ecDOMAIN_ERROR, GetExprPos(), GetIdent()));
    }
    double product = 1.0;
    for (double factor = 2.0; factor <= number && std::isfinite(product); ++factor) {
      product *= factor;
    }
    *result = product;
  }
  const mup::char_type* GetDesc() const override { return "x! - factorial of a whole number"; }
  mup::IToken* Clone() const override { return new Factorial(*this); }
};

// A unit as withMarkedUnits() writes it, since braces make arrays in this library.
class UnitPostfix final : public mup::IOprtPostfix {
 public:
  explicit UnitPostfix(const Unit& unit)
      : mup::IOprtPostfix(markedUnit(unit.text).toStdString().c_str()), m_factor(unit.factor) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    const char type = arguments[0]->GetType();
    if (type != 'f' && type != 'i') {
      throw mup::ParserError(
          mup::ErrorContext(mup::ecTYPE_CONFLICT_FUN, GetExprPos(), GetIdent(), type, 'f', 1));
    }
    *result = jit::multiply(arguments[0]->GetFloat(), m_factor);
  }
  const mup::char_type* GetDesc() const override { return "x{k} - a number with its unit"; }
  mup::IToken* Clone() const override { return new UnitPostfix(*this); }

 private:
  double m_factor;
};

std::string nameCharacters(const mup::ParserX& parser) {
  std::string names = parser.ValidNameChars();
  for (int byte = 0x80; byte <= 0xFF; ++byte) {
    names.push_back(static_cast<char>(byte));
  }
  return names;
}

}  // namespace

StringLibrary::StringLibrary() : mup::ParserX(kPackages) {
  DefineNameChars(nameCharacters(*this).c_str());
  // The library finds word operators at the head of longer names, in `order` and `android`; words
  // are rewritten as signs, which addOperators() defines.
  m_OprtShortcutDef.clear();

  RemoveOprt("//");
  DefineOprt(mup::TokenPtr<mup::IOprtBin>(new Concatenation(m_limits)));
  addOperators(*this, m_limits);
  addBitOperators(*this, m_limits);
  RemovePostfixOprt("!");
  DefinePostfixOprt(new Factorial);
  for (const char* name : {"n", "u", "mu", "m", "k", "M", "G"}) {
    RemovePostfixOprt(name);
  }
  for (const Unit& unit : kUnits) {
    RemovePostfixOprt(markedUnit(unit.text).toStdString());  // one of two spellings
    DefinePostfixOprt(new UnitPostfix(unit));
  }
  RemovePostfixOprt("'");
  DefinePostfixOprt(new Transposition(m_limits));
  for (const char* name : {"eye", "ones", "zeros"}) {
    RemoveFun(name);
  }
  DefineFun(new LimitedArray<mup::FunMatrixEye>(m_limits));
  DefineFun(new LimitedArray<mup::FunMatrixOnes>(m_limits));
  DefineFun(new LimitedArray<mup::FunMatrixZeros>(m_limits));
}

void StringLibrary::freeName(const mup::string_type& name) {
  RemoveFun(name);
  RemoveConst(name);
  RemoveOprt(name);
  RemovePostfixOprt(name);
  RemoveInfixOprt(name);
  RemoveInfixOprt('(' + name + ')');  // a cast
}

void StringLibrary::warmUp() {
  std::call_once(firstTextExpression(), [] {
    try {
      StringLibrary parser;
      parser.SetExpr("unknown + 1");
      parser.Eval();
    } catch (const mup::ParserError& error) {
      static_cast<void>(error.GetMsg());
    }
  });
}

}  // namespace kelvarin
