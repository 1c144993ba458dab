// The rows of one pin as they come, with their profiles: what a preview shows and keeps.
//
// Threads: the user-interface thread; rows come on the thread of their request.
#pragma once

#include <functional>
#include <memory>

#include <QObject>
#include <QTimer>

#include "gui/preview/column_profiles.h"
#include "gui/preview/row_store.h"
#include "gui/threads/posted_calls.h"

namespace kelvarin {

// For the rows of all previews of a window. They may take 256 MiB: the rest is for what is sorted,
// profiled and copied, and for the branch at work.
inline constexpr std::size_t kPreviewMemory = std::size_t{96} << 20;

// What all previews of a window share.
struct PreviewShare {
  std::shared_ptr<PreviewMemory> memory;
  BackgroundQueue& loader;     // reads back what lies on the disk
  BackgroundQueue& computing;  // profiles, filters, orders, copies
};

class PinPreview : public QObject {
  Q_OBJECT

 public:
  enum class State {
    computing,
    complete,  // the pin has no more rows
    limited,   // as many as were asked for
    failed,    // message() says why; the rows before it are there
    stopped
  };
  // Null when nothing can be asked.
  using Ask = std::function<std::unique_ptr<RowsRequest>(long long limit,
                                                         std::shared_ptr<RowsReceiver> receiver)>;

  // Asks at once.
  PinPreview(const PreviewShare& share, long long limit, const Ask& ask, QObject* parent = nullptr);
  ~PinPreview() override;

  void stop();
  State state() const { return m_state; }
  QString message() const { return m_message; }
  // Empty where no action reported the failure.
  QString failedAction() const { return m_failedAction; }
  long long limit() const { return m_limit; }
  // Null until the columns are known.
  const std::shared_ptr<RowStore>& rows() const { return m_rows; }
  long long rowCount() const { return m_rowCount; }
  ColumnProfiles& profiles() { return m_profiles; }

 signals:
  // Columns, rows or state; at most 10 a second while rows come.
  void changed();

 private:
  class Receiver;
  void look();

  const long long m_limit;
  ColumnProfiles m_profiles;
  PostedCalls m_calls;  // of the receiver
  std::shared_ptr<Receiver> m_receiver;
  std::unique_ptr<RowsRequest> m_request;
  QTimer m_timer;
  State m_state = State::computing;
  QString m_message;
  QString m_failedAction;
  std::shared_ptr<RowStore> m_rows;
  long long m_rowCount = 0;
};

}  // namespace kelvarin
