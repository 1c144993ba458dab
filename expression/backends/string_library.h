// The String back-end's library as this system uses it: no complex numbers, names beyond ASCII,
// texts that may be null, and limits where the library would take all memory or not end.
//
// Errors: throws the library's exceptions; string_backend.cpp catches them.
#pragma once

#include <mpParser.h>

#include "expression/backends/string_limits.h"

namespace kelvarin {

class StringLibrary final : public mup::ParserX {
 public:
  StringLibrary();

  // Of the evaluation that goes on.
  EvaluationLimits& limits() { return m_limits; }
  const EvaluationLimits& limits() const { return m_limits; }

  // Removes what the library calls by this name, so that it is free for a variable.
  void freeName(const mup::string_type& name);

  // The first use of the library in a process builds shared tables; call this before it.
  static void warmUp();

 private:
  EvaluationLimits m_limits;
};

}  // namespace kelvarin
