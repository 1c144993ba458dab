// A preview on the screen, of a graph that is made of a few actions.
//
// Used by the tests of the panel.
#pragma once

#include <gtest/gtest.h>
#include <QLabel>
#include <QTest>
#include <QToolButton>

#include "gui/document/graph_commands.h"
#include "gui/preview/preview_panel.h"
#include "gui/preview/preview_table.h"
#include "host/contract/host_session.h"

namespace kelvarin::testing {

struct ShownPreview {
  explicit ShownPreview(ActionCatalogue::Prototypes actions)
      : catalogue(nullptr, std::move(actions)) {}

  void openGraph(const QByteArray& document) {
    ASSERT_TRUE(graph.load(document, QStringLiteral("/tests/g.kelvarin")));
    panel.resize(1000, 400);
    panel.show();
  }
  PinRef pinOf(const char* action, bool isOutput = true) const {
    return {graph.idOf(QString::fromLatin1(action)), 0, isOutput};
  }
  PreviewTable& table() { return *panel.findChild<PreviewTable*>(); }
  // Hidden when nothing is computed any more.
  QToolButton& stopButton() {
    return *panel.findChild<QToolButton*>(QStringLiteral("previewStop"));
  }
  QString status() { return panel.findChild<QLabel*>(QStringLiteral("previewStatus"))->text(); }

  ActionCatalogue catalogue;
  EditedGraph graph{catalogue};
  GraphCommands commands{graph};
  EditServices services{graph, catalogue};
  HostSession session{&services};
  const HostSession::Scope scope{&session};
  PreviewPanel panel{graph, services};
};

}  // namespace kelvarin::testing
