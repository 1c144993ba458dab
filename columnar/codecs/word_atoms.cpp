#include "columnar/codecs/word_atoms.h"

#include <algorithm>
#include <bit>
#include <span>
#include <string_view>

namespace kelvarin {

namespace {

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
    addDifferentWords(std::move(words), atoms);
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

}  // namespace

std::string kindOfWord(Bytes word) {
  constexpr std::size_t kShortestHex = 8;
  if (word.size() >= kShortestHex && areHex({&word, 1}, 'a')) {
    return "x" + std::to_string(word.size());
  }
  if (word.size() >= kShortestHex && areHex({&word, 1}, 'A')) {
    return "X" + std::to_string(word.size());
  }
  return runsOf(word);
}

bool addAlikeWords(const std::vector<Bytes>& words, TemplateAtoms& atoms) {
  if (areEqual(words)) {
    addFixed(words, atoms);
    return true;
  }
  const std::string runs = runsOf(words[0]);
  const bool haveSameRuns =
      std::all_of(words.begin(), words.end(), [&](Bytes word) { return runsOf(word) == runs; });
  if (haveSameRuns) {
    addRuns(words, runs, atoms);
    return true;
  }
  return addHexWords(words, atoms);
}

void addDifferentWords(std::vector<Bytes> words, TemplateAtoms& atoms) {
  TemplatePiece piece = pieceOf(PieceKind::text);
  piece.extent = TextExtent::lettersAndDigits;
  atoms.emplace_back(std::move(piece), std::move(words));
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

}  // namespace kelvarin
