// A descriptor record of the main file: length, checksum and the compressed descriptors.
//
// Layout: docs/gel-format.md, "Descriptor records". Written by writer/, read by reader/.
// Threads: any.  Errors: ReadStatus; never throws but for a lack of memory.
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

// A full record has at least so many descriptors, however wide they are.
inline constexpr std::uint64_t kFewestDescriptorsInRecord = 1000;
// Whether a record of so many bytes of descriptors has its size in 32 bits, compressed at its
// worst.
bool fitsRecord(std::uint64_t descriptorBytes);

// Replaces what `record` held with head and payload.
void encodeDescriptorRecord(Bytes descriptors, ByteBuffer& record);

// The result is a whole number of descriptors of `width` bytes, at least one, and at most
// `maximumSize` bytes.
[[nodiscard]] ReadStatus decodeDescriptorRecord(const DescriptorRecordHead& head, Bytes payload,
                                                std::size_t width, std::uint64_t maximumSize,
                                                ByteBuffer& descriptors);

}  // namespace kelvarin
