// The controls of the standard time parameters: reference time, zone, formats, unit, seed, and what
// becomes of dates that cannot be converted. With a live example of a date in the chosen format.
//
// Used by the expression editors and the block filter. A value that no control offers stays until
// the user chooses another one.
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <memory>

#include <QWidget>

#include "expression/dates/time_parameters.h"

namespace kelvarin {

class TimeParametersPanel : public QWidget {
  Q_OBJECT

 public:
  explicit TimeParametersPanel(QWidget* parent = nullptr);
  ~TimeParametersPanel() override;

  const TimeParameters& parameters() const;
  // Fills the controls; nothing is reported.
  void setParameters(const TimeParameters& parameters);
  // Replaces graph parameters in the texts, for the examples.
  void setExpansion(std::function<QString(const QString&)> expand);

 signals:
  // The user changed one.
  void changed();

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
