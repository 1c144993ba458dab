// Has rows written by a thread of its own, in their order, while more are made.
//
// Rows go through a bounded queue of packets: whoever makes rows faster than they can be written
// waits. After a failure nothing more is written.
// Threads: push(), finish() and stop() on the thread that makes the rows; the writing function on
// the writing thread. The members below the mutex belong to it; of the packets, those that are
// queued and not written belong to the writing thread.
// Errors: the writing function's texts. An exception of it is thrown by finish().
#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

#include <QString>

#include "base/result.h"
#include "host/contract/columns_in_hand.h"
#include "host/tables/files/packed_rows.h"

namespace kelvarin {

class WriteBehind {
 public:
  using Write = std::function<Status<QString>(const OneRow& row)>;

  // Rows have the columns of `columns`; `action` is the one in whose name the thread logs.
  WriteBehind(const OneRow& columns, const ActionItem* action, Write write);
  ~WriteBehind();
  WriteBehind(const WriteBehind&) = delete;
  WriteBehind& operator=(const WriteBehind&) = delete;

  // False when the writing has failed; finish() says why.
  bool push(const OneRow& row) {
    PackedRows& rows = m_packets[m_queued % kPacketCount];
    rows.append(row);
    return !rows.isFull() || queuePacket();
  }
  // The same of `count` rows that were taken together.
  bool push(const ColumnsInHand& rows, std::size_t count);
  const std::vector<MetaTypeColumn>& types() const { return m_packets.front().types(); }
  // All rows have been written when this succeeds. The thread has ended, here and after stop().
  Status<QString> finish();
  // Rows that are not written yet are dropped.
  void stop();
  // After stop(): why the writing has failed, unless finish() has said so; else empty.
  QString takeFailure() { return std::exchange(m_failure, QString()); }

 private:
  static constexpr std::size_t kPacketCount = 4;

  bool queuePacket();
  void run();
  void writePackets();
  bool waitForPacket();
  bool writePacket(PackedRows& packet);

  PinOutMetaData m_columns;
  OneRow m_row{&m_columns};  // the one that is being written
  const ActionItem* m_action;
  Write m_write;
  std::vector<PackedRows> m_packets;

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::size_t m_queued = 0;  // packets; written by push() only, which may read it without the lock
  std::size_t m_written = 0;
  bool m_isStopping = false;
  bool m_isComplete = false;  // no more packets come
  bool m_hasFailed = false;
  QString m_failure;               // written before `m_hasFailed`, as the next
  std::exception_ptr m_exception;  // of the thread

  std::thread m_thread;
};

}  // namespace kelvarin
