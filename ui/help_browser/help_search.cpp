#include "ui/help_browser/help_search.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <QRegularExpression>

#include "expression/help/foreign_names.h"
#include "host/contract/nearest_names.h"

namespace kelvarin {

namespace {

// How much a word of the query counts, by where it is found.
namespace score {
constexpr int kName = 100;
constexpr int kForeignName = 90;
constexpr int kBeginOfName = 70;
constexpr int kWordOfName = 50;
constexpr int kWordOfForeignName = 45;
constexpr int kBeginOfWordOfName = 40;
constexpr int kPartOfName = 30;
constexpr int kWordOfComment = 25;
constexpr int kBeginOfWordOfComment = 15;
constexpr int kWordOfNote = 5;
}  // namespace score

// Shorter words are not looked for within names, nor do they lose their endings.
constexpr qsizetype kMinPart = 3;

QString fromLatin(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// "days" finds "day".
QString withoutPlural(const QString& word) {
  const bool isPlural = word.size() > kMinPart && word.endsWith(u's') && !word.endsWith(u"ss");
  return isPlural ? word.chopped(1) : word;
}

// Words that people take for those of the comments.
constexpr std::pair<QLatin1String, QLatin1String> kSynonyms[] = {
    {QLatin1String("text"), QLatin1String("string")},
    {QLatin1String("space"), QLatin1String("blank")},
    {QLatin1String("whitespace"), QLatin1String("blank")},
    {QLatin1String("join"), QLatin1String("concatenation")},
    {QLatin1String("append"), QLatin1String("concatenation")},
    {QLatin1String("end"), QLatin1String("last")},
};

QString wordOfComments(const QString& word) {
  const QString singular = withoutPlural(word);
  const auto found = std::find_if(std::begin(kSynonyms), std::end(kSynonyms),
                                  [&](const auto& pair) { return pair.first == singular; });
  return found == std::end(kSynonyms) ? singular : QString(found->second);
}

QStringList wordsOf(const QString& text) {
  static const QRegularExpression between(QStringLiteral("[^\\p{L}\\p{N}]+"));
  QStringList words = text.toLower().split(between, Qt::SkipEmptyParts);
  std::transform(words.begin(), words.end(), words.begin(), wordOfComments);
  return words;
}

// `dateDiffInDay` has date, diff, in and day.
QStringList wordsOfName(QString name) {
  static const QRegularExpression inner(
      QStringLiteral("(?<=[a-z])(?=[A-Z0-9])|(?<=[0-9])(?=[A-Za-z])"));
  return wordsOf(name.replace(inner, QStringLiteral(" ")));
}

bool anyBeginsWith(const QStringList& words, const QString& begin) {
  return std::any_of(words.begin(), words.end(),
                     [&](const QString& word) { return word.startsWith(begin); });
}

// "rounding" finds "round".
bool anyIsBeginOf(const QStringList& words, const QString& word) {
  return std::any_of(words.begin(), words.end(), [&](const QString& known) {
    return known.size() > kMinPart && word.startsWith(known);
  });
}

// Words that say nothing about what is looked for.
bool isFiller(const QString& word) {
  static const QStringList fillers = {
      QStringLiteral("a"),   QStringLiteral("an"), QStringLiteral("the"),  QStringLiteral("of"),
      QStringLiteral("to"),  QStringLiteral("in"), QStringLiteral("from"), QStringLiteral("with"),
      QStringLiteral("for"), QStringLiteral("how")};
  return fillers.contains(word);
}

bool isWord(const QString& text) {
  return text.front().isLetterOrNumber() || text.front() == u'_';
}

}  // namespace

HelpSearch::HelpSearch(const Translate& translate) {
  for (const LanguageEntry& entry : languageEntries()) {
    Index index;
    index.entry = &entry;
    for (const std::string& name : entry.names) {
      const QString text = QString::fromStdString(name);
      index.names += text.toLower();
      index.nameWords += wordsOfName(text);
    }
    for (const ForeignName& foreign : foreignNames()) {
      const bool isMeant =
          std::any_of(foreign.meant.begin(), foreign.meant.end(), [&](std::string_view meant) {
            return std::find(entry.names.begin(), entry.names.end(), meant) != entry.names.end();
          });
      if (isMeant) {
        index.foreignNames += fromLatin(foreign.name).toLower();
        index.foreignWords += wordsOf(fromLatin(foreign.name));
      }
    }
    const HelpEntry& help = *entry.entry;
    index.commentWords = wordsOf(QString::fromUtf8(help.comment)) +
                         wordsOf(translate(help.comment)) + wordsOf(translate(entry.group));
    if (help.note != nullptr) {
      index.noteWords = wordsOf(QString::fromUtf8(help.note)) + wordsOf(translate(help.note));
    }
    m_indices.push_back(std::move(index));
  }
}

int HelpSearch::scoreOf(const Index& index, const QString& word) {
  const QString stem = wordOfComments(word);
  const bool isLong = word.size() >= kMinPart;
  const auto contains = [&](const QString& name) { return name.contains(word); };
  const std::array<std::pair<bool, int>, 12> rules = {{
      {index.names.contains(word), score::kName},
      {index.foreignNames.contains(word), score::kForeignName},
      {anyBeginsWith(index.names, word), score::kBeginOfName},
      {index.nameWords.contains(stem), score::kWordOfName},
      {index.foreignWords.contains(stem), score::kWordOfForeignName},
      {anyBeginsWith(index.nameWords, stem) || anyIsBeginOf(index.nameWords, stem),
       score::kBeginOfWordOfName},
      {isLong && std::any_of(index.names.begin(), index.names.end(), contains), score::kPartOfName},
      {isLong && anyBeginsWith(index.foreignNames, word), score::kPartOfName},
      {index.commentWords.contains(stem), score::kWordOfComment},
      {isLong && anyBeginsWith(index.commentWords, stem), score::kBeginOfWordOfComment},
      {isLong && anyIsBeginOf(index.commentWords, stem), score::kBeginOfWordOfComment},
      {isLong && index.noteWords.contains(stem), score::kWordOfNote},
  }};
  const auto first =
      std::find_if(rules.begin(), rules.end(), [](const auto& rule) { return rule.first; });
  return first == rules.end() ? 0 : first->second;
}

// Those with the most words of the query, the best first.
std::vector<const LanguageEntry*> HelpSearch::ranked(const QStringList& words) const {
  struct Find {
    const LanguageEntry* entry;
    int words = 0;
    int score = 0;
  };
  std::vector<Find> finds;
  int mostWords = 1;
  for (const Index& index : m_indices) {
    Find find{index.entry};
    for (const QString& word : words) {
      const int score = scoreOf(index, word);
      find.words += score > 0 ? 1 : 0;
      find.score += score;
    }
    mostWords = std::max(mostWords, find.words);
    finds.push_back(find);
  }
  std::erase_if(finds, [&](const Find& find) { return find.words < mostWords; });
  std::stable_sort(finds.begin(), finds.end(),
                   [](const Find& a, const Find& b) { return a.score > b.score; });
  std::vector<const LanguageEntry*> entries;
  entries.reserve(finds.size());
  for (const Find& find : finds) {
    entries.push_back(find.entry);
  }
  return entries;
}

std::vector<const LanguageEntry*> HelpSearch::looksLike(const QString& query) const {
  QStringList known;
  for (const Index& index : m_indices) {
    for (const std::string& name : index.entry->names) {
      known += isWord(QString::fromStdString(name)) ? QString::fromStdString(name) : QString();
    }
  }
  known.removeAll(QString());
  std::vector<const LanguageEntry*> entries;
  for (const QString& name : nearestNames(query, known)) {
    const LanguageMatch match = findInLanguage(name.toStdString());
    entries.insert(entries.end(), match.entries.begin(), match.entries.end());
  }
  return entries;
}

HelpFinds HelpSearch::find(const QString& query) const {
  const QString text = query.trimmed();
  HelpFinds finds;
  if (text.isEmpty()) {
    return finds;
  }
  const LanguageMatch match = findInLanguage(text.toStdString());
  if (match.isForeign) {
    finds.foreignName = text;
    finds.advice = QString::fromUtf8(match.advice == nullptr ? "" : match.advice);
    finds.entries = match.entries;
  }
  QStringList words = text.toLower().simplified().split(u' ');
  if (words.size() > 1) {
    words.removeIf(isFiller);
  }
  for (const LanguageEntry* entry : ranked(words)) {
    if (std::find(finds.entries.begin(), finds.entries.end(), entry) == finds.entries.end()) {
      finds.entries.push_back(entry);
    }
  }
  if (finds.entries.empty() && finds.foreignName.isEmpty()) {
    finds.entries = looksLike(text);
    finds.areGuesses = !finds.entries.empty();
  }
  return finds;
}

}  // namespace kelvarin
