#include "gui/palette/palette_panel.h"

#include <QVBoxLayout>

#include "gui/palette/action_chooser.h"

namespace kelvarin {

PalettePanel::PalettePanel(const ActionCatalogue& catalogue, QWidget* parent)
    : QWidget(parent),
      m_chooser(new ActionChooser(catalogue, [](const CatalogueEntry&) { return true; })) {
  m_chooser->setDragEnabled(true);
  connect(m_chooser, &ActionChooser::chosen, this, &PalettePanel::chosen);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(8, 8, 8, 8);
  layout->addWidget(m_chooser);
  setFocusProxy(m_chooser);
}

void PalettePanel::focusSearch() {
  m_chooser->startSearch({});
}

}  // namespace kelvarin
