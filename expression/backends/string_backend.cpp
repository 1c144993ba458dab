#include "expression/backends/string_backend.h"

#include <algorithm>
#include <exception>
#include <map>
#include <new>
#include <string>
#include <utility>

#include "expression/backends/expression_text.h"
#include "expression/backends/string_functions.h"
#include "expression/backends/string_guard.h"
#include "expression/backends/string_library.h"
#include "expression/backends/string_numeric.h"
#include "expression/backends/string_values.h"
#include "expression/errors/error_texts.h"
#include "expression/errors/messages.h"
#include "expression/functions/called_functions.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

// A variable whose value enters an expression where it is read, though the expression assigns
// another to it further on; the library would take it when the operator is computed.
class ReadVariable final : public mup::Variable {
 public:
  using mup::Variable::Variable;

  bool IsVariable() const override { return false; }
  mup::IToken* Clone() const override { return new ReadVariable(*this); }
};

// A variable that an expression uses, as the library sees it.
struct ValueHolder {
  StoredVariable variable;
  mup::Value value;
};
using ValueHolders = std::map<QString, std::unique_ptr<ValueHolder>>;

void loadText(const TextCell& cell, mup::Value& value) {
  const std::string_view bytes = cell.isNull ? kNullTextBytes : cell.bytes;
  if (value.IsString()) {
    // In place, since the library's assignment copies twice.
    const_cast<mup::string_type&>(value.GetString()).assign(bytes);
  } else {
    value = mup::string_type(bytes);
  }
}

void loadHolder(const VariableStore& variables, ValueHolder& holder) {
  if (holder.variable.isText) {
    loadText(variables.text(holder.variable.index), holder.value);
  } else {
    holder.value = variables.numbers()[holder.variable.index];
  }
}

// False when it is an array.
bool read(const mup::IValue& from, EvaluatedValue& value) {
  switch (from.GetType()) {
    case 'i':
    case 'f':
      value.type = EvaluatedValue::Type::number;
      value.number = from.GetFloat();
      return true;
    case 'b':
      value.type = EvaluatedValue::Type::boolean;
      value.number = from.GetBool() ? 1.0 : 0.0;
      return true;
    case 's':
      value.text = from.GetString();
      value.type = value.text == kNullTextBytes ? EvaluatedValue::Type::nullText
                                                : EvaluatedValue::Type::text;
      return true;
    default:
      return false;
  }
}

std::string utf8(const QString& text) {
  return text.toStdString();
}

mup::Value valueOf(const NamedConstant& constant) {
  if (!constant.isText) {
    return mup::Value(constant.number);
  }
  return mup::Value(constant.text.isNull() ? mup::string_type(kNullTextBytes)
                                           : utf8(constant.text));
}

// The library quotes texts, and the bytes of a null text are nothing to show.
std::string withNullsNamed(std::string text) {
  const std::string quoted = '"' + std::string(kNullTextBytes) + '"';
  for (const std::string_view bytes : {std::string_view(quoted), kNullTextBytes}) {
    for (std::size_t at = text.find(bytes); at != std::string::npos; at = text.find(bytes)) {
      text.replace(at, bytes.size(), "null");
    }
  }
  return text;
}

// What the library was given in place of what the user wrote.
QString asWritten(const std::string& text) {
  QString written = withoutMarks(QString::fromStdString(withNullsNamed(text)));
  for (const Unit& unit : kUnits) {
    const auto length = static_cast<qsizetype>(unit.text.size());
    written.replace(markedUnit(unit.text), QString::fromLatin1(unit.text.data(), length));
  }
  return written;
}

ExpressionError::ValueType typeOf(char code) {
  switch (code) {
    case 'i':
    case 'f':
      return ExpressionError::ValueType::number;
    case 's':
      return ExpressionError::ValueType::text;
    case 'b':
      return ExpressionError::ValueType::condition;
    case 'm':
      return ExpressionError::ValueType::array;
    default:
      return ExpressionError::ValueType::unknown;
  }
}

