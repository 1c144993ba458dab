// A descriptor record of the main file: length, checksum and the compressed descriptors.
//
// Written by writer/, read by reader/.
// Layout: docs/gel-format.md, "Descriptor records".
// Threads: any.
// Errors: ReadStatus; throws only std::bad_alloc.
#pragma once

#include <tuple>

#include "base/packed_record.h"
#include "columnar/codecs/byte_buffer.h"
#include "columnar/format/read_status.h"

namespace kelvarin {

struct DescriptorRecordHead {
  std::uint32_t payloadSize = 0;
  std::uint32_t payloadChecksum = 0;

  static constexpr auto fields() {
    return std::tuple(&DescriptorRecordHead::payloadSize, &DescriptorRecordHead::payloadChecksum);
  }
};

inline constexpr std::size_t kRecordHeadSize = 8;
static_assert(packedSize<DescriptorRecordHead>() == kRecordHeadSize);

// A full record has at least this number of descriptors, however wide they are.
inline constexpr std::uint64_t kMinDescriptorsInRecord = 1000;
// Whether the size of the record fits 32 bits, even when compression makes it larger.
bool fitsRecord(std::uint64_t descriptorBytes);

// Replaces the content of `record`.
void encodeDescriptorRecord(Bytes descriptors, ByteBuffer& record);

// Returns at least one descriptor of `width` bytes each, at most `maximumSize` bytes, and no
// partial one.
[[nodiscard]] ReadStatus decodeDescriptorRecord(const DescriptorRecordHead& head, Bytes payload,
                                                std::size_t width, std::uint64_t maximumSize,
                                                ByteBuffer& descriptors);

}  // namespace kelvarin
