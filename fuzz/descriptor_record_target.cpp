// A descriptor record, its checksum repaired: the first byte is the width of a descriptor.
#include "columnar/codecs/descriptor_record.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/format/checksum.h"
#include "fuzz/fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  const kelvarin::Bytes payload(data + 1, size - 1);
  const std::size_t width = 1u + data[0];
  const kelvarin::DescriptorRecordHead head{static_cast<std::uint32_t>(payload.size()),
                                            kelvarin::checksum(payload)};
  kelvarin::ByteBuffer descriptors;
  (void)kelvarin::decodeDescriptorRecord(head, payload, width, 64 << 20, descriptors);
  std::size_t length = 0;
  (void)kelvarin::findSnappyEnd(payload, length);
  return 0;
}
