// Snappy streams from a file: appending one, taking one apart with its length under control, and
// finding where one ends.
//
// Used by ChunkEncoder, ChunkDecoder and the descriptor records. Threads: any.  Errors: ReadStatus;
// never throws but for a lack of memory.
#pragma once

#include <optional>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/format/read_status.h"

namespace kelvarin {

// Snappy carries lengths in 32 bits.
inline constexpr std::uint64_t kMaximumRawSize = 0xFFFFFFFF;

// The most that so many bytes take compressed.
std::uint64_t maximumCompressedSize(std::uint64_t rawSize);

// At most kMaximumRawSize bytes; gives the size of the stream.
std::size_t appendSnappy(Bytes raw, ByteBuffer& out);

// What the bytes take compressed; `scratch` is overwritten.
std::size_t compressedSize(Bytes raw, ByteBuffer& scratch);
// Whether the first bytes compress to fewer bits than these for each byte.
bool doesCompressBelow(Bytes raw, int bitsPerByte);

// Replaces what `raw` held. A stream that announces more than `maximumSize` bytes is beyond the
// limits; a long one is checked as a whole before memory is taken for it.
[[nodiscard]] ReadStatus uncompressSnappy(Bytes stream, std::uint64_t maximumSize, ByteBuffer& raw);

// Walks through the stream that `bytes` begin with. `length` is how far the walk came, for
// ReadStatus::ok the stream's end; `truncated`: the bytes end before the stream does.
[[nodiscard]] ReadStatus findSnappyEnd(Bytes bytes, std::size_t& length);

// The size that a stream announces, believed or not; nothing when it announces none.
std::optional<std::uint64_t> announcedRawSize(Bytes stream);

}  // namespace kelvarin
