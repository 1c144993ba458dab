#include "columnar/codecs/shape_inference.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

#include "columnar/codecs/template_atoms.h"
#include "columnar/codecs/template_parser.h"
#include "columnar/codecs/text_limits.h"
#include "columnar/codecs/word_atoms.h"

namespace kelvarin {

namespace {

constexpr std::size_t kLongestText = 1024;
constexpr std::size_t kMaxTokens = 120;

bool isWordCharacter(unsigned char character) {
  return isLetter(character) || isDigit(character);
}

// Texts with the same sequence of words and other characters, as indices of their first tokens.
struct Group {
  std::size_t tokenCount = 0;  // of each text
  std::vector<std::size_t> texts;
  std::vector<Bytes> tails;  // what follows the tokens of each text; none where nothing does

  std::size_t size() const { return texts.size(); }
};

// Stand for tokens in the keys of groups. The letters themselves are always inside words.
constexpr char kWordKey = 'w';
constexpr char kTailKey = 't';

// Cuts a text into words and single other characters. Returns what kind of tokens they are.
std::string cut(Bytes text, std::vector<Bytes>& tokens) {
  std::string key;
  for (auto at = text.begin(); at != text.end();) {
    const auto end =
        isWordCharacter(*at)
            ? std::find_if_not(at, text.end(), [](unsigned char c) { return isWordCharacter(c); })
            : at + 1;
    key += isWordCharacter(*at) ? kWordKey : static_cast<char>(*at);
    tokens.emplace_back(at, end);
    at = end;
  }
  return key;
}

std::size_t countDifferent(std::span<const Bytes> words) {
  std::vector<std::string_view> sorted;
  sorted.reserve(words.size());
  for (const Bytes word : words) {
    sorted.push_back(asText(word));
  }
  std::sort(sorted.begin(), sorted.end());
  return static_cast<std::size_t>(std::unique(sorted.begin(), sorted.end()) - sorted.begin());
}

// Words that are mostly different.
bool isFreeField(const TemplateAtom& atom) {
  return atom.piece.kind == PieceKind::text && countDifferent(atom.values) * 2 > atom.values.size();
}

// Texts of which nearly everything is in one field, or in fields of different words: as wholes they
// have as much in common with one another as a template says.
bool isFreeText(const TemplateAtoms& atoms) {
  std::size_t all = 0;
  std::size_t free = 0;
  std::size_t longest = 0;  // of the fields of words
  for (const TemplateAtom& atom : atoms) {
    const std::size_t size =
        std::accumulate(atom.values.begin(), atom.values.end(), std::size_t{0},
                        [](std::size_t sum, Bytes value) { return sum + value.size(); });
    all += size;
    free += isFreeField(atom) ? size : 0;
    longest = std::max(longest, atom.piece.kind == PieceKind::text ? size : 0);
  }
  return std::max(free, longest) * 4 > all * 3;
}

class TemplateInference {
 public:
  explicit TemplateInference(std::span<const Bytes> sample)
      : m_sampleSize(sample.size()), m_minTexts(std::max<std::size_t>(2, sample.size() / 64)) {
    constexpr std::size_t kUsualTokens = 8;
    m_tokens.reserve(sample.size() * kUsualTokens);
    for (const Bytes text : sample) {
      add(text);
    }
  }

  // Whether enough of the texts are in groups that can become templates.
  bool isPromising() const {
    std::size_t covered = 0;
    for (const auto& [key, group] : m_groups) {
      covered += group.size() >= m_minTexts ? group.size() : 0;
    }
    return covered * 4 >= m_sampleSize;
  }

  // None where they cover too few texts.
  std::vector<TextTemplate> templates() {
    constexpr std::size_t kMinCoverage = 60;  // of 100
    joinByTails();
    for (const auto& [key, group] : m_groups) {
      if (group.size() >= m_minTexts) {
        refine(group);
      }
    }
    std::stable_sort(m_found.begin(), m_found.end(), [](const Found& left, const Found& right) {
      return left.texts > right.texts;
    });
    if (m_found.size() > kMaxTemplates) {
      m_found.erase(m_found.begin() + kMaxTemplates, m_found.end());
    }
    std::size_t covered = 0;
    std::vector<TextTemplate> templates;
    for (Found& found : m_found) {
      covered += found.texts;
      templates.push_back(std::move(found.shape));
    }
    return covered * 100 < m_sampleSize * kMinCoverage ? std::vector<TextTemplate>() : templates;
  }

 private:
  struct Found {
    TextTemplate shape;
    std::size_t texts;
  };

  void add(Bytes text) {
    if (text.size() > kLongestText) {
      return;
    }
    const std::size_t first = m_tokens.size();
    const std::string key = cut(text, m_tokens);
    if (key.size() > kMaxTokens) {
      return m_tokens.resize(first);
    }
    Group& group = m_groups[key];
    group.tokenCount = key.size();
    group.texts.push_back(first);
  }

  // The group without its last tokens, which become tails.
  Group shortened(const Group& group, std::size_t tokenCount) const {
    Group shorter{tokenCount, group.texts, {}};
    for (std::size_t i = 0; i < group.size(); ++i) {
      const Bytes last =
          group.tails.empty() ? m_tokens[group.texts[i] + group.tokenCount - 1] : group.tails[i];
      const unsigned char* end = last.data() + last.size();
      const unsigned char* begin = tokenCount < group.tokenCount
                                       ? m_tokens[group.texts[i] + tokenCount].data()
                                       : last.data() + (group.tails.empty() ? last.size() : 0);
      shorter.tails.emplace_back(begin, end);
    }
    return shorter;
  }

