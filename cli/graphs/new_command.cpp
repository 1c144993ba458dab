// `kelvarin graph new`: a graph to start from, which runs as it is.
#include <algorithm>
#include <ranges>

#include <QDir>
#include <QFileInfo>

#include "cli/command_graph.h"
#include "cli/graphs/element_layout.h"
#include "cli/graphs/graph_command.h"
#include "cli/graphs/graph_declaration.h"
#include "cli/graphs/graph_file.h"
#include "cli/graphs/messages.h"
#include "cli/program_services.h"
#include "cli/source_options.h"
#include "cli/table_kind.h"
#include "expression/help/language_entries.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

using Column = PinColumns::Column;

struct Arguments {
  std::string file;
  std::string table;
  SourceOptions source;  // of the table
  std::string plugin;
  bool isForced = false;
};

constexpr char kSampleTable[] = R"(    <InlineTable name='table'>
      <Column name='item' meta='U'/>
      <Column name='price' meta='F'/>
      <Column name='quantity' meta='F'/>
      <Row><V>kettle</V><V>24.9</V><V>2</V></Row>
      <Row><V>cup</V><V>3.5</V><V>4</V></Row>
    </InlineTable>
)";

constexpr char kRest[] =
    R"(    <!-- New columns, one OutputVar each; 'kelvarin functions' lists functions. -->
    <Calculator name='compute'>
      <InputVars>
%2      </InputVars>
      <OutputVars>
        <OutputVar name='%3'>%4</OutputVar>
      </OutputVars>
    </Calculator>
    <!-- The rows to keep. -->
    <FilterRows name='keep'>
      <Expression>%5</Expression>
      <InputVars>
%6      </InputVars>
    </FilterRows>
    <!-- '-' is standard output; a file appears under its name when the run has ended well. -->
    <WriteCSV name='result' file='-'/>
  </Actions>
  <Links>
    <Link from='table' to='compute'/>
    <Link from='compute' to='keep'/>
    <Link from='keep' to='result'/>
  </Links>
</KelvarinGraph>
)";

QString escaped(const QString& text) {
  ToXMLStringTool escape;
  return QString::fromWCharArray(escape.toXML(literalText(text)));
}

QString inElement(const QString& text) {
  return QString::fromStdWString(elementText(text));
}

// How a column is called in expressions: by its name, if that is one and means nothing else there.
QString variableOf(const Column& column) {
  const bool isUsable = isVariableName(column.name) && !column.name.startsWith(u'_') &&
                        findInLanguage(column.name.toStdString()).entries.empty();
  return isUsable ? column.name : QStringLiteral("x");
}

QString inputVar(const Column& column) {
  const QString variable = variableOf(column);
  const QString label =
      variable == column.name ? QString() : QStringLiteral(" label='%1'").arg(variable);
  const char* type = column.meta == MetaTypeColumn::text ? " isNumber='0'" : "";
  return QStringLiteral("        <InputVar column='%1'%2%3/>\n")
      .arg(escaped(column.name), label, QLatin1String(type));
}

struct Formulas {
  QString name;  // of the new column
  QString output;
  QString condition;
  QString inputs;
  QString filterInputs;
};

// Of the sample table.
Formulas sampleFormulas() {
  return {QStringLiteral("total"), QStringLiteral("price * quantity"),
          QStringLiteral("total >= 20"),
          inputVar({QStringLiteral("price"), MetaTypeColumn::number}) +
              inputVar({QStringLiteral("quantity"), MetaTypeColumn::number}),
          inputVar({QStringLiteral("total"), MetaTypeColumn::number})};
}

// About the first number, else the first column.
Formulas formulasFor(const std::vector<Column>& columns) {
  const auto number = std::ranges::find(columns, MetaTypeColumn::number, &Column::meta);
  const bool isNumber = number != columns.end();
  const Column& column = isNumber ? *number : columns.front();
  const QString variable = variableOf(column);
  const QString function = isNumber || column.meta == MetaTypeColumn::key
                               ? QStringLiteral("%1 * 2")
                               : QStringLiteral("strlen(%1)");
  const QString ending = isNumber || column.meta == MetaTypeColumn::key ? QStringLiteral("_doubled")
                                                                        : QStringLiteral("_length");
  return {escaped(column.name + ending), function.arg(variable),
          QStringLiteral("isNull(%1) == 0").arg(variable), inputVar(column), inputVar(column)};
}

