#include "columnar/codecs/template_atoms.h"

#include <array>
#include <optional>
#include <string_view>

namespace kelvarin {

namespace {

constexpr std::size_t kFractionWidths = MomentPattern::kMaxFractionDigits;

// The components of each group of digits, as letters; groups are separated by a blank. F is a
// fraction of any width.
constexpr std::string_view kDates[] = {"Y M D", "D M Y", "M D Y", "YMD", ""};
constexpr std::string_view kTimes[] = {"h m s F", "h m s", "h m", "hmsF", "hms", "hm", ""};
constexpr std::string_view kCompactMoments[] = {"YMDhmsF", "YMDhms", "YMDhm"};

std::optional<MomentComponent> componentOf(char letter) {
  constexpr std::string_view kLetters = "YMDhmsF";
  const std::size_t index = kLetters.find(letter);
  return index == std::string_view::npos ? std::nullopt
                                         : std::optional(static_cast<MomentComponent>(index));
}

std::size_t widthOf(std::string_view group) {
  std::size_t width = 0;
  for (const char letter : group) {
    width += letter == 'Y' ? 4 : letter == 'F' ? 0 : 2;
  }
  return width;
}

// Some atoms that are together a moment in nearly all texts.
struct FoundMoment {
  std::size_t atoms = 0;
  std::string pattern;
  std::size_t validTexts = 0;
};

class MomentSearch {
 public:
  MomentSearch(const TemplateAtoms& atoms, std::size_t first) : m_atoms(atoms), m_first(first) {}

  // The longest moment that begins at the first atom.
  std::optional<FoundMoment> find() {
    for (const std::string_view groups : kCompactMoments) {
      consider(std::string(groups));
    }
    for (const std::string_view date : kDates) {
      for (const std::string_view time : kTimes) {
        consider(std::string(date) + (date.empty() || time.empty() ? "" : " ") + std::string(time));
      }
    }
    return m_best;
  }

 private:
  void consider(const std::string& groups) {
    FoundMoment found;
    if (groups.empty() || !match(groups, found)) {
      return;
    }
    MomentPattern pattern;
    if (!pattern.compile(found.pattern)) {
      return;
    }
    found.validTexts = countValid(pattern, found.atoms);
    const std::size_t texts = m_atoms[m_first].values.size();
    const bool isBetter = !m_best || found.atoms > m_best->atoms ||
                          (found.atoms == m_best->atoms && found.validTexts > m_best->validTexts);
    if (found.validTexts * 10 >= texts * 9 && isBetter) {
      m_best = found;
    }
  }

  // Whether the digits have the widths that the groups need.
  bool match(std::string_view groups, FoundMoment& found) const {
    const bool hasDate = groups.find('Y') != std::string_view::npos;
    std::size_t atom = m_first;
    while (true) {
      const std::size_t end = std::min(groups.find(' '), groups.size());
      if (atom >= m_atoms.size() ||
          !addGroup(groups.substr(0, end), m_atoms[atom], found.pattern)) {
        return false;
      }
      ++atom;
      if (end == groups.size()) {
        break;
      }
      groups.remove_prefix(end + 1);
      const bool isFraction = groups[0] == 'F';
      if (atom >= m_atoms.size() ||
          !addSeparator(m_atoms[atom], hasDate, isFraction, found.pattern)) {
        return false;
      }
      ++atom;
    }
    found.atoms = atom - m_first;
    return true;
  }

  static bool addGroup(std::string_view group, const TemplateAtom& atom, std::string& pattern) {
    const std::size_t width = atom.digitWidth;
    const std::size_t known = widthOf(group);
    const bool hasFraction = group.back() == 'F';
    const std::size_t fraction = width - known;
    if (width < known ||
        (hasFraction ? fraction == 0 || fraction > kFractionWidths : fraction > 0)) {
      return false;
    }
    for (const char letter : group) {
      pattern.append(letter == 'F' ? fraction : 1, static_cast<char>(*componentOf(letter)));
    }
    return true;
  }

