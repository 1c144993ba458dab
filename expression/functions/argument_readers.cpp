#include "expression/functions/argument_readers.h"

#include "host/contract/one_row.h"

namespace kelvarin {

ArgumentReader<QString>::ArgumentReader(const FunctionContext&, const FunctionArgument& argument)
    : m_text(argument.isText() ? QString::fromUtf8(argument.text().data(),
                                                   static_cast<qsizetype>(argument.text().size()))
                               : shortestText(argument.number())) {}

ArgumentReader<std::string_view>::ArgumentReader(const FunctionContext&,
                                                 const FunctionArgument& argument)
    : m_isNumber(!argument.isText()),
      m_digits(m_isNumber ? shortestText(argument.number()).toStdString() : std::string()),
      m_text(argument.text()) {}

ArgumentReader<DateValue>::ArgumentReader(const FunctionContext& context,
                                          const FunctionArgument& argument)
    : m_date(context.dates.instantOf(ArgumentReader<std::string_view>(context, argument).get())) {}

}  // namespace kelvarin
