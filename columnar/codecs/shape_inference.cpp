#include "columnar/codecs/shape_inference.h"

#include <algorithm>
#include <bit>
#include <map>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

#include "columnar/codecs/template_atoms.h"
#include "columnar/codecs/template_parser.h"
#include "columnar/codecs/text_limits.h"

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

// A letter for each run of digits or letters.
std::string runsOf(Bytes word) {
  std::string runs;
  for (const unsigned char character : word) {
    const char run = isDigit(character) ? 'D' : 'L';
    if (runs.empty() || runs.back() != run) {
      runs += run;
    }
  }
  return runs;
}

bool isHexDigit(unsigned char character, unsigned char letterA) {
  return isDigit(character) || static_cast<unsigned char>(character - letterA) < 6;
}

bool areHex(std::span<const Bytes> words, unsigned char letterA) {
  return std::all_of(words.begin(), words.end(), [&](Bytes word) {
    return word.size() == words[0].size() &&
           std::all_of(word.begin(), word.end(),
                       [letterA](unsigned char c) { return isHexDigit(c, letterA); });
  });
}

TemplatePiece pieceOf(PieceKind kind, std::size_t width = 0) {
  TemplatePiece piece;
  piece.kind = kind;
  piece.width = static_cast<int>(width);
  return piece;
}

std::vector<Bytes> slice(std::span<const Bytes> words, std::size_t first, std::size_t size) {
  std::vector<Bytes> parts;
  parts.reserve(words.size());
  for (const Bytes word : words) {
    parts.push_back(word.subspan(first, size));
  }
  return parts;
}

void addFixed(std::vector<Bytes> words, TemplateAtoms& atoms) {
  TemplatePiece piece;
  piece.bytes = asText(words[0]);
  atoms.emplace_back(std::move(piece), std::move(words));
}

bool areEqual(std::span<const Bytes> words) {
  return std::all_of(words.begin(), words.end(),
                     [&](Bytes word) { return asText(word) == asText(words[0]); });
}

// Adds words of the same size as fields of a fixed width that are at most `maxWidth` characters.
void addFixedWidth(std::span<const Bytes> words, PieceKind kind, std::size_t maxWidth,
                   TemplateAtoms& atoms) {
  const std::size_t size = words[0].size();
  for (std::size_t first = 0; first < size; first += maxWidth) {
    const std::size_t width = std::min(maxWidth, size - first);
    atoms.emplace_back(pieceOf(kind, width), slice(words, first, width));
  }
}

void addDigits(std::vector<Bytes> words, TemplateAtoms& atoms) {
  const auto [shortest, longest] =
      std::minmax_element(words.begin(), words.end(),
                          [](Bytes left, Bytes right) { return left.size() < right.size(); });
  const bool hasLeadingZeros = std::any_of(
      words.begin(), words.end(), [](Bytes word) { return word.size() > 1 && word[0] == '0'; });
  const bool isOneWidth = shortest->size() == longest->size();
  if (longest->size() > kMaxDecimalDigits) {
    if (isOneWidth) {
      return addFixedWidth(words, PieceKind::digits, kMaxDecimalDigits, atoms);
    }
    TemplatePiece piece = pieceOf(PieceKind::text);
    piece.extent = TextExtent::lettersAndDigits;
    atoms.emplace_back(std::move(piece), std::move(words));
  } else if (!hasLeadingZeros) {
    atoms.emplace_back(pieceOf(PieceKind::number), std::move(words));
  } else if (isOneWidth) {
    atoms.emplace_back(pieceOf(PieceKind::digits, longest->size()), std::move(words));
  } else {
    atoms.emplace_back(pieceOf(PieceKind::varyingDigits), std::move(words));
  }
}

// Hexadecimal digits of which some positions have few values, as the version in a UUID.
void addHex(std::span<const Bytes> words, PieceKind kind, TemplateAtoms& atoms) {
  // In fewer texts it may be by chance that few digits occur at a position.
  constexpr std::size_t kMinTexts = 64;
  constexpr int kFewDigits = 4;
  const std::size_t size = words[0].size();
  const auto digitsAt = [&](std::size_t position) {
    std::uint32_t seen = 0;
    for (const Bytes word : words) {
      const unsigned char digit = word[position];
      seen |= 1u << (isDigit(digit) ? digit - '0' : (digit | 0x20) - 'a' + 10);
    }
    return std::popcount(seen);
  };
  const auto isSpecial = [&](std::size_t position) {
    return words.size() >= kMinTexts && digitsAt(position) <= kFewDigits;
  };
  for (std::size_t first = 0; first < size;) {
    std::size_t end = first + 1;
    if (isSpecial(first)) {
      std::vector<Bytes> part = slice(words, first, 1);
      if (areEqual(part)) {
        addFixed(std::move(part), atoms);
      } else {
        atoms.emplace_back(pieceOf(kind, 1), std::move(part));
      }
    } else {
      while (end < size && !isSpecial(end)) {
        ++end;
      }
      addFixedWidth(slice(words, first, end - first), kind, kMaxHexDigits, atoms);
    }
    first = end;
  }
}

