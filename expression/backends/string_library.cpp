#include "expression/backends/string_library.h"

#include <cmath>
#include <mutex>
#include <string>

#include <mpFuncMatrix.h>
#include <mpOprtBinCommon.h>
#include <mpOprtNonCmplx.h>

#include <QString>

#include "expression/backends/string_values.h"
#include "expression/errors/messages.h"

namespace kelvarin {

namespace {

// Common, unit, non-complex, string and matrix.
constexpr unsigned kPackages = 59;

[[noreturn]] void refuse(const mup::ICallback& callback, const QString& message) {
  mup::ErrorContext context(mup::ecGENERIC, callback.GetExprPos(), callback.GetIdent());
  context.Hint = message.toStdString();
  mup::ParserError error(message.toStdString());
  error.GetContext() = context;
  throw error;
}

// Joins two texts; null when one of them is.
class Concatenation final : public mup::OprtStrAdd {
 public:
  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    const mup::string_type& left = arguments[0]->GetString();
    const mup::string_type& right = arguments[1]->GetString();
    if (left == kNullTextBytes || right == kNullTextBytes) {
      *result = mup::string_type(kNullTextBytes);
      return;
    }
    if (left.size() + right.size() > kMaximumTextBytes) {
      refuse(*this, QString::fromUtf8(messages::kTextTooLong).arg(kMaximumTextBytes));
    }
    *result = left + right;
  }
  mup::IToken* Clone() const override { return new Concatenation(*this); }
};

// Multiplies as the library does, but no giant matrices.
class Multiplication final : public mup::OprtMul {
 public:
  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (arguments[0]->IsMatrix() && arguments[1]->IsMatrix()) {
      const mup::int_type elements =
          mup::int_type{arguments[0]->GetRows()} * arguments[1]->GetCols();
      if (elements > kMaximumElements) {
        refuse(*this, QString::fromUtf8(messages::kTooManyElements).arg(kMaximumElements));
      }
    }
    mup::OprtMul::Eval(result, arguments, count);
  }
  mup::IToken* Clone() const override { return new Multiplication(*this); }
};

// `eye`, `ones` and `zeros`, which the library lets take any size.
template <typename LibraryFunction>
class LimitedArray final : public LibraryFunction {
 public:
  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    double elements = 1.0;
    for (int i = 0; i < count; ++i) {
      elements *= arguments[i]->GetFloat();
    }
    // `eye` of one argument is a square.
    const double all = count == 1 ? elements * elements : elements;
    const double limit =
        static_cast<double>(kMaximumElements * (count == 1 ? kMaximumElements : 1));
    if (!(all <= limit) || !areSizes(arguments, count)) {
      refuse(*this, QString::fromUtf8(messages::kTooManyElements).arg(kMaximumElements));
    }
    LibraryFunction::Eval(result, arguments, count);
  }
  mup::IToken* Clone() const override { return new LimitedArray(*this); }

 private:
  static bool areSizes(const mup::ptr_val_type* arguments, int count) {
    for (int i = 0; i < count; ++i) {
      const double size = arguments[i]->GetFloat();
      if (!(size >= 1.0 && size <= static_cast<double>(kMaximumElements))) {
        return false;
      }
    }
    return true;
  }
};

// The factorial; the library's loops as often as the number says.
class Factorial final : public mup::IOprtPostfix {
 public:
  Factorial() : mup::IOprtPostfix("!") {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int) override {
    if (!arguments[0]->IsInteger()) {
      throw mup::ParserError(mup::ErrorContext(mup::ecTYPE_CONFLICT_FUN, GetExprPos(), GetIdent(),
                                               arguments[0]->GetType(), 'i', 1));
    }
    const double number = arguments[0]->GetFloat();
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
  // are rewritten as signs.
  m_OprtShortcutDef.erase("and");
  m_OprtShortcutDef.erase("or");

  RemoveOprt("//");
  DefineOprt(mup::TokenPtr<mup::IOprtBin>(new Concatenation));
  RemoveOprt("*");
  DefineOprt(mup::TokenPtr<mup::IOprtBin>(new Multiplication));
  RemovePostfixOprt("!");
  DefinePostfixOprt(new Factorial);
  for (const char* name : {"eye", "ones", "zeros"}) {
    RemoveFun(name);
  }
  DefineFun(new LimitedArray<mup::FunMatrixEye>);
  DefineFun(new LimitedArray<mup::FunMatrixOnes>);
  DefineFun(new LimitedArray<mup::FunMatrixZeros>);
}

void StringLibrary::freeName(const mup::string_type& name) {
  RemoveFun(name);
  RemoveConst(name);
  RemoveOprt(name);
  RemovePostfixOprt(name);
  RemoveInfixOprt(name);
  m_OprtShortcutDef.erase(name);
}

void StringLibrary::warmUp() {
  static std::once_flag once;
  std::call_once(once, [] {
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
