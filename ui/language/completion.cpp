#include "ui/language/completion.h"

#include <algorithm>
#include <utility>

#include "expression/functions/function_table.h"
#include "expression/help/foreign_names.h"
#include "expression/tokens/expression_tokens.h"
#include "ui/language/column_variable.h"
#include "ui/language/language_names.h"
#include "ui/language/messages.h"

namespace kelvarin {

namespace {

using Kind = Candidate::Kind;

// How well a name fits what was typed. A better way to fit outweighs all else.
namespace fit {
constexpr double kSame = 1000.0;
constexpr double kSamePrefix = 900.0;
constexpr double kForeignSame = 880.0;
constexpr double kPrefix = 850.0;
constexpr double kHumps = 700.0;
constexpr double kPart = 650.0;
constexpr double kInside = 500.0;
constexpr double kForeignPrefix = 400.0;
constexpr double kLetters = 200.0;
constexpr double kNone = -1.0;
constexpr double kOfUse = 2.0;  // for each, up to
constexpr int kUsesThatCount = 20;
constexpr double kOfCharacter = -0.5;  // shorter names first
}  // namespace fit

double fitOfKind(Kind kind) {
  switch (kind) {
    case Kind::variable:
      return 15.0;
    case Kind::column:
      return 8.0;
    case Kind::function:
      return 5.0;
    default:
      return 0.0;
  }
}

bool beginsPart(const QString& name, qsizetype index) {
  if (index == 0 || !name[index - 1].isLetterOrNumber()) {
    return name[index].isLetterOrNumber();
  }
  return name[index].isUpper() && !name[index - 1].isUpper();
}

// `dsp` of `daysPerSite` and `days_per_site`.
QString humpsOf(const QString& name) {
  QString humps;
  for (qsizetype i = 0; i < name.size(); ++i) {
    if (beginsPart(name, i)) {
      humps += name[i].toLower();
    }
  }
  return humps;
}

// `prTo` is for `priceTotal`: a capital goes on with the next part of the name that begins so.
bool hasPartsInOrder(const QString& name, const QString& word) {
  qsizetype at = 0;
  for (qsizetype i = 0; i < word.size(); ++i, ++at) {
    const QChar letter = word[i].toLower();
    while (i > 0 && word[i].isUpper() && at < name.size() &&
           !(beginsPart(name, at) && name[at].toLower() == letter)) {
      ++at;
    }
    if (at >= name.size() || name[at].toLower() != letter) {
      return false;
    }
  }
  return true;
}

bool hasLettersInOrder(const QString& text, const QString& letters) {
  qsizetype at = 0;
  for (const QChar letter : letters) {
    at = text.indexOf(letter, at);
    if (at < 0) {
      return false;
    }
    ++at;
  }
  return true;
}

double fitOf(const QString& name, const QString& folded, const QString& humps, const QString& word,
             const QString& foldedWord) {
  constexpr qsizetype kEnoughLetters = 3;
  if (word.isEmpty()) {
    return 0.0;
  }
  const qsizetype at = folded.indexOf(foldedWord);
  if (at == 0) {
    return name == word ? fit::kSame : name.startsWith(word) ? fit::kSamePrefix : fit::kPrefix;
  }
  if (humps.startsWith(foldedWord) || hasPartsInOrder(name, word)) {
    return fit::kHumps;
  }
  if (at > 0) {
    return beginsPart(name, at) ? fit::kPart : fit::kInside;
  }
  const bool isFuzzy = word.size() >= kEnoughLetters && folded.front() == foldedWord.front() &&
                       hasLettersInOrder(folded, foldedWord);
  return isFuzzy ? fit::kLetters : fit::kNone;
}

QString typeOf(MetaTypeColumn meta) {
  switch (meta) {
    case MetaTypeColumn::number:
      return language_messages::number();
    case MetaTypeColumn::key:
      return language_messages::key();
    case MetaTypeColumn::date:
      return language_messages::date();
    case MetaTypeColumn::text:
      break;
  }
  return language_messages::textType();
}

QString typeOf(VariableKind kind) {
  return kind == VariableKind::number ? language_messages::number()
         : kind == VariableKind::date ? language_messages::date()
                                      : language_messages::textType();
}

QHash<QString, QString> resultTypes() {
  QHash<QString, QString> types;
  for (const FunctionLine& line : functionTable()) {
    const QString type = line.result == ResultKind::number ? language_messages::number()
                         : line.result == ResultKind::test ? language_messages::trueOrFalse()
                         : line.result == ResultKind::text ? language_messages::textType()
                                                           : QString();
    types.insert(QString::fromLatin1(line.name), type);
  }
  return types;
}

// What is being typed at the cursor; a size of -1 where nothing can be completed.
struct TypedWord {
  qsizetype start = 0;
  qsizetype size = -1;
  QString text;  // up to the cursor
  bool isCalled = false;
};

TypedWord typedWord(const QString& expression, qsizetype cursor) {
  const ExpressionTokens tokens(expression);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    const qsizetype start = positionOf(token);
    const qsizetype end = start + sizeOf(token);
    if (start >= cursor || end < cursor) {
      continue;
    }
    if (token.kind == TokenKind::name) {
      const bool isFree = isFreeName(tokens.all(), i);
      return {start, isFree ? end - start : -1, expression.sliced(start, cursor - start),
              isCall(tokens.all(), i)};
    }
    const bool isOpenText =
        token.kind == TokenKind::text && (cursor < end || token.fault == TokenFault::unclosed);
    const bool isClosed =
        isOpenText || token.kind == TokenKind::number || token.kind == TokenKind::comment;
    // A name may begin right here.
    const bool beginsName =
        cursor == end && i + 1 < tokens.size() && tokens[i + 1].kind == TokenKind::name;
    if (isClosed || !beginsName) {
      return {cursor, isClosed ? -1 : 0, {}, false};
    }
  }
  return {cursor, 0, {}, false};
}

}  // namespace

