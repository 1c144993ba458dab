// A field for plain text that is zoomed with Control and the wheel, and with Ctrl+plus, minus, 0.
//
// The zoom is the size of the document's default font.
#pragma once

#include <QPlainTextEdit>

namespace kelvarin {

class ZoomPlainTextEdit : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit ZoomPlainTextEdit(QWidget* parent = nullptr);

  // One step of the wheel.
  void zoomStep(bool isLarger);
  // Back to the size of the widget's font.
  void zoomReset();

 signals:
  void zoomed();

 protected:
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  bool zoomByKey(const QKeyEvent& event);

  int m_fontSize;  // of the widget, in points, from which the zoom starts
};

}  // namespace kelvarin
