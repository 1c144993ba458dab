// Lays a graph out in layers from left to right, in a process of its own that can be ended.
//
// Threads: the user-interface thread; it never waits.
#pragma once

#include <memory>

#include <QHash>
#include <QObject>
#include <QPointF>
#include <QSizeF>
#include <QString>

#include "gui/document/graph_parts.h"

namespace kelvarin {

class EditedGraph;

class Arrangement : public QObject {
  Q_OBJECT

 public:
  explicit Arrangement(QObject* parent = nullptr);
  // Ends the process.
  ~Arrangement() override;

  // Of `actions`, or of all where it is empty; those around them stay where they are. An earlier
  // request is given up. `sizes` are the boxes' on the canvas.
  void start(const EditedGraph& graph, const QSet<ActionId>& actions,
             const QHash<ActionId, QSizeF>& sizes, const PinSpacing& pins = {});
  void cancel();
  bool isRunning() const;
  // Another one than that beside the libraries.
  void setProgram(const QString& file);

 signals:
  // Top left corners, on the canvas's grid. Actions may have gone from the graph meanwhile.
  void arranged(const QHash<kelvarin::ActionId, QPointF>& positions);
  void failed(const QString& reason);

 private:
  void run(const QByteArray& input);
  void take();
  static QString programMissing();

  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
