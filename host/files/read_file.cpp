#include "host/files/read_file.h"

#include <algorithm>
#include <cstring>

#include <QDateTime>
#include <QFileInfo>

#include "host/files/messages.h"

bool MyReadFile::open(const QString& path) {
  close();
  m_errorText.clear();
  m_file.setFileName(path);
  const QFileInfo info(path);
  if (info.exists() && !info.isFile()) {
    m_errorText = kelvarin::messages::notARegularFile(path);
    return false;
  }
  // Without a buffer of Qt's own: MyReadFileCached is the one that buffers.
  if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
    m_errorText = kelvarin::messages::fileError(path, m_file.errorString());
    return false;
  }
  return true;
}

void MyReadFile::close() {
  m_file.close();
}

long long MyReadFile::read(void* bytes, long long size) {
  long long done = 0;
  while (done < size) {
    const long long count = m_file.read(static_cast<char*>(bytes) + done, size - done);
    if (count < 0) {
      m_errorText = kelvarin::messages::fileError(path(), m_file.errorString());
      return -1;
    }
    if (count == 0) {
      break;
    }
    done += count;
  }
  return done;
}

bool MyReadFile::seek(long long offset) {
  return isOpen() && offset >= 0 && offset <= size() && m_file.seek(offset);
}

MyReadFileCached::MyReadFileCached(int cacheSize)
    : m_cache(static_cast<std::size_t>(std::max(1, cacheSize))) {}

void MyReadFileCached::forget(long long offset) {
  m_cacheOffset = offset;
  m_filled = m_used = 0;
}

void MyReadFileCached::close() {
  forget(0);
  MyReadFile::close();
}

long long MyReadFileCached::read(void* bytes, long long size) {
  auto* target = static_cast<char*>(bytes);
  long long done = 0;
  while (done < size) {
    if (m_used == m_filled) {
      forget(position());
      m_filled = MyReadFile::read(m_cache.data(), static_cast<long long>(m_cache.size()));
      if (m_filled < 0) {
        m_filled = 0;
        return -1;
      }
      if (m_filled == 0) {
        break;
      }
    }
    const long long count = std::min(size - done, m_filled - m_used);
    std::memcpy(target + done, m_cache.data() + m_used, static_cast<std::size_t>(count));
    m_used += count;
    done += count;
  }
  return done;
}

bool MyReadFileCached::seek(long long offset) {
  if (isOpen() && offset >= m_cacheOffset && offset <= m_cacheOffset + m_filled) {
    m_used = offset - m_cacheOffset;
    return true;
  }
  if (!MyReadFile::seek(offset)) {
    return false;
  }
  forget(offset);
  return true;
}

bool QUBiFileInfo::exists() const {
  return QFileInfo::exists(m_path);
}
long long QUBiFileInfo::size() const {
  return QFileInfo(m_path).size();
}
QString QUBiFileInfo::absoluteFilePath() const {
  return QFileInfo(m_path).absoluteFilePath();
}

long long QUBiFileInfo::lastModified() const {
  const QFileInfo info(m_path);
  return info.exists() ? info.lastModified().toMSecsSinceEpoch() : 0;
}
