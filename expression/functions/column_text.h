// Texts of many rows, as functions over columns take and make them.
//
// A text is a view of bytes that somebody else keeps: the batch, the program or a TextArena.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace kelvarin {

class ColumnText {
 public:
  // The null text.
  ColumnText() = default;
  // At most 4 GiB. Never with a null pointer, of which Qt would make the null text.
  explicit ColumnText(std::string_view text)
      : m_bytes(text.data() == nullptr ? "" : text.data()),
        m_size(static_cast<std::uint32_t>(text.size())) {}

  bool isNull() const { return m_size == kNullSize; }
  // Empty for the null text.
  std::string_view view() const { return {m_bytes, isNull() ? 0 : m_size}; }

 private:
  static constexpr std::uint32_t kNullSize = 0xFFFFFFFF;

  const char* m_bytes = nullptr;
  std::uint32_t m_size = kNullSize;
};

}  // namespace kelvarin
