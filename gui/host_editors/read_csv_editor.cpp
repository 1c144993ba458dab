#include "gui/host_editors/read_csv_editor.h"

#include <algorithm>
#include <array>

#include <QLineEdit>
#include <QScrollArea>
#include <QTabWidget>

#include "gui/host_editors/csv_raw_view.h"
#include "gui/host_editors/csv_settings_fields.h"
#include "host/tables/csv/csv_batch_reader.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

namespace {

// On a page of their own: most files need none of them.
const std::array kForeignAttributes{
    QLatin1String("encoding"),  QLatin1String("nullTexts"), QLatin1String("decimal"),
    QLatin1String("thousands"), QLatin1String("skipLines"), QLatin1String("comment"),
    QLatin1String("short"),     QLatin1String("long"),      QLatin1String("fileColumn")};

QString separatorInWords(char separator) {
  return separator == '\t' ? ReadCsvEditor::tr("TAB") : separatorText(separator);
}

// With what is left to a look at the file.
CsvDialect dialectOf(const CsvFileSettings& settings, const CsvStart& start) {
  CsvDialect dialect = settings.dialect;
  const CsvGuess guess = guessCsv(start.text, start.isWhole, dialect, settings.guessed);
  dialect.separator = guess.separator;
  dialect.quote = guess.quote;
  return dialect;
}

}  // namespace

struct ReadCsvEditor::Start {
  CsvGuess guess;
  TextEncoding encoding = TextEncoding::utf8;
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
  addChoice(form, QStringLiteral("separator"), tr("&Separator:"),
            newSeparatorField(CsvUse::reading));
  addChoice(form, QStringLiteral("quote"), tr("&Quote:"), newQuoteField(CsvUse::reading));
  addFlag(form, QStringLiteral("header"), tr("The first line &names the columns"));
  addChoice(form, QStringLiteral("nullText"), tr("N&ull is written as:"), newNullTextField());
  addLine(form, QStringLiteral("sortedOn"), tr("S&orted on:"))
      ->setPlaceholderText(tr("for instance: id 0, name A"));
  pages().addTab(m_raw, tr("As it s&tands"));
  pages().addTab(newForeignPage(), {});
  addPages();
}

// For files as other programs write them.
QWidget* ReadCsvEditor::newForeignPage() {
  QFormLayout& form = *newForm();
  addChoice(form, QStringLiteral("encoding"), tr("Encoding:"), newEncodingField());
  addLine(form, QStringLiteral("nullTexts"), tr("Further nulls:"))
      ->setPlaceholderText(tr("for instance: NA|n/a"));
  addChoice(form, QStringLiteral("decimal"), tr("Decimals after:"), newDecimalField());
  addChoice(form, QStringLiteral("thousands"), tr("Between thousands:"), newThousandsField());
  addLine(form, QStringLiteral("skipLines"), tr("Lines to pass over:"));
  addLine(form, QStringLiteral("comment"), tr("Comments begin with:"));
  addChoice(form, QStringLiteral("short"), tr("Rows with too few fields:"), newShortRowsField());
  addChoice(form, QStringLiteral("long"), tr("Rows with too many fields:"), newLongRowsField());
  addLine(form, QStringLiteral("fileColumn"), tr("Column of file names:"));
  form.setContentsMargins(0, 8, 0, 0);
  auto* fields = new QWidget;
  fields->setLayout(&form);
  m_foreign = new QScrollArea;
  m_foreign->setWidget(fields);
  m_foreign->setWidgetResizable(true);
  m_foreign->setFrameShape(QFrame::NoFrame);
  m_foreign->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  return m_foreign;
}

// What is set there is seen without opening it.
void ReadCsvEditor::showForeignCount() {
  const auto count = std::ranges::count_if(kForeignAttributes, [this](QLatin1String attribute) {
    return !element().attribute(attribute).isNull();
  });
  QTabWidget& tabs = pages();
  tabs.setTabText(tabs.indexOf(m_foreign),
                  count == 0 ? tr("More settings") : tr("Mor&e settings (%1)").arg(count));
}

QString ReadCsvEditor::filter() const {
  return tr("CSV files (*.csv *.tsv *.txt);;All files (*)");
}

Result<CsvFileSettings, QString> ReadCsvEditor::csvSettings() const {
  return CsvReadSettings(action().node(), &parameters()).settings([this](const QString& text) {
    return action().expandString(text);
  });
}

bool ReadCsvEditor::hasHeader() const {
  const auto now = csvSettings();
  return !now || now->dialect.hasHeader;
}

MakeBatchReader ReadCsvEditor::reader(const QString& path) const {
  return [path, settings = csvSettings()](
             const ColumnRules& rules) -> Result<std::unique_ptr<BatchReader>, QString> {
    if (!settings) {
      return Failure{settings.error()};
    }
    return std::unique_ptr<BatchReader>(std::make_unique<CsvBatchReader>(path, *settings, rules));
  };
}

