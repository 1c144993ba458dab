// Files that actions read: directly, through a cache, and what is known of a file without opening
// it.
//
// Threads: one at a time.  Errors: operations answer false or fewer bytes; errorText() says why.
#pragma once

#include <vector>

#include <QFile>
#include <QString>

#include "base/export.h"

class KELVARIN_CORE MyReadFile {
 public:
  MyReadFile() = default;
  virtual ~MyReadFile() = default;
  MyReadFile(const MyReadFile&) = delete;
  MyReadFile& operator=(const MyReadFile&) = delete;

  // Folders and devices are refused.
  bool open(const QString& path);
  virtual void close();
  bool isOpen() const { return m_file.isOpen(); }

  // Reads until `size` bytes have come; fewer at the end of the file, -1 after an error.
  virtual long long read(void* bytes, long long size);
  // False beyond the end.
  virtual bool seek(long long offset);
  virtual long long position() const { return m_file.pos(); }
  // As it is now: another program may be writing.
  long long size() const { return m_file.size(); }
  QString path() const { return m_file.fileName(); }
  QString errorText() const { return m_errorText; }

 private:
  QFile m_file;
  QString m_errorText;
};

// Reads the file in large pieces, for readers that take a few bytes at a time.
class KELVARIN_CORE MyReadFileCached : public MyReadFile {
 public:
  explicit MyReadFileCached(int cacheSize = 1 << 18);

  void close() override;
  long long read(void* bytes, long long size) override;
  bool seek(long long offset) override;
  long long position() const override { return m_cacheOffset + m_used; }

 private:
  void forget(long long offset);

  std::vector<char> m_cache;
  long long m_cacheOffset = 0;  // of the cache's first byte in the file
  long long m_filled = 0;
  long long m_used = 0;
};

// Asks the system at every call.
class KELVARIN_CORE QUBiFileInfo {
 public:
  explicit QUBiFileInfo(const QString& path) : m_path(path) {}

  bool exists() const;
  // 0 when there is no such file.
  long long size() const;
  QString absoluteFilePath() const;
  // Milliseconds since 1970 in UTC; 0 when there is no such file.
  long long lastModified() const;

 private:
  QString m_path;
};
