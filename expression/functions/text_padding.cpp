// Texts of a wanted length. A text that is long enough stays as it is.

#include <algorithm>
#include <cstddef>
#include <optional>

#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"
#include "expression/functions/utf8_units.h"

namespace kelvarin {

namespace {

struct CountedText {
  std::string_view bytes;
  std::size_t units = 0;
};

// With U+FFFD for what is no UTF-8, since that is what counts.
CountedText counted(TextArena& arena, std::string_view text) {
  if (const std::optional<std::size_t> units = unitCount(text)) {
    return {text, *units};
  }
  const QString units = qstringOf(text);
  return {textIn(arena, units).view(), static_cast<std::size_t>(units.size())};
}

// Whole characters of the beginning; half a pair is left out.
std::string_view beginningOf(const CountedText& text, std::size_t units) {
  if (units == 0) {
    return {};
  }
  const auto beginning = partOfUnits(text.bytes, 0, units);
  return beginning ? *beginning : partOfUnits(text.bytes, 0, units - 1).value_or("");
}

// A text again and again, up to so many units.
struct Filling {
  Filling(const CountedText& text, std::size_t units)
      : piece(text.bytes), count(units / text.units), rest(beginningOf(text, units % text.units)) {}

  std::size_t size() const { return count * piece.size() + rest.size(); }
  char* copyTo(char* bytes) const {
    for (std::size_t i = 0; i < count; ++i) {
      bytes = std::copy(piece.begin(), piece.end(), bytes);
    }
    return std::copy(rest.begin(), rest.end(), bytes);
  }

  std::string_view piece;
  std::size_t count;
  std::string_view rest;
};

enum class Side { left, right };

template <Side side>
ColumnText padded(TextArena& arena, std::string_view text, double length, std::string_view filler) {
  const std::size_t longest = longestResultOf(text);
  const CountedText known = counted(arena, text);
  const CountedText repeated = counted(arena, filler);
  if (!(length > static_cast<double>(known.units)) || repeated.units == 0) {
    return ColumnText(text);
  }
  if (length > static_cast<double>(longest)) {
    return {};
  }
  const Filling filling(repeated, static_cast<std::size_t>(length) - known.units);
  const std::size_t size = known.bytes.size() + filling.size();
  if (size > longest) {
    return {};
  }
  char* const bytes = arena.allocate(size);
  if constexpr (side == Side::left) {
    std::copy(known.bytes.begin(), known.bytes.end(), filling.copyTo(bytes));
  } else {
    filling.copyTo(std::copy(known.bytes.begin(), known.bytes.end(), bytes));
  }
  return ColumnText({bytes, size});
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"padLeft", 3, kInString, kText, valueBodies<padded<Side::left>>,
     "padLeft(s,n,c) - the string s with n characters at least, filled with c at its start"},
    {"padRight", 3, kInString, kText, valueBodies<padded<Side::right>>,
     "padRight(s,n,c) - the string s with n characters at least, filled with c at its end"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> textPadding() {
  return kLines;
}

}  // namespace kelvarin