void ReadCsvEditor::look() {
  ReadTableEditor::look();
  showForeignCount();
  const QString file = path();
  if (file.isEmpty()) {
    m_startTask.forget();
    showStart({});
    return;
  }
  const auto now = csvSettings();
  m_startTask.start<Start>(
      [file, settings = now ? *now : CsvFileSettings()](
          const BackgroundTask::IsStopped&) -> Result<Start, QString> {
        if (const QString why = whyNotLookedInto(file); !why.isEmpty()) {
          return Failure{why};
        }
        const auto start = readCsvStart(file);
        if (!start) {
          return Failure{start.error()};
        }
        const CsvGuess guess = guessCsv(start->text, start->isWhole, settings.dialect);
        return Start{guess, start->encoding,
                     csvRawLines(start->text, dialectOf(settings, *start), start->isWhole)};
      },
      [this](const Result<Start, QString>& start) { showStart(start ? *start : Start()); });
}

void ReadCsvEditor::showStart(const Start& start) {
  m_guess = start.guess;
  m_encoding = start.encoding;
  m_raw->setLines(start.lines);
  if (m_guess.columnCount == 0) {
    m_found->clear();
    return;
  }
  const auto now = csvSettings();
  const bool areFieldsRight = now && areFieldsAsGuessed(*now);
  const bool areValuesRight = now && areValuesAsGuessed(now->dialect);
  std::vector<InfoLink> links;
  if (!areFieldsRight || !areValuesRight) {
    links.push_back({QStringLiteral("take"), tr("Use these settings")});
  }
  m_found->setMessage(areFieldsRight ? Severity::information : Severity::warning, guessInWords(),
                      links);
}

QString ReadCsvEditor::guessInWords() const {
  QStringList parts{tr("separator '%1'").arg(separatorInWords(m_guess.separator)),
                    tr("quote '%1'").arg(QLatin1Char(m_guess.quote)),
                    m_guess.hasHeader ? tr("with a line of names") : tr("without a line of names"),
                    m_guess.hasByteOrderMark && m_encoding == TextEncoding::utf8
                        ? tr("UTF-8 with byte order mark")
                        : nameOfEncoding(m_encoding)};
  if (!m_guess.lineEnd.isEmpty()) {
    parts += tr("line ends %1").arg(m_guess.lineEnd);
  }
  if (!m_guess.nullText.isEmpty()) {
    parts += tr("null is written as '%1'").arg(m_guess.nullText);
  }
  if (m_guess.numbers.decimal == ',') {
    parts += tr("decimal comma");
  }
  if (m_guess.numbers.thousands != '\0') {
    parts += tr("'%1' between thousands").arg(QLatin1Char(m_guess.numbers.thousands));
  }
  return tr("The file looks like: %1.").arg(parts.join(QStringLiteral(", ")));
}

bool ReadCsvEditor::areFieldsAsGuessed(const CsvFileSettings& now) const {
  const CsvDialect& dialect = now.dialect;
  const bool isSeparatorRight =
      m_guess.columnCount == 1 || now.guessed.isSeparator || dialect.separator == m_guess.separator;
  const bool isQuoteRight = !m_guess.hasQuotes || now.guessed.isQuote ||
                            (dialect.hasQuote && dialect.quote == m_guess.quote);
  return isSeparatorRight && isQuoteRight && now.encoding.value_or(m_encoding) == m_encoding;
}

bool ReadCsvEditor::areValuesAsGuessed(const CsvDialect& now) const {
  const bool isNullRight =
      m_guess.nullText.isEmpty() || m_guess.nullText.toStdString() == now.nullText;
  const bool areNumbersRight =
      m_guess.numbers.isPlain() || (m_guess.numbers.decimal == now.numbers.decimal &&
                                    m_guess.numbers.thousands == now.numbers.thousands);
  return isNullRight && areNumbersRight && now.hasHeader == m_guess.hasHeader;
}

void ReadCsvEditor::takeGuess() {
  setField(QStringLiteral("separator"), separatorText(m_guess.separator));
  setField(QStringLiteral("quote"), QString(QLatin1Char(m_guess.quote)));
  setField(QStringLiteral("header"), m_guess.hasHeader ? QStringLiteral("1") : QStringLiteral("0"));
  setField(QStringLiteral("encoding"), nameOfEncoding(m_encoding));
  if (!m_guess.nullText.isEmpty()) {
    setField(QStringLiteral("nullText"), m_guess.nullText);
  }
  if (!m_guess.numbers.isPlain()) {
    const char thousands = m_guess.numbers.thousands;
    setField(QStringLiteral("decimal"), QString(QLatin1Char(m_guess.numbers.decimal)));
    setField(QStringLiteral("thousands"),
             thousands == '\0' ? QString() : QString(QLatin1Char(thousands)));
  }
  commit();
}

}  // namespace kelvarin
