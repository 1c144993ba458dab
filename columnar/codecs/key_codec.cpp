#include "columnar/codecs/key_codec.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <exception>

#include <codecs.h>
#include <compositecodec.h>
#include <deltautil.h>
#include <simdbinarypacking.h>
#include <simdfastpfor.h>
#include <variablebyte.h>

#include "columnar/codecs/key_words.h"

namespace kelvarin {

namespace {

using PlainCodec =
    FastPForLib::CompositeCodec<FastPForLib::SIMDFastPFor<4>, FastPForLib::VariableByte>;
using SortedCodec =
    FastPForLib::CompositeCodec<FastPForLib::SIMDBinaryPacking, FastPForLib::VariableByte>;
using Deltas = FastPForLib::Delta;

std::uint32_t* asWords(ByteBuffer& buffer) {
  return reinterpret_cast<std::uint32_t*>(buffer.data());
}

std::size_t packedPart(std::size_t keys) {
  return keys / kKeysInGroup * kKeysInGroup;
}

// Calls use(first, count) for the packed part and for the rest, each of which starts from 0.
template <typename Use>
void forBothParts(std::uint32_t* keys, std::size_t count, Use use) {
  const std::size_t packed = packedPart(count);
  if (packed > 0) {
    use(keys, packed);
  }
  if (packed < count) {
    use(keys + packed, count - packed);
  }
}

void toDeltas(std::uint32_t* keys, std::size_t count) {
  forBothParts(keys, count,
               [](std::uint32_t* first, std::size_t size) { Deltas::fastDelta(first, size); });
}

void fromDeltas(std::uint32_t* keys, std::size_t count) {
  forBothParts(keys, count, [](std::uint32_t* first, std::size_t size) {
    Deltas::fastinverseDelta2(first, size);
  });
}

}  // namespace

struct KeyCodec::Library {
  PlainCodec plain;
  SortedCodec sorted;

  FastPForLib::IntegerCODEC& codec(StorageCode code) {
    if (code == StorageCode::key) {
      return plain;
    }
    return sorted;
  }
};

KeyCodec::KeyCodec() : m_library(std::make_unique<Library>()) {}

KeyCodec::~KeyCodec() = default;

std::uint64_t KeyCodec::maximumEncodedSize(std::uint64_t rows) {
  constexpr std::uint64_t kHeads = 1024;
  return (rows + rows / 8 + kHeads) * sizeof(std::uint32_t);
}

void KeyCodec::encode(std::span<const std::uint32_t> keys, StorageCode code, ByteBuffer& words) {
  const std::uint32_t* source = keys.data();
  if (code != StorageCode::key) {
    m_ordered.resize(keys.size_bytes());
    std::uint32_t* ordered = asWords(m_ordered);
    if (code == StorageCode::descendingKey) {
      std::reverse_copy(keys.begin(), keys.end(), ordered);
    } else {
      std::copy(keys.begin(), keys.end(), ordered);
    }
    toDeltas(ordered, keys.size());
    source = ordered;
  }
  words.resize(maximumEncodedSize(keys.size()));
  std::size_t wordCount = words.size() / sizeof(std::uint32_t);
  m_library->codec(code).encodeArray(source, keys.size(), asWords(words), wordCount);
  words.resize(wordCount * sizeof(std::uint32_t));
}

ReadStatus KeyCodec::decode(Bytes bytes, StorageCode code, std::uint32_t rows, ByteBuffer& keys) {
  if (bytes.size() % sizeof(std::uint32_t) != 0 || rows == 0) {
    return ReadStatus::corrupted;
  }
  assert(std::bit_cast<std::uintptr_t>(bytes.data()) % alignof(std::uint32_t) == 0);
  const std::span words(reinterpret_cast<const std::uint32_t*>(bytes.data()),
                        bytes.size() / sizeof(std::uint32_t));
  const bool isSound =
      code == StorageCode::key ? arePlainKeyWords(words, rows) : areSortedKeyWords(words, rows);
  if (!isSound) {
    return ReadStatus::corrupted;
  }
  keys.resize(std::size_t{rows} * sizeof(std::uint32_t));
  std::size_t decoded = rows;
  try {
    m_library->codec(code).decodeArray(words.data(), words.size(), asWords(keys), decoded);
  } catch (const std::exception&) {
    return ReadStatus::corrupted;
  }
  if (decoded != rows) {
    return ReadStatus::corrupted;
  }
  if (code != StorageCode::key) {
    fromDeltas(asWords(keys), rows);
  }
  if (code == StorageCode::descendingKey) {
    std::reverse(asWords(keys), asWords(keys) + rows);
  }
  return ReadStatus::ok;
}

}  // namespace kelvarin
