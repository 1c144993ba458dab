// What anyone may expect of every window: each control has a name for screen readers and is reached
// by Tab, no text is cut, and no key has two owners.
//
// Used by the tests of all windows and editors. Each operation returns one line for every fault,
// with the path of the widget.
// Threads: the user-interface thread.
#pragma once

#include <functional>

#include <QStringList>

class QWidget;

namespace kelvarin::testing {

// Shows each page of every tab and stack below `root` in turn, and calls `visit` for each state.
void onEveryPage(QWidget& root, const std::function<void()>& visit);

QStringList controlsWithoutName(QWidget& root);
QStringList controlsOutOfTabReach(QWidget& root);
// Presses Tab in the active window until the focus is where it began: controls that are seen and
// did not get it, and widgets that got it unseen.
QStringList controlsPassedByTab(QWidget& window);
// Of what is visible now: labels, buttons and fields that are smaller than their content. A label
// that shortens its text on purpose has the property "elides".
QStringList cutTexts(QWidget& root);
// Keys that belong to two actions, shortcuts or buttons which can be active at the same time.
QStringList keysWithTwoOwners(QWidget& root);
// The same of the active window where the focus is now, as Qt itself finds them; also mnemonics.
QStringList ambiguousKeys(QWidget& window);
// Letters that are the mnemonic of two texts which are visible now. Those of the menus and lists
// around an editor count as texts, in the language ("de") of the translation that is installed.
QStringList mnemonicsWithTwoOwners(QWidget& root, const QString& language = QStringLiteral("en"));

// While it lives, all texts are so many times as large.
class LargeFonts {
 public:
  explicit LargeFonts(double factor);
  ~LargeFonts();
  LargeFonts(const LargeFonts&) = delete;
  LargeFonts& operator=(const LargeFonts&) = delete;

 private:
  double m_pointSize;
};

}  // namespace kelvarin::testing
