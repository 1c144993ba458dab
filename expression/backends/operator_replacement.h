// Puts an operator of this system into the String back-end's parser, in place of the library's of
// the same sign.
//
// Errors: throws the library's exceptions; string_backend.cpp catches them.
#pragma once

#include <memory>
#include <utility>

#include <mpParser.h>

namespace kelvarin {

template <typename Operator, typename... Arguments>
void replaceOperator(mup::ParserX& parser, Arguments&&... arguments) {
  auto replacement = std::make_unique<Operator>(std::forward<Arguments>(arguments)...);
  parser.RemoveOprt(replacement->GetIdent());
  parser.DefineOprt(mup::TokenPtr<mup::IOprtBin>(replacement.release()));
}

}  // namespace kelvarin
