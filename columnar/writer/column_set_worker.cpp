#include "columnar/writer/column_set_worker.h"

#include <algorithm>
#include <exception>
#include <new>

#include "columnar/writer/block_summary.h"

namespace kelvarin {

namespace {

// What the chunks' memory grows by beyond the need.
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
      m_knownTexts(columnCount),
      m_chunks(kChunkReserve),
      m_positions(columnCount),
      m_largestChunks(columnCount),
      m_largestValues(columnCount) {
  const MetadataBlock& metadata = surroundings.layout.metadata;
  for (BlockValues& values : m_values) {
    for (std::size_t i = 0; i < columnCount; ++i) {
      values.columns.emplace_back(metadata.columns[firstColumn + i].type, metadata.rowsInBlock);
    }
  }
}

ColumnSetWorker::~ColumnSetWorker() {
  m_handOver.stop();
  join();
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
    m_surroundings.failure.tell({.kind = WriteFailure::Kind::tooLarge, .file = {}, .reason = {}});
  } catch (const std::exception& exception) {
    m_surroundings.failure.tell({.kind = WriteFailure::Kind::cannotWrite,
                                 .file = m_sideFile.path(),
                                 .reason = QString::fromLocal8Bit(exception.what())});
  }
  if (!isStored) {
    m_handOver.stop();
    m_surroundings.descriptors.stop();
  }
}

// False when a block could not be stored.
bool ColumnSetWorker::storeBlocks() {
  while (const auto block = m_handOver.awaitFilled()) {
    if (!storeBlock(*block)) {
      return false;
    }
    m_handOver.release();
  }
  return true;
}

bool ColumnSetWorker::storeBlock(std::uint64_t block) {
  unsigned char* descriptor = m_surroundings.descriptors.awaitRoom(block);
  if (descriptor == nullptr) {
    return false;
  }
  {
    const ThreadPermits::Permit permit(m_surroundings.permits);
    encode(values(block), descriptor);
  }
  const auto status = m_sideFile.append(m_chunks.bytes());
  if (!status) {
    m_surroundings.failure.tell({.kind = WriteFailure::Kind::cannotWrite,
                                 .file = m_sideFile.path(),
                                 .reason = status.error()});
    return false;
  }
  m_blockEnds[block % kKeptEnds] = m_sideFile.size();
  m_surroundings.descriptors.finishBlock(m_index);
  return true;
}

void ColumnSetWorker::encode(const BlockValues& values, unsigned char* descriptor) {
  m_chunks.clear();
  for (std::size_t i = 0; i < m_positions.size(); ++i) {
    m_positions[i] = m_chunks.size();
    const std::size_t size = encodeColumn(i, values, descriptor);
    m_largestChunks[i] = std::max(m_largestChunks[i], static_cast<std::uint32_t>(size));
  }
  const DescriptorLayout& layout = m_surroundings.layout.descriptors;
  layout.setChunks(descriptor, m_columnSet, m_sideFile.size(), m_firstColumn, m_positions);
  // The same for all sets, so one of them is enough.
  if (m_index == 0) {
    DescriptorLayout::setRowCount(descriptor, values.rows);
  }
}

std::size_t ColumnSetWorker::encodeColumn(std::size_t index, const BlockValues& values,
                                          unsigned char* descriptor) {
  const std::size_t column = m_firstColumn + index;
  const GelColumn& about = m_surroundings.layout.metadata.columns[column];
  const DescriptorLayout& layout = m_surroundings.layout.descriptors;
  const ColumnValues& stored = values.columns[index];
  const std::uint32_t rowsInBlock = m_surroundings.layout.metadata.rowsInBlock;
  switch (about.type) {
    case GelType::key: {
      const std::span<const std::uint32_t> keys(stored.keys.get(), values.rows);
      layout.writeSummary(descriptor, column, summaryOf(keys));
      m_largestValues[index] = rowsInBlock * static_cast<std::uint32_t>(sizeof(std::uint32_t));
      return m_encoder.appendKeys(keys, about.storage, m_chunks);
    }
    case GelType::number: {
      const std::span<const std::uint64_t> numbers(stored.numbers.get(), values.rows);
      layout.writeSummary(descriptor, column, summaryOf(numbers));
      m_largestValues[index] = rowsInBlock * static_cast<std::uint32_t>(sizeof(double));
      return m_encoder.appendNumbers(numbers, m_chunks);
    }
    case GelType::text:
      break;
  }
  const TextValues texts{{stored.keys.get(), values.rows}, stored.bytes.bytes()};
  m_largestValues[index] =
      std::max(m_largestValues[index], static_cast<std::uint32_t>(texts.rawSize()));
  const std::size_t size = m_encoder.appendTexts(texts, m_knownTexts[index], m_chunks);
  const auto different = m_encoder.differentTexts();
  layout.writeSummary(descriptor, column,
                      different.empty() ? summaryOf(texts) : summaryOf(different));
  return size;
}

}  // namespace kelvarin
