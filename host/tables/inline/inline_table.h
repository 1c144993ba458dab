// The host action whose rows stand in the graph file itself.
//
//   <InlineTable name='names' sortedOn='id 0'>
//     <Column name='id' meta='K'/>
//     <Column name='text'/>
//     <Row><V>1</V><V>one</V></Row>
//     <Row><V>2</V><V null='1'/></Row>
//   </InlineTable>
//
// A column without meta holds texts. Values are taken as they stand, blanks of numbers and keys
// aside; an empty number or key is missing.
// Threads: the engine thread, but for readUnit().
// Errors: init() checks the whole table, logs every fault with its position in the graph file and
// refuses.
#pragma once

#include <memory>
#include <vector>

#include "host/contract/batch_collector.h"
#include "host/contract/batch_steps.h"
#include "host/contract/column_user.h"
#include "host/contract/described_action.h"

namespace kelvarin {

class InlineTable final : public Described<InlineTable, ActionItem>,
                          public BatchSource,
                          public ColumnUser {
 public:
  InlineTable(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  char close() override;
  void setComputeRoutine() override;
  float computeCompletion() const override;
  bool canReadUnits() const override { return m_isReading; }
  std::unique_ptr<BatchUnit> readUnit() override;
  RowBatchPointer accept(BatchUnit& unit) override;
  bool readOn() override;
  ColumnFate followColumn(const QString& oldName, const QString& newName) override;
  bool renameMadeColumn(const QString& oldName, const QString& newName) override;

 private:
  struct Value {
    QString text;  // null when missing
    XMLNode::Position position;
  };
  struct Row {
    std::vector<Value> values;
    XMLNode::Position position;
  };
  struct Column {
    QString name;
    QString meta;  // as given; empty is the default
    XMLNode::Position position;
  };

  void readRow(const XMLNode& node);
  void refuse(XMLNode::Position position, const QString& message);
  bool planColumns(PinOutMetaData& columns);
  bool checkShape();
  bool encodeRows(const PinOutMetaData& columns);
  unsigned char* encode(const Value& value, int column, MetaTypeColumn type, bool* isOk);
  bool checkOrder(PinOutMetaData& columns);
  void announce();

  QString m_sortedOn;
  std::vector<Column> m_columns;
  std::vector<Row> m_rows;

  PinOutMetaData m_metaData;
  RowBuffer m_values{4096};                // the bytes of all rows
  std::vector<unsigned char*> m_pointers;  // row after row
  std::vector<MetaTypeColumn> m_types;
  std::size_t m_nextRow = 0;  // to be read
  std::size_t m_rowsAccepted = 0;
  bool m_isReading = false;
};

// Why a text is no value of a column with this type, for the user; empty where it is one.
QString inlineValueFault(const QString& column, MetaTypeColumn type, const QString& text);

}  // namespace kelvarin
