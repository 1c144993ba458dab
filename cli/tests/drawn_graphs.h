// Random graphs with the plug-in's actions: their parts, the tables that they read, and how they
// are run in a folder of their own.
//
// Used by the tests of the engine that compare two ways to run the same graph.
#pragma once

#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "cli/tests/row_action.h"
#include "host/engine/graph_reader.h"
#include "host/engine/run_graph.h"
#include "host/tables/table_actions.h"

namespace kelvarin {

class Dice {
 public:
  explicit Dice(unsigned seed) : m_numbers(seed) {}
  int below(int end) { return static_cast<int>(m_numbers() % static_cast<unsigned>(end)); }
  bool oneIn(int chances) { return below(chances) == 0; }
  template <std::size_t kSize>
  QByteArray oneOf(const char* const (&texts)[kSize]) {
    return texts[below(static_cast<int>(kSize))];
  }

 private:
  std::mt19937 m_numbers;
};

inline const ActionCatalogue& catalogue() {
  static const auto* loaded = [] {
    ActionCatalogue::Prototypes actions = makeTableActions();
    actions.push_back(std::make_unique<RowAction>(XMLNode::emptyNode(), nullptr));
    return new ActionCatalogue(std::move(*PluginLibrary::load(KELVARIN_PLUGIN)),
                               std::move(actions));
  }();
  return *loaded;
}

inline QByteArray escaped(QByteArray text) {
  return text.replace("&", "&amp;").replace("<", "&lt;");
}

inline QByteArray link(const QByteArray& from, const QByteArray& to, int fromPin = 0,
                       int toPin = 0) {
  return "<Link from='" + from + "' fromPin='" + QByteArray::number(fromPin) + "' to='" + to +
         "' toPin='" + QByteArray::number(toPin) + "'/>";
}

constexpr char kNumberInputs[] =
    "<InputVars><InputVar column='id'/><InputVar column='a'/><InputVar column='b'/>"
    "<InputVar column='k'/><InputVar column='a' label='d' meta='D'/></InputVars>";
constexpr char kTextInputs[] =
    "<InputVar column='t' label='tn'/><InputVar column='t' isNumber='0'/></InputVars>";

// What expressions can be about, and whether a row may fail.
struct Drawn {
  bool hasTexts = true;
  bool canFail = true;

