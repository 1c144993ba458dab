#include "columnar/codecs/snappy_stream.h"

#include <algorithm>

#include <snappy.h>

namespace kelvarin {

namespace {

// Streams that expand to less than this are uncompressed without a check beforehand.
constexpr std::size_t kSmallRawSize = 1 << 20;
constexpr std::size_t kLongestRawLength = 5;

const char* asChars(Bytes bytes) {
  return reinterpret_cast<const char*>(bytes.data());
}

// One element of a stream: its size, the bytes that it expands to, and for a copy how far back it
// reaches.
struct Element {
  std::size_t size = 0;
  std::size_t rawSize = 0;
  std::size_t distance = 0;
  bool isCopy = false;
};

// A literal has its length in its tag, or in 1 to 4 bytes after it.
std::optional<Element> literalAt(Bytes bytes) {
  constexpr std::size_t kLongestInTag = 60;
  const std::size_t tagLength = bytes[0] >> 2;
  if (tagLength < kLongestInTag) {
    return Element{1 + tagLength + 1, tagLength + 1};
  }
  const std::size_t lengthBytes = tagLength - kLongestInTag + 1;
  if (bytes.size() < 1 + lengthBytes) {
    return std::nullopt;
  }
  std::size_t length = 0;
  std::memcpy(&length, bytes.data() + 1, lengthBytes);
  return Element{1 + lengthBytes + length + 1, length + 1};
}

template <typename Distance>
std::optional<Element> copyAt(Bytes bytes) {
  constexpr std::size_t kSize = 1 + sizeof(Distance);
  if (bytes.size() < kSize) {
    return std::nullopt;
  }
  return Element{kSize, 1u + (bytes[0] >> 2), loadPacked<Distance>(bytes.data() + 1), true};
}

std::optional<Element> shortCopyAt(Bytes bytes) {
  if (bytes.size() < 2) {
    return std::nullopt;
  }
  const std::size_t distance = std::size_t{bytes[0]} >> 5 << 8 | bytes[1];
  return Element{2, 4u + (bytes[0] >> 2 & 7u), distance, true};
}

// Nothing: the bytes end inside the element.
std::optional<Element> elementAt(Bytes bytes) {
  switch (bytes[0] & 3) {
    case 0:
      return literalAt(bytes);
    case 1:
      return shortCopyAt(bytes);
    case 2:
      return copyAt<std::uint16_t>(bytes);
    default:
      return copyAt<std::uint32_t>(bytes);
  }
}

// The raw length comes first, 7 bits a byte.
std::optional<std::size_t> sizeOfLength(Bytes bytes) {
  for (std::size_t i = 0; i < bytes.size() && i < kLongestRawLength; ++i) {
    if (bytes[i] < 0x80) {
      return i + 1;
    }
  }
  return std::nullopt;
}

}  // namespace

std::uint64_t maximumCompressedSize(std::uint64_t rawSize) {
  return snappy::MaxCompressedLength(rawSize);
}

std::size_t appendSnappy(Bytes raw, ByteBuffer& out) {
  assert(raw.size() <= kMaxRawSize);
  const std::size_t begin = out.size();
  char* compressed = reinterpret_cast<char*>(out.append(maximumCompressedSize(raw.size())));
  std::size_t size = 0;
  snappy::RawCompress(asChars(raw), raw.size(), compressed, &size);
  out.resize(begin + size);
  return size;
}

std::size_t compressedSize(Bytes raw, ByteBuffer& scratch) {
  scratch.clear();
  return appendSnappy(raw, scratch);
}

bool doesCompressBelow(Bytes raw, int bitsPerByte) {
  constexpr std::size_t kTrialSize = 2048;
  char compressed[32 + kTrialSize + kTrialSize / 6];  // at its worst
  const Bytes trial = raw.first(std::min(raw.size(), kTrialSize));
  assert(sizeof compressed >= maximumCompressedSize(trial.size()));
  std::size_t size = 0;
  snappy::RawCompress(asChars(trial), trial.size(), compressed, &size);
  return size * 8 < trial.size() * static_cast<std::size_t>(bitsPerByte);
}

ReadStatus uncompressSnappy(Bytes stream, std::uint64_t maximumSize, ByteBuffer& raw) {
  std::size_t size = 0;
  if (!snappy::GetUncompressedLength(asChars(stream), stream.size(), &size)) {
    return ReadStatus::corrupted;
  }
  if (size > maximumSize) {
    return ReadStatus::beyondLimits;
  }
  if (size > kSmallRawSize && size > stream.size() &&
      !snappy::IsValidCompressedBuffer(asChars(stream), stream.size())) {
    return ReadStatus::corrupted;
  }
  raw.resize(size);
  const bool isWhole =
      snappy::RawUncompress(asChars(stream), stream.size(), reinterpret_cast<char*>(raw.data()));
  return isWhole ? ReadStatus::ok : ReadStatus::corrupted;
}

ReadStatus findSnappyEnd(Bytes bytes, std::size_t& length) {
  std::size_t rawSize = 0;
  length = 0;
  const auto head = sizeOfLength(bytes);
  if (!head) {
    return bytes.size() < kLongestRawLength ? ReadStatus::truncated : ReadStatus::corrupted;
  }
  if (!snappy::GetUncompressedLength(asChars(bytes), bytes.size(), &rawSize)) {
    return ReadStatus::corrupted;
  }
  length = *head;
  for (std::size_t done = 0; done < rawSize;) {
    if (length >= bytes.size()) {
      return ReadStatus::truncated;
    }
    const auto element = elementAt(bytes.subspan(length));
    if (!element) {
      return ReadStatus::truncated;
    }
    const bool isBadCopy = element->isCopy && (element->distance == 0 || element->distance > done);
    if (element->rawSize > rawSize - done || isBadCopy) {
      return ReadStatus::corrupted;
    }
    if (element->size > bytes.size() - length) {
      return ReadStatus::truncated;
    }
    length += element->size;
    done += element->rawSize;
  }
  return ReadStatus::ok;
}

std::optional<std::uint64_t> announcedRawSize(Bytes stream) {
  std::size_t size = 0;
  const bool isAnnounced = snappy::GetUncompressedLength(asChars(stream), stream.size(), &size);
  return isAnnounced ? std::optional<std::uint64_t>(size) : std::nullopt;
}

}  // namespace kelvarin
