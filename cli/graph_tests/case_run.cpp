#include "cli/graph_tests/case_run.h"

#include <optional>

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QProcess>

#include "cli/graph_run.h"
#include "cli/graph_tests/compared_files.h"
#include "cli/graph_tests/messages.h"
#include "cli/graph_tests/sandbox.h"
#include "cli/interrupt.h"
#include "cli/table_kind.h"
#include "host/contract/file_user.h"

namespace kelvarin {

namespace {

// Files of standard output are expected under this name, with any extension.
const QString kStandardOutput = QStringLiteral("stdout");

QString contentOf(const QString& file) {
  QFile input(file);
  return input.open(QIODevice::ReadOnly) ? QString::fromUtf8(input.readAll()) : QString();
}

class CaseRun {
 public:
  CaseRun(const TestCase& test, const CaseOptions& options)
      : m_test(test), m_options(options), m_sandbox(test.graph) {}

  // Null where the test has passed.
  QString run() {
    if (!m_sandbox.isValid()) {
      return test_messages::cannotMakeFolder(m_sandbox.error());
    }
    auto settings = readCaseSettings(m_test.folder);
    if (!settings) {
      return settings.error();
    }
    m_settings = std::move(*settings);
    m_sandbox.linkGraphFolder();
    m_sandbox.layOver(m_test.folder + QStringLiteral("/input"));
    if (const QString fault = prepare(); !fault.isNull()) {
      return fault;
    }
    if (const QString fault = runGraphInProcess(); !fault.isNull()) {
      return fault;
    }
    const QString fault = judgeMessages();
    return fault.isNull() && !m_settings.failure ? judgeFiles() : fault;
  }

  QStringList takeUpdated() { return std::move(m_updated); }

 private:
  // A graph with faults is left to the run, which reports them.
  QString prepare() {
    const auto catalogue = loadCatalogue(m_options.plugin);
    if (!catalogue) {
      return catalogue.error();
    }
    const auto graph = readGraph(m_sandbox.graph(), **catalogue, m_settings.parameters);
    if (!graph) {
      return {};
    }
    m_written = filesWrittenBy(*graph);
    const auto prepared = m_sandbox.prepareFilesOf(*graph);
    return prepared ? QString() : m_sandbox.withoutRoot(prepared.error());
  }

  static QStringList filesWrittenBy(const Graph& graph) {
    QStringList files;
    for (const GraphAction& action : graph.actions) {
      const auto* user = dynamic_cast<const FileUser*>(action.item.get());
      for (const UsedFile& file : user == nullptr ? QList<UsedFile>() : user->usedFiles()) {
        if (file.use == FileUse::writes && !action.isDisabled) {
          files += file.path;
        }
      }
    }
    return files;
  }

  QStringList arguments() const {
    QStringList list{QStringLiteral("run"), m_sandbox.graph(), QStringLiteral("--quiet"),
                     QStringLiteral("--threads"), QString::number(m_options.threads)};
    for (const ParameterOverride& parameter : m_settings.parameters) {
      list += {QStringLiteral("--set"), parameter.name + u'=' + parameter.value};
    }
    if (!m_settings.seed.isEmpty()) {
      list += {QStringLiteral("--seed"), m_settings.seed};
    }
    if (!m_settings.now.isEmpty()) {
      list += {QStringLiteral("--now"), m_settings.now};
    }
    if (!m_options.plugin.empty()) {
      const QString plugin = QString::fromStdString(m_options.plugin);
      list += {QStringLiteral("--plugin"), QDir::current().absoluteFilePath(plugin)};
    }
    return list;
  }

  QString outputFile() const { return m_sandbox.root() + QStringLiteral("/stdout"); }
  QString messagesFile() const { return m_sandbox.root() + QStringLiteral("/stderr"); }

