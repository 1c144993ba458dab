#include "columnar/reader/descriptor_reader.h"

#include <algorithm>

#include "columnar/codecs/snappy_stream.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kRawSizeAlwaysTaken = 48ull << 20;

}  // namespace

DescriptorReader::DescriptorReader(const GelFile& file)
    : m_file(file), m_offset(file.firstRecordOffset()), m_recordOffset(m_offset) {}

DescriptorReader::Outcome DescriptorReader::next(DescriptorRecord& record) {
  m_recordOffset = m_offset;
  m_announcedDescriptors = 0;
  unsigned char head[kRecordHeadSize];
  const std::size_t size = m_file.source().readAt(m_offset, head, kRecordHeadSize);
  if (size < kRecordHeadSize) {
    return size == 0 ? Outcome::endOfFile : Outcome::truncated;
  }
  if (loadPacked<std::uint64_t>(head) == kEndMarker) {
    return Outcome::endMarker;
  }
  DescriptorRecordHead recordHead;
  ByteReader reader(head);
  (void)readRecord(reader, recordHead);
  const std::uint64_t fileSize = m_file.source().size();
  const std::uint64_t payloadOffset = m_offset + kRecordHeadSize;
  if (fileSize < payloadOffset || recordHead.payloadSize > fileSize - payloadOffset) {
    return Outcome::truncated;
  }
  m_offset = payloadOffset + recordHead.payloadSize;
  return readPayload(recordHead, record);
}

DescriptorReader::Outcome DescriptorReader::readPayload(const DescriptorRecordHead& head,
                                                        DescriptorRecord& record) {
  m_payload.resize(head.payloadSize);
  if (m_file.source().readAt(m_recordOffset + kRecordHeadSize, m_payload.data(), m_payload.size()) <
      m_payload.size()) {
    m_offset = m_recordOffset;
    return Outcome::truncated;
  }
  const std::size_t width = m_file.descriptorLayout().width();
  m_announcedDescriptors = wholeDescriptors(m_payload.bytes());
  ByteBuffer raw;
  if (decodeDescriptorRecord(head, m_payload.bytes(), width,
                             maximumRawSize(m_announcedDescriptors * width),
                             raw) != ReadStatus::ok) {
    return Outcome::corrupted;
  }
  DescriptorRecord read(std::move(raw), width);
  if (!areSound(read)) {
    return Outcome::corrupted;
  }
  record = std::move(read);
  return Outcome::record;
}

std::uint64_t DescriptorReader::wholeDescriptors(Bytes payloadBegin) const {
  const std::size_t width = m_file.descriptorLayout().width();
  const std::uint64_t announced = announcedRawSize(payloadBegin).value_or(0);
  return announced % width == 0 ? announced / width : 0;
}

DescriptorReader::Following DescriptorReader::following() {
  if (!m_hasSurvey) {
    survey();
  }
  const auto here = std::lower_bound(
      m_survey.begin(), m_survey.end(), m_offset,
      [](const Announced& record, std::uint64_t offset) { return record.end <= offset; });
  Following result = m_surveyed;
  result.descriptors -= here == m_survey.end() ? result.descriptors : here->descriptorsBefore;
  return result;
}

// Only the heads are read, not the payloads.
void DescriptorReader::survey() {
  constexpr std::size_t kRawLengthSize = 5;
  m_hasSurvey = true;
  const std::uint64_t fileSize = m_file.source().size();
  for (std::uint64_t offset = m_offset;;) {
    unsigned char bytes[kRecordHeadSize + kRawLengthSize];
    const std::size_t size = m_file.source().readAt(offset, bytes, sizeof bytes);
    m_surveyed.reachesEnd =
        size == 0 || (size >= kRecordHeadSize && loadPacked<std::uint64_t>(bytes) == kEndMarker);
    const std::uint64_t end =
        offset + kRecordHeadSize + (size < 4 ? 0 : loadPacked<std::uint32_t>(bytes));
    if (m_surveyed.reachesEnd || size <= kRecordHeadSize || end > fileSize) {
      return;
    }
    const std::uint64_t descriptors = wholeDescriptors(Bytes(bytes, size).subspan(kRecordHeadSize));
    m_survey.push_back({end, m_surveyed.descriptors});
    m_surveyed.descriptors += descriptors;
    m_surveyed.largestRecord = std::max(m_surveyed.largestRecord, descriptors);
    offset = end;
  }
}

bool DescriptorReader::areSound(const DescriptorRecord& record) const {
  for (std::size_t i = 0; i < record.count(); ++i) {
    const std::uint32_t rows = DescriptorLayout::rowCount(record.descriptor(i));
    if (rows == 0 || rows > m_file.rowsInBlock()) {
      return false;
    }
  }
  return true;
}

std::uint64_t DescriptorReader::maximumRawSize(std::uint64_t announcedSize) const {
  if (announcedSize <= kRawSizeAlwaysTaken) {
    return kRawSizeAlwaysTaken;
  }
  std::uint64_t fileSize = m_file.source().size();
  for (int set = 0; set < m_file.columnSetCount(); ++set) {
    const std::unique_ptr<ByteSource> side = m_file.openSide(set);
    fileSize += side ? side->size() : 0;
  }
  return kRawSizeAlwaysTaken + 3 * fileSize;
}

}  // namespace kelvarin
