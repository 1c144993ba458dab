#include "ui/error_dialog/interface_math_parser_check.h"

#include <algorithm>

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

#include "expression/errors/error_texts.h"
#include "expression/errors/expression_mark.h"
#include "ui/error_dialog/error_pictures.h"
#include "ui/widgets/fixed_font.h"

namespace kelvarin {

namespace {

constexpr int kSpacing = 12;
constexpr int kMargin = 16;
// In the second column; the first one has the icon.
constexpr int kTextColumn = 1;
constexpr int kCharactersInLine = 72;
// What an expression's line holds at least, beside the icon and within the margins.
constexpr int kShortCharacters = 56;

QLabel* selectableLabel(const QString& text, const QString& accessibleName) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  label->setAccessibleName(accessibleName);
  return label;
}

// Both lines of a marked expression, whose mark is right in a fixed font only. What is wider than
// `width` scrolls.
QPlainTextEdit* fixedLines(const QString& text, int width) {
  auto* lines = new QPlainTextEdit(text);
  const QFont font = fixedFont();
  lines->setFont(font);
  lines->setReadOnly(true);
  lines->setTabChangesFocus(true);
  lines->setLineWrapMode(QPlainTextEdit::NoWrap);
  lines->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const QFontMetrics metrics(font);
  const QSize size = metrics.size(0, text);
  const int frame = lines->frameWidth() + static_cast<int>(lines->document()->documentMargin());
  const int bar = size.width() > width ? lines->horizontalScrollBar()->sizeHint().height() : 0;
  lines->setFixedHeight(size.height() + 2 * frame + bar);
  return lines;
}

}  // namespace

Interface_MathParserCheck::Interface_MathParserCheck(const ExpressionReport& report,
                                                     QWidget* parent)
    : QDialog(parent), m_report(report) {
  loadErrorPictures();
  setObjectName(QStringLiteral("Interface_MathParserCheck"));
  setWindowTitle(tr("Math Parser Error"));
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setModal(false);

  auto* content = new QWidget;
  auto* grid = new QGridLayout(content);
  grid->setContentsMargins(kMargin, kMargin, kMargin, kSpacing);
  grid->setSpacing(kSpacing);
  grid->setColumnStretch(kTextColumn, 1);
  addText(*grid);
  addExpression(*grid);
  addAdvice(*grid);
  addPicture(*grid);
  grid->setRowStretch(grid->rowCount(), 1);

  auto* scrolled = new QScrollArea;
  scrolled->setFrameShape(QFrame::NoFrame);
  scrolled->setWidgetResizable(true);
  scrolled->setFocusPolicy(Qt::NoFocus);
  scrolled->setWidget(content);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(scrolled, 1);
  QWidget* buttons = makeButtons();
  layout->addWidget(buttons);
  fitToScreen(*content, buttons->sizeHint().height());
}

void Interface_MathParserCheck::addText(QGridLayout& grid) {
  auto* icon = new QLabel;
  icon->setObjectName(QStringLiteral("lblIcon"));
  icon->setPixmap(QPixmap(QStringLiteral(":/KelvarinMathParser/errorIcon.png")));
  icon->setAccessibleName(tr("Error"));
  grid.addWidget(icon, 0, 0, Qt::AlignTop);
  QLabel* text = selectableLabel(m_report.text, tr("What is wrong"));
  text->setObjectName(QStringLiteral("lblText"));
  grid.addWidget(text, 0, kTextColumn);
}

QString Interface_MathParserCheck::markedFault() const {
  ExpressionError fault;
  fault.position = m_report.position;
  fault.token = m_report.expression.mid(m_report.position, m_report.size);
  return markedExpression(m_report.expression, fault);
}

void Interface_MathParserCheck::addExpression(QGridLayout& grid) {
  if (m_report.expression.trimmed().isEmpty()) {
    return;
  }
  QPlainTextEdit* lines =
      fixedLines(markedFault(), fontMetrics().averageCharWidth() * kShortCharacters);
  lines->setObjectName(QStringLiteral("pteExpression"));
  lines->setAccessibleName(tr("The expression, with a mark below the fault"));
  grid.addWidget(lines, grid.rowCount(), kTextColumn);
}

