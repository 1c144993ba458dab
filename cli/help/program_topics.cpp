#include "cli/help/help_topics.h"

namespace kelvarin {

namespace {

constexpr char kGraphs[] =
    R"(A graph file (.kelvarin) says which actions work on the rows, and which rows go where:

  <KelvarinGraph version='1.0'>
    <Parameters> <Parameter name='least' value='40'/> </Parameters>
    <Actions>
      <ReadCSV name='orders' file='orders.csv'/>
      <FilterRows name='large'>
        <Expression>total >= least</Expression>
        <InputVars> <InputVar column='total'/> </InputVars>
      </FilterRows>
      <WriteCSV name='result' file='-'/>
    </Actions>
    <Links> <Link from='orders' to='large'/> <Link from='large' to='result'/> </Links>
  </KelvarinGraph>

Relative paths start from the folder of the graph. '-' is standard output. ${name} in an attribute
is a parameter, which a run may set: --set least=60. Output pins count from 0: fromPin='1' is the
second one. Files that a graph writes appear under their names when the run has ended well.

  kelvarin graph new      a graph to start from        kelvarin graph show     what a graph does
  kelvarin check          finds faults, runs nothing   kelvarin graph diff     what changed
  kelvarin run            runs it                      kelvarin graph fmt      one layout
  kelvarin test           runs it with known results   kelvarin graph schema   for editors
  kelvarin actions NAME   attributes of an action      kelvarin gui            draws it

Examples:
  kelvarin graph show examples/flights/flights.kelvarin
  kelvarin run examples/flights/flights.kelvarin --set minDelay=60
)";

constexpr char kCsv[] = R"(ReadCSV reads a file of separated values, WriteCSV writes one.

  separator=';'          one character; \t is TAB, auto: from a look at the file  (default ,)
  quote='"'              encloses fields; empty: none; auto                      (default ")
  encoding='auto'        or ISO-8859-1, windows-1252, UTF-16                     (default UTF-8)
  header='0'             the first line has no names       (default 1)
  nullText='NA'          an unquoted field that is null    (default: the empty field)
  decimal=',' thousands='.' skipLines='2' comment='#' short='null' long='ignore' fileColumn='file'
  onBadValue='null'      a value that does not fit is null (default abort: the run stops)
  sortedOn='id 0'        the order that the file has; verified
  <Column name='id' meta='U'/>    the type of a column, inside ReadCSV; others are inferred

A quoted empty field is the empty text; an unquoted one is null, where nullText is empty.
Files may be compressed by gzip or zstd, and file='2024-*.csv' reads several. A file that cannot be
read as it was declared stops the run with file, line, column and value, and what was to be written
keeps its content.

file='-' is standard input of ReadCSV and standard output of WriteCSV.
All attributes: 'kelvarin actions ReadCSV', 'kelvarin actions WriteCSV'.
Commands that read tables look at the file for what these options do not say.

Examples:
  kelvarin head examples/flights/data/flights.csv --separator ,
  kelvarin graph new first.kelvarin --from examples/flights/data/flights.csv
)";

constexpr char kExitStatus[] = R"(How the program ends, for scripts:

    0   done; of 'check', 'test' and the checks of files: nothing is wrong
    1   the work failed: a run stopped, an expression is wrong, a file is damaged, graphs differ
    2   wrong usage: an option that does not exist, a value that it does not take
  130   interrupted (Ctrl+C, SIGTERM), within a second

Results go to standard output, all else (log, progress, hints) to standard error. A log line begins
with 'error: ', 'warning: ' or 'info: '. --quiet leaves out what is information. A reader that goes
away early, as in | head, is no failure. After a failure nothing replaces a file that was there.

For programs: 'run --json' and 'check --json' print one object with status, log and counts.

Examples:
  kelvarin check examples/flights/flights.kelvarin --json
  kelvarin run examples/flights/flights.kelvarin --quiet
)";

constexpr char kColumnar[] =
    R"(A columnar file (.cgel_kelvarin) keeps a table column by column in blocks of rows: a
