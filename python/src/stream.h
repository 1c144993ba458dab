// A stream of the library on its way to whoever reads it in Python.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <nanobind/nanobind.h>

#include "python/src/arrow_owners.h"
#include "python/src/interrupt.h"
#include "python/src/message_log.h"
#include "python/src/status.h"

namespace kelvarin_python {

// Level, action and text of each message.
nb::list listOf(const MessageLog& log);

// What a stream and its reader share: what ends it, and why it has failed.
struct StreamState {
  Stop stop;
  MessageLog log;

  std::mutex mutex;
  Outcome outcome;  // guarded by mutex
};

class Batches;

// Read once: by another library through its capsule, or into memory.
class Stream {
 public:
  Stream(StreamOwner stream, std::shared_ptr<StreamState> state)
      : m_state(std::move(state)), m_stream(std::move(stream)) {}
  ~Stream();
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  nb::capsule schema();
  // The rest of these are for a stream that has not been taken: ValueError.
  nb::capsule capsule();
  // Reads all of it; Ctrl-C ends that.
  std::shared_ptr<Batches> collect();

  // Raises why another library could not read it to its end, if that is so.
  void check() const;
  nb::list messages() const { return listOf(m_state->log); }

 private:
  StreamOwner taken();

  std::shared_ptr<StreamState> m_state;  // which the stream uses to its end
  StreamOwner m_stream;
};

// All of a stream in memory. Whoever reads it shares the same bytes.
//
// Threads: it never changes.
class Batches {
 public:
  // Reads `stream` to its end. Called without the lock.
  Batches(StreamOwner stream, Outcome& outcome);

  nb::capsule schema() const;
  int64_t rows() const { return m_rows; }
  static nb::capsule capsule(std::shared_ptr<Batches> batches);

  // The memory of a column of numbers or keys, as an array of numpy; None where there is not one
  // piece of it.
  static nb::object values(const std::shared_ptr<Batches>& batches, size_t column);

  const SchemaOwner& schemaOwner() const { return m_schema; }
  // Null behind the last one.
  std::shared_ptr<ArrayOwner> batch(size_t index) const;

 private:
  void append(ArrowArray& array);

  SchemaOwner m_schema;
  std::vector<std::shared_ptr<ArrayOwner>> m_arrays;
  int64_t m_rows = 0;
};

void bindStreams(nb::module_& module);

}  // namespace kelvarin_python
