// Writes rows into one columnar file: a main file and a side file for each column set.
//
// The caller's thread only copies values into blocks; a thread for each column set encodes and
// stores them, with helpers where more threads are permitted, and one more writes descriptor
// records. The same rows yield the same bytes, whatever
// the number of threads. Until closeHD() has synchronized everything, the file is marked
// incomplete.
//
// Calls: constructor, setPoDP() (optional), openHD(), writeToHD() for each row or batch, closeHD(),
// destructor, which leaves a file that was never closed incomplete.
// Layout: docs/gel-format.md.
// Errors: false, and failure() says why; nothing logs.
#pragma once

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include <QHash>
#include <QString>

#include "columnar/writer/column_set_worker.h"
#include "columnar/writer/row_appender.h"
#include "host/contract/global_parameters.h"
#include "host/contract/one_row.h"
#include "host/contract/pin_out_data_preview.h"

namespace kelvarin {

class ColumnarHDWriter {
 public:
  // `ask` is called when the disk is full; without it, a full disk is a failure.
  explicit ColumnarHDWriter(AskAboutFullDisk ask = {});
  ~ColumnarHDWriter();
  ColumnarHDWriter(const ColumnarHDWriter&) = delete;
  ColumnarHDWriter& operator=(const ColumnarHDWriter&) = delete;

  // Opens the main file, takes its lock until closeHD() and truncates it; nothing is written yet.
  // `columnSets` maps column names to set numbers, see layOutTable(). A thread count below 1 stands
  // for that of `parameters`.
  [[nodiscard]] bool openHD(const QString& fileName, int rowsInBlock,
                            const QHash<QString, int>& columnSets,
                            const GlobalParameters* parameters, int threadCount);
  // Writes the head of the file and starts the threads. The first single row does it unless it has
  // been done. When it fails, the opened files are removed.
  [[nodiscard]] bool layOut(const OneRow* row);
  // False after the first failure that any thread has reported.
  [[nodiscard]] bool writeToHD(const OneRow* row) {
    if (m_head == nullptr && !layOut(row)) [[unlikely]] {
      return false;
    }
    if (!append(*row)) [[unlikely]] {
      return fail(WriteFailure::Kind::tooLarge);
    }
    ++m_rowCount;
    return m_appender.rows() < m_rowsInBlock || submitBlock();
  }
  // The same for the rows of a batch from `begin` to before `end`, after layOut().
  [[nodiscard]] bool writeToHD(const RowBatch& batch, std::size_t begin, std::size_t end);
  // Finishes the file, which becomes complete when the run has ended normally or still goes on, and
  // nothing has failed. A file without layOut() stays empty. True: all data is on the disk.
  bool closeHD(GlobalParameters::RunningState state);

  // Abandons the file as it is; it stays incomplete.
  void reset();

  bool isOpen() const { return m_file.isOpen(); }
  const QString& fileName() const { return m_file.path(); }
  // A descriptor that keeps the main file's lock beyond closeHD(); the caller closes it.
  int keepLock() const { return m_file.duplicateDescriptor(); }
  long long rowCount() const { return m_rowCount; }
  // The next row is the first one of a block.
  bool isAtBlockBegin() const { return m_appender.rows() == 0; }
  WriteFailure failure() const { return m_failure.get(); }
  // The offset of the next descriptor record, counted as if none were compressed.
  std::uint64_t currentOffset() const { return m_previewOffset; }
  // A viewer's list of the blocks so far.
  void setPoDP(PinOutDataPreview* preview) { m_preview = preview; }

  // Where isAtBlockBegin(): the size of the head, and of the chunks and uncompressed descriptors of
  // all blocks but the last. These are stored, so the size does not depend on the speed of threads.
  std::uint64_t sizeBeforeLastBlock();

 private:
  struct Head;  // what exists from layOut() on

  bool fail(WriteFailure::Kind kind, const QString& file = {}, const QString& reason = {});
  bool failToWrite(const GrowingFile& file, const QString& reason);
  [[nodiscard]] bool tryToLayOut(const OneRow& row);
  void createWorkers();
  [[nodiscard]] bool openSideFiles();
  [[nodiscard]] bool writeHead();
  [[nodiscard]] bool startThreads();
  void startPreview(const OneRow& row);
  void targetBlock();
  [[nodiscard]] bool append(const OneRow& row);
  [[nodiscard]] bool submitBlock();
  void finish(bool isNormalEnd);
  void finishThreads();
  void stopThreads();
  void abandonHead();
  [[nodiscard]] bool finishFile(bool isComplete);
  void discardFiles();
  [[nodiscard]] bool syncSideFiles();
  [[nodiscard]] bool syncMainFile();

  // The thread of the descriptor records.
  void writeMeta();
  [[nodiscard]] bool writeRecords();
  [[nodiscard]] bool writeRecord(Bytes descriptors);

  const AskAboutFullDisk m_ask;
  GrowingFile m_file;
  QHash<QString, int> m_columnSets;
  std::uint32_t m_rowsInBlock = 0;
  int m_threadCount = 1;
  int m_memoryBudget = 0;
  long long m_rowCount = 0;
  std::uint64_t m_blocks = 0;  // submitted to the workers
  RowAppender m_appender;
  FirstFailure m_failure;
  PinOutDataPreview* m_preview = nullptr;
  std::unique_ptr<Head> m_head;

  // The thread of the descriptor records, until it is joined.
  ByteBuffer m_record;
  std::uint32_t m_largestRecord = 0;           // with its head
  std::uint32_t m_largestDescriptorBlock = 0;  // uncompressed
  std::atomic<std::uint64_t> m_previewOffset = 0;
  long long m_previewRowCount = 0;

  std::thread m_metaThread;
};

}  // namespace kelvarin