reader takes the columns that it needs and skips blocks whose statistics rule them out.
Beside the main file lie side files, one for each set of columns
(sales.000.cs_kelvarin); move them together.

  writeColumnarGel       writes one; replaceAtEnd='1' keeps an older one until the new one is whole
  ReadColumnarGel        reads one: <ColumnsToRead>, and a block filter such as price_max > 100
  kelvarin gel info      columns, blocks and statistics
  kelvarin gel verify    every checksum and every value
  kelvarin gel import    makes one of a CSV, Parquet or Arrow file; export is the way back
  kelvarin gel recover   takes what is whole out of one that is damaged or was not finished

The extension says the kind of other files: csv, tsv, txt, parquet, arrow, feather, ipc.

Examples:
  kelvarin gel import examples/flights/data/flights.csv flights.cgel_kelvarin
  kelvarin gel info flights.cgel_kelvarin
  kelvarin actions ReadColumnarGel
)";

constexpr char kEnvironment[] = R"(Variables of the environment that the program looks at:

  KELVARIN_PLUGIN   the file of the plug-in, instead of the one beside the program (as --plugin)
  NO_COLOR          any value: no colours on a terminal
  TERM              'dumb': no colours and no progress line
  TMPDIR            where temporary files go while rows wait for each other (default /tmp)
  TZ                the local time zone, for dates with isUTC='0'
  LANGUAGE, LANG    the language of windows; messages of the command line are English

Nothing else is read: no settings file changes what a graph computes. The same graph has the same
rows, bytes and messages on any machine and with any number of threads; 'seed' fixes random numbers.

Examples:
  kelvarin version
  kelvarin actions
)";

constexpr char kReports[] =
    R"(What 'kelvarin run' and 'kelvarin calc' report beside results, and how a run is limited and
repeated. Rows are rejected by actions with abortWhenError='0', which go on after a row that
failed; no option makes others go on. The page docs/running.md has examples.

Examples:
  kelvarin run examples/flights/flights.kelvarin --limit 1000 --explain
  kelvarin calc 'chance=rand(2)' examples/flights/data/flights.csv --limit 3 --seed 1
)";

constexpr char kTests[] =
    R"(A graph is tested by folders beside it; no code is written. The tests of orders.kelvarin:

  orders.test/                    each folder in it is a test
    empty/
      input/orders.csv            replaces orders.csv beside the graph
      expected/result.csv         what the run must have written there
      expected/stdout.csv         what it must have written to standard output
      case.xml                    settings, may be absent:

  <Case seed='7' now='2026-01-31T12:00:00Z'>        may be absent; as of 'kelvarin run'
    <Parameter name='least' value='60'/>            a parameter of the graph
    <Compare file='result.csv' tolerance='1e-9' anyOrder='1'/>
    <Says message='3 values'/>                      a text that a warning has
    <Fails message='There is no column'/>           the run must fail, and say this
  </Case>

Where there is one test, orders.test may have input, expected and case.xml itself. Every run is in a
temporary folder; files that are not in input are those beside the graph. Tables are compared by
columns and rows, with the tolerance for numbers (relative above 1), other files line by line. A
table of another format may be expected as text: expected/late.parquet.csv for late.parquet.

'kelvarin test --update' writes what the runs wrote into expected: look at it before you keep it.

Examples:
  kelvarin test examples
  kelvarin test examples/flights/flights.kelvarin --tap
)";

constexpr HelpTopic kTopics[] = {
    {"graphs", "graph files,graph-files,xml,parameters,links", "what stands in a graph file",
     kGraphs},
    {"csv", "tsv,separators", "files of separated values", kCsv},
    {"columnar", "columnar files,columnar-files,cgel,cgel_kelvarin",
     "files with blocks and "
     "statistics",
     kColumnar},
    {"reports", "rejects,limit,seed,progress,explain", "what a run reports, limits, repetition",
     kReports},
    {"tests", "testing", "graphs with inputs and expected outputs", kTests},
    {"exit-status", "exit status,exit,status,exit code,exit-code", "0, 1, 2 and 130", kExitStatus},
    {"environment", "env,variables", "variables of the environment", kEnvironment},
};

}  // namespace

std::span<const HelpTopic> programTopics() {
  return kTopics;
}

}  // namespace kelvarin
