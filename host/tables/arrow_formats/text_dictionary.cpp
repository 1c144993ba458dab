#include "host/tables/arrow_formats/text_dictionary.h"

#include <functional>

#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

constexpr std::size_t kFirstSlots = 4096;

}  // namespace

TextDictionary::TextDictionary(std::size_t maxBytes)
    : m_maxBytes(maxBytes), m_slots(kFirstSlots, 0) {}

bool TextDictionary::find(const unsigned char* counted, std::uint32_t& code) {
  const std::string_view text = textFromBytes(counted);
  const std::size_t hash = std::hash<std::string_view>()(text);
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t slot = hash & mask; m_slots[slot] != 0; slot = (slot + 1) & mask) {
    code = m_slots[slot] - 1;
    if (m_hashes[code] == hash && textFromBytes(m_texts[code]) == text) {
      return true;
    }
  }
  return add(counted, text.size() + 4, hash, code);
}

bool TextDictionary::add(const unsigned char* counted, std::size_t size, std::size_t hash,
                         std::uint32_t& code) {
  if (m_byteCount + size > m_maxBytes) {
    return false;
  }
  if (2 * m_texts.size() >= m_slots.size()) {
    grow();
  }
  m_byteCount += size;
  m_texts.push_back(counted);
  m_hashes.push_back(hash);
  code = static_cast<std::uint32_t>(m_texts.size() - 1);
  const std::size_t mask = m_slots.size() - 1;
  std::size_t slot = hash & mask;
  while (m_slots[slot] != 0) {
    slot = (slot + 1) & mask;
  }
  m_slots[slot] = code + 1;
  return true;
}

void TextDictionary::grow() {
  m_slots.assign(4 * m_slots.size(), 0);
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t code = 0; code < m_hashes.size(); ++code) {
    std::size_t slot = m_hashes[code] & mask;
    while (m_slots[slot] != 0) {
      slot = (slot + 1) & mask;
    }
    m_slots[slot] = static_cast<std::uint32_t>(code + 1);
  }
}

}  // namespace kelvarin
