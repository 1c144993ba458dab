// Bytes that can be read at any offset: a file, or memory in tests.
//
// The size is determined anew at every call, since another program may be writing.
// Threads: readAt() and size() from any.
// Errors: fewer bytes than asked for; never throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace kelvarin {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  virtual std::uint64_t size() const = 0;
  // The bytes that the file takes on the disk: fewer than size() in a file with holes.
  virtual std::uint64_t storedSize() const { return size(); }
  // The largest size that a part of the file may claim. The factor allows for file systems that
  // compress.
  std::uint64_t largestPart() const { return (64ull << 20) + 16 * storedSize(); }
  // Whether a writer is at work on the file, see base/file_lock.h.
  virtual bool isBeingWritten() const { return false; }
  // Returns how many bytes were read; fewer than `count` only at the end or after an error of the
  // system.
  virtual std::size_t readAt(std::uint64_t offset, void* bytes, std::size_t count) const = 0;
};

// Null when there is nothing to read under that name.
using OpenSource = std::function<std::unique_ptr<ByteSource>(const std::string& path)>;

// A regular file; folders and devices are refused.
std::unique_ptr<ByteSource> openFileSource(const std::string& path);

}  // namespace kelvarin
