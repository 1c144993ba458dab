#include "host/widgets/info_line.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>

#include "host/widgets/icons.h"

namespace kelvarin {

InfoLine::InfoLine(QWidget* parent)
    : QFrame(parent), m_icon(new QLabel(this)), m_label(new QLabel(this)) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  layout->addWidget(m_icon, 0, Qt::AlignTop);
  layout->addWidget(m_label, 1, Qt::AlignTop);
  m_label->setWordWrap(true);
  m_label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  m_label->setTextFormat(Qt::RichText);
  m_label->setTextInteractionFlags(Qt::TextBrowserInteraction);
  connect(m_label, &QLabel::linkActivated, this, &InfoLine::linkActivated);
  showMessage();
}

InfoLine::~InfoLine() = default;

void InfoLine::setMessage(Severity severity, const QString& text,
                          const std::vector<InfoLink>& links) {
  m_severity = severity;
  m_text = text;
  m_links = links;
  showMessage();
}

void InfoLine::clear() {
  setMessage(Severity::information, {});
}

void InfoLine::setReservedLines(int lines) {
  m_reservedLines = lines;
  showMessage();
}

void InfoLine::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    m_label->clear();  // links keep the colour that they were set with
    showMessage();
  }
}

void InfoLine::showMessage() {
  QString shown = m_text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br/>"));
  for (const InfoLink& link : m_links) {
    shown += QStringLiteral(" &nbsp;<a href=\"%1\">%2</a>")
                 .arg(link.id.toHtmlEscaped(), link.label.toHtmlEscaped());
  }
  m_label->setText(shown);
  m_label->setFocusPolicy(m_links.empty() ? Qt::ClickFocus : Qt::StrongFocus);
  m_label->setAccessibleName(m_text);
  m_label->setMinimumHeight(m_reservedLines * fontMetrics().lineSpacing());
  const int side = fontMetrics().height();
  const bool isEmpty = m_text.isEmpty() && m_links.empty();
  m_icon->setPixmap(isEmpty ? QPixmap() : icon(m_severity).pixmap(QSize(side, side)));
  m_icon->setVisible(!isEmpty);
  setVisible(!isEmpty || m_reservedLines > 0);
}

}  // namespace kelvarin
