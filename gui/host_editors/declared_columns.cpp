#include "gui/host_editors/declared_columns.h"

#include <algorithm>

#include "host/tables/csv/csv_head.h"

namespace kelvarin {

namespace {

const QString kColumn = QStringLiteral("Column");
const QString kName = QStringLiteral("name");
const QString kMeta = QStringLiteral("meta");

bool isColumn(const EditedElement& element) {
  return element.name == kColumn;
}

EditedElement columnElement(const ColumnElement& column) {
  EditedElement element;
  element.name = kColumn;
  element.attributes = {{kName, column.name}, {kMeta, column.meta}};
  return element;
}

void replaceColumns(EditedElement& action, const std::vector<ColumnElement>& columns) {
  std::erase_if(action.children, isColumn);
  std::ranges::transform(columns, std::back_inserter(action.children), columnElement);
}

// Whether the elements give names rather than types alone.
bool nameInOrder(const std::vector<ColumnElement>& elements, const TableLook& look) {
  for (const ColumnElement& element : elements) {
    bool isGenerated = false;
    for (std::size_t i = 0; i < look.columns.size() && !isGenerated; ++i) {
      isGenerated = element.name == generatedColumnName(static_cast<qsizetype>(i));
    }
    if (!isGenerated) {
      return true;
    }
  }
  return false;
}

// Elements for the first `count` columns, with the names and types that they have now.
std::vector<ColumnElement> elementsInOrder(const TableLook& look, std::size_t count) {
  std::vector<ColumnElement> elements;
  for (std::size_t i = 0; i < std::min(count, look.columns.size()); ++i) {
    elements.push_back({look.columns[i].name, metaCode(look.columns[i].type)});
  }
  return elements;
}

std::size_t indexOf(const TableLook& look, const QString& name) {
  const auto found = std::ranges::find(look.columns, name, &TableLook::Column::name);
  return static_cast<std::size_t>(found - look.columns.begin());
}

}  // namespace

QString metaCode(MetaTypeColumn type) {
  return QString(QLatin1Char(static_cast<char>(type)));
}

std::vector<ColumnElement> columnElements(const EditedElement& action) {
  std::vector<ColumnElement> elements;
  for (const EditedElement& child : action.children) {
    if (isColumn(child)) {
      elements.push_back({child.attribute(kName), child.attribute(kMeta)});
    }
  }
  return elements;
}

void setColumnType(EditedElement& action, const TableLook& look, const QString& name,
                   const QString& meta, bool hasHeader) {
  const std::vector<ColumnElement> elements = columnElements(action);
  const std::size_t column = indexOf(look, name);
  if (!hasHeader && column < look.columns.size() && nameInOrder(elements, look)) {
    auto ordered = elementsInOrder(look, std::max(elements.size(), column + 1));
    ordered[column].meta = meta.isEmpty() ? metaCode(look.columns[column].found) : meta;
    replaceColumns(action, ordered);
    return;
  }
  const auto isIt = [&](const EditedElement& child) {
    return isColumn(child) && child.attribute(kName) == name;
  };
  const auto child = std::ranges::find_if(action.children, isIt);
  if (meta.isEmpty()) {
    std::erase_if(action.children, isIt);
  } else if (child == action.children.end()) {
    action.children.push_back(columnElement({name, meta}));
  } else {
    child->setAttribute(kMeta, meta);
  }
}

void renameColumn(EditedElement& action, const TableLook& look, int column, const QString& name) {
  std::size_t last = static_cast<std::size_t>(column);
  for (const ColumnElement& element : columnElements(action)) {
    if (const std::size_t index = indexOf(look, element.name); index < look.columns.size()) {
      last = std::max(last, index);
    }
  }
  auto elements = elementsInOrder(look, last + 1);
  elements[static_cast<std::size_t>(column)].name = name;
  replaceColumns(action, elements);
}

}  // namespace kelvarin
