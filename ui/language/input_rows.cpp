#include "ui/language/input_rows.h"

#include <utility>

#include <QPointer>

#include "host/contract/host_services.h"
#include "ui/language/call_queue.h"
#include "ui/language/pin_row_view.h"

namespace kelvarin {

// Lives as long as the request does, which may be longer than its object.
class InputRows::Receiver : public RowsReceiver {
 public:
  explicit Receiver(InputRows& owner) : m_owner(owner) {}

  CallQueue& calls() { return m_calls; }

  void columnsArrived(const PinColumns& columns) override {
    m_calls.add([this, columns] { m_owner.takeColumns(columns); });
  }
  void rowsArrived(std::shared_ptr<const PinRows> rows) override {
    m_calls.add([this, rows] { m_owner.takeRows(rows); });
  }
  void rowsEnded(End end, const QString& message) override {
    m_calls.add([this, end, message] { m_owner.takeEnd(end, message); });
  }

 private:
  InputRows& m_owner;  // used by the calls only
  CallQueue m_calls;
};

namespace {

std::shared_ptr<const PinRows> joined(const PinRows& first, const PinRows& second) {
  auto all = std::make_shared<PinRows>(first);
  PinRowView view(second.columns());
  for (std::size_t i = 0; i < second.rowCount(); ++i) {
    all->append(view.show(second, i));
  }
  return all;
}

}  // namespace

InputRows::InputRows(const ActionItem& action, int pin, long long limit, QObject* parent)
    : QObject(parent), m_action(action), m_pin(pin), m_limit(limit) {
  m_poll.setInterval(CallQueue::kInterval);
  connect(&m_poll, &QTimer::timeout, this, &InputRows::poll);
  refresh();
}

InputRows::~InputRows() {
  cancel();
}

void InputRows::cancel() {
  if (m_receiver != nullptr) {
    m_receiver->calls().close();
    m_receiver.reset();
  }
  if (m_request != nullptr) {
    m_request->cancel();
    m_request.reset();
  }
}

void InputRows::refresh() {
  cancel();
  m_receiver = std::make_shared<Receiver>(*this);
  m_isBusy = true;
  m_request = requestRows(m_action, m_pin, false, m_limit, m_receiver);
  if (m_request != nullptr) {
    m_poll.start();
    return;
  }
  m_isBusy = false;
  m_columns = columnsOfInputPin(m_action, m_pin);
  m_rows.reset();
  emit changed();
}

// What is shown may lead to a new request, or be the end of this object.
void InputRows::poll() {
  const QPointer<InputRows> self(this);
  const std::shared_ptr<Receiver> receiver = m_receiver;
  for (const CallQueue::Call& call : receiver->calls().take()) {
    if (self == nullptr || m_receiver != receiver) {
      return;
    }
    call();
  }
}

void InputRows::takeColumns(const PinColumns& columns) {
  m_columns = columns;
  m_rows.reset();
  emit changed();
}

void InputRows::takeRows(const std::shared_ptr<const PinRows>& rows) {
  m_rows = m_rows == nullptr ? rows : joined(*m_rows, *rows);
  emit changed();
}

void InputRows::takeEnd(RowsReceiver::End end, const QString& message) {
  m_isBusy = false;
  m_poll.stop();
  if (end == RowsReceiver::End::failed && m_columns.whyUnknown.isEmpty()) {
    m_columns.whyUnknown = message;
  }
  emit changed();
}

}  // namespace kelvarin
