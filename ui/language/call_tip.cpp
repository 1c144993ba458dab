#include "ui/language/call_tip.h"

#include <algorithm>

#include "expression/errors/backend_kind.h"
#include "expression/functions/function_line.h"
#include "expression/tokens/expression_tokens.h"
#include "ui/language/language_names.h"

namespace kelvarin {

namespace {

// A bracket that is open at the cursor.
struct OpenBracket {
  std::size_t token = 0;
  int separators = 0;
};

std::vector<OpenBracket> openBrackets(const ExpressionTokens& tokens, qsizetype cursor) {
  std::vector<OpenBracket> open;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (positionOf(token) + sizeOf(token) > cursor) {
      break;
    }
    if (token.kind == TokenKind::opening) {
      open.push_back({i});
    } else if (token.kind == TokenKind::closing && !open.empty()) {
      open.pop_back();
    } else if (token.kind == TokenKind::separator && !open.empty()) {
      ++open.back().separators;
    }
  }
  return open;
}

QString enginesOf(unsigned backends) {
  QStringList engines;
  for (const auto& [flag, kind] :
       {std::pair{kInNative, BackendKind::native}, std::pair{kInFast, BackendKind::fast},
        std::pair{kInString, BackendKind::string}}) {
    if ((backends & flag) != 0) {
      engines += QString::fromLatin1(editorLabel(kind));
    }
  }
  return engines.join(QStringLiteral(", "));
}

QStringList argumentsIn(const QString& signature) {
  const qsizetype begin = signature.indexOf(u'(') + 1;
  const qsizetype end = signature.lastIndexOf(u')');
  QStringList arguments;
  if (begin > 0 && begin < end) {
    for (const QString& argument : signature.sliced(begin, end - begin).split(u',')) {
      arguments += argument.trimmed();
    }
  }
  return arguments;
}

CallTip tipFor(const QString& name, const LanguageEntry& entry) {
  CallTip tip;
  const HelpEntry& help = *entry.entry;
  tip.name = name;
  tip.before = name + u'(';
  tip.arguments = argumentsIn(QString::fromUtf8(help.signature));
  tip.after = QStringLiteral(")");
  tip.comment = QString::fromUtf8(help.comment);
  tip.engines = enginesOf(entry.backends);
  tip.nulls = QString::fromUtf8(help.nulls);
  tip.example = QString::fromUtf8(help.example);
  tip.note = QString::fromUtf8(help.note);
  return tip;
}

}  // namespace

std::optional<CallTip> callTipAt(const QString& expression, qsizetype cursor) {
  const ExpressionTokens tokens(expression);
  std::vector<OpenBracket> open = openBrackets(tokens, cursor);
  for (; !open.empty(); open.pop_back()) {
    const std::size_t before = tokenBefore(tokens.all(), open.back().token);
    const bool isCalled =
        before != kNoToken && tokens[open.back().token].sign == "(" && isCall(tokens.all(), before);
    if (!isCalled) {
      continue;
    }
    const QString name = tokens.textAt(before).toString();
    const LanguageEntry* entry = languageNames().value(name);
    if (entry == nullptr || entry->kind != HelpKind::function) {
      return std::nullopt;
    }
    CallTip tip = tipFor(name, *entry);
    tip.nameStart = positionOf(tokens[before]);
    tip.argument = open.back().separators;
    if (!entry->argumentCount && !tip.arguments.isEmpty()) {  // the last one stands for more
      tip.argument = std::min(tip.argument, static_cast<int>(tip.arguments.size()) - 1);
    }
    return tip;
  }
  return std::nullopt;
}

}  // namespace kelvarin
