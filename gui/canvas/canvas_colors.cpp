#include "gui/canvas/canvas_colors.h"

#include <algorithm>

#include "host/widgets/theme.h"

namespace kelvarin {

CanvasColors CanvasColors::of(const QPalette& palette) {
  const QColor text = palette.color(QPalette::Active, QPalette::Text);
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  CanvasColors colors;
  colors.background = window;
  colors.grid = mixed(window, text, 0.22);
  colors.box = palette.color(QPalette::Active, QPalette::Base);
  colors.boxDisabled = mixed(colors.box, window, 0.6);
  colors.border = mixed(window, text, 0.3);
  colors.text = text;
  colors.faintText = palette.color(QPalette::Active, QPalette::PlaceholderText);
  colors.link = mixed(window, text, 0.5);
  colors.accent = palette.color(QPalette::Active, QPalette::Highlight);
  colors.success = severityColor(Severity::success, palette);
  colors.warning = severityColor(Severity::warning, palette);
  colors.error = severityColor(Severity::error, palette);
  colors.information = severityColor(Severity::information, palette);
  return colors;
}

QColor CanvasColors::ofState(ActionState::Kind kind) const {
  switch (kind) {
    case ActionState::Kind::running:
      return information;
    case ActionState::Kind::done:
      return success;
    case ActionState::Kind::failed:
      return error;
    case ActionState::Kind::stopped:
      return warning;
    case ActionState::Kind::none:
    case ActionState::Kind::waiting:
      break;
  }
  return faintText;
}

QColor CanvasColors::heat(double share) const {
  return mixed(box, warning, 0.05 + 0.35 * std::clamp(share, 0.0, 1.0));
}

QColor mixed(const QColor& one, const QColor& other, double shareOfOther) {
  const auto part = [shareOfOther](float of, float with) {
    return static_cast<float>(of + (with - of) * shareOfOther);
  };
  return QColor::fromRgbF(part(one.redF(), other.redF()), part(one.greenF(), other.greenF()),
                          part(one.blueF(), other.blueF()));
}

QColor textColorOn(const QColor& background) {
  return qGray(background.rgb()) > 140 ? QColor(Qt::black) : QColor(Qt::white);
}

}  // namespace kelvarin