  QByteArray inputs() const {
    QByteArray xml = kNumberInputs;
    return hasTexts ? xml.replace("</InputVars>", kTextInputs) : xml;
  }
  QByteArray expression(QByteArray text) const {
    if (!hasTexts) {
      text.replace("tn", "a").replace("strlen(t)", "k");
    }
    if (!canFail) {  // what some engines do not know, and a pattern that is none
      text.replace("isNuLL", "isNull").replace("rand1(10)", "rand1()");
      text.replace("regexMatch(\"text\",t)", "t>\"5\"");
    }
    return escaped(text);
  }
};

// Native code, the two libraries, texts, an assignment, the row number, random numbers.
constexpr const char* kExpressions[] = {"a*2+b",
                                        "a>b ? a : -b",
                                        "sqrt(a*a+b*b)+_n",
                                        "nvl(a,7)+k",
                                        "isNuLL(a)+isNuLL(k)",
                                        "sin(a)*exp(b/1000)",
                                        "(a/b)^2",
                                        "d+1",
                                        "id*3",
                                        "tn+a",
                                        "round2(a,1)",
                                        "rand1(10)+a",
                                        "a=a+1",
                                        "isNull(b)",
                                        "strlen(t)",
                                        "_n",
                                        "k*k",
                                        "a/0",
                                        "(a&&b)||k==3",
                                        "b%7"};
constexpr const char* kKeyExpressions[] = {"id", "k", "id*2", "_n", "abs(a)", "a", "id-3", "k/2"};
constexpr const char* kConditions[] = {
    "a>b",         "_n%3==0", "k==3 || a<0",    "1",      "0",       "_null",
    "strlen(t)>2", "b>-1e9",  "id>40",          "id<900", "tn>3",    "isNuLL(a)",
    "nvl(a,1)",    "_n<700",  "round2(a,0)==1", "_n<1",   "_n < 20", "_n<1500"};

// Parts of these depend on a text alone, which few values of a columnar file have.
constexpr const char* kTextConditions[] = {"t==\"text\"",
                                           "contains(t,\"ex\")",
                                           "substr(t,0,1)>\"4\" && a>b",
                                           "isNull(t) || t<\"7\"",
                                           "t==\"3\" ? k==3 : strlen(t)>3",
                                           "regexMatch(\"text\",t)",
                                           "t==\"(\" ? a>b : regexMatch(\"text\",t)"};
constexpr const char* kTextExpressions[] = {"toupper(t)", "t//\"-\"//substr(t,1,2)",
                                            "a>b ? left(t,2) : tolower(t)"};

// 2 stops the run at a value that does not fit.
inline QByteArray castMode(Dice& dice, const Drawn& drawn, int chances) {
  return QByteArray::number(drawn.canFail && dice.oneIn(chances) ? 2 : dice.below(2));
}

inline QByteArray calculatorXml(Dice& dice, const Drawn& drawn, const QByteArray& name) {
  QByteArray xml = "<Calculator name='" + name + "' seed='3' dateFormat='yyyy'";
  xml += " castToKey1='" + castMode(dice, drawn, 4) + "'";
  xml += " castToKey2='" + castMode(dice, drawn, 4) + "'";
  xml += " castToKey3='" + castMode(dice, drawn, 6) + "'";
  xml += dice.oneIn(8) ? " useJIT='0'" : "";
  xml += !drawn.canFail || dice.oneIn(3) ? " abortWhenError='0'" : "";
  xml += dice.oneIn(3) ? " emptyETToNull='0'" : "";
  xml += ">" + drawn.inputs() + "<OutputVars>";
  const int outputs = 1 + dice.below(5);
  for (int i = 0; i < outputs; ++i) {
    QByteArray column = name + QByteArray::number(i);
    QByteArray attributes;
    QByteArray expression = dice.oneOf(kExpressions);
    if (dice.oneIn(4)) {
      attributes = " meta='K'";
      expression = dice.oneOf(kKeyExpressions);
    } else if (dice.oneIn(5)) {
      attributes = " meta='U'";
      expression = drawn.hasTexts && dice.oneIn(2) ? dice.oneOf(kTextExpressions) : expression;
    }
    if (i < 2 && dice.oneIn(4)) {
      column = i == 0 ? "a" : "b";
      attributes += " update='1'";
    }
    xml += "<OutputVar name='" + column + "'" + attributes + ">" + drawn.expression(expression) +
           "</OutputVar>";
  }
  return xml + "</OutputVars></Calculator>";
}

inline QByteArray filterXml(Dice& dice, const Drawn& drawn, const QByteArray& name) {
  const QByteArray condition =
      drawn.hasTexts && dice.oneIn(3) ? dice.oneOf(kTextConditions) : dice.oneOf(kConditions);
  return "<FilterRows name='" + name + "' dateFormat='yyyy'" +
         (dice.oneIn(8) ? " truncate='1'" : "") +
         (!drawn.canFail || dice.oneIn(3) ? " abortWhenError='0'" : "") + "><Expression>" +
         drawn.expression(condition) + "</Expression>" + drawn.inputs() + "</FilterRows>";
}

// Of numbers and of keys; their elements are columns of the drawn tables.
constexpr char kVectors[] =
    "<InlineTable name='vectors'><Column name='alias' meta='U'/><Column name='column' meta='U'/>"
    "<Row><V>v</V><V>a</V></Row><Row><V>v</V><V>b</V></Row><Row><V>w</V><V>b</V></Row>"
    "<Row><V>w</V><V>id</V></Row><Row><V>y</V><V>k</V></Row></InlineTable>";

// Its second input pin takes the vectors.
inline QByteArray vectorizedXml(Dice& dice, const Drawn& drawn, const QByteArray& name) {
  static constexpr const char* kOfVectors[] = {"v*2+w",    "v>w ? v : -y", "v+_n",        "v/0",
                                               "nvl(v,3)", "isNuLL(v)+y",  "rand1(10)+v", "tn+v"};
  static constexpr const char* kKeysOfVectors[] = {"abs(v)", "y*2", "w", "_n"};
  QByteArray xml = "<CalculatorVectorized name='" + name + "' seed='3' dateFormat='yyyy'";
  xml += " castToKey1='" + castMode(dice, drawn, 4) + "'";
  xml += " castToKey2='" + castMode(dice, drawn, 4) + "'";
  xml += " castToKey3='" + castMode(dice, drawn, 6) + "'";
  xml += !drawn.canFail || dice.oneIn(3) ? " abortWhenError='0'" : "";
  xml += ">" + drawn.inputs() + "<OutputVars>";
  for (int i = dice.below(3); i >= 0; --i) {
    const bool isKey = dice.oneIn(4);
    xml += "<OutputVar name='\"" + name + QByteArray::number(i) + "_\"//_n'" +
           (isKey ? " meta='K'>" : ">") +
           drawn.expression(isKey ? dice.oneOf(kKeysOfVectors) : dice.oneOf(kOfVectors)) +
           "</OutputVar>";
  }
  return xml + "</OutputVars></CalculatorVectorized>";
}

inline QByteArray rowActionXml(Dice& dice, const QByteArray& name) {
  return "<RowAction name='" + name + "' drops='" + QByteArray::number(dice.below(5)) + "'" +
         (dice.oneIn(6) ? " ends='700'" : "") + "/>";
}

inline QByteArray sinkXml(Dice& dice, const QByteArray& name) {
  switch (dice.below(7)) {
    case 0:
      return "<writeColumnarGel name='" + name + "' file='" + name +
             ".cgel_kelvarin' nRowsInBlock='" + (dice.oneIn(2) ? "700" : "5000") + "'/>";
    case 1:
      return "<Discard name='" + name + "'/>";
    case 2:
      return "<WriteParquet name='" + name + "' file='" + name + ".parquet'/>";
    case 3:
      return "<WriteArrow name='" + name + "' file='" + name + ".arrow'/>";
    default:
      return "<WriteCSV name='" + name + "' file='" + name + ".csv' nullText='NULL'/>";
  }
}

class DrawnGraphs : public ::testing::Test {
 protected:
  static QByteArray document(const QByteArray& actions, const QByteArray& links) {
    return "<KelvarinGraph version='1.0'><Actions>" + actions + "</Actions><Links>" + links +
           "</Links></KelvarinGraph>";
  }

