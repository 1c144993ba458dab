// A graph of the engine's test actions that is open as in a window.
#pragma once

#include <gtest/gtest.h>
#include <QSignalSpy>
#include <QTest>

#include "gui/document/graph_commands.h"
#include "gui/services/edit_services.h"
#include "host/engine/tests/made_actions.h"

namespace kelvarin::testing {

class OpenGraph {
 public:
  OpenGraph(const std::string& actions, const std::string& links,
            ActionCatalogue::Prototypes prototypes = testPrototypes())
      : catalogue(nullptr, std::move(prototypes)) {
    witness = &seen;
    load(actions, links);
  }
  ~OpenGraph() { witness = nullptr; }
  OpenGraph(const OpenGraph&) = delete;
  OpenGraph& operator=(const OpenGraph&) = delete;

  void load(const std::string& actions, const std::string& links,
            const std::vector<ParameterOverride>& settings = {}) {
    const std::string text =
        "<KelvarinGraph><Parameters><Parameter name='p' value='1'/></Parameters><Actions>" +
        actions + "</Actions><Links>" + linkElements(links) + "</Links></KelvarinGraph>";
    EXPECT_TRUE(graph.load(QByteArray::fromStdString(text),
                           QStringLiteral("/tests/it's a graph.kelvarin"), settings));
  }
  ActionId id(const char* name) const { return graph.idOf(QString::fromLatin1(name)); }
  ActionItem& item(const char* name) const { return graph.action(id(name)); }

  ActionCatalogue catalogue;
  Witness seen;
  EditedGraph graph{catalogue};
  GraphCommands commands{graph};
  EditServices services{graph, catalogue};

 private:
  // "a b, a:1 b:1"
  static std::string linkElements(const std::string& links) {
    std::string text;
    for (const QString& link : QString::fromStdString(links).split(u',', Qt::SkipEmptyParts)) {
      const QStringList ends = link.simplified().split(u' ');
      const QStringList from = ends[0].split(u':');
      const QStringList to = ends[1].split(u':');
      text += QStringLiteral("<Link from='%1' fromPin='%2' to='%3' toPin='%4'/>")
                  .arg(from[0], from.value(1, QStringLiteral("0")), to[0],
                       to.value(1, QStringLiteral("0")))
                  .toStdString();
    }
    return text;
  }
};

}  // namespace kelvarin::testing
