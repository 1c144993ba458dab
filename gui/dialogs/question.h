// A question that does not stop its window, such as what is to become of unsaved changes.
//
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include <QMessageBox>

namespace kelvarin {

struct Question {
  QString text;
  QString further;  // may be empty
  // The first is the default; an empty label means the button's own.
  std::vector<std::pair<QMessageBox::StandardButton, QString>> choices;
};

// `answer` gets the button that was pressed, Cancel where the user closed the question. It is not
// called when the window is destroyed before.
void ask(QWidget* window, const Question& question,
         const std::function<void(QMessageBox::StandardButton)>& answer);

}  // namespace kelvarin
