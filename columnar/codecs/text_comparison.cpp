#include "columnar/codecs/text_comparison.h"

#include <algorithm>
#include <limits>

namespace kelvarin {

namespace {

// The first number up to `largest` for which `isBehind` is true; the one after all if there is
// none.
template <typename IsBehind>
std::uint64_t firstBehind(std::uint64_t largest, IsBehind isBehind) {
  std::uint64_t begin = 0;
  std::uint64_t end = largest + 1;
  while (begin < end) {
    const std::uint64_t middle = begin + (end - begin) / 2;
    if (isBehind(middle)) {
      end = middle;
    } else {
      begin = middle + 1;
    }
  }
  return begin;
}

// Larger numbers are printed as larger texts.
bool isPrintedInOrder(const PiecePrinter& printer) {
  return printer.hasFixedWidth() &&
         (printer.kind() != PieceKind::moment || printer.moment().isSortable());
}

}  // namespace

TextComparison::TextComparison(const std::vector<PieceValues>& pieces, std::string_view other,
                               bool isEqualityOnly)
    : m_pieces(pieces), m_rest(other) {
  while (m_next < m_pieces.size() && passPiece(m_pieces[m_next], isEqualityOnly)) {
    ++m_next;
  }
  if (m_next == m_pieces.size() && m_orderOfRest == 0) {
    m_orderOfRest = m_rest.empty() ? 0 : -1;
  }
}

// False where it has to be printed. Where all texts differ there, no piece behind it counts.
bool TextComparison::passPiece(const PieceValues& piece, bool isEqualityOnly) {
  if (piece.isFixed()) {
    const std::string_view fixed = piece.printer.fixedBytes();
    m_orderOfRest = kelvarin::orderOf(fixed, m_rest.substr(0, fixed.size()));
    m_rest.remove_prefix(std::min(fixed.size(), m_rest.size()));
  } else {
    const bool hasBounds = !piece.hasTexts() && piece.printer.hasFixedWidth() &&
                           piece.largest != std::numeric_limits<std::uint64_t>::max() &&
                           (isEqualityOnly || isPrintedInOrder(piece.printer));
    if (!hasBounds) {
      return false;
    }
    const std::string_view part = m_rest.substr(0, piece.printer.sizeOf(0));
    m_bounds.push_back(boundsOf(piece, part));
    m_orderOfRest = m_bounds.back().begin == m_bounds.back().end ? 1 : 0;
    m_rest.remove_prefix(part.size());
  }
  if (m_orderOfRest != 0) {
    m_next = m_pieces.size() - 1;
  }
  return true;
}

TextComparison::Bounds TextComparison::boundsOf(const PieceValues& piece, std::string_view part) {
  PrintedNumber printed;
  if (isPrintedInOrder(piece.printer)) {
    return {&piece,
            firstBehind(
                piece.largest,
                [&](std::uint64_t number) { return printed.print(piece.printer, number) >= part; }),
            firstBehind(piece.largest, [&](std::uint64_t number) {
              return printed.print(piece.printer, number) > part;
            })};
  }
  std::uint64_t moment = 0;
  const bool isMoment =
      part.size() == piece.printer.moment().size() &&
      piece.printer.moment().parse(reinterpret_cast<const unsigned char*>(part.data()), moment);
  return isMoment ? Bounds{&piece, moment, moment + 1} : Bounds{&piece, 0, 0};
}

std::int8_t TextComparison::orderOfPrinted(std::size_t index) const {
  PrintedNumber printed;
  std::string_view rest = m_rest;
  for (const PieceValues& piece : m_pieces.subspan(m_next)) {
    std::string_view part = piece.printer.fixedBytes();
    if (piece.hasTexts()) {
      const unsigned char* text = piece.text(index);
      const auto size = loadPacked<std::uint32_t>(text);
      part = {reinterpret_cast<const char*>(text) + sizeof size, size};
    } else if (!piece.isFixed()) {
      part = printed.print(piece.printer, piece.number(index));
    }
    if (const auto order = kelvarin::orderOf(part, rest.substr(0, part.size())); order != 0) {
      return order;
    }
    rest.remove_prefix(part.size());
  }
  return rest.empty() ? 0 : -1;
}

}  // namespace kelvarin
