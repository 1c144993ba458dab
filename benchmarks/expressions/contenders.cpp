// This system's compiler, the compiler's C functions and the expression library behind one plain
// interface, so that one process can time them in turns with libraries of other languages.
//
// Called through ctypes by suite.py. Rows are a, b, c, a, b, c, ...; columns are three arrays. A
// handle is null for an expression or a name that is unknown.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string_view>

#include <muParser.h>

#include "benchmarks/expressions/c_contenders.h"
#include "expression/backends/native_language.h"
#include "jit/native_compiler.h"

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

constexpr std::size_t kValueCount = 3;
constexpr const char* kNames[kValueCount] = {"a", "b", "c"};

struct Interpreted {
  double values[kValueCount] = {};
  mu::Parser parser;
};

std::unique_ptr<kelvarin::jit::CompiledFunction> compiled(const char* expression) {
  kelvarin::jit::CompilerContext context(kelvarin::nativeLanguage());
  for (std::size_t i = 0; i < kValueCount; ++i) {
    context.addVariable(kNames[i], i);
  }
  kelvarin::jit::CompileFailure failure;
  return context.compile(expression, failure);
}

template <typename Entry>
const Entry* entryNamed(const Entry (&entries)[kelvarin::kExpressionCount], std::string_view name) {
  const Entry* found = std::find_if(std::begin(entries), std::end(entries),
                                    [&](const Entry& entry) { return entry.name == name; });
  return found == std::end(entries) ? nullptr : found;
}

}  // namespace

EXPORTED const void* nativeExpression(const char* expression) {
  return compiled(expression).release();
}

// Seconds that one compilation takes, names and code pages included.
EXPORTED double secondsToCompile(const char* expression, int repetitions) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < repetitions; ++i) {
    compiled(expression).reset();
  }
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  return time.count() / repetitions;
}

EXPORTED void nativeRows(const void* expression, const double* rows, std::size_t count,
                         double* results) {
  const auto& function = *static_cast<const kelvarin::jit::CompiledFunction*>(expression);
  for (std::size_t i = 0; i < count; ++i) {
    results[i] = function(rows + i * kValueCount);
  }
}

EXPORTED void nativeColumns(const void* expression, const double* const* columns, std::size_t count,
                            double* results, int repetitions) {
  const auto& function = *static_cast<const kelvarin::jit::CompiledFunction*>(expression);
  for (int i = 0; i < repetitions; ++i) {
    function.evaluateColumns(columns, count, results);
  }
}

EXPORTED const void* cRow(const char* name) {
  return entryNamed(kelvarin::kCRows, name);
}

EXPORTED void cRows(const void* entry, const double* rows, std::size_t count, double* results) {
  const auto evaluate = static_cast<const kelvarin::CRow*>(entry)->evaluate;
  for (std::size_t i = 0; i < count; ++i) {
    results[i] = evaluate(rows + i * kValueCount);
  }
}

EXPORTED const void* cLoop(const char* name, bool isForV3) {
  return entryNamed(isForV3 ? kelvarin::kLoopsO3V3 : kelvarin::kLoopsO2, name);
}

EXPORTED void cColumns(const void* entry, const double* const* columns, std::size_t count,
                       double* results, int repetitions) {
  for (int i = 0; i < repetitions; ++i) {
    static_cast<const kelvarin::CLoop*>(entry)->evaluate(columns[0], columns[1], columns[2], count,
                                                         results);
  }
}

// With its optimizer off, as this system sets it up.
EXPORTED void* interpretedExpression(const char* expression) {
  auto interpreted = std::make_unique<Interpreted>();
  try {
    interpreted->parser.EnableOptimizer(false);
    for (std::size_t i = 0; i < kValueCount; ++i) {
      interpreted->parser.DefineVar(kNames[i], &interpreted->values[i]);
    }
    interpreted->parser.SetExpr(expression);
    interpreted->parser.Eval();
  } catch (const mu::ParserError&) {
    return nullptr;
  }
  return interpreted.release();
}

EXPORTED void interpretedRows(void* expression, const double* rows, std::size_t count,
                              double* results) {
  auto& interpreted = *static_cast<Interpreted*>(expression);
  for (std::size_t i = 0; i < count; ++i) {
    std::copy_n(rows + i * kValueCount, kValueCount, interpreted.values);
    results[i] = interpreted.parser.Eval();
  }
}