  // Both groups as one, which differ in a few tails only: else their fields would be columns of
  // their own, with the same words in each.
  std::optional<Group> joinedByTail(const std::string& leftKey, const Group& left,
                                    const std::string& rightKey, const Group& right) const {
    constexpr std::size_t kMaxTails = 16;
    const auto [end, other] =
        std::mismatch(leftKey.begin(), leftKey.end(), rightKey.begin(), rightKey.end());
    std::optional<Group> best;
    for (auto tokens = static_cast<std::size_t>(end - leftKey.begin()); tokens > 0; --tokens) {
      Group joined = shortened(left, tokens);
      const Group added = shortened(right, tokens);
      joined.texts.insert(joined.texts.end(), added.texts.begin(), added.texts.end());
      joined.tails.insert(joined.tails.end(), added.tails.begin(), added.tails.end());
      if (countDifferent(joined.tails) > kMaxTails) {
        break;
      }
      best = std::move(joined);
    }
    return best;
  }

  void joinByTails() {
    auto left = m_groups.begin();
    while (left != m_groups.end() && std::next(left) != m_groups.end()) {
      const auto right = std::next(left);
      auto joined = joinedByTail(left->first, left->second, right->first, right->second);
      if (!joined) {
        ++left;
        continue;
      }
      std::string key = left->first.substr(0, joined->tokenCount) + kTailKey;
      m_groups.erase(left);
      m_groups.erase(right);
      while (m_groups.contains(key)) {
        key += kTailKey;
      }
      left = m_groups.emplace(key, std::move(*joined)).first;
    }
  }

  void refine(const Group& group) {
    TemplateAtoms atoms;
    for (std::size_t token = 0; token < group.tokenCount; ++token) {
      std::vector<Bytes> words;
      words.reserve(group.size());
      for (const std::size_t text : group.texts) {
        words.push_back(m_tokens[text + token]);
      }
      if (addAlikeWords(words, atoms)) {
        continue;
      }
      if (isSplitWorthwhile(words)) {
        return split(group, words);
      }
      addDifferentWords(std::move(words), atoms);
    }
    if (!group.tails.empty()) {
      addTails(group.tails, atoms);
    }
    finish(std::move(atoms), group.size());
  }

  std::map<std::string, std::size_t> countKinds(std::span<const Bytes> words) const {
    std::map<std::string, std::size_t> counts;
    for (const Bytes word : words) {
      ++counts[kindOfWord(word)];
    }
    return counts;
  }

  bool isSplitWorthwhile(std::span<const Bytes> words) const {
    constexpr std::size_t kMaxKinds = 4;
    std::size_t kinds = 0;
    std::size_t covered = 0;
    for (const auto& [kind, count] : countKinds(words)) {
      if (count >= m_minTexts) {
        ++kinds;
        covered += count;
      }
    }
    return kinds <= kMaxKinds && covered * 10 >= words.size() * 9;
  }

  // Begins anew with each kind of words, after which the words at this token are of one kind.
  void split(const Group& group, std::span<const Bytes> words) {
    for (const auto& [kind, count] : countKinds(words)) {
      if (count < m_minTexts) {
        continue;
      }
      Group part{group.tokenCount, {}, {}};
      for (std::size_t i = 0; i < words.size(); ++i) {
        if (kindOfWord(words[i]) == kind) {
          part.texts.push_back(group.texts[i]);
          if (!group.tails.empty()) {
            part.tails.push_back(group.tails[i]);
          }
        }
      }
      refine(part);
    }
  }

  void finish(TemplateAtoms atoms, std::size_t texts) {
    if (isFreeText(atoms)) {
      return;
    }
    mergeMoments(atoms);
    mergeDecimals(atoms);
    TextTemplate shape;
    for (TemplateAtom& atom : atoms) {
      TemplatePiece& piece = atom.piece;
      const bool joins =
          !shape.pieces.empty() && !piece.isField() && !shape.pieces.back().isField() &&
          shape.pieces.back().bytes.size() + piece.bytes.size() <= TextTemplate::kMaxFixedSize;
      if (joins) {
        shape.pieces.back().bytes += piece.bytes;
      } else {
        shape.pieces.push_back(std::move(piece));
      }
    }
    const bool fits = shape.pieces.size() <= TextTemplate::kMaxPieces &&
                      std::all_of(shape.pieces.begin(), shape.pieces.end(), [](const auto& piece) {
                        return piece.bytes.size() <= TextTemplate::kMaxFixedSize;
                      });
    if (fits) {
      m_found.push_back({std::move(shape), texts});
    }
  }

  std::size_t m_sampleSize;
  std::size_t m_minTexts;
  std::vector<Bytes> m_tokens;  // of all texts
  std::map<std::string, Group> m_groups;
  std::vector<Found> m_found;
};

}  // namespace

std::vector<TextTemplate> inferTemplates(std::span<const Bytes> sample) {
  // Texts without a shape are recognized by a few of them.
  constexpr std::size_t kTrial = 48;
  if (sample.size() > 2 * kTrial && !TemplateInference(sample.first(kTrial)).isPromising()) {
    return {};
  }
  return TemplateInference(sample).templates();
}

}  // namespace kelvarin
