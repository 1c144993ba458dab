#include "gui/preview/histogram.h"

#include <algorithm>

#include <QHelpEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include "host/contract/shown_value.h"

namespace kelvarin {

namespace {

std::vector<long long> barsOf(const ColumnProfile& profile) {
  std::vector<long long> bars;
  if (!profile.isOfTexts()) {
    for (const ColumnProfile::Bin& bin : profile.bins) {
      bars.push_back(bin.count);
    }
    return bars;
  }
  for (const ColumnProfile::Frequent& frequent : profile.frequent) {
    bars.push_back(frequent.count);
  }
  return bars;
}

QString number(long long count) {
  return QLocale().toString(count);
}

}  // namespace

void paintHistogram(QPainter& painter, const QRectF& area, const ColumnProfile& profile,
                    const QPalette& palette, int highlightedBar) {
  const std::vector<long long> bars = barsOf(profile);
  const long long highest = bars.empty() ? 0 : *std::max_element(bars.begin(), bars.end());
  painter.setPen(Qt::NoPen);
  QColor line = palette.color(QPalette::WindowText);
  line.setAlphaF(0.25F);
  painter.fillRect(QRectF(area.left(), area.bottom() - 1, area.width(), 1), line);
  if (highest == 0) {
    return;
  }
  // Few bars stay narrow, so that they do not look like an area.
  const double step = std::min(area.width() / static_cast<double>(bars.size()), 48.0);
  const double gap = step > 4.0 ? 1.0 : 0.0;
  QColor fill = palette.color(QPalette::Highlight);
  for (std::size_t i = 0; i < bars.size(); ++i) {
    if (bars[i] == 0) {
      continue;
    }
    const double share = static_cast<double>(bars[i]) / static_cast<double>(highest);
    const double height = std::max(1.5, share * (area.height() - 1));
    fill.setAlphaF(static_cast<int>(i) == highlightedBar ? 1.0F : 0.7F);
    painter.fillRect(QRectF(area.left() + static_cast<double>(i) * step, area.bottom() - 1 - height,
                            std::max(1.0, step - gap), height),
                     fill);
  }
}

QString distinctText(const ColumnProfile& profile) {
  const QString count = number(profile.distinctCount);
  return profile.isDistinctExact ? HistogramView::tr("%1 different").arg(count)
                                 : HistogramView::tr("about %1 different").arg(count);
}

HistogramView::HistogramView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void HistogramView::setProfile(const ColumnProfile* profile) {
  m_profile = profile == nullptr ? std::nullopt : std::make_optional(*profile);
  m_highlighted = -1;
  update();
}

QSize HistogramView::sizeHint() const {
  return {200, 6 * fontMetrics().height()};
}

void HistogramView::paintEvent(QPaintEvent*) {
  if (m_profile) {
    QPainter painter(this);
    paintHistogram(painter, rect(), *m_profile, palette(), m_highlighted);
  }
}

void HistogramView::mouseMoveEvent(QMouseEvent* event) {
  m_highlighted = barAt(event->position());
  update();
}

void HistogramView::leaveEvent(QEvent*) {
  m_highlighted = -1;
  update();
}

bool HistogramView::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const int bar = barAt(help->pos());
    QToolTip::showText(help->globalPos(), bar < 0 ? QString() : textOfBar(bar), this);
    return true;
  }
  return QWidget::event(event);
}

int HistogramView::barAt(const QPointF& position) const {
  const auto count = m_profile ? static_cast<int>(barsOf(*m_profile).size()) : 0;
  if (count == 0) {
    return -1;
  }
  const int bar = static_cast<int>(position.x() / std::min(width() / double(count), 48.0));
  return bar >= 0 && bar < count ? bar : -1;
}

QString HistogramView::textOfBar(int bar) const {
  const auto index = static_cast<std::size_t>(bar);
  if (m_profile->isOfTexts()) {
    const ColumnProfile::Frequent& frequent = m_profile->frequent[index];
    return tr("%1: %2 rows").arg(frequent.value, number(frequent.count));
  }
  const ColumnProfile::Bin& bin = m_profile->bins[index];
  return tr("%1 to %2: %3 rows")
      .arg(shownNumber(bin.first).text, shownNumber(bin.end).text, number(bin.count));
}

}  // namespace kelvarin
