#include "cli/program/usage_errors.h"

#include <cstdint>
#include <cstdio>
#include <limits>

#include <QRegularExpression>

#include "cli/messages.h"
#include "host/contract/nearest_names.h"

namespace kelvarin {

namespace {

// The command that was being read.
const CLI::App& readCommand(const CLI::App& program) {
  const auto parsed = program.get_subcommands();
  return parsed.empty() ? program : readCommand(*parsed.front());
}

// About the command that was being read.
std::string usageHint(const CLI::App& program) {
  const CLI::App& read = readCommand(program);
  QString command = QString::fromStdString(read.get_name());
  for (const CLI::App* outer = read.get_parent(); outer != nullptr; outer = outer->get_parent()) {
    command = QString::fromStdString(outer->get_name()) + u' ' + command;
  }
  return program_messages::usageHint(command).toStdString();
}

QString didYouMean(const QString& given, const QStringList& names) {
  const QStringList near = nearestNames(given, names);
  return near.isEmpty() ? QString()
                        : u' ' + program_messages::didYouMean(near.join(QLatin1String(" or ")));
}

// Of an option that the command does not have, or of an expression that looks like one; empty where
// there is none. The library would report what is missing because of it.
QString unknownOption(const CLI::App& program) {
  namespace texts = program_messages;
  const CLI::App& command = readCommand(program);
  for (const std::string& argument : program.remaining(true)) {
    if (argument.size() < 2 || argument.front() != '-' || argument == "--") {
      continue;
    }
    const QString given = QString::fromLocal8Bit(argument.c_str());
    QStringList names;
    for (const CLI::Option* option : command.get_options()) {
      for (const std::string& name : option->get_lnames()) {
        names += QStringLiteral("--") + QString::fromStdString(name);
      }
    }
    const QString name = given.section(u'=', 0, 0);
    if (names.contains(name)) {
      return texts::optionBeforeCommand(name, QString::fromStdString(command.get_name()));
    }
    const QString text = texts::unknownOption(name) + didYouMean(name, names);
    const CLI::Option* expression = command.get_option_no_throw("EXPR");
    const bool isExpressionMissing = expression != nullptr && expression->count() == 0;
    return isExpressionMissing ? text + texts::minusFirst(given) : text;
  }
  return {};
}

// The program, or a group of commands, was called without anything behind it.
bool namesNoCommand(const CLI::App& program) {
  const CLI::App& read = readCommand(program);
  return read.get_require_subcommand_min() > 0 && program.remaining_size(true) == 0;
}

struct CommandElsewhere {
  QLatin1String names;  // between commas
  QLatin1String use;
};

constexpr CommandElsewhere kCommandsElsewhere[] = {
    {QLatin1String("convert,to,copy,cp,csv2parquet"),
     QLatin1String("kelvarin calc FILE -o NEW_FILE, of the kind of its extension.")},
    {QLatin1String("cat,concat,rowstack,append"),
     QLatin1String("kelvarin calc FILE, or kelvarin calc 'day*.csv' for several.")},
    {QLatin1String("filter,where,search,grep"),
     QLatin1String("kelvarin calc --filter 'price > 10' FILE")},
    {QLatin1String("put,apply,mutate,map,compute"),
     QLatin1String("kelvarin calc 'total=price*quantity' FILE")},
    {QLatin1String("describe,summary,summarize,summarise,frequency,freq,unique,profile"),
     QLatin1String("kelvarin stats FILE")},
    {QLatin1String("columns,headers,names,meta,types,inspect"),
     QLatin1String("kelvarin schema FILE")},
    {QLatin1String("wc,len,rows,rowcount,nrow,size"), QLatin1String("kelvarin count FILE")},
    {QLatin1String("show,view,print,less,more,slice,table,preview"),
     QLatin1String("kelvarin head FILE --format table")},
    {QLatin1String("import,export,info,verify,recover,layout"),
     QLatin1String("kelvarin gel, which works on columnar files.")},
    {QLatin1String("new,fmt,upgrade,diff"),
     QLatin1String("kelvarin graph, which works on graph files.")},
    {QLatin1String("validate,lint"), QLatin1String("kelvarin check GRAPH")},
    {QLatin1String("open,window"), QLatin1String("kelvarin gui GRAPH")},
};

QString commandElsewhere(const QString& given) {
  for (const CommandElsewhere& each : kCommandsElsewhere) {
    if (QString(each.names).split(u',').contains(given.toLower())) {
      return program_messages::commandElsewhere(each.use);
    }
  }
  return {};
}

// The library's message about a number that is none, or out of its bounds, in words; a bound that
// is the largest number is none.
QString withoutLargestNumber(const QString& text) {
  static const QRegularExpression kRange(
      QStringLiteral("^(.*: )Value (.*) not in range (-?\\d+) to (\\d+)$"));
  const QRegularExpressionMatch match = kRange.match(text);
  if (!match.hasMatch()) {
    return text;
  }
  const QString most = match.captured(4);
  const bool isBounded = most != QString::number(std::numeric_limits<std::int64_t>::max());
  return match.captured(1) +
         (isBounded
              ? program_messages::noWholeNumberBetween(match.captured(2), match.captured(3), most)
              : program_messages::noWholeNumber(match.captured(2), match.captured(3))) +
         u'.';
}

// Where an option takes one of some values, the nearest one; the library lists them in braces.
QString nearestValue(const QString& text) {
  const QString mark = QStringLiteral(" not in {");
  const qsizetype at = text.indexOf(mark);
  const qsizetype end = text.indexOf(u'}', at);
  if (at < 0 || end < 0) {
    return {};
  }
  const QString given = text.first(at).section(QStringLiteral(": "), 1);
  const qsizetype start = at + mark.size();
  return didYouMean(given, text.sliced(start, end - start).split(u','));
}

}  // namespace

bool reportUnknownCommand(const CLI::App& program, int argc, char** argv) {
  QStringList names;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    names += QString::fromStdString(command->get_name());
  }
  if (names.isEmpty() || argc < 2 || argv[1][0] == '-') {
    return false;
  }
  const QString given = QString::fromLocal8Bit(argv[1]);
  if (names.contains(given)) {
    return reportUnknownCommand(*program.get_subcommand(argv[1]), argc - 1, argv + 1);
  }
  const QString elsewhere = commandElsewhere(given);
  const QString text = program_messages::unknownCommand(given) +
                       (elsewhere.isEmpty() ? didYouMean(given, names) : elsewhere);
  std::fprintf(stderr, "error: %s\n%s\n", qUtf8Printable(text), usageHint(program).c_str());
  return true;
}

ExitStatus finishParsing(const CLI::App& program, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) {
    program.exit(error);  // help or version
    return ExitStatus::done;
  }
  if (namesNoCommand(program)) {
    std::fputs(program.help().c_str(), stdout);
    return ExitStatus::done;
  }
  const QString option = unknownOption(program);
  const QString reason = withoutLargestNumber(QString::fromLocal8Bit(error.what()));
  const QString text = option.isEmpty() ? reason + nearestValue(reason) : option;
  std::fprintf(stderr, "error: %s\n%s\n", qUtf8Printable(text), usageHint(program).c_str());
  return ExitStatus::wrongUsage;
}

}  // namespace kelvarin
