#include "columnar/codecs/text_dictionary.h"

#include <algorithm>

namespace kelvarin {

bool TextDictionary::fill(const TextValues& texts, KnownTexts& known) {
  m_entries.clear();
  if (!findPlaces(texts, known)) {
    known.forget();
    return false;
  }
  m_codeOfPlace.resize(known.size());
  known.forEachInBlock([this](std::uint32_t place, const KnownTexts::Text& text) {
    m_codeOfPlace[place] = static_cast<std::uint16_t>(m_entries.size());
    m_entries.push_back({text.bytes, text.length});
  });
  m_codes.resize(m_places.size());
  std::transform(m_places.begin(), m_places.end(), m_codes.begin(),
                 [this](std::uint32_t place) { return m_codeOfPlace[place]; });
  return true;
}

// False as soon as there are too many.
bool TextDictionary::findPlaces(const TextValues& texts, KnownTexts& known) {
  // After so many rows, texts that are nearly all different are not looked at any further.
  constexpr std::size_t kTrialRows = 1024;
  const std::size_t rows = texts.lengths.size();
  const std::size_t mostEntries = std::min(kMostEntries, rows / 2 + 1);
  const unsigned char* bytes = texts.bytes.data();
  const unsigned char* end = bytes + texts.bytes.size();
  m_places.resize(rows);
  known.beginBlock();
  for (std::size_t first = 0; first < rows; first += kTrialRows) {
    const auto lengths = texts.lengths.subspan(first, std::min(kTrialRows, rows - first));
    bytes = known.find(lengths, bytes, end, m_places.data() + first);
    if (known.countInBlock() > mostEntries ||
        (first == 0 && known.countInBlock() > kTrialRows * 15 / 16)) {
      return false;
    }
  }
  known.endBlock();
  return true;
}

}  // namespace kelvarin
