#include "expression/backends/fast_backend.h"

#include <bit>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <muParser.h>

#include "expression/backends/expression_text.h"
#include "expression/backends/fast_functions.h"
#include "expression/backends/fast_language.h"
#include "expression/backends/fast_signs.h"
#include "expression/errors/error_texts.h"
#include "expression/errors/messages.h"

namespace kelvarin {

namespace {

// As the user wrote it.
QString shown(const std::string& text) {
  return abbreviated(withWrittenSigns(QString::fromLatin1(text.c_str())));
}

ExpressionError::Kind kindOf(mu::EErrorCodes code) {
  using Kind = ExpressionError::Kind;
  switch (code) {
    case mu::ecUNASSIGNABLE_TOKEN:
      return Kind::undefinedName;
    case mu::ecUNEXPECTED_OPERATOR:
    case mu::ecUNEXPECTED_ARG:
    case mu::ecUNEXPECTED_VAL:
    case mu::ecUNEXPECTED_VAR:
    case mu::ecUNEXPECTED_PARENS:
    case mu::ecUNEXPECTED_STR:
    case mu::ecUNEXPECTED_FUN:
    case mu::ecUNEXPECTED_CONDITIONAL:
      return Kind::unexpectedToken;
    case mu::ecUNEXPECTED_ARG_SEP:
      return Kind::unexpectedComma;
    case mu::ecUNTERMINATED_STRING:
      return Kind::unclosedText;
    case mu::ecTOO_FEW_PARAMS:
      return Kind::tooFewArguments;
    case mu::ecTOO_MANY_PARAMS:
      return Kind::tooManyArguments;
    case mu::ecSTRING_EXPECTED:
    case mu::ecVAL_EXPECTED:
    case mu::ecOPRT_TYPE_CONFLICT:
      return Kind::wrongType;
    default:
      return Kind::other;
  }
}

ExpressionError errorOf(const mu::ParserError& error) {
  return {.message = shown(error.GetMsg()),
          .position = error.GetPos(),
          .token = shown(error.GetToken()).trimmed(),
          .kind = kindOf(error.GetCode())};
}

ExpressionError errorOf(const std::exception& error) {
  return {QString::fromUtf8(error.what()), -1, {}};
}

class FastExpression final : public NumberExpression {
 public:
  FastExpression(const QString& expression, const ExpressionScope& scope)
      : m_mayAssign(mayAssign(expression)) {
    addLanguage(m_parser);
    addLatin1Letters();
    m_functions = addFunctions(m_parser, scope.functions);
    addValues(valueNames(expression), scope);
    const QString signs = withSignCharacters(expression, namesOf(scope.variables));
    m_parser.SetExpr(latin1(signs));
  }

  // Finds errors without evaluating, which would draw random numbers and assign variables. An error
  // comes as the library's exception or as one of our own.
  ExpressionError parse() {
    if (!isComplete()) {
      m_parser.Eval();  // throws the message of the first fault
    }
    if (m_parser.GetNumResults() != 1) {
      return {.message = messages::tooManyResults(),
              .kind = ExpressionError::Kind::unexpectedComma};
    }
    return {};
  }

  BackendKind kind() const override { return BackendKind::fast; }

  std::vector<AssignedValue> assignedValues() const override {
    std::vector<AssignedValue> values;
    for (const auto& own : m_ownValues) {
      const bool isAssigned =
          std::bit_cast<std::uint64_t>(own->value) != std::bit_cast<std::uint64_t>(*own->source);
      if (isAssigned) {
        values.push_back({own->name, {EvaluatedValue::Type::number, own->value, {}}});
      }
    }
    return values;
  }

  NumberCall numberCall() override {
    return {m_mayAssign ? evaluateWithOwnValues : evaluateNow, this};
  }

 private:
  // A variable that the expression may assign to, which nobody else is to see.
  struct OwnValue {
    QString name;
    const double* source;
    double value;
  };

  static bool evaluateNow(void* expression, double* number) {
    auto& self = *static_cast<FastExpression*>(expression);
    try {
      *number = self.m_parser.Eval();
      return true;
    } catch (...) {
      return self.keepError();
    }
  }

  static bool evaluateWithOwnValues(void* expression, double* number) {
    for (const auto& own : static_cast<FastExpression*>(expression)->m_ownValues) {
      own->value = *own->source;
    }
    return evaluateNow(expression, number);
  }

  // Of the exception in flight.
  bool keepError() {
    try {
      throw;
    } catch (const mu::ParserError& error) {
      m_error = errorOf(error);
    } catch (const std::exception& error) {
      m_error = errorOf(error);
    }
    return false;
  }

  void addLatin1Letters() {
    std::string names = m_parser.ValidNameChars();
    for (int c = 0xA0; c <= 0xFF; ++c) {
      names.push_back(static_cast<char>(c));
    }
    m_parser.DefineNameChars(names.c_str());
  }

  void addValues(QSet<QString> names, const ExpressionScope& scope) {
    m_parser.ClearConst();
    for (const StoredVariable& variable : scope.variables.variables()) {
      if (!variable.isText && isVariableName(variable.name) && names.remove(variable.name)) {
        m_parser.DefineVar(latin1(variable.name),
                           valueToRead(variable.name, scope.variables.numbers() + variable.index));
      }
    }
    for (const NamedConstant& constant : scope.constants) {
      if ((constant.backends & kInFast) != 0 && names.remove(constant.name)) {
        m_parser.DefineConst(latin1(constant.name), constant.number);
      }
    }
  }

  double* valueToRead(const QString& name, double* source) {
    if (!m_mayAssign) {
      return source;
    }
    m_ownValues.push_back(std::make_unique<OwnValue>(OwnValue{name, source, *source}));
    return &m_ownValues.back()->value;
  }

  // False when the expression does not parse or names what is not defined.
  bool isComplete() const {
    try {
      for (const auto& [name, value] : m_parser.GetUsedVar()) {
        if (m_parser.GetVar().count(name) == 0) {
          return false;
        }
      }
      return true;
    } catch (const mu::ParserError&) {
      return false;
    }
  }

  const bool m_mayAssign;
  std::vector<std::unique_ptr<OwnValue>> m_ownValues;  // of all variables it uses, if it may
  BoundFunctions m_functions;
  mu::Parser m_parser;
};

}  // namespace

CompileResult compileFast(const QString& expression, const ExpressionScope& scope) {
  if (!isLatin1(expression)) {
    const QLatin1String engine(backendLabel(BackendKind::fast));
    return Failure{ExpressionError{.message = messages::notLatin1(engine),
                                   .kind = ExpressionError::Kind::refusedCharacter}};
  }
  if (const qsizetype position = expression.indexOf(QChar(0)); position >= 0) {
    return Failure{ExpressionError{.message = messages::nulCharacter(),
                                   .position = static_cast<int>(position),
                                   .kind = ExpressionError::Kind::refusedCharacter}};
  }
  if (auto refusal = refusalOfSigns(expression)) {
    return Failure{std::move(*refusal)};
  }
  try {
    auto compiled = std::make_unique<FastExpression>(expression, scope);
    ExpressionError error = compiled->parse();
    if (!error.message.isEmpty()) {
      return Failure{std::move(error)};
    }
    return std::unique_ptr<CompiledExpression>(std::move(compiled));
  } catch (const mu::ParserError& error) {
    return Failure{errorOf(error)};
  } catch (const std::exception& error) {
    return Failure{errorOf(error)};
  }
}

}  // namespace kelvarin
