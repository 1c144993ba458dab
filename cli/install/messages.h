// The texts about an installation.
#pragma once

#include <QString>

namespace kelvarin::install_messages {

inline QString manualNotWritten(const QString& folder) {
  return QStringLiteral("The manual pages cannot be written to '%1'. Is the folder writable?")
      .arg(folder);
}

inline QString pluginFits(const QString& file, double version, std::size_t actions) {
  return QStringLiteral("%1, version %2, %3 actions")
      .arg(file, QString::number(version), QString::number(actions));
}

inline QString pluginWithoutActions(const QString& file) {
  return QStringLiteral("%1 offers no action").arg(file);
}

inline QString installPlugin() {
  return QStringLiteral(
      "Install kelvarin anew, so that program and plug-in are of one build; a plug-in elsewhere is "
      "named by KELVARIN_PLUGIN.");
}

inline QString installArrow() {
  return QStringLiteral(
      "Install kelvarin anew: libKelvarinArrow.so and the libraries of Arrow lie beside "
      "libKelvarinCore.so. Other files can be read and written meanwhile.");
}

inline QString noWindows() {
  return QStringLiteral("not installed (they come with the package kelvarin-gui)");
}

inline QString noExecutableMemory() {
  return QStringLiteral("the system allows no memory with new machine code");
}

inline QString allowExecution() {
  return QStringLiteral(
      "Expressions are evaluated by slower engines, with the same results. A rule of the system "
      "(SELinux, systemd's MemoryDenyWriteExecute) forbids it; allow it for kelvarin.");
}

inline QString folderNotWritable(const QString& folder) {
  return QStringLiteral("'%1' cannot be written to").arg(folder);
}

inline QString freeSpace(const QString& folder, double gigabytes) {
  return QStringLiteral("%1, %2 GB free").arg(folder, QString::number(gigabytes, 'f', 1));
}

inline QString setTemporaryFolder() {
  return QStringLiteral(
      "Rows that wait for a slower reader are kept there: set TMPDIR to a folder with space.");
}

inline QString unknownLocale() {
  return QStringLiteral("the one that LANG or LC_ALL names is not installed");
}

inline QString setLocale() {
  return QStringLiteral(
      "Names and texts beyond ASCII are UTF-8 here. Set LANG to a locale with UTF-8, C.UTF-8 for "
      "instance.");
}

inline QString terminalOf(const QString& kind, int columns, int lines) {
  return QStringLiteral("%1, %2 columns, %3 lines")
      .arg(kind.isEmpty() ? QStringLiteral("of no kind (TERM is not set)") : kind,
           QString::number(columns), QString::number(lines));
}

inline QString allowFiles() {
  return QStringLiteral(
      "A table that is split into many files needs one for each: raise the limit by ulimit -Hn.");
}

inline QString nothingWrong() {
  return QStringLiteral("Everything that kelvarin needs is there.");
}

}  // namespace kelvarin::install_messages