  static bool addSeparator(const TemplateAtom& atom, bool hasDate, bool isFraction,
                           std::string& pattern) {
    constexpr std::size_t kLongest = 4;
    if (atom.piece.kind != PieceKind::fixed || atom.piece.bytes.size() > kLongest ||
        atom.digitWidth > 0) {
      return false;
    }
    const bool isSound =
        isFraction ? atom.isFixed('.') || atom.isFixed(',') : hasDate || atom.isFixed(':');
    pattern += atom.piece.bytes;
    return isSound;
  }

  std::size_t countValid(const MomentPattern& pattern, std::size_t atomCount) const {
    const TemplateAtom& last = m_atoms[m_first + atomCount - 1];
    std::size_t valid = 0;
    for (std::size_t i = 0; i < last.values.size(); ++i) {
      const unsigned char* text = m_atoms[m_first].values[i].data();
      const auto size =
          static_cast<std::size_t>(last.values[i].data() + last.values[i].size() - text);
      std::uint64_t moment = 0;
      valid += size == pattern.size() && pattern.parse(text, moment);
    }
    return valid;
  }

  const TemplateAtoms& m_atoms;
  std::size_t m_first;
  std::optional<FoundMoment> m_best;
};

// One atom instead of several neighbours.
void join(TemplateAtoms& atoms, std::size_t first, std::size_t count, TemplatePiece piece) {
  TemplateAtom& joined = atoms[first];
  const TemplateAtom& last = atoms[first + count - 1];
  for (std::size_t i = 0; i < joined.values.size(); ++i) {
    const unsigned char* begin = joined.values[i].data();
    joined.values[i] = {begin, last.values[i].data() + last.values[i].size()};
  }
  joined.piece = std::move(piece);
  const auto begin = atoms.begin() + static_cast<std::ptrdiff_t>(first) + 1;
  atoms.erase(begin, begin + static_cast<std::ptrdiff_t>(count) - 1);
}

bool isNumberAt(const TemplateAtoms& atoms, std::size_t index) {
  return index < atoms.size() && atoms[index].piece.isNumeric();
}

// Whether a number, the separator and digits at `first` stand alone, not inside a longer sequence
// as that of an address.
bool isDecimalAt(const TemplateAtoms& atoms, std::size_t first, char separator) {
  const bool goesOn = first + 4 < atoms.size() && atoms[first + 3].isFixed(separator) &&
                      (isNumberAt(atoms, first + 4) || atoms[first + 4].digitWidth > 0);
  const bool hasBefore = first >= 2 && atoms[first - 1].isFixed(separator) &&
                         (isNumberAt(atoms, first - 2) || atoms[first - 2].digitWidth > 0);
  return !goesOn && !hasBefore;
}

std::optional<TemplatePiece> decimalAt(const TemplateAtoms& atoms, std::size_t first) {
  if (first + 2 >= atoms.size() || atoms[first].piece.kind != PieceKind::number) {
    return std::nullopt;
  }
  const TemplateAtom& fraction = atoms[first + 2];
  const std::size_t width = fraction.digitWidth;
  const char separator = atoms[first + 1].isFixed('.') ? '.' : ',';
  if (!atoms[first + 1].isFixed(separator) || width == 0 || width > kMaxDecimalDigits / 2 ||
      (fraction.piece.kind != PieceKind::digits && fraction.piece.kind != PieceKind::number) ||
      !isDecimalAt(atoms, first, separator)) {
    return std::nullopt;
  }
  TemplatePiece piece;
  piece.kind = PieceKind::decimal;
  piece.width = static_cast<int>(width);
  piece.bytes.assign(1, separator);
  return piece;
}

}  // namespace

void mergeMoments(TemplateAtoms& atoms) {
  for (std::size_t first = 0; first < atoms.size(); ++first) {
    if (atoms[first].digitWidth < 2) {
      continue;
    }
    if (const auto found = MomentSearch(atoms, first).find()) {
      TemplatePiece piece;
      piece.kind = PieceKind::moment;
      piece.bytes = found->pattern;
      join(atoms, first, found->atoms, std::move(piece));
    }
  }
}

void mergeDecimals(TemplateAtoms& atoms) {
  for (std::size_t first = 0; first < atoms.size(); ++first) {
    if (auto piece = decimalAt(atoms, first)) {
      join(atoms, first, 3, std::move(*piece));
    }
  }
}

}  // namespace kelvarin
