// A file that grows at its end, and whose beginning can be overwritten.
//
// When the disk is full, the owner's routine is asked: true means that the rest is tried again, so
// nothing is lost. Used by ColumnarHDWriter for the main file and by its workers for side files.
// Threads: one at a time; sync() from any while the file is open.
// Errors: Status with the system's reason; never logs, never throws.
#pragma once

#include <functional>

#include <QString>

#include "base/byte_cursor.h"
#include "base/result.h"
#include "base/writable_file.h"

namespace kelvarin {

// Gets the file and how many bytes it did not take; true: try again. Called on any thread.
using AskAboutFullDisk = std::function<bool(const QString& file, int missingBytes)>;

class GrowingFile {
 public:
  explicit GrowingFile(AskAboutFullDisk ask);

  // Takes the writer's lock, as long as the file is open, and then cuts what is there to nothing. A
  // link is not followed.
  Status<QString> openLocked(const QString& path);
  // In place of a file or link of that name, unless another process is writing it; what a link
  // leads to stays as it is. Locked in the same way.
  Status<QString> openNew(const QString& path);
  // Another descriptor that keeps the lock when this file is closed; -1 when there is none.
  int duplicateDescriptor() const;
  bool isOpen() const { return m_file.isOpen(); }
  const QString& path() const { return m_path; }
  std::uint64_t size() const { return m_size; }

  Status<QString> append(Bytes bytes);
  Status<QString> writeAt(std::uint64_t offset, Bytes bytes);
  // All bytes are on the disk.
  Status<QString> sync() const;
  void close() { (void)m_file.close(); }
  // Closes and removes it.
  void discard();

 private:
  template <typename Open>
  Status<QString> openWith(const QString& path, Open openOnce);

  const AskAboutFullDisk m_ask;
  QString m_path;
  WritableFile m_file;
  std::uint64_t m_size = 0;
};

}  // namespace kelvarin
