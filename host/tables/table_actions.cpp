#include "host/tables/table_actions.h"

#include "host/tables/arrow/arrow_actions.h"
#include "host/tables/csv/read_csv.h"
#include "host/tables/csv/write_csv.h"
#include "host/tables/inline/discard.h"
#include "host/tables/inline/inline_table.h"

namespace kelvarin {

namespace {

template <typename Action>
void add(std::vector<std::unique_ptr<ActionItem>>& actions) {
  actions.push_back(std::make_unique<Action>(XMLNode::emptyNode(), nullptr));
}

}  // namespace

std::vector<std::unique_ptr<ActionItem>> makeTableActions() {
  std::vector<std::unique_ptr<ActionItem>> actions;
  add<ReadCsv>(actions);
  add<WriteCsv>(actions);
  add<ReadParquet>(actions);
  add<WriteParquet>(actions);
  add<ReadArrow>(actions);
  add<WriteArrow>(actions);
  add<InlineTable>(actions);
  add<Discard>(actions);
  return actions;
}

}  // namespace kelvarin
