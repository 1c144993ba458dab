#include "ui/language/input_rows.h"

#include <utility>

#include "host/contract/host_services.h"
#include "ui/language/pin_row_view.h"
#include "ui/language/posted_calls.h"

namespace kelvarin {

// Lives as long as the request does; after the object is gone it passes nothing on.
class InputRows::Receiver : public RowsReceiver, public std::enable_shared_from_this<Receiver> {
 public:
  explicit Receiver(InputRows& owner) : m_owner(owner), m_calls(&owner) {}

  void close() { m_calls.close(); }

  void columnsArrived(const PinColumns& columns) override {
    m_calls.post([this, self = shared_from_this(), columns] { takeColumns(columns); });
  }
  void rowsArrived(std::shared_ptr<const PinRows> rows) override {
    m_calls.post([this, self = shared_from_this(), rows] { takeRows(rows); });
  }
  void rowsEnded(End end, const QString& message) override {
    m_calls.post([this, self = shared_from_this(), end, message] { takeEnd(end, message); });
  }

 private:
  // On the owner's thread; an older request's calls may still be queued.
  bool isCurrent() const { return m_owner.m_receiver.get() == this; }

  void takeColumns(const PinColumns& columns) {
    if (isCurrent()) {
      m_owner.m_columns = columns;
      m_owner.m_rows.reset();
      emit m_owner.changed();
    }
  }

  void takeRows(const std::shared_ptr<const PinRows>& rows) {
    if (!isCurrent() || rows == nullptr) {
      return;
    }
    m_owner.m_rows = m_owner.m_rows == nullptr ? rows : joined(*m_owner.m_rows, *rows);
    emit m_owner.changed();
  }

  static std::shared_ptr<const PinRows> joined(const PinRows& first, const PinRows& second) {
    auto all = std::make_shared<PinRows>(first);
    PinRowView view(second.columns());
    for (std::size_t i = 0; i < second.rowCount(); ++i) {
      all->append(view.show(second, i));
    }
    return all;
  }

  void takeEnd(End end, const QString& message) {
    if (!isCurrent()) {
      return;
    }
    m_owner.m_isBusy = false;
    if (end == End::failed && m_owner.m_columns.whyUnknown.isEmpty()) {
      m_owner.m_columns.whyUnknown = message;
    }
    emit m_owner.changed();
  }

  InputRows& m_owner;  // read on its own thread only
  PostedCalls m_calls;
};

InputRows::InputRows(const ActionItem& action, int pin, long long limit, QObject* parent)
    : QObject(parent), m_action(action), m_pin(pin), m_limit(limit) {
  refresh();
}

InputRows::~InputRows() {
  cancel();
}

void InputRows::cancel() {
  if (m_receiver != nullptr) {
    m_receiver->close();
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
    return;
  }
  m_isBusy = false;
  m_columns = columnsOfInputPin(m_action, m_pin);
  m_rows.reset();
  emit changed();
}

}  // namespace kelvarin
