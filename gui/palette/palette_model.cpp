#include "gui/palette/palette_model.h"

#include <QMimeData>

#include "gui/document/action_type_mime.h"
#include "host/contract/action_item.h"
#include "host/widgets/action_icon.h"

namespace kelvarin {

namespace {

constexpr int kPictureSize = 24;

QStandardItem* itemOf(const CatalogueEntry& entry) {
  auto* item = new QStandardItem(actionIcon(*entry.prototype, kPictureSize), entry.typeName);
  item->setData(entry.typeName, PaletteModel::typeRole);
  item->setToolTip(entry.toolTip);
  item->setData(QStringLiteral("%1, %2").arg(entry.typeName, entry.toolTip),
                Qt::AccessibleTextRole);
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled);
  return item;
}

}  // namespace

PaletteModel::PaletteModel(const ActionCatalogue& catalogue, ActionFilter fits, QObject* parent)
    : QStandardItemModel(parent), m_catalogue(catalogue), m_fits(std::move(fits)) {
  search({});
}

void PaletteModel::search(const QString& text) {
  clear();
  if (!text.trimmed().isEmpty()) {
    for (const CatalogueEntry* entry : searchActions(m_catalogue, text, m_fits)) {
      appendRow(itemOf(*entry));
    }
    return;
  }
  for (const ActionGroup& group : actionGroups(m_catalogue, m_fits)) {
    auto* parent = new QStandardItem(group.name);
    parent->setFlags(Qt::ItemIsEnabled);
    for (const CatalogueEntry* entry : group.actions) {
      parent->appendRow(itemOf(*entry));
    }
    appendRow(parent);
  }
}

QModelIndex PaletteModel::firstAction() const {
  const QModelIndex first = index(0, 0);
  return hasChildren(first) ? index(0, 0, first) : first;
}

QStringList PaletteModel::mimeTypes() const {
  return {QLatin1String(kActionTypeMime)};
}

QMimeData* PaletteModel::mimeData(const QModelIndexList& indexes) const {
  if (indexes.isEmpty()) {
    return nullptr;
  }
  auto* data = new QMimeData;
  data->setData(QLatin1String(kActionTypeMime), indexes.front().data(typeRole).toString().toUtf8());
  return data;
}

}  // namespace kelvarin
