// The distinct texts of a column, and the code of each row's text: a dictionary of a Parquet file.
//
// Used by: text_column.cpp.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kelvarin {

class TextDictionary {
 public:
  // Takes texts until they have so many bytes, with a count of four bytes each.
  explicit TextDictionary(std::size_t maxBytes);

  // `counted` is a text with its count before it, not null, and stays where it is. False: the text
  // is new, and the dictionary is full.
  bool find(const unsigned char* counted, std::uint32_t& code);
  // In the order of their codes.
  const std::vector<const unsigned char*>& texts() const { return m_texts; }
  std::size_t byteCount() const { return m_byteCount; }

 private:
  bool add(const unsigned char* counted, std::size_t size, std::size_t hash, std::uint32_t& code);
  void grow();

  std::size_t m_maxBytes;
  std::size_t m_byteCount = 0;
  std::vector<std::uint32_t> m_slots;  // code + 1; 0 where there is none
  std::vector<const unsigned char*> m_texts;
  std::vector<std::size_t> m_hashes;
};

}  // namespace kelvarin