void Interface_MathParserCheck::addAdvice(QGridLayout& grid) {
  if (!m_report.advice.isEmpty()) {
    QLabel* advice = selectableLabel(m_report.advice, tr("What to do"));
    advice->setObjectName(QStringLiteral("lblAdvice"));
    grid.addWidget(advice, grid.rowCount(), kTextColumn);
  }
  if (m_report.nearestNames.isEmpty()) {
    return;
  }
  QStringList links;
  for (qsizetype i = 0; i < m_report.nearestNames.size(); ++i) {
    links += QStringLiteral("<a href='%1'>%2</a>")
                 .arg(QString::number(i), m_report.nearestNames[i].toHtmlEscaped());
  }
  auto* names = new QLabel(tr("Use instead: %1").arg(links.join(QStringLiteral("&nbsp;&nbsp; "))));
  names->setObjectName(QStringLiteral("lblNames"));
  names->setTextFormat(Qt::RichText);
  names->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  names->setWordWrap(true);
  names->setAccessibleName(tr("Names that may have been meant"));
  names->setToolTip(tr("Puts the name into the expression"));
  connect(names, &QLabel::linkActivated, this, [this](const QString& link) {
    emit nameChosen(m_report.nearestNames[link.toInt()]);
    accept();
  });
  grid.addWidget(names, grid.rowCount(), kTextColumn);
}

void Interface_MathParserCheck::addPicture(QGridLayout& grid) {
  const QString path = explanationPicture(m_report.text);
  if (path.isEmpty()) {
    return;
  }
  auto* picture = new QLabel;
  picture->setObjectName(QStringLiteral("lblExplanation"));
  picture->setPixmap(QPixmap(path));
  picture->setProperty("path", path);
  picture->setAccessibleName(tr("A picture of the mistake"));
  grid.addWidget(picture, grid.rowCount(), kTextColumn, Qt::AlignLeft);
}

QWidget* Interface_MathParserCheck::makeButtons() {
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  buttons->setContentsMargins(kMargin, kSpacing, kMargin, kMargin);
  buttons->button(QDialogButtonBox::Close)->setDefault(m_report.position < 0);
  QPushButton* copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
  copy->setObjectName(QStringLiteral("pbCopy"));
  copy->setToolTip(tr("Copies the message and the expression as text"));
  connect(copy, &QPushButton::clicked, this,
          [this] { QApplication::clipboard()->setText(plainText()); });
  if (m_report.position >= 0) {
    QPushButton* show = buttons->addButton(tr("&Go there"), QDialogButtonBox::ActionRole);
    show->setObjectName(QStringLiteral("pbGoThere"));
    show->setToolTip(tr("Selects the fault in the expression"));
    show->setDefault(true);
    connect(show, &QPushButton::clicked, this,
            [this] { emit goThere(m_report.position, m_report.size); });
  }
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  return buttons;
}

// As tall as the text needs, yet no larger than the screen; what is longer scrolls.
void Interface_MathParserCheck::fitToScreen(const QWidget& content, int buttonsHeight) {
  const QSize available = screen()->availableGeometry().size() * 9 / 10;
  const int wanted = fontMetrics().averageCharWidth() * kCharactersInLine + 2 * kMargin;
  const int width = std::min(available.width(), std::max(wanted, content.sizeHint().width()));
  const int height = content.layout()->totalHeightForWidth(width);
  const int contentHeight = height < 0 ? content.sizeHint().height() : height;
  const bool scrolls = contentHeight + buttonsHeight > available.height();
  const int bar = scrolls ? style()->pixelMetric(QStyle::PM_ScrollBarExtent) : 0;
  resize(std::min(available.width(), width + bar),
         std::min(available.height(), contentHeight + buttonsHeight));
}

QString Interface_MathParserCheck::plainText() const {
  QStringList parts = {m_report.text};
  if (!m_report.expression.trimmed().isEmpty()) {
    parts += markedFault();
  }
  parts += m_report.advice;
  parts += m_report.nearestNames.join(QStringLiteral(", "));
  parts.removeAll(QString());
  return parts.join(QStringLiteral("\n\n"));
}

}  // namespace kelvarin
