#include "cli/text_table.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

#include <sys/ioctl.h>
#include <unistd.h>

#include <QString>
#include <QStringList>

#include "cli/messages.h"

namespace kelvarin {

namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kLongestCell = 48;
constexpr std::size_t kUsualWidth = 80;
constexpr std::string_view kCutMark = "\xE2\x80\xA6";

struct Points {
  char32_t first;
  char32_t last;
};

// Blocks of East Asian scripts and of pictures.
constexpr Points kWidePoints[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},
                                  {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},
                                  {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x1F300, 0x1F64F},
                                  {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

std::size_t widthOf(char32_t point) {
  const QChar::Category category = QChar::category(point);
  if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing ||
      category == QChar::Other_Format) {
    return 0;
  }
  const bool isWide = std::any_of(
      std::begin(kWidePoints), std::end(kWidePoints),
      [point](const Points& wide) { return point >= wide.first && point <= wide.last; });
  return isWide ? 2 : 1;
}

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

// The beginning that fits, with a mark where something is missing.
std::string fitted(const std::string& text, std::size_t width) {
  if (shownWidth(text) <= width) {
    return text;
  }
  std::string kept;
  std::size_t used = 1;
  for (const char32_t point : QString::fromStdString(text).toUcs4()) {
    used += widthOf(point);
    if (used > width) {
      break;
    }
    kept += QString::fromUcs4(&point, 1).toStdString();
  }
  return kept.append(kCutMark);
}

std::string padded(const std::string& text, std::size_t width, bool isRight) {
  const std::string padding(width - shownWidth(text), ' ');
  return isRight ? padding + text : text + padding;
}

std::string withoutTrailingBlanks(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace

std::size_t shownWidth(std::string_view text) {
  if (isAscii(text)) {
    return text.size();
  }
  std::size_t width = 0;
  for (const char32_t point :
       QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toUcs4()) {
    width += widthOf(point);
  }
  return width;
}

std::size_t outputWidth() {
  if (::isatty(STDOUT_FILENO) == 0) {
    return 0;
  }
  std::size_t width = 0;
  if (const char* columns = std::getenv("COLUMNS")) {
    const std::string_view text = columns;
    std::from_chars(text.data(), text.data() + text.size(), width);
  }
  winsize size = {};
  if (width == 0 && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) {
    width = size.ws_col;
  }
  return width == 0 ? kUsualWidth : width;
}

std::vector<std::size_t> TextTable::widths(std::size_t width) const {
  std::vector<std::size_t> widths;
  const std::size_t longest = width == 0              ? SIZE_MAX
                              : m_columns.size() == 1 ? width
                                                      : std::min(width, kLongestCell);
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    std::size_t widest = shownWidth(m_columns[i].title);
    for (const auto& row : m_rows) {
      widest = std::max(widest, shownWidth(row[i]));
    }
    widths.push_back(std::min(widest, longest));
  }
  return widths;
}

std::string TextTable::part(const std::vector<std::size_t>& shown,
                            const std::vector<std::size_t>& widths) const {
  const auto lineOf = [&](auto cellOf) {
    std::string line;
    for (const std::size_t i : shown) {
      line.append(line.empty() ? 0 : kGap, ' ');
      line += padded(fitted(cellOf(i), widths[i]), widths[i], m_columns[i].isRight);
    }
    return withoutTrailingBlanks(std::move(line)) + '\n';
  };
  std::string text = lineOf([this](std::size_t i) { return m_columns[i].title; });
  for (const auto& row : m_rows) {
    text += lineOf([&row](std::size_t i) { return row[i]; });
  }
  return text;
}

std::string TextTable::text(std::size_t width, WideTable wide) const {
  const std::vector<std::size_t> widths = this->widths(width);
  std::string text;
  std::vector<std::size_t> shown;
  std::size_t used = 0;
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    const bool isBeyond = width != 0 && !shown.empty() && used + kGap + widths[i] > width;
    if (isBeyond && wide == WideTable::cut) {
      QStringList hidden;
      for (std::size_t j = i; j < m_columns.size(); ++j) {
        hidden += QString::fromStdString(m_columns[j].title);
      }
      return part(shown, widths) +
             fitted(program_messages::hiddenColumns(hidden).toStdString(), width) + '\n';
    }
    if (isBeyond) {
      text += part(shown, widths) + '\n';
      shown = {0};
      used = widths[0];
    }
    used += (shown.empty() ? 0 : kGap) + widths[i];
    shown.push_back(i);
  }
  return text + part(shown, widths);
}

}  // namespace kelvarin