  QString runGraphInProcess() {
    QProcess process;
    process.setWorkingDirectory(m_sandbox.graphFolder());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(outputFile());
    process.setStandardErrorFile(messagesFile());
    process.start(QCoreApplication::applicationFilePath(), arguments());
    if (!process.waitForStarted()) {
      return test_messages::programNotStarted(process.errorString());
    }
    constexpr int kMilliseconds = 100;
    QElapsedTimer timer;
    timer.start();
    while (!process.waitForFinished(kMilliseconds)) {
      const bool isLate = timer.elapsed() > 1000LL * m_options.timeout;
      if (process.state() == QProcess::NotRunning) {
        break;
      }
      if (isLate || wasInterrupted()) {
        process.kill();
        process.waitForFinished();
        return isLate ? test_messages::runTookTooLong(m_options.timeout)
                      : test_messages::interrupted();
      }
    }
    m_hasEndedWell = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    m_messages = m_sandbox.withoutRoot(contentOf(messagesFile())).trimmed();
    return {};
  }

  QString judgeMessages() const {
    if (m_settings.failure && m_hasEndedWell) {
      return test_messages::runDidNotFail();
    }
    if (!m_settings.failure && !m_hasEndedWell) {
      return test_messages::runFailed(m_messages);
    }
    QStringList wanted = m_settings.messages;
    wanted += m_settings.failure.value_or(QString());
    for (const QString& text : wanted) {
      if (!m_messages.contains(text)) {
        return test_messages::notSaid(text, m_messages);
      }
    }
    return {};
  }

  QString judgeFiles() {
    const QString folder = m_test.folder + QStringLiteral("/expected");
    if (m_options.isUpdate) {
      update(folder);
      return {};
    }
    QStringList expected;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
      expected += QDir(folder).relativeFilePath(files.next());
    }
    expected.sort();
    for (const QString& name : expected) {
      if (const QString difference = differenceOf(folder, name); !difference.isNull()) {
        return difference;
      }
    }
    return {};
  }

  // What belongs to another file: a columnar table has several.
  static bool isSideFile(const QString& name) {
    return name.endsWith(QStringLiteral(".cs_kelvarin"));
  }

  QString differenceOf(const QString& folder, const QString& name) const {
    if (isSideFile(name)) {
      return {};
    }
    QString known = name;  // as the run calls it
    QString found = m_sandbox.graphFolder() + u'/' + name;
    if (QFileInfo(name).completeBaseName() == kStandardOutput && !name.contains(u'/')) {
      found = outputFile();
    } else if (!QFileInfo::exists(found) && name.endsWith(QStringLiteral(".csv"))) {
      // A table of another format, written down as text.
      known.chop(4);
      found.chop(4);
    }
    if (!QFileInfo::exists(found)) {
      return test_messages::fileNotWritten(name);
    }
    const QString difference = fileDifference(folder + u'/' + name, found, known,
                                              m_settings.comparisonOf(known), m_options.plugin);
    return difference.isNull() ? QString()
                               : test_messages::inFile(name, m_sandbox.withoutRoot(difference));
  }

  // What the run has written in files of their own becomes what is expected.
  void update(const QString& folder) {
    for (const QString& file : m_written) {
      const bool isOutput = isStandardOutput(file);
      const QString name =
          isOutput ? kStandardOutput + QStringLiteral(".csv")
                   : QDir(m_sandbox.graphFolder()).relativeFilePath(QDir::cleanPath(file));
      const QString source = isOutput ? outputFile() : file;
      if (!QFileInfo(source).isFile() || name.startsWith(QStringLiteral("../")) ||
          tableKindOf(name.toStdString()) == nullptr ||
          tableKindOf(name.toStdString())->isColumnar()) {
        continue;
      }
      const QString target = folder + u'/' + name;
      QDir().mkpath(QFileInfo(target).absolutePath());
      QFile::remove(target);
      if (QFile::copy(source, target)) {
        m_updated += target;
      }
    }
  }

  const TestCase& m_test;
  const CaseOptions& m_options;
  Sandbox m_sandbox;
  CaseSettings m_settings;
  QStringList m_written;
  QString m_messages;
  QStringList m_updated;
  bool m_hasEndedWell = false;
};

}  // namespace

CaseResult runCase(const TestCase& test, const CaseOptions& options) {
  QElapsedTimer timer;
  timer.start();
  CaseRun run(test, options);
  CaseResult result;
  result.failure = run.run();
  result.updated = run.takeUpdated();
  result.seconds = static_cast<double>(timer.elapsed()) / 1000.0;
  return result;
}

}  // namespace kelvarin
