#include "gui/dialogs/difference_dialog.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "gui/dialogs/line_difference.h"
#include "host/widgets/theme.h"

namespace kelvarin {

namespace {

class DifferenceTexts {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::DifferenceTexts)
};

// With the sign in front, so that more than their colour distinguishes them.
void appendLine(QTextCursor& cursor, const DifferenceLine& line, const QPalette& palette) {
  QTextCharFormat format;
  QString sign = QStringLiteral("  ");
  if (line.kind != DifferenceLine::Kind::both) {
    const bool isFirst = line.kind == DifferenceLine::Kind::onlyFirst;
    sign = isFirst ? QStringLiteral("- ") : QStringLiteral("+ ");
    format.setForeground(severityColor(isFirst ? Severity::error : Severity::success, palette));
  }
  cursor.insertText(sign + line.text + u'\n', format);
}

}  // namespace

void showDifference(const QByteArray& onDisk, const QByteArray& here, QWidget* parent) {
  auto* dialog = new QDialog(parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(DifferenceTexts::tr("What differs"));
  auto* text = new QPlainTextEdit;
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  text->setLineWrapMode(QPlainTextEdit::NoWrap);
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text->setAccessibleName(DifferenceTexts::tr("Lines of both versions"));
  QTextCursor cursor(text->document());
  for (const DifferenceLine& line :
       lineDifference(QString::fromUtf8(onDisk), QString::fromUtf8(here))) {
    appendLine(cursor, line, dialog->palette());
  }
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  auto* layout = new QVBoxLayout(dialog);
  layout->setContentsMargins(12, 12, 12, 12);
  layout->setSpacing(8);
  layout->addWidget(
      new QLabel(DifferenceTexts::tr("- is in the file on the disk, + is in this window.")));
  layout->addWidget(text, 1);
  layout->addWidget(buttons);
  dialog->resize(dialog->fontMetrics().averageCharWidth() * 110,
                 dialog->fontMetrics().height() * 36);
  dialog->show();
}

}  // namespace kelvarin
