#include "expression/evaluator/backend_choice.h"

#include <algorithm>

#include "expression/backends/expression_text.h"
#include "expression/backends/fast_backend.h"
#include "expression/backends/native_backend.h"
#include "expression/errors/expression_mark.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

bool isTried(BackendKind kind, const BackendRules& rules) {
  if (rules.required) {
    return *rules.required == kind;
  }
  const bool takesNumbersOnly = kind != BackendKind::string;
  const bool isOff = kind == BackendKind::native && !rules.allowsNative;
  return !isOff && !(takesNumbersOnly && (rules.isObserved || rules.isText));
}

EngineChoice::Reason reasonOf(BackendKind chosen, const BackendRules& rules) {
  if (rules.required) {
    return EngineChoice::Reason::required;
  }
  if (chosen == BackendKind::native) {
    return EngineChoice::Reason::fastest;
  }
  if (rules.isText) {
    return EngineChoice::Reason::textResult;
  }
  if (rules.isObserved) {
    return EngineChoice::Reason::observed;
  }
  return chosen == BackendKind::fast && !rules.allowsNative ? EngineChoice::Reason::nativeIsOff
                                                            : EngineChoice::Reason::token;
}

CompileResult compileWith(BackendKind kind, const QString& text, const ExpressionScope& scope,
                          StringBackend& stringBackend) {
  switch (kind) {
    case BackendKind::native:
      return compileNative(text, scope);
    case BackendKind::fast:
      return compileFast(text, scope);
    case BackendKind::string:
      break;
  }
  return stringBackend.compile(text, scope);
}

bool isBeyondLatin1(QStringView text) {
  return std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0xFF; });
}

// Of a wrong argument, engines report the function with the position behind the argument.
int beginOf(const ExpressionError& refusal, const QString& expression) {
  const qsizetype position = std::clamp<qsizetype>(refusal.position, 0, expression.size());
  if (QStringView(expression).sliced(position).startsWith(refusal.token)) {
    return static_cast<int>(position);
  }
  ExpressionError function;
  function.token = refusal.token;
  return withPosition(function, expression.first(position)).position;
}

// Where an engine reports no token, it is the one at the position, or else the first one with a
// character that the engines of numbers do not take.
void setToken(EngineChoice& choice, const ExpressionError& refusal, const QString& expression) {
  choice.token = refusal.token;
  choice.position = refusal.position;
  if (!refusal.token.isEmpty()) {
    choice.position = beginOf(refusal, expression);
    return;
  }
  const ExpressionTokens tokens(expression);
  for (const Token& token : tokens) {
    const QStringView text = tokens.text(token);
    const bool isMeant = refusal.position < 0 ? isBeyondLatin1(text)
                                              : positionOf(token) + text.size() > refusal.position;
    if (isMeant && token.kind != TokenKind::blank) {
      choice.token = text.toString();
      choice.position = static_cast<int>(positionOf(token));
      return;
    }
  }
}

}  // namespace

ChosenBackend compileWithFirstFit(const QString& expression, const BackendRules& rules,
                                  const ExpressionScope& scope, StringBackend& stringBackend) {
  const QString text = withoutLineBreaks(expression);
  ChosenBackend chosen{Failure{ExpressionError{}}, {}};
  ExpressionError refusal;  // of the next faster one
  for (const BackendKind kind : {BackendKind::native, BackendKind::fast, BackendKind::string}) {
    if (!isTried(kind, rules)) {
      continue;
    }
    chosen.compiled = compileWith(kind, text, scope, stringBackend);
    if (chosen.compiled) {
      chosen.choice.engine = kind;
      break;
    }
    refusal = withPosition(chosen.compiled.error(), expression);
  }
  chosen.choice.reason = reasonOf(chosen.choice.engine, rules);
  if (chosen.choice.reason == EngineChoice::Reason::token) {
    setToken(chosen.choice, refusal, expression);
  }
  return chosen;
}

}  // namespace kelvarin
