// Bytes on their way to an output file: they wait in their order, and a task writes them while the
// engine thread goes on.
//
// A file system lets one thread at a time write to a file, so there is one such task at a time, on
// whichever thread is free; what has come to wait meanwhile is written together, which costs less.
// Streams are written to at once, since somebody may be waiting for the rows.
// Used by: table_sink.cpp.
// Threads: the engine thread; the task on any.
// Errors: texts for the user. A failed write shows at a later operation, and nothing is written
// after it. What the task throws is thrown by a later operation.
#pragma once

#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "base/task_pool.h"
#include "host/tables/files/output_file.h"

class ActionItem;

namespace kelvarin {

class HostSession;

class OutputQueue {
 public:
  explicit OutputQueue(OutputFile& file) : m_file(file) {}
  // What waits is dropped.
  ~OutputQueue() { static_cast<void>(drop()); }
  OutputQueue(const OutputQueue&) = delete;
  OutputQueue& operator=(const OutputQueue&) = delete;

  // For the file as it is open now; `writer` is whose work the writing is. Without a pool,
  // everything is written at once.
  void start(TaskPool* pool, const ActionItem* writer);
  // Waits where too many bytes wait already. `owner` keeps `bytes`.
  Status<QString> append(std::shared_ptr<const void> owner, std::string_view bytes);
  // Returns when everything has been written.
  Status<QString> finish();
  // Nothing more is written; before the file is discarded. Fails where a write has failed and no
  // operation has shown it yet: a run that was stopped asks for nothing more.
  Status<QString> drop();

 private:
  class Task;
  struct Waiting {
    std::vector<std::shared_ptr<const void>> owners;
    std::vector<std::string_view> pieces;
    std::size_t size = 0;
  };

  void writeWaiting();
  void write(std::span<const std::string_view> pieces);
  void waitUntilAtMost(std::size_t bytes, std::unique_lock<std::mutex>& lock);
  bool hasFailed() const { return !m_error.isEmpty() || m_exception; }
  Status<QString> failure();

  OutputFile& m_file;  // the task's, as long as there is one
  TaskPool* m_pool = nullptr;
  const ActionItem* m_writer = nullptr;
  HostSession* m_session = nullptr;

  std::mutex m_mutex;  // guards all members below
  std::condition_variable m_changed;
  Waiting m_waiting;
  std::size_t m_bytesAtWork = 0;
  std::shared_ptr<Task> m_task;  // null: nothing is to be written
  QString m_error;
  bool m_isErrorShown = false;
  std::exception_ptr m_exception;
};

}  // namespace kelvarin