ExpressionError::Kind kindOf(mup::EErrorCodes code) {
  using Kind = ExpressionError::Kind;
  switch (code) {
    case mup::ecUNASSIGNABLE_TOKEN:
      return Kind::undefinedName;
    case mup::ecUNEXPECTED_OPERATOR:
    case mup::ecUNEXPECTED_VAL:
    case mup::ecUNEXPECTED_VAR:
    case mup::ecUNEXPECTED_PARENS:
    case mup::ecUNEXPECTED_STR:
    case mup::ecUNEXPECTED_CONDITIONAL:
    case mup::ecUNEXPECTED_FUN:
    case mup::ecUNEXPECTED_SQR_BRACKET:
    case mup::ecUNEXPECTED_CURLY_BRACKET:
      return Kind::unexpectedToken;
    case mup::ecUNEXPECTED_COMMA:
      return Kind::unexpectedComma;
    case mup::ecUNTERMINATED_STRING:
      return Kind::unclosedText;
    case mup::ecTOO_FEW_PARAMS:
      return Kind::tooFewArguments;
    case mup::ecTOO_MANY_PARAMS:
      return Kind::tooManyArguments;
    case mup::ecTYPE_CONFLICT:
    case mup::ecTYPE_CONFLICT_FUN:
    case mup::ecTYPE_CONFLICT_IDX:
    case mup::ecINVALID_TYPECAST:
      return Kind::wrongType;
    default:
      return Kind::other;
  }
}

// The library counts positions in bytes, in its messages too.
// `fault` is what an operator or function reported, if one did.
ExpressionError errorOf(mup::ParserError error, const std::string& expression,
                        const mup::ErrorContext& fault = {}) {
  if (error.GetCode() == mup::ecUNDEFINED) {  // one of its assertions
    return {messages::unparsable(), -1, {}};
  }
  mup::ErrorContext& context = error.GetContext();
  context.Pos = positionOfByte(expression, context.Pos);
  const mup::ErrorContext& cause = context.Errc == mup::ecEVAL ? fault : context;
  const ExpressionError::Kind kind = kindOf(cause.Errc);
  const bool isAboutTypes = kind == ExpressionError::Kind::wrongType;
  return {.message = abbreviated(asWritten(error.GetMsg())),
          .position = context.Pos,
          .token = abbreviated(asWritten(context.Ident).trimmed()),
          .kind = kind,
          .found = typeOf(isAboutTypes ? cause.Type1 : char()),
          .wanted = typeOf(isAboutTypes ? cause.Type2 : char())};
}

ExpressionError errorOf(const std::exception& error) {
  const bool isMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
  return {.message = isMemory ? messages::outOfMemory() : QString::fromUtf8(error.what()),
          .kind = isMemory ? ExpressionError::Kind::tooLarge : ExpressionError::Kind::other};
}

ExpressionError errorOf(const FaultyLiteral& fault, const QString& expression) {
  const QStringView literal =
      QStringView(expression).sliced(positionOf(fault.token), sizeOf(fault.token));
  return {.message = fault.message,
          .position = static_cast<int>(fault.position),
          .token = abbreviated(literal.toString())};
}

class StringExpression final : public CompiledExpression {
 public:
  // Shares the holders of the variables with other expressions unless it assigns to one.
  StringExpression(const QString& expression, const ExpressionScope& scope, ValueHolders& shared)
      : m_variables(scope.variables),
        m_mayAssign(mayAssign(expression)),
        m_expression(utf8(expression)),
        m_watch(scope.variables) {
    m_parser.limits().setBound(scope.functions.bounds.textBytes);
    addFunctions(m_parser, scope.functions);
    addNumericFunctions(m_parser, m_watch);
    addValues(valueNames(expression), scope, m_mayAssign ? m_ownHolders : shared);
    m_parser.SetExpr(m_expression);
  }

  // Finds errors without evaluating, which would draw random numbers. Throws the library's error.
  void parse() {
    if (!isComplete()) {
      m_parser.Eval();  // throws the library's message about the first fault
    }
  }

  ExpressionError describe(const mup::ParserError& error) const {
    return errorOf(error, m_expression, m_parser.limits().fault());
  }

  BackendKind kind() const override { return BackendKind::string; }

  TextArguments textArguments() const override {
    return {m_watch.count(), QString::fromStdString(m_watch.function()), 1,
            positionOfByte(m_expression, m_watch.bytePosition()), m_watch.row()};
  }

  std::vector<AssignedValue> assignedValues() const override {
    std::vector<AssignedValue> values;
    for (const ValueHolder* target : m_targets) {
      AssignedValue assigned{target->variable.name, {}};
      if (read(target->value, assigned.value)) {
        values.push_back(assigned);
      }
    }
    return values;
  }

