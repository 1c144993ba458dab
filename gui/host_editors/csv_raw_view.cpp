#include "gui/host_editors/csv_raw_view.h"

#include <utility>

#include <QEvent>
#include <QFontDatabase>
#include <QSyntaxHighlighter>
#include <QTextOption>

#include "host/widgets/theme.h"

namespace kelvarin {

namespace {

// Behind the text of a line, so that line ends of two kinds differ.
QString shownLineEnd(const CsvRawLine& line) {
  return (line.isCut ? QStringLiteral("...") : QString()) +
         (line.lineEnd.isEmpty() ? QString() : QStringLiteral("\u2003[%1]").arg(line.lineEnd));
}

}  // namespace

class CsvRawView::Highlighter : public QSyntaxHighlighter {
 public:
  explicit Highlighter(CsvRawView& view) : QSyntaxHighlighter(view.document()), m_view(view) {}

  std::vector<CsvRawLine> m_lines;

 protected:
  void highlightBlock(const QString& text) override {
    const auto number = static_cast<std::size_t>(currentBlock().blockNumber());
    if (number >= m_lines.size()) {
      return;
    }
    const CsvRawLine& line = m_lines[number];
    const QPalette palette = m_view.palette();
    QTextCharFormat separator;
    separator.setForeground(severityColor(Severity::error, palette));
    separator.setFontWeight(QFont::Bold);
    QTextCharFormat quote;
    quote.setForeground(severityColor(Severity::success, palette));
    quote.setFontWeight(QFont::Bold);
    for (const CsvRawLine::Mark& mark : line.marks) {
      setFormat(mark.position, 1, mark.isQuote ? quote : separator);
    }
    QTextCharFormat end;
    end.setForeground(palette.placeholderText());
    setFormat(static_cast<int>(line.text.size()), static_cast<int>(text.size() - line.text.size()),
              end);
  }

 private:
  CsvRawView& m_view;
};

CsvRawView::CsvRawView(QWidget* parent)
    : QPlainTextEdit(parent), m_highlighter(new Highlighter(*this)) {
  setReadOnly(true);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setTabChangesFocus(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  QTextOption option = document()->defaultTextOption();
  option.setFlags(option.flags() | QTextOption::ShowTabsAndSpaces);
  document()->setDefaultTextOption(option);
}

void CsvRawView::setLines(std::vector<CsvRawLine> lines) {
  QStringList texts;
  for (const CsvRawLine& line : lines) {
    QString text = line.text;
    text.replace(QChar::Null, QChar(0x2400));  // a text would end there
    texts += text + shownLineEnd(line);
  }
  m_highlighter->m_lines = std::move(lines);
  setPlainText(texts.join(u'\n'));
}

void CsvRawView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) {
    m_highlighter->rehighlight();
  }
  QPlainTextEdit::changeEvent(event);
}

}  // namespace kelvarin
