// Reads the descriptor records of a main file one after the other.
//
// Layout: docs/gel-format.md, "Descriptor records".
// Threads: one at a time.  Errors: Outcome; never logs, never throws but for a lack of memory.
#pragma once

#include <cstdint>
#include <optional>

#include "columnar/codecs/descriptor_record.h"
#include "columnar/reader/file_window.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

// The descriptors of one record, one behind the other.
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

// What the heads of records announce, to be believed when they go on to the end of the file.
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
    unfinished,  // the same, and a writer is at work: the rest will come
    endMarker,  // nothing follows
    endOfFile   // where a record or the end marker could begin
  };

  explicit DescriptorReader(const GelFile& file);

  // `record` is set for Outcome::record only. After anything but record and corrupted it stays so.
  Outcome next(DescriptorRecord& record);
  // Why the last record was corrupted.
  ReadStatus damage() const { return m_damage; }
  // Where the last record began.
  std::uint64_t recordOffset() const { return m_recordOffset; }
  // How many descriptors the last, corrupted record announced; 0 when that makes no sense.
  std::uint64_t announcedDescriptors() const { return m_announcedDescriptors; }
  // Of the records after the last one; looked up once.
  FollowingRecords following();

 private:
  Outcome readNext(DescriptorRecord& record);
  Outcome passOverEmptyRecords();
  Outcome passOver(std::uint64_t payloadSize);
  Outcome decode(const DescriptorRecordHead& head, Bytes payload, DescriptorRecord& record);
  void survey();
  std::uint64_t wholeDescriptors(Bytes payloadBegin) const;
  bool areSound(const DescriptorRecord& record) const;
  bool areSetsInOrder(const unsigned char* before, const unsigned char* after) const;
  // What one record may take: a forged one must not take all memory.
  std::uint64_t maximumRawSize(std::uint64_t announcedSize);

  const GelFile& m_file;
  std::uint64_t m_offset;
  std::uint64_t m_recordOffset;
  std::uint64_t m_announcedDescriptors = 0;
  ReadStatus m_damage = ReadStatus::ok;
  FileWindow m_window;
  std::vector<std::uint64_t> m_smallestBlocks;  // bytes that a block takes at least, by set
  std::optional<FollowingRecords> m_following;
  std::uint64_t m_sizeOfAllFiles = 0;  // 0: not looked up
};

}  // namespace kelvarin
