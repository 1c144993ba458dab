#include "columnar/reader/descriptor_reader.h"

#include <algorithm>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/snappy_stream.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kRawSizeAlwaysAllowed = 48ull << 20;

}  // namespace

DescriptorReader::DescriptorReader(const GelFile& file)
    : m_file(file),
      m_offset(file.firstRecordOffset()),
      m_recordOffset(m_offset),
      m_window(file.source()),
      m_smallestBlocks(static_cast<std::size_t>(file.columnSetCount())) {
  for (const GelColumn& column : file.columns()) {
    m_smallestBlocks[static_cast<std::size_t>(column.columnSet)] += kMinChunkSize;
  }
}

// The writer's lock is looked at before the record: the writer may end while the record is read.
DescriptorReader::Outcome DescriptorReader::next(DescriptorRecord& record) {
  const bool isBeingWritten = !m_file.isComplete() && m_file.source().isBeingWritten();
  const Outcome outcome = readNext(record);
  return outcome == Outcome::truncated && isBeingWritten ? Outcome::unfinished : outcome;
}

DescriptorReader::Outcome DescriptorReader::readNext(DescriptorRecord& record) {
  m_recordOffset = m_offset;
  m_announcedDescriptors = 0;
  const Bytes headBytes = m_window.at(m_offset, kRecordHeadSize);
  if (headBytes.size() < kRecordHeadSize) {
    return headBytes.empty() ? Outcome::endOfFile : Outcome::truncated;
  }
  if (loadPacked<std::uint64_t>(headBytes.data()) == kEndMarker) {
    return Outcome::endMarker;
  }
  DescriptorRecordHead head;
  ByteReader reader(headBytes);
  (void)readRecord(reader, head);
  if (head.payloadSize == 0) {
    return skipEmptyRecords();
  }
  if (head.payloadSize > m_file.source().largestPart()) {
    return skip(head.payloadSize);
  }
  const Bytes payload = m_window.at(m_offset + kRecordHeadSize, head.payloadSize);
  if (payload.size() < head.payloadSize) {
    return Outcome::truncated;
  }
  m_offset += kRecordHeadSize + head.payloadSize;
  m_announcedDescriptors = wholeDescriptors(payload);
  if (m_following) {
    m_following->descriptors -= std::min(m_following->descriptors, m_announcedDescriptors);
  }
  return decode(head, payload, record);
}

// No record is empty. After a loss of power a file may end with any number of zeros: they are one
// damage, and where nothing follows them the file is truncated.
DescriptorReader::Outcome DescriptorReader::skipEmptyRecords() {
  m_damage = ReadStatus::corrupted;
  Bytes head;
  do {
    m_offset += kRecordHeadSize;
    head = m_window.at(m_offset, kRecordHeadSize);
  } while (head.size() == kRecordHeadSize && loadPacked<std::uint32_t>(head.data()) == 0);
  return head.size() < kRecordHeadSize ? Outcome::truncated : Outcome::corrupted;
}

// In a file with holes a record may claim more than all that the file has.
DescriptorReader::Outcome DescriptorReader::skip(std::uint64_t payloadSize) {
  m_damage = ReadStatus::beyondLimits;
  m_offset += kRecordHeadSize + payloadSize;
  return m_offset > m_file.source().size() ? Outcome::truncated : Outcome::corrupted;
}

DescriptorReader::Outcome DescriptorReader::decode(const DescriptorRecordHead& head, Bytes payload,
                                                   DescriptorRecord& record) {
  const std::size_t width = m_file.descriptorLayout().width();
  ByteBuffer raw;
  m_damage = decodeDescriptorRecord(head, payload, width,
                                    maximumRawSize(m_announcedDescriptors * width), raw);
  if (m_damage != ReadStatus::ok) {
    return Outcome::corrupted;
  }
  DescriptorRecord read(std::move(raw), width);
  if (!areSound(read)) {
    m_damage = ReadStatus::corrupted;
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

FollowingRecords DescriptorReader::following() {
  if (!m_following) {
    survey();
  }
  return *m_following;
}

// Only the heads of the records are read, not the payloads.
void DescriptorReader::survey() {
  constexpr std::size_t kRawLengthSize = 5;
  FollowingRecords& following = m_following.emplace();
  FileWindow window(m_file.source());
  for (std::uint64_t offset = m_offset;;) {
    const Bytes bytes = window.at(offset, kRecordHeadSize + kRawLengthSize);
    following.reachesEnd = bytes.empty() || (bytes.size() >= kRecordHeadSize &&
                                             loadPacked<std::uint64_t>(bytes.data()) == kEndMarker);
    if (following.reachesEnd || bytes.size() < kRecordHeadSize) {
      return;
    }
    const std::uint64_t payloadSize = loadPacked<std::uint32_t>(bytes.data());
    offset += kRecordHeadSize + payloadSize;
    if (offset > m_file.source().size()) {
      return;
    }
    const Bytes payloadBegin = bytes.subspan(kRecordHeadSize);
    const std::uint64_t descriptors = wholeDescriptors(
        payloadBegin.first(std::min<std::uint64_t>(payloadSize, payloadBegin.size())));
    following.descriptors += descriptors;
    following.largestRecord = std::max(following.largestRecord, descriptors);
  }
}

bool DescriptorReader::areSound(const DescriptorRecord& record) const {
  for (std::size_t i = 0; i < record.count(); ++i) {
    const std::uint32_t rows = DescriptorLayout::rowCount(record.descriptor(i));
    if (rows == 0 || rows > m_file.rowsInBlock() ||
        (i > 0 && !areSetsInOrder(record.descriptor(i - 1), record.descriptor(i)))) {
      return false;
    }
  }
  return true;
}

// Each block of a set follows the previous one, so that there are no more blocks than fit the
// bytes.
bool DescriptorReader::areSetsInOrder(const unsigned char* before,
                                      const unsigned char* after) const {
  const DescriptorLayout& layout = m_file.descriptorLayout();
  for (std::size_t set = 0; set < m_smallestBlocks.size(); ++set) {
    const std::uint64_t begin = layout.blockLocation(before, static_cast<int>(set)).offset;
    const std::uint64_t end = layout.blockLocation(after, static_cast<int>(set)).offset;
    if (m_smallestBlocks[set] > 0 && (end < begin || end - begin < m_smallestBlocks[set])) {
      return false;
    }
  }
  return true;
}

// A full record of a table with wide descriptors is always accepted: it expands to no more than
// Snappy can make of its bytes, which is checked before memory is allocated.
std::uint64_t DescriptorReader::maximumRawSize(std::uint64_t announcedSize) {
  const std::uint64_t always = std::max<std::uint64_t>(
      kRawSizeAlwaysAllowed, kMinDescriptorsInRecord * m_file.descriptorLayout().width());
  if (announcedSize <= always) {
    return always;
  }
  if (m_sizeOfAllFiles == 0) {
    m_sizeOfAllFiles = m_file.source().storedSize();
    for (int set = 0; set < m_file.columnSetCount(); ++set) {
      const std::unique_ptr<ByteSource> side = m_file.openSide(set);
      m_sizeOfAllFiles += side ? side->storedSize() : 0;
    }
  }
  return std::max(always, kRawSizeAlwaysAllowed + 3 * m_sizeOfAllFiles);
}

}  // namespace kelvarin
