#include "columnar/writer/columnar_hd_writer.h"

#include <algorithm>
#include <new>
#include <system_error>

#include "base/usable_processors.h"
#include "columnar/codecs/descriptor_record.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/format/file_names.h"
#include "columnar/writer/file_head.h"

namespace kelvarin {

namespace {

template <typename T>
Bytes bytesOf(const T& value) {
  return {reinterpret_cast<const unsigned char*>(&value), sizeof value};
}

std::size_t setsWithColumns(const MetadataBlock& metadata) {
  std::size_t count = 0;
  int last = -1;
  for (const GelColumn& column : metadata.columns) {
    count += column.columnSet != last;
    last = column.columnSet;
  }
  return count;
}

AskAboutFullDisk orGiveUp(AskAboutFullDisk ask) {
  return ask ? std::move(ask) : [](const QString&, int) { return false; };
}

}  // namespace

struct ColumnarHDWriter::Head {
  // The workers themselves encode, so that there are helpers only for the threads beyond them.
  Head(TableLayout tableLayout, std::size_t workerCount, int threads)
      : layout(std::move(tableLayout)),
        descriptors(workerCount, layout.descriptors.width(), layout.descriptorsInRecord),
        permits(threads),
        helpers(std::clamp(threads - static_cast<int>(workerCount), 0,
                           static_cast<int>(layout.metadata.columns.size()) - 1),
                {}, std::max(1, usableProcessors() - 1)) {}

