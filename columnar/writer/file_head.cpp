#include "columnar/writer/file_head.h"

#include "columnar/codecs/descriptor_record.h"
#include "columnar/codecs/snappy_stream.h"

namespace kelvarin {

namespace {

FileHeader headerOf(const TableLayout& layout) {
  FileHeader header;
  header.restLength = static_cast<std::uint32_t>(layout.headLength() - kOpeningSize);
  header.columnCount = static_cast<std::uint32_t>(layout.metadata.columns.size());
  return header;
}

}  // namespace

std::vector<unsigned char> provisionalHead(const TableLayout& layout) {
  FileHeader header = headerOf(layout);
  header.firstSize = static_cast<std::uint32_t>(layout.descriptorBlockSize());
  header.secondSize = static_cast<std::uint32_t>(
      maximumCompressedSize(layout.descriptorBlockSize()) + kRecordHeadSize);
  std::vector<unsigned char> bytes;
  ByteWriter writer(bytes);
  writeRecord(writer, header);
  writer.putZeros(layout.metadata.columns.size() * kSlotSize);
  writeMetadata(writer, layout.metadata);
  return bytes;
}

std::vector<unsigned char> finalHead(const TableLayout& layout, const FileTotals& totals,
                                     std::span<const SetSlots> sets) {
  FileHeader header = headerOf(layout);
  header.rowCount = totals.rowCount;
  header.firstSize = totals.largestRecord;
  header.secondSize = totals.largestDescriptorBlock;
  std::vector<unsigned char> bytes;
  ByteWriter writer(bytes);
  writeRecord(writer, header);
  for (const SetSlots& set : sets) {
    for (const auto sizes : {set.largestChunks, set.largestValues}) {
      for (const std::uint32_t size : sizes) {
        writer.put(size);
      }
    }
  }
  return bytes;
}

}  // namespace kelvarin
