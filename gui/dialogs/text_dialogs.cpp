#include "gui/dialogs/text_dialogs.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QHeaderView>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "host/widgets/key_list.h"

namespace kelvarin {

namespace {

class TextDialogs {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::TextDialogs)
};

void showWith(QWidget* content, const QString& title, QWidget* parent) {
  auto* dialog = new QDialog(parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(title);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  auto* layout = new QVBoxLayout(dialog);
  layout->setContentsMargins(12, 12, 12, 12);
  layout->setSpacing(8);
  layout->addWidget(content);
  layout->addWidget(buttons);
  const int unit = dialog->fontMetrics().averageCharWidth();
  dialog->resize(unit * 90, dialog->fontMetrics().height() * 32);
  dialog->show();
}

}  // namespace

bool showActionPage(const QString& typeName, QWidget* parent) {
  QFile page(QStringLiteral(":/kelvarin/help/%1.md").arg(typeName));
  if (!page.open(QIODevice::ReadOnly)) {
    return false;
  }
  auto* browser = new QTextBrowser;
  browser->setAccessibleName(typeName);
  browser->setOpenLinks(false);  // the other pages are not here
  browser->setMarkdown(QString::fromUtf8(page.readAll()));
  showWith(browser, TextDialogs::tr("%1: help").arg(typeName), parent);
  return true;
}

void showKeys(QWidget* window) {
  auto* keys = new QTreeWidget;
  keys->setAccessibleName(TextDialogs::tr("Keys"));
  keys->setRootIsDecorated(false);
  keys->setHeaderLabels(
      {TextDialogs::tr("What it does"), TextDialogs::tr("Key"), TextDialogs::tr("Where")});
  keys->header()->setStretchLastSection(false);
  keys->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  keys->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  keys->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
  for (const KeyMeaning& key : keysOf(*window)) {
    new QTreeWidgetItem(keys, {key.what, key.keys, key.where});
  }
  showWith(keys, TextDialogs::tr("Keyboard"), window);
}

}  // namespace kelvarin
