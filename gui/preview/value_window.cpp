#include "gui/preview/value_window.h"

#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kelvarin {

namespace {

class ValueWindow : public QDialog {
  Q_OBJECT

 public:
  ValueWindow(const QString& title, const QString& value, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("valueWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(title);
    auto* text = new QPlainTextEdit(value);
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setTabChangesFocus(true);
    text->setAccessibleName(title);
    auto* length = new QLabel(tr("%1 characters").arg(QLocale().toString(value.size())));
    length->setForegroundRole(QPalette::PlaceholderText);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton* copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this,
            [value] { QGuiApplication::clipboard()->setText(value); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(8);
    layout->addWidget(text);
    layout->addWidget(length);
    layout->addWidget(buttons);
    const int unit = fontMetrics().height();
    resize(32 * unit, 16 * unit);
  }
};

}  // namespace

void showValueWindow(const QString& title, const QString& value, QWidget* parent) {
  (new ValueWindow(title, value, parent))->show();
}

}  // namespace kelvarin

#include "value_window.moc"
