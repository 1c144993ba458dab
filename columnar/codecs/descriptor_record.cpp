#include "columnar/codecs/descriptor_record.h"

#include "columnar/codecs/snappy_stream.h"
#include "columnar/format/checksum.h"

namespace kelvarin {

bool fitsRecord(std::uint64_t descriptorBytes) {
  constexpr std::uint64_t kLargestSize = 0xFFFFFFFF;
  return maximumCompressedSize(descriptorBytes) + kRecordHeadSize <= kLargestSize;
}

void encodeDescriptorRecord(Bytes descriptors, ByteBuffer& record) {
  record.resize(kRecordHeadSize);
  const std::size_t size = appendSnappy(descriptors, record);
  storePacked(record.data(), static_cast<std::uint32_t>(size));
  storePacked(record.data() + 4, checksum(record.bytes(kRecordHeadSize)));
}

ReadStatus decodeDescriptorRecord(const DescriptorRecordHead& head, Bytes payload,
                                  std::size_t width, std::uint64_t maximumSize,
                                  ByteBuffer& descriptors) {
  if (payload.size() < head.payloadSize) {
    return ReadStatus::truncated;
  }
  const Bytes stream = payload.first(head.payloadSize);
  if (checksum(stream) != head.payloadChecksum) {
    return ReadStatus::wrongChecksum;
  }
  const ReadStatus status = uncompressSnappy(stream, maximumSize, descriptors);
  if (status != ReadStatus::ok) {
    return status;
  }
  return descriptors.isEmpty() || descriptors.size() % width != 0 ? ReadStatus::corrupted
                                                                  : ReadStatus::ok;
}

}  // namespace kelvarin
