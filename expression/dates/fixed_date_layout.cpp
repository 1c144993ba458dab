#include "expression/dates/fixed_date_layout.h"

#include <algorithm>

#include "expression/dates/two_digits.h"

namespace kelvarin {

std::optional<FixedDateLayout> FixedDateLayout::of(const DateFormatParts& format) {
  constexpr std::size_t word = sizeof(std::uint64_t);
  FixedDateLayout layout;
  for (const DateFormatPart& part : format.parts) {
    const bool isZoneAtEnd = part.field == DateField::zone && &part == &format.parts.back();
    if (!isZoneAtEnd && !layout.add(part, format.literalOf(part))) {
      return std::nullopt;
    }
  }
  if (layout.m_size < word) {
    return std::nullopt;
  }
  layout.m_hasTime = std::ranges::any_of(
      std::array{layout.m_hour, layout.m_minute, layout.m_second, layout.m_millisecond},
      [](Position position) { return position != kAbsent; });
  // The last words may overlap others, so that no character beyond the text is touched.
  for (std::size_t offset = 0; offset + word <= layout.m_size; offset += word) {
    layout.addWord(offset);
  }
  if (layout.m_size % word != 0) {
    layout.addWord(layout.m_size - word);
  }
  return layout;
}

bool FixedDateLayout::add(const DateFormatPart& part, std::string_view literal) {
  const std::size_t size = part.digits + literal.size();
  if (m_size + size > kMaxSize) {
    return false;
  }
  if (part.field == DateField::literal) {
    literal.copy(m_text.data() + m_size, literal.size());
  } else {
    Position* position = positionOf(part);
    if (position == nullptr || *position != kAbsent) {
      return false;
    }
    *position = static_cast<Position>(m_size);
    std::fill_n(m_text.begin() + static_cast<std::ptrdiff_t>(m_size), size, '0');
    std::fill_n(m_isDigit.begin() + static_cast<std::ptrdiff_t>(m_size), size, true);
  }
  m_size += size;
  return true;
}

FixedDateLayout::Position* FixedDateLayout::positionOf(const DateFormatPart& part) {
  if (part.digits < 2) {
    return nullptr;
  }
  switch (part.field) {
    case DateField::year:
      return m_yearOfCentury == kAbsent ? &m_year : nullptr;
    case DateField::yearOfCentury:
      return m_year == kAbsent ? &m_yearOfCentury : nullptr;
    case DateField::month:
      return &m_month;
    case DateField::day:
      return &m_day;
    case DateField::hour:
      return &m_hour;
    case DateField::minute:
      return &m_minute;
    case DateField::second:
      return &m_second;
    case DateField::millisecond:
      return &m_millisecond;
    default:
      return nullptr;
  }
}

void FixedDateLayout::addWord(std::size_t offset) {
  constexpr unsigned char beyondDigits = 0x80 - 10;
  constexpr unsigned char beyondZero = 0x80 - 1;
  std::array<unsigned char, sizeof(std::uint64_t)> toOverflow{};
  for (std::size_t i = 0; i < toOverflow.size(); ++i) {
    toOverflow[i] = m_isDigit[offset + i] ? beyondDigits : beyondZero;
  }
  Word& word = m_words[m_wordCount++];
  word.offset = static_cast<std::uint8_t>(offset);
  std::memcpy(&word.expected, m_text.data() + offset, sizeof word.expected);
  std::memcpy(&word.toOverflow, toOverflow.data(), sizeof word.toOverflow);
}

void FixedDateLayout::print(const CivilDay& day, std::int64_t timeOfDay, char* text) const {
  std::memcpy(text, m_text.data(), kMaxSize);
  if (m_year != kAbsent) {
    putTwoDigits(text + m_year, day.year / 100);
    putTwoDigits(text + m_year + 2, day.year % 100);
  }
  put(text, m_yearOfCentury, day.year % 100);
  put(text, m_month, day.month);
  put(text, m_day, day.day);
  if (m_hasTime) {
    printTime(timeOfDay, text);
  }
}

void FixedDateLayout::printTime(std::int64_t timeOfDay, char* text) const {
  const ClockFields fields = fieldsOf({}, timeOfDay);
  put(text, m_hour, fields.hour);
  put(text, m_minute, fields.minute);
  put(text, m_second, fields.second);
  if (m_millisecond != kAbsent) {
    text[m_millisecond] = static_cast<char>('0' + fields.millisecond / 100);
    putTwoDigits(text + m_millisecond + 1, fields.millisecond % 100);
  }
}

void FixedDateLayout::put(char* text, Position position, int number) {
  if (position != kAbsent) {
    putTwoDigits(text + position, number);
  }
}

}  // namespace kelvarin
