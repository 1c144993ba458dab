#include "expression/functions/pattern_fault.h"

#include <cstddef>

#include "expression/functions/messages.h"
#include "expression/functions/utf8_units.h"

namespace kelvarin {

namespace {

using re2::RE2;
using Position = std::optional<std::size_t>;  // in bytes

constexpr std::int64_t kMemoryOfPattern = std::int64_t{8} << 20;
// Each takes the time of compiling a pattern.
constexpr int kMaxTries = 50;

re2::StringPiece pieceOf(std::string_view text) {
  return {text.data(), text.size()};
}

RE2::ErrorCode errorOfPrefix(std::string_view pattern, std::size_t size) {
  return RE2(pieceOf(pattern.substr(0, size)), boundedOptions()).error_code();
}

// The library says what it stumbled over, not where. It reads from left to right, so that is where
// the pattern up to there has the same fault.
Position positionOf(std::string_view piece, RE2::ErrorCode code, std::string_view pattern) {
  std::size_t at = pattern.find(piece);
  for (int tries = 0; at != std::string_view::npos && tries < kMaxTries; ++tries) {
    if (errorOfPrefix(pattern, at + piece.size()) == code) {
      return at;
    }
    at = pattern.find(piece, at + 1);
  }
  return std::nullopt;
}

// The last bracket with all groups closed in front of it.
Position positionOfOpenGroup(std::string_view pattern) {
  std::size_t at = pattern.rfind('(');
  for (int tries = 0; at != std::string_view::npos && tries < kMaxTries; ++tries) {
    if (errorOfPrefix(pattern, at) == RE2::NoError) {
      return at;
    }
    at = at == 0 ? std::string_view::npos : pattern.rfind('(', at - 1);
  }
  return std::nullopt;
}

Position positionOfFault(const RE2& refused, std::string_view pattern) {
  const std::string& piece = refused.error_arg();
  switch (refused.error_code()) {
    case RE2::ErrorMissingParen:
      return positionOfOpenGroup(pattern);
    case RE2::ErrorUnexpectedParen:
      return positionOf(")", RE2::ErrorUnexpectedParen, pattern);
    case RE2::ErrorMissingBracket:
      return pattern.size() - piece.size();
    case RE2::ErrorTrailingBackslash:
      return pattern.size() - 1;
    case RE2::ErrorBadUTF8:
      return sizeOfValidPart(pattern);
    case RE2::ErrorPatternTooLarge:
    case RE2::ErrorInternal:
      return std::nullopt;
    default:
      return positionOf(piece, refused.error_code(), pattern);
  }
}

bool isBackReference(const QString& escape) {
  return escape.size() == 2 && escape[1].isDigit();
}

// The library calls it a range.
bool isUnknownClass(const QString& piece) {
  return piece.startsWith(QLatin1String("[:")) ||
         piece.startsWith(QLatin1String("\\p"), Qt::CaseInsensitive);
}

QString reasonOf(const RE2& refused) {
  const QString piece = qstringOf(refused.error_arg());
  switch (refused.error_code()) {
    case RE2::ErrorMissingParen:
      return messages::groupNotClosed();
    case RE2::ErrorUnexpectedParen:
      return messages::groupNotOpen();
    case RE2::ErrorMissingBracket:
      return messages::setNotClosed();
    case RE2::ErrorTrailingBackslash:
      return messages::escapesNothing();
    case RE2::ErrorBadEscape:
      return isBackReference(piece) ? messages::backReference(piece)
                                    : messages::unknownPatternEscape(piece);
    case RE2::ErrorBadCharClass:
      return messages::unknownClass(piece);
    case RE2::ErrorBadCharRange:
      return isUnknownClass(piece) ? messages::unknownClass(piece) : messages::reversedRange(piece);
    case RE2::ErrorRepeatArgument:
      return messages::repeatsNothing(piece);
    case RE2::ErrorRepeatSize:
      return messages::wrongRepeatCount(piece);
    case RE2::ErrorRepeatOp:
      return messages::repeatsRepetition(piece);
    case RE2::ErrorBadPerlOp:
      return messages::unknownGroupKind(piece);
    case RE2::ErrorBadNamedCapture:
      return messages::wrongGroupName(piece);
    case RE2::ErrorBadUTF8:
      return messages::patternNotUtf8();
    default:
      return messages::patternTooLarge();
  }
}

PatternFault faultAt(std::size_t byte, std::string_view pattern, const QString& reason) {
  const auto units = static_cast<std::size_t>(qstringOf(pattern.substr(0, byte)).size());
  return {messages::wrongPatternAt(shownPattern(pattern), units, reason), units};
}

}  // namespace

QString shownPattern(std::string_view pattern) {
  constexpr std::size_t kLongest = 100;
  constexpr std::size_t kBytesOfLongest = 4 * kLongest;
  const QString units = qstringOf(pattern.substr(0, kBytesOfLongest));
  return units.size() <= static_cast<qsizetype>(kLongest) && pattern.size() <= kBytesOfLongest
             ? units
             : units.left(kLongest) + QStringLiteral("...");
}

RE2::Options boundedOptions() {
  RE2::Options options;
  options.set_log_errors(false);
  options.set_max_mem(kMemoryOfPattern);
  return options;
}

PatternFault faultOfWhole(std::string_view pattern, const QString& reason) {
  return {messages::wrongPattern(shownPattern(pattern), reason)};
}

std::optional<PatternFault> singleByteIn(std::string_view pattern) {
  constexpr std::size_t kEscape = 2;
  std::size_t at = pattern.find('\\');
  while (at != std::string_view::npos) {
    const std::string_view escape = pattern.substr(at, kEscape);
    if (escape == "\\C") {
      return faultAt(at, pattern, messages::singleBytes());
    }
    const std::size_t last = escape == "\\Q" ? pattern.find("\\E", at + kEscape) : at;
    at = last == std::string_view::npos ? last : pattern.find('\\', last + kEscape);
  }
  return std::nullopt;
}

PatternFault faultOf(const RE2& refused, std::string_view pattern) {
  const Position at = positionOfFault(refused, pattern);
  const QString reason = reasonOf(refused);
  return at ? faultAt(*at, pattern, reason) : faultOfWhole(pattern, reason);
}

}  // namespace kelvarin
