#include "actions/calculator/output_columns.h"

#include <algorithm>

#include <QSet>

#include "actions/frame/messages.h"
#include "host/contract/missing_column.h"

namespace kelvarin {

namespace {

// A number that updates a column spoils the order from the first column on that is computed.
// Without one the order is kept whole, even where a text updates a sorted column: graphs rely on
// it.
QVector<SortInfos> orderAfter(const OneRow& input, const std::vector<OutputVariable>& outputs,
                              const std::vector<int>& columnOfOutput) {
  QVector<SortInfos> order = input.getSortInfosDeep();
  const bool isNumberUpdated =
      std::any_of(outputs.begin(), outputs.end(),
                  [](const OutputVariable& output) { return output.update && isNumeric(output); });
  if (!isNumberUpdated) {
    return order;
  }
  const auto isSpoilt = [&](const SortInfos& entry) {
    return entry.column() >= input.sz() || std::find(columnOfOutput.begin(), columnOfOutput.end(),
                                                     entry.column()) != columnOfOutput.end();
  };
  order.erase(std::find_if(order.begin(), order.end(), isSpoilt), order.end());
  return order;
}

}  // namespace

bool isNumeric(const OutputVariable& output) {
  return output.meta == MetaTypeColumn::number || output.meta == MetaTypeColumn::key;
}

Result<OutputColumns, LayoutFault> layOutColumns(const OneRow& input,
                                                 const std::vector<OutputVariable>& outputs) {
  OutputColumns result;
  result.names = input.getColNamesDeep();
  result.metas = input.getMetaDataDeep();
  QSet<QString> produced;
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const OutputVariable& output = outputs[i];
    const int existing = input.getIndexOfColumn(output.name);
    if (output.update && existing < 0) {
      return Failure{LayoutFault{action_messages::columnToUpdateNotFound(output.name), i,
                                 missingColumnHint(output.name, input.getColNamesDeep())}};
    }
    if (produced.contains(output.name) || (!output.update && existing >= 0)) {
      return Failure{LayoutFault{action_messages::columnProducedTwice(output.name), i,
                                 existing >= 0 && !produced.contains(output.name)
                                     ? action_messages::columnExists(output.name)
                                     : action_messages::outputTwice(output.name)}};
    }
    produced.insert(output.name);
    if (output.update) {
      result.metas[existing] = metaOfOutput(output.meta);
      result.columnOfOutput.push_back(existing);
      continue;
    }
    result.columnOfOutput.push_back(static_cast<int>(result.names.size()));
    result.names.append(output.name);
    result.metas.append(metaOfOutput(output.meta));
  }
  result.sortOrder = orderAfter(input, outputs, result.columnOfOutput);
  return result;
}

}  // namespace kelvarin
