// The beginning of a main file: the fixed header and the slot table.
//
// It is written provisionally with the first row and finally at close. Both forms occur in files
// whose writer stopped, so a reader relies on neither of the two size fields.
// Layout: docs/gel-format.md, "Header".
#pragma once

#include <cstdint>
#include <tuple>

#include "base/packed_record.h"

namespace kelvarin {

inline constexpr std::uint32_t kGelMagic = 0x0059F440;
// What a reader reads first: magic, complete flag and the length of the rest.
inline constexpr std::size_t kOpeningSize = 9;
inline constexpr std::size_t kCompleteFlagOffset = 4;
inline constexpr std::uint64_t kEndMarker = ~0ull;

struct FileHeader {
  std::uint32_t magic = kGelMagic;
  std::uint8_t isComplete = 0;
  std::uint32_t restLength = 0;  // of header, slot table and metadata block, without kOpeningSize
  std::uint64_t rowCount = 0;    // 0 while the file is written
  std::uint32_t columnCount = 0;
  // While the file is written: bytes of a full raw descriptor block. At the end: the largest
  // compressed payload of a descriptor record, plus 8.
  std::uint32_t firstSize = 0;
  // While the file is written: the most that a full raw descriptor block takes compressed, plus 8.
  // At the end: the largest raw descriptor block.
  std::uint32_t secondSize = 0;

  static constexpr auto fields() {
    return std::tuple(&FileHeader::magic, &FileHeader::isComplete, &FileHeader::restLength,
                      &FileHeader::rowCount, &FileHeader::columnCount, &FileHeader::firstSize,
                      &FileHeader::secondSize);
  }
};

// One column's entry in the slot table, all zero while the file is written. The table has the
// chunk sizes of a set's columns first and then their raw sizes, set after set.
inline constexpr std::size_t kSlotSize = 8;

inline constexpr std::size_t kHeaderSize = 29;
static_assert(packedSize<FileHeader>() == kHeaderSize);

}  // namespace kelvarin