Completion::Completion(const Formula& formula) : m_variables(formula.variables) {
  for (InputVariable& variable : m_variables) {
    variable.label = formula.parameters.expandString2(variable.label);
  }
  addVariables(formula);
  addColumns(formula);
  addParameters(formula);
  addLanguage(formula);
}

void Completion::add(Candidate candidate) {
  if (candidate.name.isEmpty()) {
    return;  // a variable that has no column yet
  }
  if (candidate.insertion.isEmpty()) {
    candidate.insertion = candidate.name;
  }
  if (candidate.cursor == 0) {
    candidate.cursor = candidate.insertion.size();
  }
  if (candidate.signature.isEmpty()) {
    candidate.signature = candidate.name;
  }
  const QString name = candidate.name;
  m_entries.push_back({std::move(candidate), name.toLower(), humpsOf(name)});
}

void Completion::addVariables(const Formula& formula) {
  for (const InputVariable& variable : m_variables) {
    Candidate candidate;
    candidate.name = variable.name();
    const QString column = formula.parameters.expandString2(variable.columns.value(0));
    if (column != candidate.name && !column.isEmpty()) {
      candidate.comment = language_messages::columnOfVariable(column);
    }
    candidate.type = typeOf(kindOf(variable));
    add(std::move(candidate));
  }
}

void Completion::addColumns(const Formula& formula) {
  QSet<QString> bound;
  for (const InputVariable& variable : m_variables) {
    for (const QString& column : variable.columns) {
      bound.insert(formula.parameters.expandString2(column));
    }
  }
  for (const PinColumns::Column& column : formula.columns.columns) {
    if (bound.contains(column.name)) {
      continue;
    }
    Candidate candidate;
    candidate.kind = Kind::column;
    candidate.name = column.name;
    candidate.comment = language_messages::unboundColumn();
    candidate.type = typeOf(column.meta);
    candidate.columnToBind = column.name;
    m_metaOfColumn.insert(column.name, column.meta);
    add(std::move(candidate));
  }
}

void Completion::addParameters(const Formula& formula) {
  const QMap<QString, QString>& values = formula.parameters.values();
  for (auto value = values.begin(); value != values.end(); ++value) {
    if (!isVariableName(value.key())) {
      continue;
    }
    Candidate candidate;
    candidate.kind = Kind::parameter;
    candidate.name = value.key();
    candidate.comment = value.value();
    candidate.type = language_messages::parameter();
    add(std::move(candidate));
  }
}

void Completion::addLanguage(const Formula& formula) {
  const QSet<QString> notOffered = namesNotOffered(formula);
  const QHash<QString, QString> types = resultTypes();
  for (auto name = languageNames().begin(); name != languageNames().end(); ++name) {
    const LanguageEntry& entry = *name.value();
    Candidate candidate;
    candidate.name = name.key();
    candidate.comment = QString::fromUtf8(entry.entry->comment);
    if (entry.kind == HelpKind::function) {
      const bool takesNone = entry.argumentCount == 0;
      candidate.kind = Kind::function;
      candidate.insertion = name.key() + QStringLiteral("()");
      candidate.cursor = candidate.insertion.size() - (takesNone ? 0 : 1);
      candidate.signature = QString::fromUtf8(entry.entry->signature);
      candidate.type = types.value(name.key());
    } else if (!notOffered.contains(name.key())) {
      candidate.kind = entry.kind == HelpKind::constant ? Kind::constant : Kind::word;
    } else {
      continue;
    }
    add(std::move(candidate));
  }
}

