// Fusion for dark windows: with outlines that are lighter than the window.
//
// Fusion itself draws the outlines of fields, check boxes and radio buttons darker than the window,
// which nobody sees on a dark one. Set by Theme.
// Threads: the user-interface thread.
#pragma once

#include <QHash>
#include <QPalette>
#include <QProxyStyle>

namespace kelvarin {

class DarkStyle : public QProxyStyle {
  Q_OBJECT

 public:
  DarkStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override;

 private:
  // `palette` with the window's colour of which Fusion makes the lighter outline.
  QPalette outlined(const QPalette& palette, int share) const;

  // Fusion keeps pictures of its controls by the palette's key, so equal palettes must be the same.
  mutable QHash<std::pair<qint64, int>, QPalette> m_outlined;
};

}  // namespace kelvarin
