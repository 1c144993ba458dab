// Snappy streams of a file: compressing, uncompressing within a limit, and finding where one ends.
//
// Used by ChunkEncoder, ChunkDecoder and the descriptor records.
// Threads: any.
// Errors: ReadStatus; throws only std::bad_alloc.
#pragma once

#include <optional>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/format/read_status.h"

namespace kelvarin {

// Snappy stores lengths in 32 bits.
inline constexpr std::uint64_t kMaxRawSize = 0xFFFFFFFF;

// An upper bound of the compressed size.
std::uint64_t maximumCompressedSize(std::uint64_t rawSize);

// Compresses at most kMaxRawSize bytes and returns the size of the stream.
std::size_t appendSnappy(Bytes raw, ByteBuffer& out);

// The compressed size of the bytes; `scratch` is overwritten.
std::size_t compressedSize(Bytes raw, ByteBuffer& scratch);
// Whether the first bytes compress to fewer than `bitsPerByte` bits each.
bool doesCompressBelow(Bytes raw, int bitsPerByte);

// Replaces the content of `raw`. A stream that announces more than `maximumSize` bytes is beyond
// the limits; a long one is checked as a whole before memory is taken for it.
[[nodiscard]] ReadStatus uncompressSnappy(Bytes stream, std::uint64_t maximumSize, ByteBuffer& raw);

// Walks through the stream that `bytes` begin with. `length` is how far the walk came: for
// ReadStatus::ok the end of the stream. `truncated`: the bytes end before the stream does.
[[nodiscard]] ReadStatus findSnappyEnd(Bytes bytes, std::size_t& length);

// The uncompressed size that a stream announces, unchecked; nothing when it announces none.
std::optional<std::uint64_t> announcedRawSize(Bytes stream);

}  // namespace kelvarin
