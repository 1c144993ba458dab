#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "jit/tests/system_functions.h"

namespace kelvarin::jit {

namespace {

constexpr std::size_t kVariableCount = 40;

std::string nameOf(std::size_t variable) {
  return "v" + std::to_string(variable);
}

CompilerContext contextFor(InstructionSet set = bestInstructionSet()) {
  CompilerContext context(systemContext());
  context.setInstructionSet(set);
  for (std::size_t i = 0; i < kVariableCount; ++i) {
    context.addVariable(nameOf(i), i);
  }
  return context;
}

std::unique_ptr<CompiledFunction> compile(const std::string& expression,
                                          InstructionSet set = bestInstructionSet()) {
  CompileFailure failure;
  auto function = contextFor(set).compile(expression, failure);
  EXPECT_NE(function, nullptr) << failure.reason << " at " << failure.position;
  return function;
}

struct Table {
  std::vector<std::vector<double>> columns;
  std::vector<const double*> pointers;
};

Table makeTable(std::size_t rowCount) {
  Table table;
  for (std::size_t i = 0; i < kVariableCount; ++i) {
    std::vector<double>& column = table.columns.emplace_back();
    for (std::size_t row = 0; row < rowCount; ++row) {
      column.push_back(static_cast<double>((row * 7 + i * 13) % 23) - 11.0);
    }
  }
  for (const std::vector<double>& column : table.columns) {
    table.pointers.push_back(column.data());
  }
  return table;
}

// Every instruction set, by rows and by columns, against the reference, for all counts of rows up
// to 13.
void expectAgreement(const std::string& expression, bool fitsOnStack = true) {
  const auto reference = compile(expression, InstructionSet::none);
  ASSERT_FALSE(reference->isMachineCode());
  for (const InstructionSet set :
       {InstructionSet::sse2, InstructionSet::sse41, InstructionSet::avx2}) {
    if (set > bestInstructionSet()) {
      return;
    }
    const auto function = compile(expression, set);
    EXPECT_TRUE(function->isMachineCode() || !fitsOnStack);
    for (std::size_t rowCount = 0; rowCount <= 13; ++rowCount) {
      const Table table = makeTable(rowCount);
      std::vector<double> expected(rowCount);
      std::vector<double> results(rowCount + 1, 77.0);
      reference->evaluateColumns(table.pointers.data(), rowCount, expected.data());
      function->evaluateColumns(table.pointers.data(), rowCount, results.data());
      ASSERT_EQ(results.back(), 77.0) << "written past the end";
      for (std::size_t row = 0; row < rowCount; ++row) {
        ASSERT_EQ(std::bit_cast<std::uint64_t>(results[row]),
                  std::bit_cast<std::uint64_t>(expected[row]))
            << "set " << static_cast<int>(set) << ", row " << row << " of " << rowCount;
      }
    }
  }
}

TEST(MachineCode, SpillsWhenRegistersRunOut) {
  std::string sum;
  std::string product = "1";
  for (std::size_t i = 0; i < kVariableCount; ++i) {
    const std::string term = "(" + nameOf(i) + "-" + nameOf((i * 7 + 3) % kVariableCount) + ")";
    sum += "+" + term;
    product += "*" + term;
  }
  expectAgreement(sum + "-(" + product + ")");
  expectAgreement("sin(v1)*(" + sum + ")-(" + product + ")+cos(v2)*(" + sum + ")");
  // All terms are alive when the first pair of differences is formed.
  std::string nested = "v0";
  for (std::size_t i = 1; i < kVariableCount; ++i) {
    nested = "(" + nameOf(i) + "*2)-(" + nested + ")/3";
  }
  expectAgreement(nested);
}

TEST(MachineCode, BranchesAroundCostlyArms) {
  expectAgreement("v0>0 ? ln(v0) : sqrt(-v0)*exp(v1)");
  expectAgreement("v0>0 ? (v1>0 ? ln(v0) : exp(v1)) : v2>0 ? sin(v2) : cos(v0)");
  expectAgreement("(v0>0 && sin(v1)>0) || (v2<0 || cos(v3)>0) ? v4/v5 : tan(v6)");
  expectAgreement("sin(v0)+(v1>0 ? sin(v0)*exp(v2) : exp(v2)-ln(v3))*exp(v2)");
  std::string chain = "7";  // the condition of every arm waits on the stack
  for (std::size_t i = 0; i < 150; ++i) {
    chain = nameOf(i % kVariableCount) + ">" + std::to_string(i % 11) + "?sin(v" +
            std::to_string(i % 7) + "):" + chain;
  }
  expectAgreement(chain);
  expectAgreement("blend(v0>0?sin(v0):v1, v2, v0)+blend(v2, v0, v1)*blend(v1, v2, v2)");
}

int callCount = 0;

double countedCall(double x) {
  ++callCount;
  return x;
}

TEST(MachineCode, CallsOnlyWhatTheConditionAsksFor) {
  CompilerContext context;
  context.addFunction("counted", countedCall);
  context.addVariable("x", 0);
  CompileFailure failure;
  for (const auto& [expression, expected] : {std::pair{"x>0 ? counted(x) : 2", 0},
                                             {"x<0 ? counted(x)+counted(x) : 2", 1},
                                             {"x>0 && counted(x)", 0},
                                             {"x<0 || counted(x)", 0},
                                             {"x>0 || counted(x)>0", 1}}) {
    const auto function = context.compile(expression, failure);
    callCount = 0;
    const double x = -1.0;
    (*function)(&x);
    EXPECT_EQ(callCount, expected) << expression;
  }
}

TEST(MachineCode, ResultsMayReplaceAColumn) {
  const auto function = compile("v0*v0+v1");
  Table table = makeTable(9);
  const Table before = makeTable(9);
  function->evaluateColumns(table.pointers.data(), 9, table.columns[0].data());
  for (std::size_t row = 0; row < 9; ++row) {
    const double x = before.columns[0][row];
    EXPECT_EQ(table.columns[0][row], x * x + before.columns[1][row]);
  }
}

TEST(MachineCode, LooksAtNoOtherVariable) {
  const auto function = compile("v3+v17");
  EXPECT_EQ(std::vector(function->elements().begin(), function->elements().end()),
            (std::vector<std::size_t>{3, 17}));
  std::vector<const double*> columns(kVariableCount, nullptr);
  const std::vector<double> rows = {1, 2, 3, 4, 5};
  columns[3] = columns[17] = rows.data();
  std::vector<double> results(rows.size());
  function->evaluateColumns(columns.data(), rows.size(), results.data());
  EXPECT_EQ(results, (std::vector<double>{2, 4, 6, 8, 10}));
}

TEST(MachineCode, NoPageIsWritableAndExecutable) {
  const auto first = compile("v0+sin(v1)");
  const auto second = compile("v0*2");
  std::ifstream maps("/proc/self/maps");
  std::size_t executableCount = 0;
  for (std::string line; std::getline(maps, line);) {
    std::istringstream fields(line);
    std::string range;
    std::string rights;
    fields >> range >> rights;
    EXPECT_FALSE(rights[1] == 'w' && rights[2] == 'x') << line;
    executableCount += rights[2] == 'x' ? 1 : 0;
  }
  EXPECT_TRUE(first->isMachineCode() || bestInstructionSet() == InstructionSet::none);
  EXPECT_GT(executableCount, 0u);
}

TEST(MachineCode, IsCheapUnlessItCallsFunctions) {
  if (bestInstructionSet() == InstructionSet::none) {
    GTEST_SKIP() << "no machine code here";
  }
  EXPECT_TRUE(compile("v0*2+v1", InstructionSet::sse2)->isCheap());
  EXPECT_FALSE(compile("v0 > 1 ? sin(v1) : 2", InstructionSet::sse2)->isCheap());
  EXPECT_FALSE(compile("v0*2+v1", InstructionSet::none)->isCheap());
}

// In a process of its own, which the system lets make nothing executable any more.
TEST(MachineCode, EvaluatesWithoutExecutableMemory) {
  constexpr int setMemoryDenyWriteExecute = 65;
  constexpr int notSupported = 42;
  const pid_t child = fork();
  if (child == 0) {
    if (prctl(setMemoryDenyWriteExecute, 1UL, 0UL, 0UL, 0UL) != 0) {
      _exit(notSupported);
    }
    CompileFailure failure;
    const auto function = contextFor().compile("v0*2+sin(v1)", failure);
    const double values[kVariableCount] = {21.0, 0.0};
    const bool isRight =
        function != nullptr && !function->isMachineCode() && (*function)(values) == 42.0;
    _exit(isRight ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == notSupported) {
    GTEST_SKIP() << "this kernel cannot deny it";
  }
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(MachineCode, AStackThatWouldGrowTooLargeIsLeftToTheReference) {
  // Sums that wait for one another: each is used at once and again at the end.
  std::string expression;
  std::string again;
  for (int i = 0; i < 600; ++i) {
    const std::string term = "(v0+" + std::to_string(i) + ")";
    expression += "+" + term;
    again = "-" + term + again;
  }
  const std::string whole = "0" + expression + "*(1" + again + ")";
  constexpr bool fitsOnStack = false;
  EXPECT_EQ(compile(whole)->isMachineCode(), bestInstructionSet() < InstructionSet::avx2);
  expectAgreement(whole, fitsOnStack);
}

TEST(MachineCode, ContextsAndFunctionsServeSeveralThreads) {
  const CompilerContext context = contextFor();
  CompileFailure failure;
  const auto shared = context.compile("sin(v0)*v1+v2", failure);
  const Table table = makeTable(64);
  std::vector<double> expected(64);
  shared->evaluateColumns(table.pointers.data(), 64, expected.data());
  std::array<std::vector<double>, 4> results;
  {
    std::vector<std::jthread> threads;
    for (std::vector<double>& result : results) {
      threads.emplace_back([&] {
        CompileFailure ownFailure;
        const auto own = context.compile("v0+v1", ownFailure);
        result.resize(64);
        own->evaluateColumns(table.pointers.data(), 64, result.data());
        shared->evaluateColumns(table.pointers.data(), 64, result.data());
      });
    }
  }
  for (const std::vector<double>& result : results) {
    EXPECT_EQ(result, expected);
  }
}

TEST(MachineCode, CompilesAtOnce) {
  std::string terms = "v0";
  for (int i = 1; i < 30; ++i) {
    terms += "+" + nameOf(static_cast<std::size_t>(i)) + "*" + std::to_string(i);
  }
  const CompilerContext context = contextFor();
  CompileFailure failure;
  auto best = std::chrono::nanoseconds::max();
  for (int i = 0; i < 50; ++i) {
    const auto start = std::chrono::steady_clock::now();
    ASSERT_NE(context.compile(terms, failure), nullptr);
    best = std::min(best, std::chrono::nanoseconds(std::chrono::steady_clock::now() - start));
  }
  // 30 us on a desktop processor; an order of magnitude apart for slow and instrumented builds.
  EXPECT_LT(best, std::chrono::milliseconds(1));
}

}  // namespace

}  // namespace kelvarin::jit
