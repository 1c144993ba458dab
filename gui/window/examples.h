// The example graphs that come with the program, for the start page.
//
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QPixmap>
#include <QString>

namespace kelvarin {

class ActionCatalogue;
class Theme;

struct Example {
  QString path;
  QString title;
  QString description;
  QPixmap picture;  // of the canvas
};

// Those that are installed; none where the examples are not.
std::vector<Example> findExamples(const ActionCatalogue& catalogue, Theme& theme);

// The graph file of the tour; empty where the examples are not installed.
QString tourExample();

}  // namespace kelvarin
