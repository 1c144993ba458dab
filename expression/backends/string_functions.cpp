#include "expression/backends/string_functions.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "expression/backends/string_values.h"
#include "expression/functions/function_table.h"

namespace kelvarin {

namespace {

using Numbers = std::array<double, kMaximumArgumentCount>;

template <typename Body, std::size_t... I>
double callWith(Body body, FunctionContext& context, const Numbers& numbers,
                std::index_sequence<I...>) {
  if constexpr (std::is_invocable_v<Body, decltype(numbers[I])...>) {
    return body(numbers[I]...);
  } else {
    return body(context, numbers[I]...);
  }
}

double call(const NumberBody& body, FunctionContext& context, const Numbers& numbers) {
  return std::visit(
      [&](auto function) {
        using Body = decltype(function);
        if constexpr (std::is_same_v<Body, std::monostate> || std::is_same_v<Body, NumberMany>) {
          return kNullNumber;
        } else {
          constexpr std::size_t count = countOfArguments(decltype(function){});
          return callWith(function, context, numbers, std::make_index_sequence<count>());
        }
      },
      body);
}

void refuseType(EvaluationLimits& limits, const mup::ICallback& callback, int argument, char found,
                char expected) {
  limits.keepingFault([&] {
    throw mup::ParserError(mup::ErrorContext(mup::ecTYPE_CONFLICT_FUN, callback.GetExprPos(),
                                             callback.GetIdent(), found, expected, argument + 1));
  });
}

// A function of any number of numbers.
class ManyNumbersFunction final : public mup::ICallback {
 public:
  ManyNumbersFunction(const FunctionLine& line, EvaluationLimits& limits)
      : mup::ICallback(mup::cmFUNC, line.name, kAnyArgumentCount),
        m_line(line),
        m_limits(limits),
        m_body(std::get<NumberMany>(line.body.number)) {}

  const mup::char_type* GetDesc() const override { return m_line.help; }
  mup::IToken* Clone() const override { return new ManyNumbersFunction(*this); }

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    if (count < 1) {
      throw mup::ParserError(mup::ErrorContext(mup::ecTOO_FEW_PARAMS, GetExprPos(), GetIdent()));
    }
    m_numbers.clear();
    for (int i = 0; i < count; ++i) {
      const char type = arguments[i]->GetType();
      if (type != 'f' && type != 'i') {
        refuseType(m_limits, *this, i, type, 'f');
      }
      m_numbers.push_back(arguments[i]->GetFloat());
    }
    *result = m_body(m_numbers);
  }

 private:
  const FunctionLine& m_line;
  EvaluationLimits& m_limits;
  NumberMany m_body;
  std::vector<double> m_numbers;
};

bool isTestValue(const mup::IValue& value) {
  const auto* test = dynamic_cast<const TestValue*>(&value);
  return test != nullptr && test->isTest();
}

class TableFunction final : public mup::ICallback {
 public:
  TableFunction(const FunctionLine& line, FunctionContext& context, EvaluationLimits& limits)
      : mup::ICallback(mup::cmFUNC, line.name, line.argumentCount),
        m_line(line),
        m_context(context),
        m_limits(limits) {}

  const mup::char_type* GetDesc() const override { return m_line.help; }
  mup::IToken* Clone() const override { return new TableFunction(*this); }

  void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override {
    readArguments(arguments, count);
    const bool isOfNumbers = m_line.body.number.index() != 0 && m_firstText < 0;
    if (isOfNumbers) {
      setNumber(result, arguments, call(m_line.body.number, m_context, m_numbers));
    } else if (m_line.body.value != nullptr) {
      const std::span<const FunctionArgument> values(m_arguments.data(),
                                                     static_cast<std::size_t>(count));
      m_line.body.value(m_context, values, m_result);
      setResult(result, arguments);
    } else if (m_arguments[static_cast<std::size_t>(m_firstText)].isNull()) {
      *result = kNullNumber;
    } else {
      refuseType(m_limits, *this, m_firstText, 's', 'f');
    }
  }

 private:
  void readArguments(const mup::ptr_val_type* arguments, int count) {
    m_firstText = -1;
    for (int i = 0; i < count; ++i) {
      const auto index = static_cast<std::size_t>(i);
      const mup::IValue& value = *arguments[i];
      switch (value.GetType()) {
        case 'i':
        case 'f':
        case 'b':
          m_numbers[index] = value.GetFloat();
          m_arguments[index] = FunctionArgument(m_numbers[index]);
          break;
        case 's':
          m_firstText = m_firstText < 0 ? i : m_firstText;
          m_arguments[index] = isNullTextValue(value)
                                   ? FunctionArgument::nullText()
                                   : FunctionArgument(std::string_view(value.GetString()));
          break;
        default:
          refuseType(m_limits, *this, i, value.GetType(), 's');
      }
    }
  }

  void setNumber(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, double number) {
    if (m_line.result == ResultKind::test || hasConditionArgument(arguments)) {
      result = mup::ptr_val_type(new TestValue(number));
    } else {
      *result = number;
    }
  }

  // A choice among its arguments returns a number that does not show which it was, so one condition
  // makes it one.
  bool hasConditionArgument(const mup::ptr_val_type* arguments) const {
    if (m_line.result != ResultKind::argument) {
      return false;
    }
    for (int i = 0; i < m_line.argumentCount; ++i) {
      if (arguments[i]->GetType() == 'b' || isTestValue(*arguments[i])) {
        return true;
      }
    }
    return false;
  }

  void setResult(mup::ptr_val_type& result, const mup::ptr_val_type* arguments) {
    switch (m_result.kind()) {
      case FunctionResult::Kind::number:
        setNumber(result, arguments, m_result.number());
        break;
      case FunctionResult::Kind::text:
        m_limits.takeText(*this, m_result.text().size());
        *result = m_result.text();
        break;
      case FunctionResult::Kind::nullText:
        *result = mup::string_type(kNullTextBytes);
        break;
      case FunctionResult::Kind::argument:
        setArgument(result, arguments[m_result.argument()]);
        break;
      case FunctionResult::Kind::failure:
        refuse(*this, m_result.message());
    }
  }

  // The library may pass the first argument's object as the result's.
  static void setArgument(mup::ptr_val_type& result, const mup::ptr_val_type& argument) {
    if (result.Get() == argument.Get()) {
      return;
    }
    if (isTestValue(*argument)) {
      result = mup::ptr_val_type(new TestValue(argument->GetFloat()));
    } else {
      *result = *argument;
    }
  }

  const FunctionLine& m_line;
  FunctionContext& m_context;
  EvaluationLimits& m_limits;
  Numbers m_numbers{};
  std::array<FunctionArgument, kMaximumArgumentCount> m_arguments;
  int m_firstText = -1;
  FunctionResult m_result;
};

mup::ptr_cal_type callbackOf(const FunctionLine& line, FunctionContext& context,
                             EvaluationLimits& limits) {
  if (line.argumentCount == kAnyArgumentCount) {
    return mup::ptr_cal_type(new ManyNumbersFunction(line, limits));
  }
  return mup::ptr_cal_type(new TableFunction(line, context, limits));
}

}  // namespace

void addFunctions(StringLibrary& parser, FunctionContext& context) {
  for (const FunctionLine& line : functionTable()) {
    if ((line.backends & kInString) != 0) {
      parser.RemoveFun(line.name);
      parser.DefineFun(callbackOf(line, context, parser.limits()));
    }
  }
}

}  // namespace kelvarin
