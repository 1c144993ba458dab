// The String back-end's library as this system uses it: no complex numbers, names beyond ASCII,
// texts that may be null, and limits where the library would take all memory or not end.
//
// Errors: throws the library's exceptions; string_backend.cpp catches them.
// Threads: one parser, one thread.
#pragma once

#include <mpParser.h>

namespace kelvarin {

// The most bytes a text may get by concatenation.
inline constexpr std::size_t kMaximumTextBytes = std::size_t{64} << 20;

class StringLibrary final : public mup::ParserX {
 public:
  StringLibrary();

  // Removes what the library calls by this name, so that it is free for a variable.
  void freeName(const mup::string_type& name);

  // The first use of the library in a process builds shared tables; call this before it.
  static void warmUp();
};

}  // namespace kelvarin
