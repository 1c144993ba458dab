// Whether windows are light or dark, and the few colours that a palette does not have.
//
// Made once by whoever makes the QApplication; asked by widgets that draw marks of their own. The
// choice is remembered in the user's settings. `system` follows the desktop: its palette, and where
// it has a portal, the portal's colour scheme.
// Threads: the user-interface thread. The portal is asked without waiting for its answer.
#pragma once

#include <memory>

#include <QColor>
#include <QObject>
#include <QPalette>

#include "base/export.h"

namespace kelvarin {

enum class ThemeChoice { system, light, dark };

class KELVARIN_CORE Theme : public QObject {
  Q_OBJECT

 public:
  // Applies the remembered choice to the application.
  explicit Theme(QObject* parent = nullptr);
  ~Theme() override;

  ThemeChoice choice() const;
  // Applied at once, and remembered.
  void setChoice(ThemeChoice choice);
  bool isDark() const;

 signals:
  // Widgets get their palette events as well; this is for what is drawn without one.
  void changed();

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

// How serious something is. Always shown with an icon or a word as well as with its colour.
enum class Severity { information, success, warning, error };

// The colour in which it stands out from the palette's windows and fields: 4.5 : 1 at least.
KELVARIN_CORE QColor severityColor(Severity severity, const QPalette& palette);
KELVARIN_CORE bool isDarkPalette(const QPalette& palette);

}  // namespace kelvarin
