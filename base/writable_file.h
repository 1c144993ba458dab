// An open file that takes all bytes it is given, whatever a single call of the system takes.
//
// A write that was interrupted, or took a part only, goes on with the rest. When the disk is full,
// the owner's routine is asked: true means that the rest is tried again. Bytes begin their way to
// the disk while the file grows, so that the end need not wait for all of them.
// Used by: the host's output files, and the files of a columnar table that is being written.
// Threads: one at a time; sync() from any while the file is open.
// Errors: the number of the system's error, 0 for none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <utility>

namespace kelvarin {

class WritableFile {
 public:
  // Gets the count of bytes that found no space; true: try again.
  using AskAboutFullDisk = std::function<bool(std::size_t missingBytes)>;

  // A stream is a pipe, a device or standard output. Where nobody reads it any more, a write fails
  // with EPIPE instead of ending the process.
  enum class Kind { file, stream };

  explicit WritableFile(AskAboutFullDisk ask) : m_ask(std::move(ask)) {}
  ~WritableFile() { (void)close(); }
  WritableFile(const WritableFile&) = delete;
  WritableFile& operator=(const WritableFile&) = delete;

  // Owns the descriptor from now on, in place of the one before; a negative one is none.
  void open(int descriptor, Kind kind = Kind::file);
  bool isOpen() const { return m_descriptor >= 0; }
  int descriptor() const { return m_descriptor; }

  // Where the last one ended.
  [[nodiscard]] int write(const void* bytes, std::size_t size);
  // One after the other, in as few calls of the system as there can be; not of a stream.
  [[nodiscard]] int write(std::span<const std::string_view> pieces);
  [[nodiscard]] int writeAt(std::uint64_t offset, const void* bytes, std::size_t size);
  // The file has `size` bytes now: begins to store those that are new, when they are many. Only a
  // hint: a failure shows at sync().
  void beginStoring(std::uint64_t size);
  // All bytes are on the disk. Some file systems and devices keep nothing that could be
  // synchronized; that is no error.
  [[nodiscard]] int sync() const;
  int close();

 private:
  template <typename WriteOnce>
  int writeAll(std::size_t size, WriteOnce writeOnce);
  bool mayTryAgain(int error, std::size_t missingBytes) const;

  const AskAboutFullDisk m_ask;
  int m_descriptor = -1;
  Kind m_kind = Kind::file;
  std::uint64_t m_bytesBeingStored = 0;
};

}  // namespace kelvarin
