// The columns and first rows that reach an input pin of an edited action, fetched beside the
// user-interface thread.
//
// Threads: the user-interface thread.
#pragma once

#include <memory>

#include <QObject>

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
  bool isBusy() const;
  // Unknown until they have come; then the reason is in them.
  const PinColumns& columns() const;
  std::shared_ptr<const PinRows> rows() const;  // null until some have come

 signals:
  void changed();

 private:
  class Receiver;
  const ActionItem& m_action;
  int m_pin;
  long long m_limit;
  std::shared_ptr<Receiver> m_receiver;
  std::unique_ptr<RowsRequest> m_request;
};

}  // namespace kelvarin
