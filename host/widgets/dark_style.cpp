#include "host/widgets/dark_style.h"

#include <utility>

#include <QStyleFactory>
#include <QStyleOption>

namespace kelvarin {

namespace {

// How far an outline lies from the window's colour to that of its text, in percent: what is to be
// clicked or typed into stands out 3 : 1, other frames only divide.
constexpr int kControlShare = 48;
constexpr int kFrameShare = 20;
// Fusion divides the lightness of the window's colour by this for an outline, in percent.
constexpr int kFusionDarkens = 140;
constexpr int kPalettesKept = 64;

int outlineShare(QStyle::PrimitiveElement element, bool isEnabled) {
  switch (element) {
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorRadioButton:
    case QStyle::PE_FrameLineEdit:
      return isEnabled ? kControlShare : kFrameShare;
    case QStyle::PE_Frame:
    case QStyle::PE_FrameGroupBox:
      return kFrameShare;
    default:
      return 0;
  }
}

// Gives an option another palette for as long as it is drawn. Styles read an option as the derived
// type that it is, so a copy of its base would not do.
class OtherPalette {
 public:
  OtherPalette(const QStyleOption& option, QPalette palette)
      : m_option(const_cast<QStyleOption&>(option)),
        m_own(std::exchange(m_option.palette, std::move(palette))) {}
  ~OtherPalette() { m_option.palette = m_own; }
  OtherPalette(const OtherPalette&) = delete;
  OtherPalette& operator=(const OtherPalette&) = delete;

 private:
  QStyleOption& m_option;
  QPalette m_own;
};

}  // namespace

DarkStyle::DarkStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

QPalette DarkStyle::outlined(const QPalette& palette, int share) const {
  const std::pair key(palette.cacheKey(), share);
  if (const auto known = m_outlined.constFind(key); known != m_outlined.constEnd()) {
    return *known;
  }
  if (m_outlined.size() >= kPalettesKept) {
    m_outlined.clear();
  }
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  const auto between = [share](int from, int to) { return from + (to - from) * share / 100; };
  const QColor outline(between(window.red(), text.red()), between(window.green(), text.green()),
                       between(window.blue(), text.blue()));
  QPalette changed = palette;
  changed.setColor(QPalette::Window, outline.lighter(kFusionDarkens));
  return *m_outlined.insert(key, changed);
}

void DarkStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  const int share = outlineShare(element, option->state.testFlag(State_Enabled));
  if (share == 0) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    return;
  }
  const OtherPalette other(*option, outlined(option->palette, share));
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void DarkStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
  if (control != CC_ComboBox && control != CC_SpinBox) {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    return;
  }
  const int share = option->state.testFlag(State_Enabled) ? kControlShare : kFrameShare;
  const OtherPalette other(*option, outlined(option->palette, share));
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int DarkStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* result) const {
  // The style's own icons of dialog buttons are black.
  return hint == SH_DialogButtonBox_ButtonsHaveIcons
             ? 0
             : QProxyStyle::styleHint(hint, option, widget, result);
}

}  // namespace kelvarin
