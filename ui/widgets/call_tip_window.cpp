#include "ui/widgets/call_tip_window.h"

#include "ui/widgets/window_position.h"

namespace kelvarin {

namespace {

constexpr int kMaxWidthInCharacters = 72;

QString signatureOf(const CallTip& tip) {
  QStringList arguments;
  for (int i = 0; i < tip.arguments.size(); ++i) {
    const QString argument = tip.arguments[i].toHtmlEscaped();
    arguments += i == tip.argument ? QStringLiteral("<b><u>%1</u></b>").arg(argument) : argument;
  }
  return tip.before.toHtmlEscaped() + arguments.join(QStringLiteral(", ")) +
         tip.after.toHtmlEscaped();
}

}  // namespace

CallTipWindow::CallTipWindow(QWidget* parent)
    : QLabel(parent, Qt::ToolTip | Qt::FramelessWindowHint) {
  setAttribute(Qt::WA_ShowWithoutActivating);
  setFocusPolicy(Qt::NoFocus);
  setFrameShape(QFrame::StyledPanel);
  setTextFormat(Qt::RichText);
  setWordWrap(true);
  setMargin(8);
  setBackgroundRole(QPalette::ToolTipBase);
  setForegroundRole(QPalette::ToolTipText);
  setAutoFillBackground(true);
  setAccessibleName(tr("How the function is called"));
}

void CallTipWindow::showTip(const CallTip& tip, const QRect& cursor) {
  QStringList lines{signatureOf(tip)};
  for (const QString& line : {tip.comment, tip.note, tip.nulls, tip.engines}) {
    if (!line.isEmpty()) {
      lines += line.toHtmlEscaped();
    }
  }
  setText(lines.join(QStringLiteral("<br/>")));
  const int longest = kMaxWidthInCharacters * fontMetrics().averageCharWidth();
  setWordWrap(false);
  const int width = qMin(sizeHint().width(), longest);
  setWordWrap(true);
  setFixedSize(width, heightForWidth(width));
  move(positionBeside(cursor, size(), Side::above));
  show();
}

}  // namespace kelvarin