  TableLayout layout;
  DescriptorDoubleBuffer descriptors;
  ThreadPermits permits;
  std::vector<std::unique_ptr<ColumnSetWorker>> workers;  // one a set that has columns
  TaskPool helpers;                                       // use all of the above
};

ColumnarHDWriter::ColumnarHDWriter(AskAboutFullDisk ask)
    : m_ask(orGiveUp(std::move(ask))), m_file(m_ask) {}

ColumnarHDWriter::~ColumnarHDWriter() {
  closeHD(GlobalParameters::RunningState::failed);
}

bool ColumnarHDWriter::openHD(const QString& fileName, int rowsInBlock,
                              const QHash<QString, int>& columnSets,
                              const GlobalParameters* parameters, int threadCount) {
  closeHD(GlobalParameters::RunningState::failed);
  m_failure.forget();
  m_rowCount = 0;
  m_columnSets = columnSets;
  m_rowsInBlock = static_cast<std::uint32_t>(std::max(rowsInBlock, 0));
  m_threadCount = threadCount < 1 ? parameters->threadCount() : threadCount;
  m_memoryBudget = parameters->blockMemoryBudget();
  const auto status = m_file.openLocked(fileName);
  return status ? true : fail(WriteFailure::Kind::cannotOpen, fileName, status.error());
}

bool ColumnarHDWriter::layOut(const OneRow* row) {
  if (!isOpen() || m_failure.isSet()) {
    return false;
  }
  try {
    if (tryToLayOut(*row)) {
      return true;
    }
  } catch (const std::bad_alloc&) {
    (void)fail(WriteFailure::Kind::tooLarge);
  }
  discardFiles();
  return false;
}

bool ColumnarHDWriter::tryToLayOut(const OneRow& row) {
  auto layout = layOutTable(row, static_cast<int>(m_rowsInBlock), m_columnSets, m_memoryBudget);
  if (!layout) {
    return fail(layout.error());
  }
  const std::size_t workers = setsWithColumns(layout->metadata);
  m_head = std::make_unique<Head>(std::move(*layout), workers, m_threadCount);
  m_record.resize(kRecordHeadSize + maximumCompressedSize(m_head->layout.descriptorBlockSize()));
  createWorkers();
  if (!openSideFiles() || !writeHead() || !startThreads()) {
    return false;
  }
  startPreview(row);
  targetBlock();
  return true;
}

void ColumnarHDWriter::createWorkers() {
  const auto& columns = m_head->layout.metadata.columns;
  const WorkerSurroundings surroundings{m_head->layout, m_head->descriptors, m_head->permits,
                                        m_head->helpers, m_failure};
  for (std::size_t first = 0; first < columns.size();) {
    const auto end = std::find_if(
        columns.begin() + static_cast<std::ptrdiff_t>(first), columns.end(),
        [&](const GelColumn& column) { return column.columnSet != columns[first].columnSet; });
    const auto next = static_cast<std::size_t>(end - columns.begin());
    m_head->workers.push_back(std::make_unique<ColumnSetWorker>(
        surroundings, m_head->workers.size(), first, next - first, m_ask));
    first = next;
  }
}

bool ColumnarHDWriter::openSideFiles() {
  const std::string mainFile = m_file.path().toStdString();
  for (const auto& worker : m_head->workers) {
    const QString name = QString::fromStdString(sideFileName(mainFile, worker->columnSet()));
    const auto status = worker->open(name);
    if (!status) {
      return fail(WriteFailure::Kind::cannotOpen, name, status.error());
    }
  }
  return true;
}

bool ColumnarHDWriter::writeHead() {
  const auto bytes = provisionalHead(m_head->layout);
  const auto status = m_file.append(bytes);
  m_previewOffset = bytes.size();
  return status ? true : failToWrite(m_file, status.error());
}

bool ColumnarHDWriter::startThreads() {
  try {
    m_metaThread = std::thread([this] { writeMeta(); });
    for (const auto& worker : m_head->workers) {
      worker->start();
    }
  } catch (const std::system_error& error) {
    return fail(WriteFailure::Kind::cannotWrite, m_file.path(),
                QString::fromLocal8Bit(error.what()));
  }
  return true;
}

void ColumnarHDWriter::startPreview(const OneRow& row) {
  if (m_preview == nullptr) {
    return;
  }
  QVector<QString> names;
  QVector<MetaInfo> metas;
  for (const GelColumn& column : m_head->layout.metadata.columns) {
    names.push_back(QString::fromStdString(column.name));
    metas.push_back(row.vMetaData()[column.inputPosition]);
  }
  PinOutMetaData columns;
  columns.setColumnCount(static_cast<int>(names.size()));
  columns.setNames(names);
  columns.setMetas(metas);
  m_preview->start(columns);
}

// The next rows go into the workers' current buffers.
void ColumnarHDWriter::targetBlock() {
  m_appender.start();
  for (const auto& worker : m_head->workers) {
    BlockValues& values = worker->values();
    for (std::size_t i = 0; i < values.columns.size(); ++i) {
      m_appender.addTarget(m_head->layout.metadata.columns[worker->firstColumn() + i],
                           values.columns[i]);
    }
  }
}

bool ColumnarHDWriter::append(const OneRow& row) {
  try {
    return m_appender.append(row.getAllColForRead());
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool ColumnarHDWriter::writeToHD(const RowBatch& batch, std::size_t begin, std::size_t end) {
  while (begin < end) {
    const std::size_t count = std::min<std::size_t>(end - begin, m_rowsInBlock - m_appender.rows());
    try {
      if (!m_appender.append(batch, begin, begin + count)) {
        return fail(WriteFailure::Kind::tooLarge);
      }
    } catch (const std::bad_alloc&) {
      return fail(WriteFailure::Kind::tooLarge);
    }
    begin += count;
    m_rowCount += static_cast<long long>(count);
    if (m_appender.rows() == m_rowsInBlock && !submitBlock()) {
      return false;
    }
  }
  return true;
}

bool ColumnarHDWriter::submitBlock() {
  for (const auto& worker : m_head->workers) {
    worker->submitBlock(m_appender.rows());
  }
  ++m_blocks;
  for (const auto& worker : m_head->workers) {
    if (!worker->awaitBuffer()) {
      return false;
    }
  }
  targetBlock();
  return true;
}

std::uint64_t ColumnarHDWriter::sizeBeforeLastBlock() {
  if (m_head == nullptr) {
    return 0;
  }
  std::uint64_t size = m_head->layout.headLength();
  if (m_blocks < 2) {
    return size;
  }
  const std::uint64_t blocks = m_blocks - 1;
  for (const auto& worker : m_head->workers) {
    size += worker->endOfBlock(blocks - 1);
  }
  return size + blocks * m_head->layout.descriptors.width();
}

bool ColumnarHDWriter::closeHD(GlobalParameters::RunningState state) {
  using RunningState = GlobalParameters::RunningState;
  if (!isOpen()) {
    reset();
    return !m_failure.isSet();
  }
  const bool isNormalEnd = state == RunningState::endedNormally || state == RunningState::running;
  try {
    finish(isNormalEnd);
  } catch (const std::bad_alloc&) {
    (void)fail(WriteFailure::Kind::tooLarge);
  }
  const bool isStored = !m_failure.isSet();
  if (m_preview != nullptr) {
    m_preview->complete({0, static_cast<int>(m_previewRowCount + 1),
                         static_cast<long long>(m_previewOffset.load())},
                        isNormalEnd && isStored);
  }
  reset();
  return isStored;
}

void ColumnarHDWriter::finish(bool isNormalEnd) {
  if (m_head == nullptr) {
    return;
  }
  if (m_appender.rows() > 0 && !m_failure.isSet()) {
    (void)submitBlock();
  }
  finishThreads();
  if (!m_failure.isSet()) {
    (void)finishFile(isNormalEnd);
  }
}

void ColumnarHDWriter::finishThreads() {
  for (const auto& worker : m_head->workers) {
    worker->finish();
  }
  for (const auto& worker : m_head->workers) {
    worker->join();
  }
  m_head->descriptors.finish();
  if (m_metaThread.joinable()) {
    m_metaThread.join();
  }
}

// Ends all waits after a failure.
void ColumnarHDWriter::stopThreads() {
  m_head->descriptors.stop();
  for (const auto& worker : m_head->workers) {
    worker->stop();
  }
}

void ColumnarHDWriter::abandonHead() {
  if (m_head != nullptr) {
    stopThreads();
    finishThreads();
    m_head.reset();
  }
}

// A table that cannot be laid out leaves no files.
void ColumnarHDWriter::discardFiles() {
  if (m_head != nullptr) {
    stopThreads();
    finishThreads();
    for (const auto& worker : m_head->workers) {
      worker->sideFile().discard();
    }
    m_head.reset();
  }
  m_file.discard();
}

bool ColumnarHDWriter::finishFile(bool isComplete) {
  std::vector<SetSlots> sets;
  for (const auto& worker : m_head->workers) {
    sets.push_back({worker->largestChunks(), worker->largestValues()});
  }
  const FileTotals totals{.rowCount = static_cast<std::uint64_t>(m_rowCount),
                          .largestRecord = m_largestRecord,
                          .largestDescriptorBlock = m_largestDescriptorBlock};
  const auto head = finalHead(m_head->layout, totals, sets);
  auto status = m_file.append(bytesOf(kEndMarker));
  if (status) {
    status = m_file.writeAt(0, head);
  }
  if (!status) {
    return failToWrite(m_file, status.error());
  }
  if (!syncSideFiles() || !syncMainFile()) {
    return false;
  }
  if (!isComplete) {
    return true;
  }
  // The last write is one byte, so a file is never complete and wrong.
  constexpr unsigned char kIsComplete = 1;
  status = m_file.writeAt(kCompleteFlagOffset, bytesOf(kIsComplete));
  return status ? syncMainFile() : failToWrite(m_file, status.error());
}

bool ColumnarHDWriter::syncSideFiles() {
  for (const auto& worker : m_head->workers) {
    const auto status = worker->sideFile().sync();
    if (!status) {
      return failToWrite(worker->sideFile(), status.error());
    }
  }
  return true;
}

bool ColumnarHDWriter::syncMainFile() {
  const auto status = m_file.sync();
  return status ? true : failToWrite(m_file, status.error());
}

void ColumnarHDWriter::writeMeta() {
  bool isWritten = false;
  try {
    isWritten = writeRecords();
  } catch (const std::bad_alloc&) {
    (void)fail(WriteFailure::Kind::tooLarge);
  } catch (const std::exception& exception) {
    (void)fail(WriteFailure::Kind::cannotWrite, m_file.path(),
               QString::fromLocal8Bit(exception.what()));
  }
  if (!isWritten) {
    stopThreads();
  }
}

// False: a record could not be written.
bool ColumnarHDWriter::writeRecords() {
  while (const auto descriptors = m_head->descriptors.awaitRecord()) {
    if (!writeRecord(*descriptors)) {
      return false;
    }
    m_head->descriptors.recordWritten();
  }
  return true;
}

bool ColumnarHDWriter::writeRecord(Bytes descriptors) {
  encodeDescriptorRecord(descriptors, m_record);
  // A record describes only what is on the disk. The last one is synchronized at the end.
  const bool isFull = descriptors.size() == m_head->layout.descriptorBlockSize();
  if (isFull && !syncSideFiles()) {
    return false;
  }
  const auto status = m_file.append(m_record.bytes());
  if (!status) {
    return failToWrite(m_file, status.error());
  }
  if (isFull && !syncMainFile()) {
    return false;
  }
  m_largestDescriptorBlock =
      std::max(m_largestDescriptorBlock, static_cast<std::uint32_t>(descriptors.size()));
  m_largestRecord = std::max(m_largestRecord, static_cast<std::uint32_t>(m_record.size()));
  const std::size_t width = m_head->layout.descriptors.width();
  if (m_preview != nullptr) {
    m_preview->append({m_previewRowCount, static_cast<int>(width),
                       static_cast<long long>(m_previewOffset.load())});
  }
  m_previewOffset += descriptors.size();
  m_previewRowCount += static_cast<long long>(descriptors.size() / width);
  return true;
}

bool ColumnarHDWriter::fail(WriteFailure::Kind kind, const QString& file, const QString& reason) {
  m_failure.report({.kind = kind, .file = file, .reason = reason});
  return false;
}

bool ColumnarHDWriter::failToWrite(const GrowingFile& file, const QString& reason) {
  return fail(WriteFailure::Kind::cannotWrite, file.path(), reason);
}

// Returns to the closed state; the failure is kept until the next openHD().
void ColumnarHDWriter::reset() {
  abandonHead();
  m_file.close();
  m_appender.start();
  m_blocks = 0;
  m_largestRecord = m_largestDescriptorBlock = 0;
  m_previewRowCount = 0;
  m_record.release();
}

}  // namespace kelvarin
