#include "host/widgets/icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace kelvarin {

namespace {

// The drawing on a square of 24 units; lines are 1.75 wide with round ends, in one colour.
const char* drawingOf(IconName name) {
  switch (name) {
    case IconName::add:
      return "<path d='M12 5v14M5 12h14'/>";
    case IconName::remove:
      return "<path d='M5 12h14'/>";
    case IconName::up:
      return "<path d='M12 19V5M6 11l6-6 6 6'/>";
    case IconName::down:
      return "<path d='M12 5v14M6 13l6 6 6-6'/>";
    case IconName::left:
      return "<path d='M19 12H5M11 6l-6 6 6 6'/>";
    case IconName::right:
      return "<path d='M5 12h14M13 6l6 6-6 6'/>";
    case IconName::play:
      return "<path d='M7 5v14l12-7z'/>";
    case IconName::stop:
      return "<path d='M6 6h12v12H6z'/>";
    case IconName::pause:
      return "<path d='M8 5v14M16 5v14'/>";
    case IconName::next:
      return "<path d='M5 5v14l10-7zM19 5v14'/>";
    case IconName::back:
      return "<path d='M19 5v14L9 12zM5 5v14'/>";
    case IconName::breakpoint:
      return "<circle cx='12' cy='12' r='7'/><circle cx='12' cy='12' r='2.5' fill='C'/>";
    case IconName::star:
      return "<path d='M12 4l2.5 5.2 5.7.8-4.1 4 1 5.6-5.1-2.7-5.1 2.7 1-5.6-4.1-4 5.7-.8z'/>";
    case IconName::starFilled:
      return "<path fill='C' "
             "d='M12 4l2.5 5.2 5.7.8-4.1 4 1 5.6-5.1-2.7-5.1 2.7 1-5.6-4.1-4 5.7-.8z'/>";
    case IconName::search:
      return "<circle cx='10.5' cy='10.5' r='6'/><path d='M15 15l5 5'/>";
    case IconName::check:
      return "<path d='M5 12.5l4.5 4.5L19 7'/>";
    case IconName::information:
      return "<circle cx='12' cy='12' r='8.5'/><path d='M12 11v5.5M12 7.6v.2'/>";
    case IconName::warning:
      return "<path d='M12 4L21 19.5H3z'/><path d='M12 10v4.5M12 17v.2'/>";
    case IconName::error:
      return "<circle cx='12' cy='12' r='8.5'/><path d='M9 9l6 6M15 9l-6 6'/>";
    case IconName::copy:
      return "<path d='M9 9h10v11H9z'/><path d='M15 9V4H5v11h4'/>";
    case IconName::browse:
      return "<path d='M3.5 19V6h6l2 2.5h9V19z'/>";
    case IconName::save:
      return "<path d='M5 4.5h11.5L19.5 7.500V19.5h-15V4.500z'/>"
             "<path d='M8.5 4.500v5h7v-5M8 19.500v-6h8v6'/>";
    case IconName::reload:
      return "<path d='M19 12a7 7 0 1 1-2.1-5M17.5 3v4.500H13'/>";
    case IconName::help:
      return "<circle cx='12' cy='12' r='8.5'/>"
             "<path d='M9.6 9.7a2.4 2.4 0 1 1 3.6 2.200c-.8.5-1.2.9-1.2 1.800M12 16.600v.2'/>";
    case IconName::history:
      return "<path d='M5 12a7.5 7.5 0 1 0 2.2-5.300M6 3.500v4h4M12.5 8v4.500l3 2'/>";
    case IconName::undo:
      return "<path d='M9 5L4.5 9.500L9 14M5 9.500h9a5 5 0 0 1 0 10h-3'/>";
    case IconName::redo:
      return "<path d='M15 5l4.500 4.500L15 14M19 9.500h-9a5 5 0 0 0 0 10h3'/>";
    case IconName::table:
      return "<path d='M4 5h16v14H4zM4 10h16M4 14.5h16M10 10v9'/>";
    case IconName::step:
      return "<path d='M8 7h8v10H8zM3 12h5M16 12h5M18.500 9.500L21 12l-2.500 2.500'/>";
    case IconName::discard:
      return "<path d='M5 7.5h14M9.5 7.500V4.500h5v3M7 7.500l.8 12h8.400l.8-12'/>"
             "<path d='M10.5 11v5M13.5 11v5'/>";
  }
  return "";
}

QByteArray svgOf(IconName name, const QColor& color) {
  QByteArray drawing = drawingOf(name);
  drawing.replace("'C'", "'" + color.name().toLatin1() + "'");
  return "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 24 24'><g fill='none' stroke='" +
         color.name().toLatin1() +
         "' stroke-width='1.75' stroke-linecap='round' stroke-linejoin='round'>" + drawing +
         "</g></svg>";
}

class LineIcon : public QIconEngine {
 public:
  explicit LineIcon(IconName name) : m_name(name) {}
  LineIcon(IconName name, Severity severity)
      : m_name(name), m_hasSeverity(true), m_severity(severity) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const int side = qMin(rect.width(), rect.height());
    QRect square(0, 0, side, side);
    square.moveCenter(rect.center());
    QSvgRenderer(svgOf(m_name, colorFor(mode))).render(painter, QRectF(square));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap result(size);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return result;
  }

  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal) override {
    return pixmap(size, mode, state);
  }

  QIconEngine* clone() const override { return new LineIcon(*this); }

 private:
  QColor colorFor(QIcon::Mode mode) const {
    const QPalette palette = QApplication::palette();
    if (mode == QIcon::Disabled) {
      return palette.color(QPalette::Disabled, QPalette::ButtonText);
    }
    if (mode == QIcon::Selected) {
      return palette.color(QPalette::HighlightedText);
    }
    return m_hasSeverity ? severityColor(m_severity, palette)
                         : palette.color(QPalette::Active, QPalette::ButtonText);
  }

  IconName m_name;
  bool m_hasSeverity = false;
  Severity m_severity = Severity::information;
};

IconName iconNameOf(Severity severity) {
  switch (severity) {
    case Severity::success:
      return IconName::check;
    case Severity::warning:
      return IconName::warning;
    case Severity::error:
      return IconName::error;
    case Severity::information:
      break;
  }
  return IconName::information;
}

}  // namespace

QIcon icon(IconName name) {
  return QIcon(new LineIcon(name));
}

QIcon icon(Severity severity) {
  return QIcon(new LineIcon(iconNameOf(severity), severity));
}

}  // namespace kelvarin
