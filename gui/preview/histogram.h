// The histogram of a column: bars of its bins, or of the most frequent values of texts.
//
// Drawn small in the header of a preview and large in its profile.
// Threads: the user-interface thread.
#pragma once

#include <QPalette>
#include <QWidget>

#include "gui/preview/column_profile.h"

class QPainter;

namespace kelvarin {

void paintHistogram(QPainter& painter, const QRectF& area, const ColumnProfile& profile,
                    const QPalette& palette, int highlightedBar = -1);

// "1,204 different values", "about 3,100,000 different values".
QString distinctText(const ColumnProfile& profile);

class HistogramView : public QWidget {
  Q_OBJECT

 public:
  explicit HistogramView(QWidget* parent = nullptr);

  // Null: nothing is known.
  void setProfile(const ColumnProfile* profile);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  int barAt(const QPointF& position) const;
  QString textOfBar(int bar) const;

  std::optional<ColumnProfile> m_profile;
  int m_highlighted = -1;
};

}  // namespace kelvarin
