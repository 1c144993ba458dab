// One value of a preview as a whole, to be read and copied.
//
// Threads: the user-interface thread.
#pragma once

#include <QString>

class QWidget;

namespace kelvarin {

// Deletes itself when it is closed.
void showValueWindow(const QString& title, const QString& value, QWidget* parent);

}  // namespace kelvarin
