// What windows ask about the file of their graph: it was changed on the disk, is open elsewhere, or
// cannot be written.
//
// Threads: the user-interface thread.
#pragma once

#include <functional>

#include <QString>

class QWidget;

namespace kelvarin {

class InfoLine;

enum class OtherFileChoice { keepMine, loadTheirs, compare, cancel };
// Before a save, which would replace what another program has written.
void askAboutOtherFile(QWidget* window, const QString& file,
                       const std::function<void(OtherFileChoice)>& answer);

// The same without a save under way: a line with links, and the choice that a link stands for.
void showOtherFile(InfoLine& line);
OtherFileChoice otherFileChoice(const QString& link);
void showFileIsGone(InfoLine& line, const QString& file);

enum class LockChoice { openCopy, openAnyway, cancel };
// `holder` says who has it open.
void askAboutLock(QWidget* window, const QString& file, const QString& holder,
                  const std::function<void(LockChoice)>& answer);

enum class FailedSaveChoice { otherName, cancel };
void askAboutFailedSave(QWidget* window, const QString& reason,
                        const std::function<void(FailedSaveChoice)>& answer);

// The name that the user chooses for a graph; empty when the user gave up.
QString askForGraphName(QWidget* window, const QString& suggestion);
// For the choice of files.
QString graphFileFilter();

}  // namespace kelvarin
