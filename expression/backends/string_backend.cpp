#include "expression/backends/string_backend.h"

#include <exception>
#include <map>
#include <new>
#include <string>
#include <utility>

#include "expression/backends/expression_text.h"
#include "expression/backends/string_functions.h"
#include "expression/backends/string_guard.h"
#include "expression/backends/string_library.h"
#include "expression/backends/string_values.h"
#include "expression/errors/error_texts.h"
#include "expression/errors/messages.h"

namespace kelvarin {

namespace {

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
    loadText(variables.text(holder.variable.place), holder.value);
  } else {
    holder.value = variables.numbers()[holder.variable.place];
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
  for (const jit::Unit& unit : jit::kUnits) {
    const auto length = static_cast<qsizetype>(unit.text.size());
    written.replace(markedUnit(unit), QString::fromLatin1(unit.text.data(), length));
  }
  return written;
}

// The library counts positions in bytes, in its messages too.
QString withUnitPosition(QString message, int bytePosition, int unitPosition) {
  const QString pattern = QStringLiteral("position %1");
  return message.replace(pattern.arg(bytePosition), pattern.arg(unitPosition));
}

ExpressionError errorOf(const mup::ParserError& error, const std::string& expression) {
  const QString message = asWritten(error.GetMsg());
  if (message.startsWith(QLatin1String("Assertion"))) {
    return {QString::fromUtf8(messages::kUnparsable), -1, {}};
  }
  const int position = positionOfByte(expression, error.GetPos());
  return {abbreviated(withUnitPosition(message, error.GetPos(), position)), position,
          abbreviated(asWritten(error.GetToken()).trimmed())};
}

ExpressionError errorOf(const std::exception& error) {
  const bool isMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
  return {isMemory ? QString::fromUtf8(messages::kOutOfMemory) : QString::fromUtf8(error.what()),
          -1,
          {}};
}

class StringExpression final : public CompiledExpression {
 public:
  StringExpression(const QString& expression, const ExpressionScope& scope, ValueHolders& holders)
      : m_expression(utf8(expression)) {
    addFunctions(m_parser, scope.functions);
    addValues(valueNames(expression), scope, holders);
    m_parser.SetExpr(m_expression);
  }

  // Finds errors without evaluating, which would draw random numbers and assign variables. Throws
  // the library's error.
  void parse() {
    for (const auto& [name, place] : m_parser.GetExprVar()) {
      if (!m_parser.IsVarDefined(name)) {
        m_parser.Eval();  // throws the library's message about the name
      }
    }
  }

  ExpressionError describe(const mup::ParserError& error) const {
    return errorOf(error, m_expression);
  }

  BackendKind kind() const override { return BackendKind::string; }

  bool evaluate(EvaluatedValue& value) override {
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
  bool take(const mup::IValue& result, EvaluatedValue& value) {
    switch (result.GetType()) {
      case 'i':
      case 'f':
        value.type = EvaluatedValue::Type::number;
        value.number = result.GetFloat();
        return true;
      case 'b':
        value.type = EvaluatedValue::Type::boolean;
        value.number = result.GetBool() ? 1.0 : 0.0;
        return true;
      case 's':
        value.text = result.GetString();
        value.type = value.text == kNullTextBytes ? EvaluatedValue::Type::nullText
                                                  : EvaluatedValue::Type::text;
        return true;
      default:
        m_error = {QString::fromUtf8(messages::kArrayResult), -1, {}};
        return false;
    }
  }

  void addValues(QSet<QString> names, const ExpressionScope& scope, ValueHolders& holders) {
    for (const StoredVariable& variable : scope.variables.variables()) {
      if (!isVariableName(variable.name)) {
        continue;
      }
      for (const QString& name : {variable.name, markedColumn(variable.name)}) {
        if (names.remove(name)) {
          m_parser.freeName(utf8(name));
          m_parser.DefineVar(utf8(name),
                             mup::Variable(&holderOf(variable, scope.variables, holders).value));
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

  static ValueHolder& holderOf(const StoredVariable& variable, const VariableStore& variables,
                               ValueHolders& holders) {
    std::unique_ptr<ValueHolder>& holder = holders[variable.name];
    if (holder == nullptr) {
      holder = std::make_unique<ValueHolder>(ValueHolder{variable, mup::Value(0.0)});
      loadHolder(variables, *holder);
    }
    return *holder;
  }

  std::string m_expression;
  StringLibrary m_parser;
};

}  // namespace

struct StringBackend::State {
  ValueHolders holders;
};

StringBackend::StringBackend() : m_state(std::make_unique<State>()) {}
StringBackend::~StringBackend() = default;

CompileResult StringBackend::compile(const QString& expression, const ExpressionScope& scope) {
  const QSet<QString> columns = namesOf(scope);
  const QString prepared =
      withMarkedUnits(withMarkedColumns(withSignsForWords(expression, columns), columns));
  if (auto hazard = hazardIn(prepared, expression)) {
    return Failure{std::move(*hazard)};
  }
  StringLibrary::warmUp();
  std::unique_ptr<StringExpression> compiled;
  try {
    compiled = std::make_unique<StringExpression>(prepared, scope, m_state->holders);
    compiled->parse();
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
