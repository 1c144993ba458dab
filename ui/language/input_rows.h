// The columns and first rows that reach an input pin of an edited action, fetched beside the
// user-interface thread.
//
// Threads: the user-interface thread.
#pragma once

#include <memory>

#include <QObject>
#include <QTimer>

#include "host/contract/pin_rows.h"

class ActionItem;

namespace kelvarin {

class InputRows : public QObject {
  Q_OBJECT

 public:
  static constexpr long long kRows = 20;

  InputRows(const ActionItem& action, int pin, long long limit = kRows, QObject* parent = nullptr);
  ~InputRows() override;

  // Asks anew; what is known stays until the answer comes.
  void refresh();
  bool isBusy() const { return m_isBusy; }
  // Unknown until they have come; then the reason is in them.
  const PinColumns& columns() const { return m_columns; }
  // Null until some have come.
  std::shared_ptr<const PinRows> rows() const { return m_rows; }

 signals:
  void changed();

 private:
  class Receiver;
  void cancel();
  void poll();
  void takeColumns(const PinColumns& columns);
  void takeRows(const std::shared_ptr<const PinRows>& rows);
  void takeEnd(RowsReceiver::End end, const QString& message);

  const ActionItem& m_action;
  int m_pin;
  long long m_limit;
  std::shared_ptr<Receiver> m_receiver;
  std::unique_ptr<RowsRequest> m_request;
  QTimer m_poll;  // runs while the request is under way
  bool m_isBusy = false;
  PinColumns m_columns;
  std::shared_ptr<const PinRows> m_rows;
};

}  // namespace kelvarin