  bool evaluate(EvaluatedValue& value) override {
    m_parser.limits().restart();
    for (const auto& [name, holder] : m_ownHolders) {
      loadHolder(m_variables, *holder);
    }
    try {
      return take(m_parser.Eval(), value);
    } catch (const mup::ParserError& error) {
      m_error = describe(error);
    } catch (const std::exception& error) {
      m_error = errorOf(error);
    }
    return false;
  }

 private:
  // False when the expression does not parse or names what is not defined. Names that are not
  // defined count as variables here, so the fault that is found need not be the first one.
  bool isComplete() const {
    try {
      const mup::var_maptype& names = m_parser.GetExprVar();
      return std::all_of(names.begin(), names.end(),
                         [this](const auto& name) { return m_parser.IsVarDefined(name.first); });
    } catch (const mup::ParserError&) {
      return false;
    }
  }

  bool take(const mup::IValue& result, EvaluatedValue& value) {
    if (read(result, value)) {
      return true;
    }
    m_error = {.message = messages::arrayResult(), .kind = ExpressionError::Kind::notOneValue};
    return false;
  }

  void addValues(QSet<QString> names, const ExpressionScope& scope, ValueHolders& holders) {
    for (const StoredVariable& variable : scope.variables.variables()) {
      if (!isVariableName(variable.name)) {
        continue;
      }
      for (const QString& name : {variable.name, markedColumn(variable.name)}) {
        if (names.remove(name)) {
          m_parser.freeName(utf8(name));
          define(name, holderOf(variable, scope.variables, holders).value);
        }
        if (const QString target = markedTarget(name); names.remove(target)) {
          ValueHolder& holder = holderOf(variable, scope.variables, holders);
          m_targets.push_back(&holder);
          m_parser.DefineVar(utf8(target), mup::Variable(&holder.value));
        }
      }
    }
    for (const NamedConstant& constant : scope.constants) {
      if ((constant.backends & kInString) != 0 && names.remove(constant.name)) {
        const std::string name = utf8(constant.name);
        m_parser.freeName(name);
        m_parser.DefineConst(name, valueOf(constant));
      }
    }
  }

  void define(const QString& name, mup::Value& value) {
    if (m_mayAssign) {
      m_parser.DefineVar(utf8(name), ReadVariable(&value));
    } else {
      m_parser.DefineVar(utf8(name), mup::Variable(&value));
    }
  }

  static ValueHolder& holderOf(const StoredVariable& variable, const VariableStore& variables,
                               ValueHolders& holders) {
    std::unique_ptr<ValueHolder>& holder = holders[variable.name];
    if (holder == nullptr) {
      holder = std::make_unique<ValueHolder>(ValueHolder{variable, mup::Value(0.0)});
      loadHolder(variables, *holder);
    }
    return *holder;
  }

  const VariableStore& m_variables;
  const bool m_mayAssign;
  std::string m_expression;
  ValueHolders m_ownHolders;                  // of all variables it uses, if it may assign to one
  std::vector<const ValueHolder*> m_targets;  // those that it assigns to
  NonNumberWatch m_watch;
  StringLibrary m_parser;
};

}  // namespace

struct StringBackend::State {
  ValueHolders holders;
};

StringBackend::StringBackend() : m_state(std::make_unique<State>()) {}
StringBackend::~StringBackend() = default;

CompileResult StringBackend::compile(const QString& expression, const ExpressionScope& scope) {
  const QSet<QString> columns = namesOf(scope.variables);
  const QString rewritten =
      withMarkedUnits(withMarkedColumns(withSignsForWords(expression, columns), columns));
  if (auto hazard = hazardIn(rewritten, expression)) {
    return Failure{std::move(*hazard)};
  }
  const QString prepared = withMarkedTargets(rewritten, columns);
  StringLibrary::warmUp();
  std::unique_ptr<StringExpression> compiled;
  try {
    compiled = std::make_unique<StringExpression>(prepared, scope, m_state->holders);
    compiled->parse();
    if (const std::optional<FaultyLiteral> fault = faultyLiteral(expression)) {
      return Failure{errorOf(*fault, expression)};
    }
    return std::unique_ptr<CompiledExpression>(std::move(compiled));
  } catch (const mup::ParserError& error) {
    return Failure{compiled == nullptr ? errorOf(error, utf8(prepared))
                                       : compiled->describe(error)};
  } catch (const std::exception& error) {
    return Failure{errorOf(error)};
  }
}

void StringBackend::load(const VariableStore& variables) {
  for (auto& [name, holder] : m_state->holders) {
    loadHolder(variables, *holder);
  }
}

}  // namespace kelvarin
