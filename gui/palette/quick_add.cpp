#include "gui/palette/quick_add.h"

#include <QScreen>
#include <QVBoxLayout>

#include "gui/palette/action_chooser.h"

namespace kelvarin {

namespace {

// Inside the screen, with its corner at the position where that is possible.
QPoint insideScreen(QPoint wanted, QSize size, const QRect& screen) {
  return {qBound(screen.left(), wanted.x(), qMax(screen.left(), screen.right() - size.width())),
          qBound(screen.top(), wanted.y(), qMax(screen.top(), screen.bottom() - size.height()))};
}

}  // namespace

QuickAdd::QuickAdd(const ActionCatalogue& catalogue, ActionFilter fits, QWidget* parent)
    : QFrame(parent, Qt::Popup), m_chooser(new ActionChooser(catalogue, std::move(fits))) {
  setAttribute(Qt::WA_DeleteOnClose);
  setFrameShape(QFrame::StyledPanel);
  setAccessibleName(tr("Add an action"));
  connect(m_chooser, &ActionChooser::chosen, this, [this](const QString& typeName) {
    close();
    emit chosen(typeName);
  });
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(8, 8, 8, 8);
  layout->addWidget(m_chooser);
}

void QuickAdd::open(QPoint globalPosition, const QString& typed) {
  const int letter = fontMetrics().averageCharWidth();
  resize(32 * letter, 16 * fontMetrics().lineSpacing());
  move(insideScreen(globalPosition, size(), screen()->availableGeometry()));
  show();
  m_chooser->startSearch(typed);
}

}  // namespace kelvarin
