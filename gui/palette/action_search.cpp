#include "gui/palette/action_search.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

#include "host/contract/action_item.h"

namespace kelvarin {

namespace {

// Where a group stands, and what it is called.
struct GroupKey {
  int order = -1;
  QString name;
  auto operator<=>(const GroupKey& other) const {
    return std::pair(order, name.toLower()) <=> std::pair(other.order, other.name.toLower());
  }
  bool operator==(const GroupKey&) const = default;
};

GroupKey groupOf(const QString& tag) {
  static const QRegularExpression kNumbered(QStringLiteral("^(\\d{1,9})_(.+)$"));
  const QRegularExpressionMatch match = kNumbered.match(tag);
  return match.hasMatch() ? GroupKey{match.captured(1).toInt(), match.captured(2)}
                          : GroupKey{-1, tag};
}

GroupKey groupWithoutTag(const CatalogueEntry& entry) {
  constexpr int kAfterAll = std::numeric_limits<int>::max();
  switch (entry.prototype->endpoint()) {
    case ActionItem::Endpoint::reader:
      return {-1, QCoreApplication::translate("kelvarin::ActionGroup", "Input")};
    case ActionItem::Endpoint::writer:
      return {kAfterAll - 1, QCoreApplication::translate("kelvarin::ActionGroup", "Output")};
    case ActionItem::Endpoint::transform:
      break;
  }
  return {kAfterAll, QCoreApplication::translate("kelvarin::ActionGroup", "Other")};
}

// "ReadColumnarGel" has three words, and so has "data to read".
QStringList wordsOf(const QString& text) {
  static const QRegularExpression kBetweenWords(
      QStringLiteral("[\\s_.,;:()/-]+|(?<=[a-z0-9])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])"));
  return text.split(kBetweenWords, Qt::SkipEmptyParts);
}

bool hasWordWith(const QStringList& words, const QString& beginning) {
  return std::ranges::any_of(
      words, [&](const QString& word) { return word.startsWith(beginning, Qt::CaseInsensitive); });
}

bool hasLettersOf(const QString& text, const QString& letters) {
  qsizetype at = 0;
  for (const QChar letter : letters) {
    at = text.indexOf(letter, at, Qt::CaseInsensitive);
    if (at < 0) {
      return false;
    }
    ++at;
  }
  return true;
}

// The less the better; nothing where the word is not found.
std::optional<int> rankOf(const CatalogueEntry& entry, const QString& word) {
  if (entry.typeName.startsWith(word, Qt::CaseInsensitive)) {
    return 0;
  }
  if (hasWordWith(wordsOf(entry.typeName), word)) {
    return 1;
  }
  if (hasWordWith(entry.keywords, word)) {
    return 2;
  }
  if (entry.typeName.contains(word, Qt::CaseInsensitive)) {
    return 3;
  }
  if (hasWordWith(wordsOf(entry.toolTip), word)) {
    return 4;
  }
  constexpr qsizetype kFewestLetters = 3;  // two letters are in nearly all names
  if (word.size() >= kFewestLetters && hasLettersOf(entry.typeName, word)) {
    return 5;
  }
  return std::nullopt;
}

std::optional<int> rankOfAll(const CatalogueEntry& entry, const QStringList& words) {
  int sum = 0;
  for (const QString& word : words) {
    const auto rank = rankOf(entry, word);
    if (!rank) {
      return std::nullopt;
    }
    sum += *rank;
  }
  return sum;
}

}  // namespace

std::vector<ActionGroup> actionGroups(const ActionCatalogue& catalogue, const ActionFilter& fits) {
  std::map<GroupKey, ActionGroup> groups;
  const auto add = [&groups](const GroupKey& key, const CatalogueEntry& entry) {
    ActionGroup& group = groups[key];
    group.name = key.name;
    group.actions.push_back(&entry);
  };
  for (const CatalogueEntry& entry : catalogue.entries()) {
    if (!fits(entry)) {
      continue;
    }
    for (const QString& tag : entry.tags) {
      add(groupOf(tag), entry);
    }
    if (entry.tags.isEmpty()) {
      add(groupWithoutTag(entry), entry);
    }
  }
  std::vector<ActionGroup> ordered;
  ordered.reserve(groups.size());
  for (auto& [key, group] : groups) {
    ordered.push_back(std::move(group));
  }
  return ordered;
}

std::vector<const CatalogueEntry*> searchActions(const ActionCatalogue& catalogue,
                                                 const QString& text, const ActionFilter& fits) {
  const QStringList words = text.simplified().split(u' ', Qt::SkipEmptyParts);
  if (words.isEmpty()) {
    return {};
  }
  std::vector<std::pair<int, const CatalogueEntry*>> found;
  for (const CatalogueEntry& entry : catalogue.entries()) {
    if (const auto rank = rankOfAll(entry, words); rank && fits(entry)) {
      found.emplace_back(*rank, &entry);
    }
  }
  std::ranges::stable_sort(found, {}, &std::pair<int, const CatalogueEntry*>::first);
  std::vector<const CatalogueEntry*> entries;
  entries.reserve(found.size());
  for (const auto& [rank, entry] : found) {
    entries.push_back(entry);
  }
  return entries;
}

const CatalogueEntry* readerOf(const ActionCatalogue& catalogue, const QString& file) {
  const QString name = QFileInfo(file).fileName();
  for (const CatalogueEntry& entry : catalogue.entries()) {
    if (entry.prototype->endpoint() != ActionItem::Endpoint::reader) {
      continue;
    }
    for (const QString& type : entry.fileTypes) {
      if (name.endsWith(u'.' + type, Qt::CaseInsensitive)) {
        return &entry;
      }
    }
  }
  return nullptr;
}

QStringList readableFileTypes(const ActionCatalogue& catalogue) {
  QStringList types;
  for (const CatalogueEntry& entry : catalogue.entries()) {
    if (entry.prototype->endpoint() == ActionItem::Endpoint::reader) {
      types += entry.fileTypes;
    }
  }
  types.removeDuplicates();
  return types;
}

}  // namespace kelvarin
