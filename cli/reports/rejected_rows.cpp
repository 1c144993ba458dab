#include "cli/reports/rejected_rows.h"

#include "cli/reports/messages.h"
#include "cli/reports/number_json.h"
#include "host/contract/host_session.h"
#include "host/tables/files/output_file.h"

namespace kelvarin {

namespace {

enum Column { kRow, kAction, kExpression, kMessage, kValues, kColumnCount };

struct ColumnOfFile {
  const char* name;
  MetaTypeColumn type;
};

constexpr ColumnOfFile kColumns[kColumnCount] = {{"row", MetaTypeColumn::number},
                                                 {"action", MetaTypeColumn::text},
                                                 {"expression", MetaTypeColumn::text},
                                                 {"message", MetaTypeColumn::text},
                                                 {"values", MetaTypeColumn::text}};

constexpr long long kBytesInMemory = 8LL << 20;  // of each action
constexpr std::size_t kBytesWritten = 64 * 1024;
constexpr int kFirstRowBytes = 4096;

std::vector<MetaTypeColumn> typesOfColumns() {
  std::vector<MetaTypeColumn> types;
  for (const ColumnOfFile& column : kColumns) {
    types.push_back(column.type);
  }
  return types;
}

ExecutionOptions optionsOfQueue() {
  ExecutionOptions options;
  options.queueMemoryBytes = kBytesInMemory;
  return options;
}

std::string printedLine(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json jsonOfValue(const OneRow& row, int column) {
  const unsigned char* bytes = row.getAllColForRead()[column];
  switch (row.getMetaType(column)) {
    case MetaTypeColumn::number:
      return jsonOfNumber(numberFromBytes(bytes));
    case MetaTypeColumn::key:
      return isNullKey(keyFromBytes(bytes)) ? Json(nullptr) : Json(keyFromBytes(bytes));
    default:
      return isNullText(bytes) ? Json(nullptr) : Json(textFromBytes(bytes));
  }
}

}  // namespace

struct RejectedRows::OfAction {
  OfAction() : queue(optionsOfQueue()), reader(queue) { reader.join(); }

  BatchCollector collector{typesOfColumns(), BatchSize()};
  RowQueue queue;
  RowQueue::Reader reader;
  RowBuffer bytes{kFirstRowBytes};  // of one row
  long long lastRow = -1;
};

RejectedRows::RejectedRows(HostServices* program, const Graph& graph, RunRecord& record,
                           Settings settings)
    : ForwardingServices(program),
      m_graph(graph),
      m_record(record),
      m_settings(settings),
      m_actions(graph.actions.size()) {}

RejectedRows::~RejectedRows() = default;

RejectedRows::OfAction& RejectedRows::rowsOf(const ActionItem& action) {
  std::unique_ptr<OfAction>& rows = m_actions[static_cast<std::size_t>(m_graph.indexOf(action))];
  if (rows == nullptr) {
    rows = std::make_unique<OfAction>();
  }
  return *rows;
}

// What fails behind the last row that the user wants is not looked at.
void RejectedRows::rowRejected(const ActionItem& action, const RejectedRow& row) {
  OfAction& rows = rowsOf(action);
  const bool isNew = rows.lastRow != row.number;
  if (isNew && m_settings.maxRows > 0 && m_rowCount == m_settings.maxRows) {
    return;
  }
  if (m_settings.keepsRows) {
    keep(rows, action, row);
  }
  if (!isNew) {
    return;
  }
  rows.lastRow = row.number;
  if (++m_rowCount == m_settings.maxRows) {
    endRun(action, row);
  }
}

void RejectedRows::endRun(const ActionItem& action, const RejectedRow& row) {
  LogDetails details;
  details.output = row.output;
  details.row = row.number;
  logWithDetails(LogLevel::error,
                 report_messages::tooManyErrors(m_rowCount, action.name(), row.output, row.number,
                                                row.message),
                 details);
  m_record.fail();
}

void RejectedRows::keep(OfAction& rows, const ActionItem& action, const RejectedRow& row) {
  const unsigned char* values[kColumnCount];
  values[kRow] = bytesFromDouble(&rows.bytes, static_cast<double>(row.number), 0);
  values[kAction] = bytesFromQString(&rows.bytes, action.name());
  values[kExpression] = bytesFromQString(&rows.bytes, row.output);
  values[kMessage] = bytesFromQString(&rows.bytes, row.message);
  values[kValues] = bytesFromUtf8(&rows.bytes, jsonOfRow(*row.input));
  rows.collector.append(values);
  rows.bytes.reset();
  if (rows.collector.isFull()) {
    (void)push(rows);
  }
}

bool RejectedRows::push(OfAction& rows) {
  if (m_failure.isEmpty() && !rows.queue.push(rows.collector.take())) {
    m_failure = rows.queue.errorText();
  }
  return m_failure.isEmpty();
}

PinColumns RejectedRows::columns() {
  PinColumns columns;
  columns.isKnown = true;
  for (const ColumnOfFile& column : kColumns) {
    columns.columns.push_back({QString::fromLatin1(column.name), column.type});
  }
  return columns;
}

RowBatchPointer RejectedRows::next() {
  for (; m_next < m_actions.size(); ++m_next) {
    OfAction* rows = m_actions[m_next].get();
    if (rows == nullptr) {
      continue;
    }
    if (!rows->collector.isEmpty() && !push(*rows)) {
      return nullptr;
    }
    if (rows->reader.hasBatch()) {
      RowBatchPointer batch = rows->reader.next();
      m_failure = batch == nullptr ? rows->queue.errorText() : QString();
      return batch;
    }
  }
  return nullptr;
}

std::string jsonOfRow(const OneRow& row) {
  Json values = Json::object();
  for (int i = 0; i < row.sz(); ++i) {
    values[row.colName(i).toStdString()] = jsonOfValue(row, i);
  }
  return printedLine(values);
}

namespace {

void appendLine(const RowBatch& batch, std::size_t row, std::string& lines) {
  lines += "{\"row\":" + printedLine(jsonOfNumber(numberFromBytes(batch.column(kRow).value(row))));
  for (const Column column : {kAction, kExpression, kMessage}) {
    lines.append(",\"").append(kColumns[column].name).append("\":");
    lines += printedLine(textFromBytes(batch.column(column).text(row)));
  }
  lines.append(",\"values\":").append(textFromBytes(batch.column(kValues).text(row)));
  lines += "}\n";
}

}  // namespace

Status<QString> writeJsonLines(const QString& path, RejectedRows& rows) {
  OutputFile file;
  if (const auto opened = file.open(path); !opened) {
    return opened;
  }
  std::string lines;
  const auto write = [&] {
    const Status<QString> written = file.write(lines.data(), lines.size());
    lines.clear();
    return written;
  };
  while (const RowBatchPointer batch = rows.next()) {
    for (std::size_t row = 0; row < batch->rowCount(); ++row) {
      appendLine(*batch, row, lines);
      if (lines.size() < kBytesWritten) {
        continue;
      }
      if (const auto written = write(); !written) {
        return written;
      }
    }
  }
  if (const auto written = write(); !written) {
    return written;
  }
  if (!rows.failure().isEmpty()) {
    return Failure{rows.failure()};
  }
  if (const auto completed = file.complete(); !completed) {
    return completed;
  }
  return file.publish();
}

}  // namespace kelvarin
