// Puts widgets side by side, and those for which the width does not suffice into further lines.
// Widgets that expand share what is left of their line.
//
// Used for rows of buttons and fields, which must fit narrow panels with large fonts.
// Threads: the user-interface thread.
#pragma once

#include <memory>
#include <vector>

#include <QLayout>

namespace kelvarin {

class FlowLayout : public QLayout {
  Q_OBJECT

 public:
  // With the spacing of forms, and without margins.
  explicit FlowLayout(QWidget* parent);
  ~FlowLayout() override;

  void addItem(QLayoutItem* item) override;
  int count() const override { return static_cast<int>(m_items.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;

  Qt::Orientations expandingDirections() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSize() const override;
  void setGeometry(const QRect& area) override;

 private:
  // The height of the lines in the area; the widgets are moved where `isApplied` is set.
  int layOut(const QRect& area, bool isApplied) const;
  void layOutLine(std::size_t begin, std::size_t end, QPoint position, int height) const;
  QSize withMargins(QSize size) const;

  std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

}  // namespace kelvarin
