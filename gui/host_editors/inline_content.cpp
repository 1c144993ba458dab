#include "gui/host_editors/inline_content.h"

#include <QCoreApplication>
#include <QSet>

#include "host/tables/inline/inline_table.h"
#include "host/tables/inline/messages.h"

namespace kelvarin {

namespace {

namespace messages = inline_table_messages;

const QString kColumn = QStringLiteral("Column");
const QString kRow = QStringLiteral("Row");
const QString kValue = QStringLiteral("V");
const QString kName = QStringLiteral("name");
const QString kMeta = QStringLiteral("meta");
const QString kNull = QStringLiteral("null");
const QString kYes = QStringLiteral("1");

EditedElement elementNamed(const QString& name) {
  EditedElement element;
  element.name = name;
  return element;
}

QString valueOf(const EditedElement& value) {
  if (value.attribute(kNull) == kYes) {
    return {};
  }
  return value.text.isNull() ? QStringLiteral("") : value.text;
}

QString inRow(std::size_t row, const QString& fault) {
  return QCoreApplication::translate("kelvarin::InlineContent", "Row %1: %2").arg(row).arg(fault);
}

QString faultOfColumns(const std::vector<InlineContent::Column>& columns) {
  if (columns.empty()) {
    return messages::noColumns();
  }
  QSet<QString> names;
  for (const InlineContent::Column& column : columns) {
    if (column.name.isEmpty()) {
      return messages::columnWithoutName();
    }
    if (names.contains(column.name)) {
      return messages::columnTwice(column.name);
    }
    names.insert(column.name);
  }
  return {};
}

}  // namespace

MetaTypeColumn typeOf(const InlineContent::Column& column) {
  if (column.meta == u"F") {
    return MetaTypeColumn::number;
  }
  return column.meta == u"K" ? MetaTypeColumn::key : MetaTypeColumn::text;
}

InlineContent InlineContent::of(const EditedElement& action) {
  InlineContent content;
  for (const EditedElement& child : action.children) {
    if (child.name == kColumn) {
      content.columns.push_back({child.attribute(kName), child.attribute(kMeta)});
    } else if (child.name == kRow) {
      Row& row = content.rows.emplace_back();
      for (const EditedElement& value : child.children) {
        row.push_back(valueOf(value));
      }
    }
  }
  return content;
}

void InlineContent::writeTo(EditedElement& action) const {
  action.children.clear();
  for (const Column& column : columns) {
    EditedElement& element = action.children.emplace_back(elementNamed(kColumn));
    element.setAttribute(kName, column.name.isNull() ? QStringLiteral("") : column.name);
    if (!column.meta.isEmpty() && column.meta != u"U") {
      element.setAttribute(kMeta, column.meta);
    }
  }
  for (const Row& row : rows) {
    EditedElement& element = action.children.emplace_back(elementNamed(kRow));
    for (const QString& value : row) {
      EditedElement& child = element.children.emplace_back(elementNamed(kValue));
      if (value.isNull()) {
        child.setAttribute(kNull, kYes);
      } else {
        child.text = value;
      }
    }
  }
}

QStringList InlineContent::faults() const {
  QStringList faults;
  if (const QString fault = faultOfColumns(columns); !fault.isEmpty()) {
    faults += fault;
  }
  QString wrongCount;
  QString wrongValue;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    if (row.size() != columns.size() && wrongCount.isEmpty()) {
      wrongCount = inRow(i, messages::wrongNumberOfValues(static_cast<qsizetype>(row.size()),
                                                          static_cast<qsizetype>(columns.size())));
    }
    for (std::size_t j = 0; j < std::min(row.size(), columns.size()) && wrongValue.isEmpty(); ++j) {
      const QString fault = inlineValueFault(columns[j].name, typeOf(columns[j]), row[j]);
      wrongValue = fault.isEmpty() ? QString() : inRow(i, fault);
    }
  }
  for (const QString& fault : {wrongCount, wrongValue}) {
    if (!fault.isEmpty()) {
      faults += fault;
    }
  }
  return faults;
}

}  // namespace kelvarin
