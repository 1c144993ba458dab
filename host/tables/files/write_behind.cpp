#include "host/tables/files/write_behind.h"

#include "host/contract/host_session.h"

namespace kelvarin {

WriteBehind::WriteBehind(const OneRow& columns, const ActionItem* action, Write write)
    : m_action(action), m_write(std::move(write)) {
  m_row.setNumberOfColumns(columns.sz());
  std::vector<MetaTypeColumn> types;
  for (int i = 0; i < columns.sz(); ++i) {
    types.push_back(columns.getMetaType(i));
    m_columns.setName(i, columns.colName(i));
    m_columns.setMeta(i, MetaInfo(types.back(), 0));
  }
  m_packets.reserve(kPacketCount);
  for (std::size_t i = 0; i < kPacketCount; ++i) {
    m_packets.emplace_back(types);
  }
  m_thread = std::thread([this, session = HostSession::current()] {
    const HostSession::Scope scope(session);
    run();
  });
}

WriteBehind::~WriteBehind() {
  stop();
}

bool WriteBehind::push(const ColumnsInHand& rows, std::size_t count) {
  for (std::size_t begin = 0; begin < count;) {
    PackedRows& packet = m_packets[m_queued % kPacketCount];
    begin += packet.append(rows, begin, count);
    if (packet.isFull() && !queuePacket()) {
      return false;
    }
  }
  return true;
}

bool WriteBehind::queuePacket() {
  std::unique_lock lock(m_mutex);
  ++m_queued;
  m_changed.notify_all();
  m_changed.wait(lock, [this] { return m_hasFailed || m_queued - m_written < kPacketCount; });
  if (m_hasFailed) {
    return false;
  }
  m_packets[m_queued % kPacketCount].clear();
  return true;
}

Status<QString> WriteBehind::finish() {
  if (!m_packets[m_queued % kPacketCount].isEmpty()) {
    queuePacket();
  }
  {
    const std::lock_guard lock(m_mutex);
    m_isComplete = true;
  }
  m_changed.notify_all();
  m_thread.join();
  if (m_exception) {
    std::rethrow_exception(std::exchange(m_exception, nullptr));
  }
  if (m_hasFailed) {
    return Failure{takeFailure()};
  }
  return Done{};
}

void WriteBehind::stop() {
  if (!m_thread.joinable()) {
    return;
  }
  {
    const std::lock_guard lock(m_mutex);
    m_isStopping = true;
  }
  m_changed.notify_all();
  m_thread.join();
}

void WriteBehind::run() {
  const CurrentAction current(m_action);
  try {
    writePackets();
  } catch (...) {
    m_exception = std::current_exception();
    const std::lock_guard lock(m_mutex);
    m_hasFailed = true;
    m_changed.notify_all();
  }
}

void WriteBehind::writePackets() {
  while (waitForPacket()) {
    const bool isWritten = writePacket(m_packets[m_written % kPacketCount]);
    {
      const std::lock_guard lock(m_mutex);
      ++m_written;
      m_hasFailed = !isWritten;
    }
    m_changed.notify_all();
  }
}

bool WriteBehind::waitForPacket() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_isStopping || m_isComplete || m_queued > m_written; });
  return !m_isStopping && !m_hasFailed && m_queued > m_written;
}

bool WriteBehind::writePacket(PackedRows& packet) {
  while (packet.takeRow(m_row.getAllColForWrite())) {
    if (const Status<QString> status = m_write(m_row); !status) [[unlikely]] {
      m_failure = status.error();
      return false;
    }
  }
  return true;
}

}  // namespace kelvarin