void Completion::setUses(const QHash<QString, int>& uses) {
  for (Entry& entry : m_entries) {
    entry.uses = uses.value(entry.candidate.name);
  }
}

double Completion::scoreOf(const Entry& entry, double fitting) {
  return fitting + std::min(entry.uses, fit::kUsesThatCount) * fit::kOfUse +
         fitOfKind(entry.candidate.kind) +
         static_cast<double>(entry.candidate.name.size()) * fit::kOfCharacter;
}

CompletionList Completion::at(const QString& expression, qsizetype cursor, bool isAsked) const {
  CompletionList list;
  const TypedWord typed = typedWord(expression, cursor);
  list.start = typed.start;
  list.size = std::max<qsizetype>(typed.size, 0);
  list.word = typed.text;
  if (typed.size < 0 || (!isAsked && typed.text.size() < kAutomaticFrom)) {
    return list;
  }
  std::vector<Match> matches = matchesOf(typed.text);
  const std::size_t count = std::min(matches.size(), kMaxCandidates);
  std::partial_sort(matches.begin(), matches.begin() + static_cast<std::ptrdiff_t>(count),
                    matches.end(), [](const Match& a, const Match& b) {
                      return a.score != b.score ? a.score > b.score
                                                : a.entry->candidate.name < b.entry->candidate.name;
                    });
  matches.resize(count);
  for (const Match& match : matches) {
    list.candidates.push_back(candidateOf(match, typed.isCalled));
  }
  const bool isTyped =
      list.candidates.size() == 1 && !isAsked && list.candidates.front().insertion == typed.text;
  if (isTyped) {
    list.candidates.clear();
  }
  return list;
}

std::vector<Completion::Match> Completion::matchesOf(const QString& word) const {
  const QString folded = word.toLower();
  std::vector<Match> matches;
  for (const Entry& entry : m_entries) {
    const double fitting = fitOf(entry.candidate.name, entry.folded, entry.humps, word, folded);
    if (fitting >= 0.0) {
      matches.push_back({&entry, scoreOf(entry, fitting), {}});
    }
  }
  if (word.size() >= kAutomaticFrom) {
    addForeign(folded, matches);
  }
  return matches;
}

void Completion::addForeign(const QString& folded, std::vector<Match>& matches) const {
  for (const ForeignName& foreign : foreignNames()) {
    const auto size = static_cast<qsizetype>(foreign.name.size());
    const QString name = QString::fromLatin1(foreign.name.data(), size);
    if (!name.startsWith(folded, Qt::CaseInsensitive)) {
      continue;
    }
    const double fitting = size == folded.size() ? fit::kForeignSame : fit::kForeignPrefix;
    for (const std::string_view meant : foreign.meant) {
      const Entry* entry = languageEntryNamed(
          QString::fromLatin1(meant.data(), static_cast<qsizetype>(meant.size())));
      if (entry == nullptr) {
        continue;
      }
      const Match match{entry, scoreOf(*entry, fitting), name};
      const auto known = std::find_if(matches.begin(), matches.end(),
                                      [&](const Match& one) { return one.entry == entry; });
      if (known == matches.end()) {
        matches.push_back(match);
      } else if (known->score < match.score) {
        *known = match;
      }
    }
  }
}

const Completion::Entry* Completion::languageEntryNamed(const QString& name) const {
  const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
    const Kind kind = entry.candidate.kind;
    const bool isOfLanguage = kind == Kind::function || kind == Kind::constant;
    return isOfLanguage && entry.candidate.name == name;
  });
  return name.isEmpty() || found == m_entries.end() ? nullptr : &*found;
}

Candidate Completion::candidateOf(const Match& match, bool isCalled) const {
  Candidate candidate = match.entry->candidate;
  candidate.score = match.score;
  candidate.foreignName = match.foreignName;
  if (candidate.kind == Kind::column) {
    const PinColumns::Column column{candidate.name, m_metaOfColumn.value(candidate.name)};
    candidate.insertion = variableForColumn(column, m_variables).name();
    candidate.cursor = candidate.insertion.size();
  } else if (isCalled && candidate.kind == Kind::function) {
    candidate.insertion = candidate.name;  // its bracket is there
    candidate.cursor = candidate.name.size();
  }
  return candidate;
}

}  // namespace kelvarin
