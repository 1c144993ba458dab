// Two versions of a graph file beside each other, line by line.
//
// Threads: the user-interface thread.
#pragma once

#include <QByteArray>

class QWidget;

namespace kelvarin {

// Lines that only the disk has begin with "-", those that only this window has with "+".
void showDifference(const QByteArray& onDisk, const QByteArray& here, QWidget* parent);

}  // namespace kelvarin
