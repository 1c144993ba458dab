// The names that an expression may use.
//
// Filled by native_compiler.cpp and builtins.cpp; asked by the parser.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>

#include "jit/functions.h"

namespace kelvarin::jit {

struct NamedVariable {
  std::size_t element;
};

struct NamedConstant {
  double value;
};

// Functions that take any number of arguments and fold them one by one.
enum class Accumulation : std::uint8_t { sum, average, smallest, largest };

using FunctionSymbol = std::variant<NamedFunction, Accumulation>;

struct HashOfName {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const {
    return std::hash<std::string_view>()(name);
  }
};

template <typename Symbol>
class Names {
 public:
  void set(std::string_view name, Symbol symbol) {
    m_symbols.insert_or_assign(std::string(name), std::move(symbol));
  }
  const Symbol* find(std::string_view name) const {
    const auto found = m_symbols.find(name);
    return found == m_symbols.end() ? nullptr : &found->second;
  }

 private:
  std::unordered_map<std::string, Symbol, HashOfName, std::equal_to<>> m_symbols;
};

// Functions and values have names of their own: a variable `sum` and the function `sum(` live side
// by side.
struct Symbols {
  Names<FunctionSymbol> functions;
  Names<NamedVariable> variables;
  Names<NamedConstant> constants;
};

}  // namespace kelvarin::jit