QString graphOf(const QString& source, const Formulas& formulas) {
  const QString actions = source + QString::fromLatin1(kRest)
                                       .replace(QStringLiteral("%2"), formulas.inputs)
                                       .replace(QStringLiteral("%3"), formulas.name)
                                       .replace(QStringLiteral("%4"), inElement(formulas.output))
                                       .replace(QStringLiteral("%5"), inElement(formulas.condition))
                                       .replace(QStringLiteral("%6"), formulas.filterInputs);
  QString parameters;
  for (const GraphParameter& parameter : parametersOfLiterals(actions)) {
    parameters += QStringLiteral("    <Parameter name='%1' value='%2'/>\n")
                      .arg(parameter.name, parameter.value);
  }
  if (!parameters.isEmpty()) {
    parameters =
        QStringLiteral("  <Parameters>\n") + parameters + QStringLiteral("  </Parameters>\n");
  }
  return QStringLiteral("<KelvarinGraph version='1.0'>\n") + parameters +
         QStringLiteral("  <Actions>\n") + actions;
}

// The columns of a table, as a check finds them; nothing where it cannot be read, which is logged.
std::optional<std::vector<Column>> columnsOfTable(const Arguments& arguments, const TableKind& kind,
                                                  const ActionCatalogue& catalogue,
                                                  Console& console) {
  const QString table = QStringLiteral("table");
  const QString end = QStringLiteral("end");
  CommandGraph document;
  document.document = commandDocument(
      arguments.source.element(kind, table) + QStringLiteral("<Discard name='%1'/>").arg(end),
      {table, end}, {{table, {}}});
  document.values = {{table, absolutePath(arguments.table)}};
  auto graph = parseCommandGraph(document, table, catalogue, console);
  if (!graph) {
    return std::nullopt;
  }
  RunOptions options;
  const RunResult result = workInterruptibly(*graph, checkGraph, options, console);
  if (!result.isOk() || result.actions.empty() || result.actions.front().pins.empty() ||
      result.actions.front().pins.front().columns.empty()) {
    return std::nullopt;
  }
  return result.actions.front().pins.front().columns;
}

// Below the folder of the graph where it is there.
QString pathFromGraph(const Arguments& arguments) {
  const QDir folder = QFileInfo(QString::fromStdString(arguments.file)).absoluteDir();
  const QString table = absolutePath(arguments.table);
  const bool isBelow = table.startsWith(folder.absolutePath() + u'/');
  return isBelow ? folder.relativeFilePath(table) : table;
}

std::optional<QString> graphFromTable(const Arguments& arguments, Console& console) {
  const TableKind& kind = tableKindOfContent(arguments.table);
  if (const QString fault = arguments.source.fault(kind, arguments.table); !fault.isEmpty()) {
    console.writeLog(LogLevel::error, fault);
    return std::nullopt;
  }
  const ProgramServices services(console);
  const auto catalogue = loadCatalogueOf(arguments.plugin, console);
  const auto columns =
      catalogue == nullptr ? std::nullopt : columnsOfTable(arguments, kind, *catalogue, console);
  if (!columns) {
    return std::nullopt;
  }
  const QString source = arguments.source.element(kind, QStringLiteral("table"),
                                                  literalText(pathFromGraph(arguments)));
  return laidOut(graphOf(QStringLiteral("    %1\n").arg(source), formulasFor(*columns)),
                 declaredGraph(*catalogue));
}

ExitStatus makeGraph(const Arguments& arguments) {
  Console console(false);
  const QString file = QString::fromStdString(arguments.file);
  if (arguments.file != kStandardStream && !arguments.isForced && QFileInfo::exists(file)) {
    console.writeLog(LogLevel::error, graph_messages::fileExists(file));
    return ExitStatus::failed;
  }
  const std::optional<QString> graph =
      arguments.table.empty() ? graphOf(QString::fromLatin1(kSampleTable), sampleFormulas())
                              : graphFromTable(arguments, console);
  if (!graph || !writeGraphText(arguments.file, *graph, console)) {
    return ExitStatus::failed;
  }
  if (arguments.file != kStandardStream) {
    console.writeLog(LogLevel::information, graph_messages::graphMade(file));
  }
  return ExitStatus::done;
}

}  // namespace

void addGraphNew(CLI::App& graph, ChosenCommand& chosen) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command =
      graph.add_subcommand("new", "Write a graph to start from, which runs as it is");
  command->add_option("FILE", arguments->file, "the graph to make; - is standard output")
      ->required()
      ->type_name("");
  command->add_option("--from", arguments->table, "read this table instead of a small one inside")
      ->type_name("TABLE");
  command->add_flag("--force", arguments->isForced, "replace a file that exists");
  const auto count = static_cast<std::ptrdiff_t>(command->get_options().size());
  arguments->source.addTo(*command);
  for (CLI::Option* option : command->get_options() | std::views::drop(count)) {
    option->needs("--from");
  }
  addPluginOption(*command, arguments->plugin);
  command->footer(
      "Examples:\n  kelvarin graph new first.kelvarin\n"
      "  kelvarin graph new late.kelvarin --from examples/flights/data/flights.csv --null NA");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return makeGraph(*arguments); }; });
}

}  // namespace kelvarin
