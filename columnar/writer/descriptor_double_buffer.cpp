#include "columnar/writer/descriptor_double_buffer.h"

#include <algorithm>
#include <cstring>

namespace kelvarin {

DescriptorDoubleBuffer::DescriptorDoubleBuffer(std::size_t workers, std::size_t width,
                                               std::size_t descriptorsInRecord)
    : m_width(width),
      m_descriptorsInRecord(descriptorsInRecord),
      m_buffers(new unsigned char[kBuffers * width * descriptorsInRecord]),
      m_finished(workers) {}

unsigned char* DescriptorDoubleBuffer::descriptor(std::uint64_t block) const {
  return m_buffers.get() + block % (kBuffers * m_descriptorsInRecord) * m_width;
}

std::uint64_t DescriptorDoubleBuffer::finishedBlocks() const {
  return m_finished.empty() ? 0 : *std::min_element(m_finished.begin(), m_finished.end());
}

unsigned char* DescriptorDoubleBuffer::awaitDescriptor(std::uint64_t block) {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [&] {
    return m_isStopped || block / m_descriptorsInRecord < m_writtenRecords + kBuffers;
  });
  if (m_isStopped) {
    return nullptr;
  }
  if (block == m_clearedBlocks) {
    std::memset(descriptor(block), 0, m_width);
    ++m_clearedBlocks;
  }
  return descriptor(block);
}

void DescriptorDoubleBuffer::finishBlock(std::size_t worker) {
  const std::lock_guard lock(m_mutex);
  ++m_finished[worker];
  if (m_finished[worker] % m_descriptorsInRecord == 0) {
    m_changed.notify_all();
  }
}

void DescriptorDoubleBuffer::finish() {
  const std::lock_guard lock(m_mutex);
  m_isFinished = true;
  m_changed.notify_all();
}

std::optional<Bytes> DescriptorDoubleBuffer::awaitRecord() {
  std::unique_lock lock(m_mutex);
  const std::uint64_t first = m_writtenRecords * m_descriptorsInRecord;
  m_changed.wait(lock, [&] {
    return m_isStopped || m_isFinished || finishedBlocks() >= first + m_descriptorsInRecord;
  });
  // The last record may have fewer descriptors than fit it.
  const std::uint64_t count =
      std::min(finishedBlocks() - std::min(finishedBlocks(), first), m_descriptorsInRecord);
  if (m_isStopped || count == 0) {
    return std::nullopt;
  }
  return Bytes(descriptor(first), count * m_width);
}

void DescriptorDoubleBuffer::recordWritten() {
  const std::lock_guard lock(m_mutex);
  ++m_writtenRecords;
  m_changed.notify_all();
}

void DescriptorDoubleBuffer::stop() {
  const std::lock_guard lock(m_mutex);
  m_isStopped = true;
  m_changed.notify_all();
}

}  // namespace kelvarin