  // With `threads`; 0: as many as the machine has processors.
  RunResult run(const QByteArray& document, const ExecutionOptions& options = {}, int threads = 0) {
    auto graph = parseGraph(document, m_folder.filePath("graph.kelvarin"), catalogue());
    if (!graph) {
      ADD_FAILURE() << graph.error().front().text().toStdString();
      return {};
    }
    graph->settings->setThreadCount(threads);
    RunRecord record;
    return runGraph(*graph, record, options);
  }

  // Of the files that match, their names and bytes.
  QByteArray contentOf(const QStringList& patterns) const {
    QByteArray content;
    for (const QString& name : namesOf(patterns)) {
      QFile file(m_folder.filePath(name));
      EXPECT_TRUE(file.open(QIODevice::ReadOnly));
      content += name.toUtf8() + "\n" + file.readAll();
    }
    return content;
  }
  void removeFiles(const QStringList& patterns) const {
    for (const QString& name : namesOf(patterns)) {
      QFile::remove(m_folder.filePath(name));
    }
  }

  // Without rows there is no columnar file.
  void writeTables(Dice& dice, int rows) {
    removeFiles({"in.*"});
    QFile file(m_folder.filePath("in.csv"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("id,a,b,k,t\n");
    for (int i = 0; i < rows; ++i) {
      file.write(QByteArray::number(i) + "," + number(dice) + "," + number(dice) + "," +
                 (dice.oneIn(60) ? QByteArray() : QByteArray::number(dice.below(6))) + "," +
                 (dice.oneIn(5) ? dice.oneOf(kTexts) : QByteArray::number(dice.below(9))) + "\n");
    }
    file.close();
    const char* const sinks[] = {"<WriteParquet name='sink' file='in.parquet'/>",
                                 "<WriteArrow name='sink' file='in.arrow'/>",
                                 "<writeColumnarGel name='sink' file='in.cgel_kelvarin' "
                                 "nRowsInBlock='900'/>"};
    for (const char* sink : sinks) {
      ASSERT_TRUE(run(document(kCsv + QByteArray(sink), link("source", "sink"))).isOk());
    }
  }

  static QByteArray number(Dice& dice) {
    if (dice.oneIn(12)) {
      return dice.oneOf({"", "nan", "inf", "-inf", "0", "-0", "1e300"});
    }
    return QByteArray::number((dice.below(2001) - 1000) / 8.0);
  }

  // Line breaks in quotes are where a reader must not cut a file.
  static constexpr const char* kTexts[] = {
      "t\u00e9xt", "text", "\"a,\n\"\"b\"\"\"", "", "\"\"", "a text that is longer than the others",
      "("};
  static constexpr char kCsv[] =
      "<ReadCSV name='source' file='in.csv' sortedOn='id 0'><Column name='id' meta='F'/>"
      "<Column name='a' meta='F'/><Column name='b' meta='F'/><Column name='k' meta='K'/>"
      "<Column name='t' meta='U'/></ReadCSV>";
  static constexpr char kUnsortedCsv[] =
      "<ReadCSV name='source' file='in.csv'><Column name='k' meta='K'/>"
      "<Column name='t' meta='U'/></ReadCSV>";
  static constexpr const char* kSources[] = {
      kCsv, kUnsortedCsv, "<ReadParquet name='source' file='in.parquet'/>",
      "<ReadArrow name='source' file='in.arrow'/>",
      "<ReadColumnarGel name='source' fileName='in.cgel_kelvarin'/>"};
  // Without texts, and with columns that are not read.
  static constexpr char kNumbersAlone[] =
      "<ReadColumnarGel name='source' fileName='in.cgel_kelvarin' columnSelection='1'>"
      "<ColumnsToRead><SL><S>id</S><S>a</S><S>b</S><S>k</S></SL></ColumnsToRead>"
      "</ReadColumnarGel>";

  QTemporaryDir m_folder;

 private:
  QStringList namesOf(const QStringList& patterns) const {
    return QDir(m_folder.path()).entryList(patterns, QDir::Files, QDir::Name);
  }
};

// The first lines in which two texts differ, with those around them.
inline std::string firstDifference(const QByteArray& expected, const QByteArray& seen) {
  const QList<QByteArray> left = expected.split('\n');
  const QList<QByteArray> right = seen.split('\n');
  qsizetype line = 0;
  while (line < std::min(left.size(), right.size()) && left[line] == right[line]) {
    ++line;
  }
  const qsizetype from = std::max<qsizetype>(0, line - 3);
  QByteArray shown = "expected:\n" + left.mid(from, 12).join('\n').left(3000) + "\nseen:\n" +
                     right.mid(from, 12).join('\n').left(3000);
  return shown.replace('\0', '.').toStdString();
}

// How many graphs a test draws; the environment variable overrules.
inline int graphCount(const char* variable, int usual) {
  const char* given = std::getenv(variable);
  return given == nullptr ? usual : std::atoi(given);
}

}  // namespace kelvarin
