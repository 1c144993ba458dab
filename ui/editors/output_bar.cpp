#include "ui/editors/output_bar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTabBar>

#include "host/widgets/icon_button.h"
#include "host/widgets/icons.h"
#include "host/widgets/key_list.h"

namespace kelvarin {

namespace {

// An ampersand would be read as a mnemonic.
QString shownName(const QString& name) {
  return name.isEmpty() ? OutputBar::tr("(no name)")
                        : QString(name).replace(u'&', QStringLiteral("&&"));
}

constexpr int kLettersInSight = 8;

// Of many outputs some are scrolled to, rather than that no name can be read.
class OutputTabs : public QTabBar {
 public:
  using QTabBar::QTabBar;

 protected:
  QSize minimumTabSizeHint(int index) const override {
    const int letters = fontMetrics().averageCharWidth() * kLettersInSight;
    const int text = fontMetrics().horizontalAdvance(tabText(index));
    QSize size = tabSizeHint(index);
    size.rwidth() -= qMax(0, text - letters);
    return size;
  }
};

IconButton* namedButton(const char* name, IconName icon, const QString& text, QWidget* parent) {
  auto* button = new IconButton(icon, text, parent);
  button->setObjectName(QLatin1String(name));
  return button;
}

}  // namespace

OutputBar::OutputBar(QWidget* parent)
    : QWidget(parent),
      m_tabs(new OutputTabs(this)),
      m_add(namedButton("pbAdd", IconName::add, tr("Add an output"), this)),
      m_left(namedButton("pbLeft", IconName::left, tr("Move the output to the left"), this)),
      m_right(namedButton("pbRight", IconName::right, tr("Move the output to the right"), this)) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(m_tabs, 1);
  layout->addWidget(m_add);
  layout->addWidget(m_left);
  layout->addWidget(m_right);
  m_tabs->setObjectName(QStringLiteral("outputs"));
  m_tabs->setAccessibleName(tr("Outputs"));
  m_tabs->setToolTip(tr("A double click or F2 renames an output, Del removes it."));
  m_tabs->setExpanding(false);
  m_tabs->setDrawBase(false);
  m_tabs->setUsesScrollButtons(true);
  m_tabs->setElideMode(Qt::ElideRight);
  m_tabs->setFocusPolicy(Qt::StrongFocus);
  m_tabs->installEventFilter(this);
  describeKey(*m_tabs, Qt::Key_F2, tr("Rename the output"), m_tabs->accessibleName());
  describeKey(*m_tabs, Qt::Key_Delete, tr("Remove the output"), m_tabs->accessibleName());
  connect(m_tabs, &QTabBar::currentChanged, this, [this](int output) {
    updateButtons();
    emit chosen(output);
  });
  connect(m_tabs, &QTabBar::tabCloseRequested, this, &OutputBar::deleteWanted);
  connect(m_tabs, &QTabBar::tabBarDoubleClicked, this, [this](int output) {
    if (output >= 0) {
      emit renameWanted(output);
    }
  });
  connect(m_add, &QToolButton::clicked, this, &OutputBar::addWanted);
  connect(m_left, &QToolButton::clicked, this, [this] { emit moveWanted(true); });
  connect(m_right, &QToolButton::clicked, this, [this] { emit moveWanted(false); });
}

void OutputBar::setOutputs(const QStringList& names, int current) {
  const QSignalBlocker blocker(m_tabs);
  while (m_tabs->count() > names.size()) {
    m_tabs->removeTab(m_tabs->count() - 1);
  }
  while (m_tabs->count() < names.size()) {
    m_tabs->addTab(QString());
  }
  for (int i = 0; i < names.size(); ++i) {
    setName(i, names[i]);
  }
  m_tabs->setTabsClosable(names.size() > 1);
  m_tabs->setCurrentIndex(current);
  updateButtons();
}

void OutputBar::setName(int output, const QString& name) {
  m_tabs->setTabText(output, shownName(name));
}

void OutputBar::setRefused(int output, bool isRefused) {
  m_tabs->setTabIcon(output, isRefused ? icon(Severity::error) : QIcon());
  m_tabs->setTabToolTip(output, isRefused ? tr("The expression is wrong.") : QString());
}

void OutputBar::setCurrent(int output) {
  const QSignalBlocker blocker(m_tabs);
  m_tabs->setCurrentIndex(output);
  updateButtons();
}

void OutputBar::updateButtons() {
  m_left->setEnabled(m_tabs->currentIndex() > 0);
  m_right->setEnabled(m_tabs->currentIndex() + 1 < m_tabs->count());
}

bool OutputBar::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_F2) {
      emit renameWanted(m_tabs->currentIndex());
      return true;
    }
    if (key == Qt::Key_Delete) {
      emit deleteWanted(m_tabs->currentIndex());
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace kelvarin
