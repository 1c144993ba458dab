#include "gui/window/start_page.h"

#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

#include "gui/window/window_state.h"
#include "host/widgets/icons.h"

namespace kelvarin {

namespace {

constexpr int kShownRecent = 8;
constexpr QSize kPictureSize{208, 112};
constexpr int kExamplesInRow = 3;
constexpr int kWidth = 760;

QLabel* heading(const QString& text, double factor) {
  auto* label = new QLabel(text);
  label->setWordWrap(true);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * factor);
  label->setFont(font);
  return label;
}

QString shownFolder(const QString& path) {
  const QString folder = QFileInfo(path).absolutePath();
  const QString home = QDir::homePath();
  return folder.startsWith(home + u'/') ? u'~' + folder.mid(home.size()) : folder;
}

}  // namespace

StartPage::StartPage(QWidget* parent) : QWidget(parent), m_recent(new QListWidget) {
  setObjectName(QStringLiteral("startPage"));
  auto* column = new QWidget;
  column->setMaximumWidth(kWidth);
  auto* parts = new QVBoxLayout(column);
  parts->setContentsMargins(16, 16, 16, 16);
  parts->setSpacing(16);
  parts->addWidget(newHeader());
  m_recentPart = newRecent();
  parts->addWidget(m_recentPart);
  m_examplesPart = newExamples();
  m_examplesPart->hide();
  parts->addWidget(m_examplesPart);
  parts->addStretch(1);

  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  auto* centred = new QWidget;
  auto* row = new QHBoxLayout(centred);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch(1);
  row->addWidget(column, 100);
  row->addStretch(1);
  area->setWidget(centred);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(area);
  refresh();
}

QWidget* StartPage::newHeader() {
  auto* header = new QWidget;
  auto* make = new QPushButton(icon(IconName::add), tr("&New graph"));
  make->setDefault(true);
  auto* open = new QPushButton(icon(IconName::browse), tr("&Open ..."));
  connect(make, &QPushButton::clicked, this, &StartPage::newWanted);
  connect(open, &QPushButton::clicked, this, &StartPage::openWanted);
  auto* tour = new QPushButton(icon(IconName::help), tr("Take the &tour"));
  tour->setObjectName(QStringLiteral("takeTour"));
  tour->setToolTip(tr("Five steps through an example; you can leave at any time."));
  connect(tour, &QPushButton::clicked, this, &StartPage::tourWanted);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  buttons->addWidget(make);
  buttons->addWidget(open);
  buttons->addWidget(tour);
  buttons->addStretch(1);
  auto* hint = new QLabel(
      tr("Or drop a data file here: CSV, Parquet, Arrow or a columnar file. You see its first "
         "rows at once."));
  hint->setWordWrap(true);
  auto* layout = new QVBoxLayout(header);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(12);
  layout->addWidget(heading(tr("Draw a graph of actions"), 1.75));
  layout->addLayout(buttons);
  layout->addWidget(hint);
  return header;
}

QWidget* StartPage::newRecent() {
  m_recent->setObjectName(QStringLiteral("recentGraphs"));
  m_recent->setAccessibleName(tr("Recent graphs"));
  m_recent->setFrameShape(QFrame::NoFrame);
  m_recent->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_recent->setTextElideMode(Qt::ElideMiddle);
  connect(m_recent, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
    emit graphWanted(item->data(Qt::UserRole).toString());
  });
  auto* part = new QWidget;
  auto* title = heading(tr("&Recent graphs"), 1.25);
  title->setBuddy(m_recent);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  layout->addWidget(title);
  layout->addWidget(m_recent);
  return part;
}

QWidget* StartPage::newExamples() {
  auto* part = new QWidget;
  auto* row = new QWidget;
  m_examples = new QGridLayout(row);
  m_examples->setContentsMargins(0, 0, 0, 0);
  m_examples->setSpacing(12);
  m_examples->setColumnStretch(kExamplesInRow, 1);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  layout->addWidget(heading(tr("Examples"), 1.25));
  layout->addWidget(row);
  return part;
}

void StartPage::refresh() {
  m_recent->clear();
  const QStringList graphs = recentGraphs().mid(0, kShownRecent);
  for (const QString& path : graphs) {
    auto* item = new QListWidgetItem(
        QStringLiteral("%1   %2").arg(QFileInfo(path).fileName(), shownFolder(path)), m_recent);
    item->setData(Qt::UserRole, path);
    item->setToolTip(path);
  }
  const int rowHeight = m_recent->sizeHintForRow(0);
  m_recent->setFixedHeight(static_cast<int>(graphs.size()) * rowHeight + 4);
  m_recentPart->setVisible(!graphs.isEmpty());
}

void StartPage::addExample(const QString& path, const QString& title, const QString& description,
                           const QPixmap& picture) {
  auto* button = new QToolButton;
  button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  button->setIcon(picture);
  button->setIconSize(kPictureSize);
  button->setText(title);
  button->setToolTip(description);
  button->setAccessibleName(title);
  button->setAccessibleDescription(description);
  button->setAutoRaise(true);
  connect(button, &QToolButton::clicked, this, [this, path] { emit exampleWanted(path); });
  const int index = m_examples->count();
  m_examples->addWidget(button, index / kExamplesInRow, index % kExamplesInRow);
  m_examplesPart->show();
}

}  // namespace kelvarin
