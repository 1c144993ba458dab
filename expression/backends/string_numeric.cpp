#include "expression/backends/string_numeric.h"

#include <mpFuncNonCmplx.h>

namespace kelvarin {

namespace {

template <typename LibraryFunction>
class WatchedFunction final : public LibraryFunction {
 public:
  explicit WatchedFunction(NonNumberWatch& watch) : m_watch(watch) {}

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    const char type = arguments[0]->GetType();
    if (type == 's' || type == 'm') [[unlikely]] {
      m_watch.note(*this);
    }
    LibraryFunction::Eval(result, arguments, count);
  }
  mup::IToken* Clone() const override { return new WatchedFunction(*this); }

 private:
  NonNumberWatch& m_watch;
};

template <typename... LibraryFunctions>
void replaceAll(mup::ParserX& parser, NonNumberWatch& watch) {
  const auto replace = [&parser](mup::ICallback* function) {
    parser.RemoveFun(function->GetIdent());
    parser.DefineFun(mup::ptr_cal_type(function));
  };
  (replace(new WatchedFunction<LibraryFunctions>(watch)), ...);
}

}  // namespace

void NonNumberWatch::note(const mup::ICallback& function) {
  if (m_count++ == 0) {
    m_function = function.GetIdent();
    m_bytePosition = function.GetExprPos();
    m_row = m_variables.rowNumber();
  }
}

void addNumericFunctions(mup::ParserX& parser, NonNumberWatch& watch) {
  replaceAll<mup::FunSin, mup::FunCos, mup::FunTan, mup::FunASin, mup::FunACos, mup::FunATan,
             mup::FunSinH, mup::FunCosH, mup::FunTanH, mup::FunLog, mup::FunLog10, mup::FunLn,
             mup::FunSqrt, mup::FunExp>(parser, watch);
}

}  // namespace kelvarin
