#include "host/tables/inline/inline_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <QRegularExpression>
#include <QSet>

#include "base/null_number.h"
#include "host/contract/attribute_table.h"
#include "host/contract/main_ui.h"
#include "host/tables/inline/messages.h"
#include "host/tables/sort_order/sort_order.h"

namespace kelvarin {

namespace {

namespace messages = inline_table_messages;

constexpr char16_t kSortedOn[] = u"sortedOn";
constexpr char16_t kColumn[] = u"Column";
constexpr char16_t kRow[] = u"Row";
constexpr char16_t kValue[] = u"V";
constexpr char16_t kName[] = u"name";
constexpr char16_t kMeta[] = u"meta";
constexpr char16_t kNull[] = u"null";

AttributeDescription described(const char16_t* name, const char* meaning,
                               const char* defaultText = "",
                               AttributeKind kind = AttributeKind::text, const char* allowed = "") {
  return {QString::fromUtf16(name), kind, QString::fromUtf8(meaning),
          QString::fromUtf8(defaultText), AllowedValues{.inWords = allowed}};
}

std::vector<ElementDescription> describedElements() {
  ElementDescription value{
      .name = QString::fromUtf16(kValue),
      .meaning = QStringLiteral("the row's value in the next column"),
      .textMeaning = QStringLiteral("the value"),
      .mayRepeat = true,
      .attributes = {described(kNull, "the value is null", "0", AttributeKind::flag)}};
  return {{.name = QString::fromUtf16(kColumn),
           .meaning = QStringLiteral("a column of the table"),
           .mayRepeat = true,
           .attributes = {described(kName, "the column's name"),
                          described(kMeta, "its type", "U", AttributeKind::text,
                                    "F (number), K (key) or U (text)")}},
          {.name = QString::fromUtf16(kRow),
           .meaning = QStringLiteral("a row, with one value a column"),
           .mayRepeat = true,
           .children = {std::move(value)}}};
}

// The whole text, but for blanks around it, in the form of std::from_chars; "nan", "inf" and "-inf"
// in any case.
template <typename Number>
bool parse(const QString& text, Number* number) {
  QByteArray bytes = text.trimmed().toUtf8();
  if (bytes.startsWith('+')) {
    bytes.remove(0, 1);
    if (bytes.startsWith('-')) {
      return false;
    }
  }
  const auto [end, error] = std::from_chars(bytes.data(), bytes.data() + bytes.size(), *number);
  if constexpr (std::is_floating_point_v<Number>) {
    *number = std::isnan(*number) ? kNotANumber : *number;  // the one that expressions know
  }
  return error == std::errc() && end == bytes.data() + bytes.size();
}

class TypedInRows final : public BatchUnit {
 public:
  explicit TypedInRows(RowBatchPointer batch) { m_batch = std::move(batch); }
  void parse() override {}
  std::size_t byteCount() const override { return m_batch->byteCount(); }
};

}  // namespace

QString inlineValueFault(const QString& column, MetaTypeColumn type, const QString& text) {
  if (type == MetaTypeColumn::text || text.trimmed().isEmpty()) {
    return {};
  }
  if (type == MetaTypeColumn::key) {
    std::uint32_t key = 0;
    const bool isKey = parse(text, &key) && !isNullKey(key);
    return isKey ? QString() : messages::notAKey(column, text);
  }
  double number = 0.0;
  return parse(text, &number) ? QString() : messages::notANumber(column, text);
}

const ActionDescription& InlineTable::catalogue() {
  static const ActionDescription entry{
      .typeName = "InlineTable",
      .toolTip = "A small table written in the graph itself",
      .tags = {"Common"},
      .keywords = {"table", "inline", "constant", "input", "row", "new"},
      .attributes = {described(
          kSortedOn, "the sort order that the rows have, such as 'id 0, name A'; verified")},
      .children = describedElements()};
  return entry;
}

InlineTable::InlineTable(XMLNode node, GlobalParameters* parameters) : Described(node, parameters) {
  m_inputPinCount = 0;
  m_outputPinCount = 1;
  m_endpoint = static_cast<std::int32_t>(Endpoint::reader);
  readAttribute(node, kSortedOn, m_sortedOn, parameters);
  for (int i = 0; i < node.nChildNode(); ++i) {
    const XMLNode child = node.getChildNode(i);
    if (child.name() == kColumn) {
      Column& column = m_columns.emplace_back(Column{{}, {}, child.position()});
      readAttribute(child, kName, column.name, parameters);
      readAttribute(child, kMeta, column.meta, parameters);
    } else if (child.name() == kRow) {
      readRow(child);
    }
  }
}

// It has no input.
ColumnFate InlineTable::followColumn(const QString&, const QString&) {
  return ColumnFate::ends;
}

bool InlineTable::renameMadeColumn(const QString& oldName, const QString& newName) {
  const auto made = std::ranges::find(m_columns, oldName, &Column::name);
  if (made == m_columns.end()) {
    return false;
  }
  made->name = newName;
  const QRegularExpression entry(QStringLiteral("(?:^|,\\s*)(%1)\\s+[09AZ]\\s*(?:,|$)")
                                     .arg(QRegularExpression::escape(oldName)));
  if (const QRegularExpressionMatch match = entry.match(m_sortedOn); match.hasMatch()) {
    m_sortedOn.replace(match.capturedStart(1), match.capturedLength(1), newName);
  }
  return true;
}

void InlineTable::readRow(const XMLNode& node) {
  Row row{{}, node.position()};
  for (int i = 0; i < node.nChildNode(); ++i) {
    const XMLNode child = node.getChildNode(i);
    if (child.name() != kValue) {
      continue;
    }
    bool isNull = false;
    readAttribute(child, kNull, isNull, m_globalParameters);
    const QString text = child.text();
    row.values.push_back(
        {isNull ? QString() : (text.isNull() ? QStringLiteral("") : text), child.position()});
  }
  m_rows.push_back(std::move(row));
}

void InlineTable::saveXML(std::wostringstream& out, QString name) {
  saveAI(out, name, catalogue().version);
  if (!m_sortedOn.isEmpty()) {
    writeAttribute(out, kSortedOn, m_sortedOn);
  }
  out << L">\n";
  for (const Column& column : m_columns) {
    out << L"  <Column";
    writeAttribute(out, kName, column.name);
    if (!column.meta.isEmpty() && column.meta != QLatin1String("U")) {
      writeAttribute(out, kMeta, column.meta);
    }
    out << L"/>\n";
  }
  for (const Row& row : m_rows) {
    out << L"  <Row>";
    for (const Value& value : row.values) {
      if (value.text.isNull()) {
        out << L"<V null='1'/>";
      } else {
        out << L"<V>" << elementText(value.text) << L"</V>";
      }
    }
    out << L"</Row>\n";
  }
  out << L"</" << typeName() << L">\n";
}

void InlineTable::refuse(XMLNode::Position position, const QString& message) {
  const QString file = m_globalParameters == nullptr ? QString() : m_globalParameters->graphFile();
  MainUI::addLog(LogLevel::error, messages::withPosition(file, position, message));
}

char InlineTable::init() {
  ActionItem::init();
  m_nextRow = 0;
  m_rowsAccepted = 0;
  m_isReading = false;
  m_values.reset();
  m_pointers.clear();
  m_metaData = {};
  const bool isGood =
      checkShape() && planColumns(m_metaData) && encodeRows(m_metaData) && checkOrder(m_metaData);
  return isGood ? 0 : 1;
}

bool InlineTable::checkShape() {
  bool isGood = true;
  for (const Row& row : m_rows) {
    if (row.values.size() != m_columns.size()) {
      refuse(row.position, messages::wrongNumberOfValues(static_cast<qsizetype>(row.values.size()),
                                                         static_cast<qsizetype>(m_columns.size())));
      isGood = false;
    }
  }
  if (m_columns.empty()) {
    refuse(node().position(), messages::noColumns());
    isGood = false;
  }
  return isGood;
}

bool InlineTable::planColumns(PinOutMetaData& columns) {
  bool isGood = true;
  QSet<QString> names;
  columns.setColumnCount(static_cast<int>(m_columns.size()));
  for (int i = 0; i < columns.columnCount(); ++i) {
    const Column& column = m_columns[static_cast<std::size_t>(i)];
    const QString name = expandString(column.name);
    const QString meta = expandString(column.meta);
    QString fault;
    if (name.isEmpty()) {
      fault = messages::columnWithoutName();
    } else if (names.contains(name)) {
      fault = messages::columnTwice(name);
    } else if (!meta.isEmpty() && meta != QLatin1String("F") && meta != QLatin1String("K") &&
               meta != QLatin1String("U")) {
      fault = messages::unknownMeta(name, meta);
    }
    if (!fault.isEmpty()) {
      refuse(column.position, fault);
      isGood = false;
      continue;
    }
    names.insert(name);
    columns.setName(i, name);
    columns.setMeta(i, MetaInfo(meta.isEmpty() ? MetaTypeColumn::text
                                               : static_cast<MetaTypeColumn>(meta[0].toLatin1()),
                                0));
  }
  return isGood;
}

bool InlineTable::encodeRows(const PinOutMetaData& columns) {
  bool isGood = true;
  m_pointers.reserve(m_rows.size() * m_columns.size());
  for (const Row& row : m_rows) {
    for (int i = 0; i < columns.columnCount(); ++i) {
      m_pointers.push_back(
          encode(row.values[static_cast<std::size_t>(i)], i, columns.metas()[i].type(), &isGood));
    }
  }
  return isGood;
}

// Null for a missing value.
unsigned char* InlineTable::encode(const Value& value, int column, MetaTypeColumn type,
                                   bool* isOk) {
  if (value.text.isNull()) {
    return nullptr;
  }
  if (type == MetaTypeColumn::text) {
    return bytesFromQString(&m_values, value.text);
  }
  if (value.text.trimmed().isEmpty()) {
    return nullptr;
  }
  const QString& name = m_metaData.names()[column];
  if (const QString fault = inlineValueFault(name, type, value.text); !fault.isEmpty()) {
    refuse(value.position, fault);
    *isOk = false;
    return nullptr;
  }
  if (type == MetaTypeColumn::key) {
    std::uint32_t key = 0;
    parse(value.text, &key);
    return bytesFromKey(&m_values, key);
  }
  double number = 0.0;
  parse(value.text, &number);
  return bytesFromDouble(&m_values, number, 0);
}

bool InlineTable::checkOrder(PinOutMetaData& columns) {
  const auto order = parseSortOrder(expandString(m_sortedOn), columns);
  if (!order) {
    refuse(node().position(), order.error());
    return false;
  }
  columns.setSortOrder(*order);
  SortOrderChecker checker(*order);
  OneRow row(&columns);
  for (std::size_t i = 0; i < m_rows.size(); ++i) {
    std::copy_n(m_pointers.data() + i * m_columns.size(), m_columns.size(),
                row.getAllColForWrite());
    if (!checker.accepts(row)) {
      const auto broken = std::find_if(order->begin(), order->end(), [&checker](const auto& entry) {
        return entry.column() == checker.refusedColumn();
      });
      refuse(m_rows[i].position,
             sortOrderBrokenText(columns.names()[broken->column()], broken->type()));
      return false;
    }
  }
  return true;
}

char InlineTable::close() {
  m_isReading = false;
  m_pointers.clear();
  m_values.deepReset(0);
  return 0;
}

void InlineTable::setComputeRoutine() {
  computeRoutine = [](ActionItem* action) {
    auto* table = static_cast<InlineTable*>(action);
    table->announce();
    table->m_isReading = table->mustComputeFull();
    table->computeRoutine = [](ActionItem*) { return true; };
    return !table->m_isReading;
  };
}

void InlineTable::announce() {
  OneRow* row = getOutputRowForOutputPin(0);
  row->setNumberOfColumns(m_metaData.columnCount());
  row->setColName(m_metaData.names());
  row->setMetaData(m_metaData.metas());
  row->setSortInfos(m_metaData.sortOrder());
  m_types = typesOf(*row);
  announceColumnsOfOutputPin(0);
}

std::unique_ptr<BatchUnit> InlineTable::readUnit() {
  if (m_nextRow == m_rows.size()) {
    return nullptr;
  }
  BatchCollector collector(m_types, {});
  while (m_nextRow < m_rows.size() && !collector.isFull()) {
    collector.append(m_pointers.data() + m_nextRow++ * m_columns.size());
  }
  return std::make_unique<TypedInRows>(collector.take());
}

RowBatchPointer InlineTable::accept(BatchUnit& unit) {
  m_rowsAccepted += unit.batch()->rowCount();
  return unit.batch();
}

bool InlineTable::readOn() {
  m_isReading = false;
  return false;
}

float InlineTable::computeCompletion() const {
  return m_rows.empty() ? 1.0f
                        : static_cast<float>(m_rowsAccepted) / static_cast<float>(m_rows.size());
}

}  // namespace kelvarin
