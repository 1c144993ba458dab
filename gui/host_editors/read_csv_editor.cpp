#include "gui/host_editors/read_csv_editor.h"

#include <QLineEdit>
#include <QTabWidget>

#include "gui/host_editors/csv_raw_view.h"
#include "gui/host_editors/csv_settings_fields.h"
#include "host/tables/csv/csv_batch_reader.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

namespace {

QString separatorInWords(const QString& separator) {
  return separator == u"\\t" ? ReadCsvEditor::tr("TAB") : separator;
}

}  // namespace

struct ReadCsvEditor::Start {
  CsvGuess guess;
  std::vector<CsvRawLine> lines;
};

ReadCsvEditor::ReadCsvEditor(ActionItem& action, QWidget* parent)
    : ReadTableEditor(action, parent), m_found(new InfoLine), m_raw(new CsvRawView) {
  m_found->setObjectName(QStringLiteral("found"));
  m_raw->setObjectName(QStringLiteral("raw"));
  m_raw->setAccessibleName(tr("First lines of the file"));
  connect(m_found, &InfoLine::linkActivated, this, &ReadCsvEditor::takeGuess);
  page().addWidget(m_found);
  QFormLayout& form = settings();
  addChoice(form, QStringLiteral("separator"), tr("&Separator:"), newSeparatorField());
  addChoice(form, QStringLiteral("quote"), tr("&Quote:"), newQuoteField());
  addFlag(form, QStringLiteral("header"), tr("The first line &names the columns"));
  addChoice(form, QStringLiteral("nullText"), tr("N&ull is written as:"), newNullTextField());
  addLine(form, QStringLiteral("sortedOn"), tr("S&orted on:"))
      ->setPlaceholderText(tr("for instance: id 0, name A"));
  pages().addTab(m_raw, tr("As it s&tands"));
  addPages();
}

QString ReadCsvEditor::filter() const {
  return tr("CSV files (*.csv *.tsv *.txt);;All files (*)");
}

Result<CsvDialect, QString> ReadCsvEditor::dialect() const {
  return CsvSettings(action().node(), &parameters()).dialect([this](const QString& text) {
    return action().expandString(text);
  });
}

bool ReadCsvEditor::hasHeader() const {
  const auto now = dialect();
  return !now || now->hasHeader;
}

MakeBatchReader ReadCsvEditor::reader(const QString& path) const {
  return [path, dialect = dialect()](
             const ColumnRules& rules) -> Result<std::unique_ptr<BatchReader>, QString> {
    if (!dialect) {
      return Failure{dialect.error()};
    }
    return std::unique_ptr<BatchReader>(std::make_unique<CsvBatchReader>(path, *dialect, rules));
  };
}

void ReadCsvEditor::look() {
  ReadTableEditor::look();
  const QString file = path();
  if (file.isEmpty()) {
    m_startTask.forget();
    showStart({});
    return;
  }
  const auto now = dialect();
  m_startTask.start<Start>(
      [file, dialect = now ? *now : CsvDialect()](
          const BackgroundTask::IsStopped&) -> Result<Start, QString> {
        if (const QString why = whyNotLookedInto(file); !why.isEmpty()) {
          return Failure{why};
        }
        const auto start = readCsvStart(file);
        if (!start) {
          return Failure{start.error()};
        }
        return Start{guessCsv(start->bytes, start->isWhole),
                     csvRawLines(start->bytes, dialect, start->isWhole)};
      },
      [this](const Result<Start, QString>& start) { showStart(start ? *start : Start()); });
}

void ReadCsvEditor::showStart(const Start& start) {
  m_guess = start.guess;
  m_raw->setLines(start.lines);
  if (m_guess.columnCount == 0 || !m_guess.isUtf8) {
    m_found->clear();
    return;
  }
  const auto now = dialect();
  const bool areFieldsRight = now && areFieldsAsGuessed(*now);
  std::vector<InfoLink> links;
  if (!areFieldsRight || !areValuesAsGuessed(*now)) {
    links.push_back({QStringLiteral("take"), tr("Use these settings")});
  }
  const bool isFine = areFieldsRight && !m_guess.hasDecimalCommas;
  m_found->setMessage(isFine ? Severity::information : Severity::warning, guessInWords(), links);
}

QString ReadCsvEditor::guessInWords() const {
  QStringList parts{tr("separator '%1'").arg(separatorInWords(m_guess.separator)),
                    tr("quote '%1'").arg(m_guess.quote),
                    m_guess.hasHeader ? tr("with a line of names") : tr("without a line of names"),
                    m_guess.hasByteOrderMark ? tr("UTF-8 with byte order mark") : tr("UTF-8")};
  if (!m_guess.lineEnd.isEmpty()) {
    parts += tr("line ends %1").arg(m_guess.lineEnd);
  }
  if (!m_guess.nullText.isEmpty()) {
    parts += tr("null is written as '%1'").arg(m_guess.nullText);
  }
  QString text = tr("The file looks like: %1.").arg(parts.join(QStringLiteral(", ")));
  if (m_guess.hasDecimalCommas) {
    text += u' ' + tr("It has numbers with a decimal comma. They are read as text; a Calculator "
                      "behind this action makes numbers of them.");
  }
  return text;
}

bool ReadCsvEditor::areFieldsAsGuessed(const CsvDialect& now) const {
  const QString separator =
      now.separator == '\t' ? QStringLiteral("\\t") : QString(QLatin1Char(now.separator));
  const bool isQuoteRight = now.hasQuote && m_guess.quote == QLatin1Char(now.quote);
  return (m_guess.columnCount == 1 || separator == m_guess.separator) &&
         (!m_guess.hasQuotes || isQuoteRight);
}

bool ReadCsvEditor::areValuesAsGuessed(const CsvDialect& now) const {
  const bool isNullRight =
      m_guess.nullText.isEmpty() || m_guess.nullText.toStdString() == now.nullText;
  return isNullRight && now.hasHeader == m_guess.hasHeader;
}

void ReadCsvEditor::takeGuess() {
  setField(QStringLiteral("separator"), m_guess.separator);
  setField(QStringLiteral("quote"), m_guess.quote);
  setField(QStringLiteral("header"), m_guess.hasHeader ? QStringLiteral("1") : QStringLiteral("0"));
  if (!m_guess.nullText.isEmpty()) {
    setField(QStringLiteral("nullText"), m_guess.nullText);
  }
  commit();
}

}  // namespace kelvarin
