#include "columnar/reader/block_decoding.h"

#include <new>

namespace kelvarin {

BlockDecoding::BlockDecoding(BlockDecoder& decoder, FetchedBlock block, TextForm form)
    : BlockDecoding(decoder, std::move(block), form, -1, nullptr) {}

BlockDecoding::BlockDecoding(BlockDecoder& decoder, FetchedBlock block, TextForm form,
                             std::int64_t firstRow, std::shared_ptr<ValueTargets> targets)
    : m_decoder(decoder),
      m_block(std::move(block)),
      m_form(form),
      m_firstRow(firstRow),
      m_targets(std::move(targets)),
      m_columns(decoder.types(), m_block.rowCount, m_targets != nullptr),
      m_statuses(m_block.chunks.size(), ReadStatus::corrupted) {}

std::size_t BlockDecoding::byteCount() const {
  const std::size_t rows = m_targets == nullptr ? m_block.rowCount : 0;
  std::size_t bytes = m_block.chunks.size() * rows * sizeof(double);
  for (const FetchedBlock::Chunk& chunk : m_block.chunks) {
    bytes += chunk.bytes.size();
  }
  return bytes;
}

ReadStatus BlockDecoding::decode() {
  decodeColumns();
  std::unique_lock lock(m_mutex);
  m_finished.wait(lock, [this] { return m_columnsDone == m_statuses.size(); });
  if (m_isOutOfMemory) {
    throw std::bad_alloc();
  }
  if (!m_status) {
    m_status = worstStatus();
  }
  return *m_status;
}

void BlockDecoding::decodeColumns() {
  std::size_t done = 0;
  for (std::size_t i; (i = m_nextColumn.fetch_add(1)) < m_statuses.size(); ++done) {
    if (m_isDamaged || m_isOutOfMemory) {
      continue;
    }
    try {
      decodeColumn(i);
    } catch (const std::bad_alloc&) {
      m_isOutOfMemory = true;
    }
  }
  if (done > 0) {
    const std::lock_guard lock(m_mutex);
    m_columnsDone += done;
    m_finished.notify_all();
  }
}

void BlockDecoding::decodeColumn(std::size_t index) {
  DecodedColumn values;
  const std::size_t size = fixedSizeOf(m_decoder.types()[index]);
  if (m_targets != nullptr && size > 0) {
    if (unsigned char* target = m_targets->at(index, size, m_firstRow, m_block.rowCount)) {
      values.values = ByteBuffer(target, m_block.rowCount * size);
      values.targets = m_targets;
    }
  }
  m_statuses[index] = m_decoder.decode(m_block, index, m_form, values);
  if (m_statuses[index] == ReadStatus::ok) {
    m_columns.set(index, std::move(values));
  } else {
    m_isDamaged = true;
  }
}

// After a damaged chunk the others are not decoded, but one of them may be cut off.
ReadStatus BlockDecoding::worstStatus() const {
  ReadStatus worst = ReadStatus::ok;
  for (std::size_t i = 0; i < m_statuses.size() && worst != ReadStatus::truncated; ++i) {
    const ReadStatus status = worst == ReadStatus::ok ? m_statuses[i] : m_block.chunks[i].status;
    worst = status == ReadStatus::ok ? worst : status;
  }
  return worst;
}

}  // namespace kelvarin
