#include "cli/install/installation_checks.h"

#include <array>
#include <clocale>

#include <langinfo.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QTemporaryFile>

#include "base/sibling_library.h"
#include "cli/graph_run.h"
#include "cli/install/messages.h"
#include "cli/install/version_text.h"
#include "host/contract/main_ui.h"
#include "host/contract/window_request.h"
#include "host/tables/arrow/arrow_formats.h"
#include "jit/executable_memory.h"

namespace kelvarin {

namespace {

namespace texts = install_messages;

InstallationCheck ok(const QString& name, const QString& found) {
  return {name, found, {}};
}

InstallationCheck checkPlugin() {
  const QString name = QStringLiteral("plug-in");
  auto plugin = PluginLibrary::load({});
  if (!plugin) {
    return {name, plugin.error(), texts::installPlugin()};
  }
  const QString file = (*plugin)->file();
  const double version = (*plugin)->version();
  const std::size_t actions = (*plugin)->createPrototypes().size();
  if (actions == 0) {
    return {name, texts::pluginWithoutActions(file), texts::installPlugin()};
  }
  return ok(name, texts::pluginFits(file, version, actions));
}

InstallationCheck checkArrow() {
  const QString name = QStringLiteral("Parquet and Arrow files");
  const auto formats = ArrowFormats::load();
  return formats ? ok(name, QStringLiteral("the library for them opens"))
                 : InstallationCheck{name, formats.error(), texts::installArrow()};
}

// Servers have none, which is no problem.
InstallationCheck checkWindows() {
  const auto path = siblingLibrary(reinterpret_cast<const void*>(&MainUI::kelvarinID), kGuiLibrary);
  const bool isThere = QFileInfo(QString::fromStdString(path)).isFile();
  return ok(QStringLiteral("windows"), isThere ? QStringLiteral("installed") : texts::noWindows());
}

InstallationCheck checkNativeCode() {
  constexpr std::array<std::uint8_t, 1> kReturn = {0xC3};
  const QString name = QStringLiteral("native code");
  const bool isAllowed = !jit::ExecutableMemory::holding(kReturn).isEmpty();
  return isAllowed ? ok(name, QString::fromStdString(processorText()))
                   : InstallationCheck{name, texts::noExecutableMemory(), texts::allowExecution()};
}

InstallationCheck checkTemporaryFolder() {
  constexpr double kGiga = 1e9;
  constexpr double kFew = 0.5;
  const QString name = QStringLiteral("temporary folder");
  const QString folder = QDir::tempPath();
  QTemporaryFile file(folder + QStringLiteral("/kelvarin-XXXXXX"));
  if (!file.open() || file.write("x") != 1 || !file.flush()) {
    return {name, texts::folderNotWritable(folder), texts::setTemporaryFolder()};
  }
  struct statvfs space = {};
  const bool isKnown = statvfs(folder.toLocal8Bit().constData(), &space) == 0;
  const double free =
      isKnown ? static_cast<double>(space.f_bavail) * static_cast<double>(space.f_frsize) / kGiga
              : 0;
  const QString found = texts::freeSpace(folder, free);
  return !isKnown || free >= kFew ? ok(name, found)
                                  : InstallationCheck{name, found, texts::setTemporaryFolder()};
}

// By the environment; the program itself has UTF-8 in any case.
InstallationCheck checkLocale() {
  const QString name = QStringLiteral("locale");
  const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
  if (locale == nullptr) {
    return {name, texts::unknownLocale(), texts::setLocale()};
  }
  const QString codes = QString::fromLatin1(nl_langinfo_l(CODESET, locale));
  freelocale(locale);
  const bool isUtf8 = codes == QLatin1String("UTF-8");
  return {name, codes, isUtf8 ? QString() : texts::setLocale()};
}

InstallationCheck checkTerminal() {
  const QString name = QStringLiteral("terminal");
  winsize size = {};
  if (isatty(STDERR_FILENO) == 0 || ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0) {
    return ok(name, QStringLiteral("none: no progress, no colours"));
  }
  return ok(name, texts::terminalOf(qEnvironmentVariable("TERM"), size.ws_col, size.ws_row));
}

InstallationCheck checkOpenFiles() {
  constexpr rlim_t kFew = 256;
  const QString name = QStringLiteral("open files");
  rlimit files = {};
  if (getrlimit(RLIMIT_NOFILE, &files) != 0 || files.rlim_max == RLIM_INFINITY) {
    return ok(name, QStringLiteral("no limit"));
  }
  const QString found = QStringLiteral("at most %1").arg(files.rlim_max);
  return {name, found, files.rlim_max < kFew ? texts::allowFiles() : QString()};
}

InstallationCheck checkEnvironment() {
  QStringList set;
  const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const QString& variable : environment.keys()) {
    if (variable.startsWith(QLatin1String("KELVARIN_"))) {
      set += variable + u'=' + environment.value(variable);
    }
  }
  set.sort();
  return ok(QStringLiteral("environment"), set.isEmpty()
                                               ? QStringLiteral("no variable of kelvarin is set")
                                               : set.join(QStringLiteral(", ")));
}

}  // namespace

std::vector<InstallationCheck> checkInstallation() {
  return {ok(QStringLiteral("program"), MainUI::kelvarinID()),
          ok(QStringLiteral("libraries"), QString::fromStdString(libraryVersions())),
          checkPlugin(),
          checkArrow(),
          checkWindows(),
          checkNativeCode(),
          checkTemporaryFolder(),
          checkLocale(),
          checkTerminal(),
          checkOpenFiles(),
          checkEnvironment()};
}

}  // namespace kelvarin
