#include "columnar/writer/column_set_worker.h"

#include <algorithm>
#include <exception>
#include <new>

namespace kelvarin {

namespace {

// The spare capacity of the buffer of chunks.
constexpr std::size_t kChunkReserve = 1 << 20;

}  // namespace

ColumnSetWorker::ColumnSetWorker(const WorkerSurroundings& surroundings, std::size_t index,
                                 std::size_t firstColumn, std::size_t columnCount,
                                 AskAboutFullDisk ask)
    : m_surroundings(surroundings),
      m_index(index),
      m_firstColumn(firstColumn),
      m_columnSet(surroundings.layout.metadata.columns[firstColumn].columnSet),
      m_sideFile(std::move(ask)),
      m_encoder(surroundings.layout, firstColumn, columnCount, surroundings.permits,
                surroundings.helpers),
      m_chunks(kChunkReserve),
      m_positions(columnCount),
      m_largestChunks(columnCount),
      m_largestValues(columnCount) {
  const MetadataBlock& metadata = surroundings.layout.metadata;
  for (BlockValues& values : m_buffers) {
    for (std::size_t i = 0; i < columnCount; ++i) {
      values.columns.emplace_back(metadata.columns[firstColumn + i].type, metadata.rowsInBlock);
    }
  }
  (void)m_free.push(&m_buffers[1]);
}

ColumnSetWorker::~ColumnSetWorker() {
  stop();
  join();
}

void ColumnSetWorker::submitBlock(std::uint32_t rows) {
  m_filling->rows = rows;
  (void)m_filled.push(m_filling);
}

bool ColumnSetWorker::awaitBuffer() {
  const auto buffer = m_free.pop();
  if (buffer) {
    m_filling = *buffer;
  }
  return buffer.has_value();
}

void ColumnSetWorker::stop() {
  m_filled.stop();
  m_free.stop();
}

Status<QString> ColumnSetWorker::open(const QString& sideFile) {
  return m_sideFile.openNew(sideFile);
}

void ColumnSetWorker::start() {
  m_thread = std::thread([this] { run(); });
}

void ColumnSetWorker::join() {
  if (m_thread.joinable()) {
    m_thread.join();
  }
}

void ColumnSetWorker::run() {
  bool isStored = false;
  try {
    isStored = storeBlocks();
  } catch (const std::bad_alloc&) {
    m_surroundings.failure.report({.kind = WriteFailure::Kind::tooLarge, .file = {}, .reason = {}});
  } catch (const std::exception& exception) {
    m_surroundings.failure.report({.kind = WriteFailure::Kind::cannotWrite,
                                   .file = m_sideFile.path(),
                                   .reason = QString::fromLocal8Bit(exception.what())});
  }
  if (!isStored) {
    stop();
    m_surroundings.descriptors.stop();
  }
}

// False: a block could not be stored.
bool ColumnSetWorker::storeBlocks() {
  for (std::uint64_t block = 0;; ++block) {
    const auto values = m_filled.pop();
    if (!values) {
      return true;
    }
    if (!storeBlock(block, **values)) {
      return false;
    }
    (void)m_free.push(*values);
  }
}

bool ColumnSetWorker::storeBlock(std::uint64_t block, const BlockValues& values) {
  unsigned char* descriptor = m_surroundings.descriptors.awaitDescriptor(block);
  if (descriptor == nullptr) {
    return false;
  }
  {
    const ThreadPermits::Permit permit(m_surroundings.permits);
    m_encoder.encode(values, descriptor);
  }
  joinChunks(values.rows, descriptor);
  const auto status = m_sideFile.append(m_chunks.bytes());
  if (!status) {
    m_surroundings.failure.report({.kind = WriteFailure::Kind::cannotWrite,
                                   .file = m_sideFile.path(),
                                   .reason = status.error()});
    return false;
  }
  m_blockEnds[block % kKeptEnds] = m_sideFile.size();
  m_surroundings.descriptors.finishBlock(m_index);
  return true;
}

void ColumnSetWorker::joinChunks(std::uint32_t rows, unsigned char* descriptor) {
  m_chunks.clear();
  for (std::size_t i = 0; i < m_positions.size(); ++i) {
    const BlockEncoder::Chunk& chunk = m_encoder.chunks()[i];
    const auto size = static_cast<std::uint32_t>(chunk.bytes.size());
    m_positions[i] = m_chunks.size();
    m_chunks.append(chunk.bytes.bytes());
    m_largestChunks[i] = std::max(m_largestChunks[i], size);
    m_largestValues[i] = std::max(m_largestValues[i], chunk.valuesSize);
  }
  const DescriptorLayout& layout = m_surroundings.layout.descriptors;
  layout.setChunks(descriptor, m_columnSet, m_sideFile.size(), m_firstColumn, m_positions);
  // The row count is the same for all sets, so the first one writes it.
  if (m_index == 0) {
    DescriptorLayout::setRowCount(descriptor, rows);
  }
}

}  // namespace kelvarin
