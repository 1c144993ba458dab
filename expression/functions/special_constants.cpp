// Values with a name: those of the language, and those of the program and the graph that run.

#include <algorithm>
#include <array>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUuid>

#include "expression/functions/function_table.h"
#include "expression/functions/random_generator.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

QString nullText(const GlobalParameters*) {
  return {};
}

// Empty rather than null in a program without an application object.
QString directoryOfApplication(const GlobalParameters*) {
  return QCoreApplication::instance() == nullptr ? QStringLiteral("")
                                                 : QCoreApplication::applicationDirPath();
}

QString versionOfProgram(const GlobalParameters*) {
  return MainUI::kelvarinID();
}

// Null without a graph file.
QString fileOfGraph(const GlobalParameters* graph) {
  return graph == nullptr || graph->graphFile().isEmpty() ? QString() : graph->graphFile();
}

QString folderOfGraph(const GlobalParameters* graph) {
  const QString file = fileOfGraph(graph);
  if (!file.isNull()) {
    return QFileInfo(file).absolutePath();
  }
  return graph == nullptr || graph->workingDir().isEmpty() ? QDir::currentPath()
                                                           : graph->workingDir();
}

QString folderOfTemporaryFiles(const GlobalParameters*) {
  return QDir::tempPath();
}

// Of a run that is to be repeated it follows from the run's seed.
QString uniqueText(const GlobalParameters* graph) {
  if (graph == nullptr || !graph->randomSeed()) {
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
  }
  RandomGenerator random(*graph->randomSeed());
  std::array<std::uint32_t, 4> words;
  std::ranges::generate(words, random);
  const auto bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(words.data()),
                                             static_cast<qsizetype>(sizeof words));
  return QUuid::fromRfc4122(bytes).toString(QUuid::WithoutBraces);
}

constexpr ConstantLine kConstants[] = {
    {"_null", kInAll, kNullNumber, nullptr, "_null - the missing number"},
    {"_nan", kInAll, kNotANumber, nullptr, "_nan - not a number"},
    {"_infinity", kInAll, kInfinity, nullptr, "_infinity - positive infinity"},
    {"_nullS", kInString, 0.0, nullText, "_nullS - the missing text"},
    {"kelvarinDir", kInString, 0.0, directoryOfApplication,
     "kelvarinDir - the directory of the running application"},
    {"_kelvarinID", kInString, 0.0, versionOfProgram,
     "_kelvarinID - the name and version of the running program"},
    {"_currentDir", kInString, 0.0, folderOfGraph,
     "_currentDir - the directory of the graph file, or the working directory"},
    {"_tempDir", kInString, 0.0, folderOfTemporaryFiles,
     "_tempDir - the directory for temporary files"},
    {"_currentFile", kInString, 0.0, fileOfGraph,
     "_currentFile - the graph file, null where there is none"},
    {"_uniqueID", kInString, 0.0, uniqueText,
     "_uniqueID - a text that no other run has, the same on every row", false, true},
    {"pi", kInAll, 3.141592653589793, nullptr, "pi - the ratio of a circle's circumference", true},
    {"e", kInAll, 2.718281828459045, nullptr, "e - the base of the natural logarithm", true},
    // kept: twelve decimals.
    {"_pi", kInAll, 3.141592653589, nullptr, "_pi - pi with twelve decimals", true},
    {"_e", kInAll, 2.718281828459045, nullptr, "_e - the base of the natural logarithm", true},
};

}  // namespace

std::span<const ConstantLine> constantTable() {
  return kConstants;
}

}  // namespace kelvarin
