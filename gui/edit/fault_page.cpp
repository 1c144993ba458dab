#include "gui/edit/fault_page.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "host/widgets/icons.h"

namespace kelvarin {

FaultPage::FaultPage(QWidget* parent)
    : QWidget(parent), m_title(new QLabel), m_faults(new QTreeWidget) {
  m_title->setWordWrap(true);
  m_title->setTextFormat(Qt::PlainText);
  m_title->setBuddy(m_faults);
  m_faults->setObjectName(QStringLiteral("faults"));
  m_faults->setAccessibleName(tr("Faults of the graph"));
  m_faults->setHeaderLabels({tr("Line"), tr("Column"), tr("What is wrong")});
  m_faults->setRootIsDecorated(false);
  m_faults->setWordWrap(true);
  m_faults->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  m_faults->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  auto* reload = new QPushButton(icon(IconName::reload), tr("&Read the file again"));
  auto* copyButton = new QPushButton(icon(IconName::copy), tr("&Copy all"));
  connect(reload, &QPushButton::clicked, this, &FaultPage::reloadWanted);
  connect(copyButton, &QPushButton::clicked, this, &FaultPage::copy);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(copyButton);
  buttons->addWidget(reload);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(16, 16, 16, 16);
  layout->setSpacing(12);
  layout->addWidget(m_title);
  layout->addWidget(m_faults);
  layout->addLayout(buttons);
}

void FaultPage::setFaults(const QString& file, const std::vector<GraphError>& faults) {
  m_title->setText(
      tr("%1 cannot be opened: %n fault(s). Mend the file with a text editor, then read "
         "it again.",
         nullptr, static_cast<int>(faults.size()))
          .arg(file));
  m_faults->clear();
  for (const GraphError& fault : faults) {
    auto* item = new QTreeWidgetItem(m_faults);
    if (fault.position.line > 0) {
      item->setText(0, QString::number(fault.position.line));
      item->setText(1, QString::number(fault.position.column));
    }
    item->setText(2, fault.message);
    item->setToolTip(2, fault.text());
  }
}

void FaultPage::copy() {
  QStringList lines;
  for (int i = 0; i < m_faults->topLevelItemCount(); ++i) {
    lines += m_faults->topLevelItem(i)->toolTip(2);
  }
  QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

}  // namespace kelvarin
