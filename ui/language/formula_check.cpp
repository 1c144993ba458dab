#include "ui/language/formula_check.h"

#include <algorithm>

#include "expression/backends/expression_text.h"
#include "expression/evaluator/expression_warnings.h"
#include "expression/evaluator/variable_names.h"
#include "expression/functions/called_functions.h"
#include "expression/help/expression_hint.h"
#include "ui/language/formula_evaluator.h"
#include "ui/language/input_rows.h"
#include "ui/language/language_names.h"
#include "ui/language/messages.h"
#include "ui/language/outside_sources.h"
#include "ui/language/quick_fixes.h"
#include "ui/language/sub_expressions.h"

namespace kelvarin {

namespace {

using CheckKind = ExpressionCheck::Kind;

constexpr char kLanguageList[] = "the help (F1)";

QStringList namesOf(const std::vector<InputVariable>& variables) {
  QStringList names;
  for (const InputVariable& variable : variables) {
    names += variable.name();
  }
  return names;
}

QStringList namesOf(const PinColumns& columns) {
  QStringList names;
  for (const PinColumns::Column& column : columns.columns) {
    names += column.name;
  }
  return names;
}

// Finds errors as a check does, but for those that only an evaluation finds.
ExpressionCheck compiledOnly(FormulaEvaluator& evaluator) {
  const Status<ExpressionError> added = evaluator.addOutput();
  if (!added) {
    return ExpressionCheck::failure(added.error());
  }
  ExpressionCheck check;
  check.engine = evaluator.output(0).engine;
  return check;
}

ExpressionCheck checkOf(const Formula& formula, CheckDepth depth, FormulaEvaluator& evaluator) {
  if (const auto named = checkNames(formula.variables, formula.options); !named) {
    return ExpressionCheck::failure(named.error());
  }
  ExpressionCheck check =
      depth == CheckDepth::compiledOnly ? compiledOnly(evaluator) : evaluator.checkOutput();
  const ExpressionPurpose purpose =
      formula.use == ResultUse::truth ? ExpressionPurpose::condition : ExpressionPurpose::value;
  check.setWarnings(warningsAboutNames(formula.variables) +
                    warningsAbout(formula.output.name, formula.output.expression, purpose) +
                    check.warnings);
  return check;
}

// The variables that the expression names and whose columns the input has not.
QString missingColumn(const Formula& formula) {
  if (!formula.columns.isKnown) {
    return {};
  }
  const QStringList columns = namesOf(formula.columns);
  const QSet<QString> used = valueNames(formula.output.expression);
  for (const InputVariable& variable : formula.variables) {
    for (const QString& unexpanded : variable.columns) {
      const QString column = formula.parameters.expandString2(unexpanded);
      if (used.contains(variable.name()) && !columns.contains(column)) {
        return language_messages::columnIsGone(variable.name(), column);
      }
    }
  }
  return {};
}

// The library's text without the lines that repeat token and position, and what may be meant.
QString messageAbout(const ExpressionCheck& check, const Formula& formula,
                     const std::vector<QuickFix>& fixes) {
  if (check.kind != CheckKind::error) {
    const QString text = check.text.isEmpty() ? QString() : check.text + u'\n';
    return (text + check.warnings.join(u'\n')).trimmed();
  }
  const QString& expression = formula.output.expression;
  if (check.error.kind == ExpressionError::Kind::textForNumber) {
    return language_messages::textForNumber();
  }
  const HintNames names{namesOf(formula.variables), namesOf(formula.columns), nullptr,
                        kLanguageList};
  QString hint = expressionHint(check.error, expression, names);
  const QString text = check.error.message.isEmpty() ? check.text : check.error.message;
  const FaultRange unknown = unknownNameOf(check, formula);
  const bool isOfText = check.error.kind == ExpressionError::Kind::unclosedText;
  if (isOfText && !hint.isEmpty()) {
    return hint;
  }
  if (unknown.start < 0) {
    return (text + u'\n' + hint).trimmed();
  }
  const QString name = expression.sliced(unknown.start, unknown.size);
  if (!fixes.empty() && !fixes.front().columnToBind.isEmpty() &&
      fixes.front().start == unknown.start) {
    return language_messages::unboundName(fixes.front().columnToBind);
  }
  return namesNotOffered(formula).contains(name) ? language_messages::notOffered(name)
         : hint.isEmpty()                        ? text
                                                 : hint;
}

QString typeInWords(const ExpressionCheck& check, const Formula& formula) {
  using Type = ExpressionValue::Type;
  if (!check.value) {
    return {};
  }
  const Type type = check.value->type;
  if (formula.use == ResultUse::truth) {
    return type == Type::text      ? language_messages::textAsCondition()
           : type == Type::boolean ? language_messages::trueOrFalse()
                                   : language_messages::numberAsCondition();
  }
  if (type == Type::text) {
    return language_messages::textType();
  }
  if (formula.use == ResultUse::column && formula.output.meta == MetaTypeColumn::key) {
    return language_messages::key();
  }
  if (formula.use == ResultUse::column && !isNumberMeta(formula.output.meta)) {
    return language_messages::numberAsText();
  }
  return type == Type::boolean ? language_messages::trueOrFalse() : language_messages::number();
}

BackendKind nextFaster(BackendKind kind, const Formula& formula) {
  return kind == BackendKind::string || !formula.options.useJIT ? BackendKind::fast
                                                                : BackendKind::native;
}

QString engineInWords(const EngineChoice& choice, const Formula& formula) {
  using Reason = EngineChoice::Reason;
  QString engine = QString::fromLatin1(editorLabel(choice.engine));
  const QString faster = QString::fromLatin1(editorLabel(nextFaster(choice.engine, formula)));
  switch (choice.reason) {
    case Reason::token:
      return choice.token.isEmpty() ? language_messages::slower(engine, faster)
                                    : language_messages::notTakenBy(engine, faster, choice.token);
    case Reason::textResult:
      return language_messages::becauseText(engine);
    case Reason::observed:
      return language_messages::becauseObserved(engine);
    case Reason::nativeIsOff:
      return language_messages::becauseNativeIsOff(engine);
    case Reason::fastest:
    case Reason::required:
      break;
  }
  return engine;
}

std::vector<FormulaValue> valuesOfRows(const Formula& formula, FormulaEvaluator& evaluator,
                                       std::chrono::steady_clock::time_point deadline) {
  std::vector<FormulaValue> values;
  if (!evaluator.hasRows() || !evaluator.hasOutput()) {
    return values;
  }
  evaluator.start();
  const std::size_t count = std::min<std::size_t>(formula.rows->rowCount(), InputRows::kRows);
  for (std::size_t row = 0; row < count && std::chrono::steady_clock::now() < deadline; ++row) {
    (void)evaluator.loadRow(row);
    values.push_back(evaluator.evaluate(0));
  }
  return values;
}

void noteDebugger(FormulaAnswer& answer, const QString& expression) {
  const std::optional<Token> call = undebuggableCall(expression);
  if (!call) {
    return;
  }
  const auto start = static_cast<qsizetype>(call->start);
  const auto size = static_cast<qsizetype>(call->size);
  const QString name = expression.sliced(start, size);
  answer.debuggerNote = language_messages::unknownToDebugger(name);
  if (const QString spelling = debuggableSpelling(name); !spelling.isEmpty()) {
    answer.debuggerNote += language_messages::sameForBoth(spelling);
    answer.debuggerFix =
        QuickFix{language_messages::replaceBy(spelling), start, size, spelling, {}};
  }
}

// What keeps the formula from having values; empty where nothing does.
QString obstacleToValues(const Formula& formula, CheckDepth depth) {
  if (depth == CheckDepth::compiledOnly) {
    return language_messages::isBusy();
  }
  const QString& expression = formula.output.expression;
  if (const auto file = callOf(Source::files, expression)) {
    return language_messages::readsFile(
        expression.sliced(static_cast<qsizetype>(file->start), static_cast<qsizetype>(file->size)));
  }
  return missingColumn(formula);
}

void append(QString& message, const QString& text) {
  message += message.isEmpty() || text.isEmpty() ? text : u'\n' + text;
}

}  // namespace

FormulaAnswer checkFormula(const Formula& asked, CheckDepth depth,
                           std::chrono::steady_clock::time_point deadline) {
  const Formula formula = withParametersReplaced(asked);
  FormulaAnswer answer;
  FormulaEvaluator evaluator(formula);
  answer.check = checkOf(formula, depth, evaluator);
  const FaultRange fault = faultRangeOf(answer.check, formula);
  answer.faultStart = fault.start;
  answer.faultSize = fault.size;
  answer.fixes = quickFixesOf(answer.check, formula);
  answer.message = messageAbout(answer.check, formula, answer.fixes);
  answer.resultType = typeInWords(answer.check, formula);
  answer.engine = answer.check.engine ? engineInWords(*answer.check.engine, formula)
                                      : QString::fromLatin1(editorLabel(std::nullopt));
  noteDebugger(answer, formula.output.expression);
  if (!answer.check.isCompiled()) {
    return answer;
  }
  const QString obstacle = obstacleToValues(formula, depth);
  append(answer.message, obstacle);
  answer.isComplete = depth == CheckDepth::evaluated;
  if (obstacle.isEmpty()) {
    answer.values = valuesOfRows(formula, evaluator, deadline);
  }
  return answer;
}

PartAnswer evaluatePart(const Formula& asked, qsizetype start, qsizetype size) {
  Formula formula = withParametersReplaced(asked);
  PartAnswer answer;
  const SubExpressions tree(formula.output.expression, variableNamesOf(formula));
  const std::size_t index =
      tree.isComplete() ? tree.smallestAt(start, size) : ExpressionPart::kNone;
  if (index == ExpressionPart::kNone) {
    return answer;
  }
  answer.start = tree[index].start;
  answer.size = tree[index].size;
  formula.output.expression = tree.textOf(index);
  const OutsideSources sources(formula.output.expression, variableNamesOf(formula));
  answer.mayDiffer = sources.any();
  FormulaEvaluator evaluator(formula);
  if (sources.readsFile()) {
    answer.value.failure = language_messages::readsFile(sources.fileFunction());
    return answer;
  }
  const Status<ExpressionError> added =
      evaluator.add(formula.output.expression, ResultUse::anyValue);
  if (!added) {
    answer.value.failure = added.error().message;
    return answer;
  }
  evaluator.start();
  answer.isRowKnown = evaluator.loadBestRow() != FormulaEvaluator::Row::samples;
  answer.value = evaluator.evaluate(0);
  return answer;
}

FormulaAnswer answerAboutTime() {
  FormulaAnswer answer;
  answer.check = ExpressionCheck::failure(language_messages::tookTooLong());
  answer.message = answer.check.text;
  answer.engine = QString::fromLatin1(editorLabel(std::nullopt));
  answer.isComplete = false;
  return answer;
}

}  // namespace kelvarin