std::size_t commonBeginning(std::span<const Bytes> words) {
  std::string_view common = asText(words[0]);
  for (const Bytes word : words) {
    const std::string_view other = asText(word);
    const auto end = std::mismatch(common.begin(), common.end(), other.begin(), other.end()).first;
    common = common.substr(0, static_cast<std::size_t>(end - common.begin()));
  }
  return common.size();
}

// Words of hexadecimal digits, perhaps behind something that all have, as 0x. False for others.
bool addHexWords(std::span<const Bytes> words, TemplateAtoms& atoms) {
  for (const std::size_t before : {std::size_t{0}, commonBeginning(words)}) {
    const std::size_t size = words[0].size() - before;
    std::vector<Bytes> digits = slice(words, before, std::dynamic_extent);
    const bool areLower = areHex(digits, 'a');
    if (size < 2 || (!areLower && !areHex(digits, 'A'))) {
      continue;
    }
    if (before > 0) {
      addFixed(slice(words, 0, before), atoms);
    }
    addHex(digits, areLower ? PieceKind::lowerHex : PieceKind::upperHex, atoms);
    return true;
  }
  return false;
}

// Words with the same sequence of runs.
void addRuns(std::span<const Bytes> words, const std::string& runs, TemplateAtoms& atoms) {
  std::vector<Bytes> left(words.begin(), words.end());
  for (const char run : runs) {
    std::vector<Bytes> parts;
    parts.reserve(left.size());
    for (Bytes& word : left) {
      const auto end = std::find_if(word.begin(), word.end(),
                                    [run](unsigned char c) { return isDigit(c) != (run == 'D'); });
      parts.emplace_back(word.begin(), end);
      word = {end, word.end()};
    }
    if (areEqual(parts)) {
      addFixed(std::move(parts), atoms);
    } else if (run == 'D') {
      addDigits(std::move(parts), atoms);
    } else {
      atoms.emplace_back(pieceOf(PieceKind::text), std::move(parts));
    }
  }
}

void addTails(const std::vector<Bytes>& tails, TemplateAtoms& atoms) {
  if (!areEqual(tails)) {
    TemplatePiece piece = pieceOf(PieceKind::text);
    piece.extent = TextExtent::rest;
    atoms.emplace_back(std::move(piece), tails);
  } else if (!tails[0].empty()) {
    addFixed(tails, atoms);
  }
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
      if (areEqual(words)) {
        addFixed(std::move(words), atoms);
      } else if (!addWords(words, atoms)) {
        return split(group, words);
      }
    }
    if (!group.tails.empty()) {
      addTails(group.tails, atoms);
    }
    finish(std::move(atoms), group.size());
  }

  // False when the words need different templates.
  bool addWords(const std::vector<Bytes>& words, TemplateAtoms& atoms) const {
    const std::string runs = runsOf(words[0]);
    const bool areAlike =
        std::all_of(words.begin(), words.end(), [&](Bytes word) { return runsOf(word) == runs; });
    if (areAlike) {
      addRuns(words, runs, atoms);
      return true;
    }
    if (addHexWords(words, atoms)) {
      return true;
    }
    if (isSplitWorthwhile(words)) {
      return false;
    }
    TemplatePiece piece = pieceOf(PieceKind::text);
    piece.extent = TextExtent::lettersAndDigits;
    atoms.emplace_back(std::move(piece), words);
    return true;
  }

  // Words of hexadecimal digits differ by their case, others by their runs.
  static std::string kindOf(Bytes word) {
    constexpr std::size_t kShortestHex = 8;
    if (word.size() >= kShortestHex && areHex({&word, 1}, 'a')) {
      return "x" + std::to_string(word.size());
    }
    if (word.size() >= kShortestHex && areHex({&word, 1}, 'A')) {
      return "X" + std::to_string(word.size());
    }
    return runsOf(word);
  }

  std::map<std::string, std::size_t> countKinds(std::span<const Bytes> words) const {
    std::map<std::string, std::size_t> counts;
    for (const Bytes word : words) {
      ++counts[kindOf(word)];
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
        if (kindOf(words[i]) == kind) {
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
