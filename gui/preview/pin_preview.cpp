#include "gui/preview/pin_preview.h"

#include <utility>

namespace kelvarin {

namespace {

constexpr std::chrono::milliseconds kInterval{100};

PinPreview::State stateOf(RowsReceiver::End end) {
  switch (end) {
    case RowsReceiver::End::complete:
      return PinPreview::State::complete;
    case RowsReceiver::End::limit:
      return PinPreview::State::limited;
    case RowsReceiver::End::cancelled:
      return PinPreview::State::stopped;
    case RowsReceiver::End::failed:
      break;
  }
  return PinPreview::State::failed;
}

}  // namespace

// Stores the rows on the request's thread, which so waits for the disk where it must.
class PinPreview::Receiver final : public RowsReceiver {
 public:
  struct Snapshot {
    std::shared_ptr<RowStore> rows;
    State state = State::computing;
    QString message;
    QString failedAction;
  };

  Receiver(PinPreview& owner, const PreviewShare& share) : m_owner(&owner), m_share(share) {}

  void columnsArrived(const PinColumns& columns) override {
    if (!columns.isKnown) {
      return;
    }
    const std::lock_guard lock(m_mutex);
    m_now.rows = std::make_shared<RowStore>(columns.columns, m_share.memory, m_share.loader);
    report();
  }

  void rowsArrived(std::shared_ptr<const PinRows> rows) override {
    if (m_hasFailed) {
      return;
    }
    m_hasFailed = !m_now.rows->append(*rows);
    const std::lock_guard lock(m_mutex);
    if (m_hasFailed) {
      m_now.state = State::failed;
      m_now.message = m_now.rows->errorText();
    }
    report();
  }

  void actionFailed(const QString& name) override {
    const std::lock_guard lock(m_mutex);
    m_now.failedAction = name;
  }

  void rowsEnded(End end, const QString& message) override {
    const std::lock_guard lock(m_mutex);
    if (!m_hasFailed) {
      m_now.state = stateOf(end);
      m_now.message = message;
    }
    report();
  }

  Snapshot now() {
    const std::lock_guard lock(m_mutex);
    m_isReported = false;
    return m_now;
  }
  void forgetOwner() {
    const std::lock_guard lock(m_mutex);
    m_owner = nullptr;
  }

 private:
  void report() {
    if (m_owner != nullptr && !std::exchange(m_isReported, true)) {
      m_owner->m_calls.post([owner = m_owner] { owner->look(); });
    }
  }

  std::mutex m_mutex;  // guards what follows, up to the share
  PinPreview* m_owner;
  Snapshot m_now;
  bool m_isReported = false;
  const PreviewShare m_share;
  bool m_hasFailed = false;  // of the request's thread
};

PinPreview::PinPreview(const PreviewShare& share, long long limit, const Ask& ask, QObject* parent)
    : QObject(parent),
      m_limit(limit),
      m_profiles(share.computing),
      m_receiver(std::make_shared<Receiver>(*this, share)) {
  m_timer.setSingleShot(true);
  m_timer.setInterval(kInterval);
  connect(&m_timer, &QTimer::timeout, this, &PinPreview::look);
  m_request = ask(limit, m_receiver);
  if (m_request == nullptr) {
    m_state = State::failed;
    m_message = tr("Nothing is linked to this pin, so no rows come here. Link an action to it.");
  }
}

PinPreview::~PinPreview() {
  m_receiver->forgetOwner();
}

void PinPreview::stop() {
  if (m_request != nullptr) {
    m_request->cancel();
  }
}

// The first rows are shown at once, later ones ten times a second.
void PinPreview::look() {
  if (m_timer.isActive()) {
    return;
  }
  Receiver::Snapshot now = m_receiver->now();
  if (m_rows == nullptr && now.rows != nullptr) {
    m_rows = std::move(now.rows);
    m_profiles.setRows(m_rows);
  }
  m_rowCount = m_rows == nullptr ? 0 : m_rows->rowCount();
  m_state = now.state;
  m_message = now.message;
  m_failedAction = now.failedAction;
  m_profiles.setRowCount(m_rowCount, m_state != State::computing);
  if (m_state == State::computing) {
    if (m_rowCount > 0) {
      m_timer.start();
    }
  } else {
    m_request.reset();
  }
  emit changed();
}

}  // namespace kelvarin
