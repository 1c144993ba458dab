// Reads the descriptor records of a main file in order.
//
// Layout: docs/gel-format.md, "Descriptor records".
// Errors: Outcome; never logs, throws only std::bad_alloc.
#pragma once

#include <cstdint>
#include <optional>

#include "columnar/codecs/descriptor_record.h"
#include "columnar/reader/file_window.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

// The contiguous descriptors of one record.
class DescriptorRecord {
 public:
  DescriptorRecord() = default;
  DescriptorRecord(ByteBuffer bytes, std::size_t width)
      : m_bytes(std::move(bytes)), m_width(width) {}

  std::size_t count() const { return m_width == 0 ? 0 : m_bytes.size() / m_width; }
  const unsigned char* descriptor(std::size_t index) const {
    return m_bytes.data() + index * m_width;
  }

 private:
  ByteBuffer m_bytes;
  std::size_t m_width = 0;
};

// The numbers that the heads of the following records announce; reliable when these reach the end
// of the file.
struct FollowingRecords {
  std::uint64_t descriptors = 0;
  std::uint64_t largestRecord = 0;
  bool reachesEnd = false;
};

class DescriptorReader {
 public:
  enum class Outcome {
    record,
    corrupted,   // the record's bytes make no sense; the next one may
    truncated,   // the file ends inside a record, or with zeros
    unfinished,  // the same, while a writer is writing it
    endMarker,   // nothing follows
    endOfFile    // where a record or the end marker could begin
  };

  explicit DescriptorReader(const GelFile& file);

  // `record` is set for Outcome::record only. After all outcomes but record and corrupted, the same
  // outcome follows.
  Outcome next(DescriptorRecord& record);
  // Why the last record was corrupted.
  ReadStatus damage() const { return m_damage; }
  // Where the last record began.
  std::uint64_t recordOffset() const { return m_recordOffset; }
  // How many descriptors the last, corrupted record announced; 0 when that makes no sense.
  std::uint64_t announcedDescriptors() const { return m_announcedDescriptors; }
  // The records after the last one; determined once.
  FollowingRecords following();

 private:
  Outcome readNext(DescriptorRecord& record);
  Outcome skipEmptyRecords();
  Outcome skip(std::uint64_t payloadSize);
  Outcome decode(const DescriptorRecordHead& head, Bytes payload, DescriptorRecord& record);
  void survey();
  std::uint64_t wholeDescriptors(Bytes payloadBegin) const;
  bool areSound(const DescriptorRecord& record) const;
  bool areSetsInOrder(const unsigned char* before, const unsigned char* after) const;
  // The limit of one record, so that a forged one does not take all memory.
  std::uint64_t maximumRawSize(std::uint64_t announcedSize);

  const GelFile& m_file;
  std::uint64_t m_offset;
  std::uint64_t m_recordOffset;
  std::uint64_t m_announcedDescriptors = 0;
  ReadStatus m_damage = ReadStatus::ok;
  FileWindow m_window;
  std::vector<std::uint64_t> m_smallestBlocks;  // the least bytes of a block, by set
  std::optional<FollowingRecords> m_following;
  std::uint64_t m_sizeOfAllFiles = 0;  // 0: not looked up
};

}  // namespace kelvarin
