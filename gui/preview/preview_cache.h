// The previews of the pins that a user has looked at, each as long as nothing above its pin has
// changed.
//
// A change below or beside a pin leaves its rows alone, and so do names and positions: the branch
// that was computed is compared with the one that is there now.
// Used by the preview panel.
// Threads: the user-interface thread.
#pragma once

#include <list>

#include "gui/document/row_dependencies.h"
#include "gui/preview/pin_preview.h"
#include "gui/services/edit_services.h"

namespace kelvarin {

class PreviewCache {
 public:
  // All outlive this object.
  PreviewCache(EditedGraph& graph, EditServices& services, const PreviewShare& share)
      : m_graph(graph), m_services(services), m_share(share) {}

  // The one for so many rows, or more, of the pin as the graph is now; begun where there is none.
  // Null where no rows can come; `reason` says why.
  std::shared_ptr<PinPreview> preview(const PinRef& pin, long long limit, QString* reason);
  void forget(const PinRef& pin);
  void clear() { m_entries.clear(); }

 private:
  struct Entry {
    PinRef pin;
    BranchDependencies branch;
    std::shared_ptr<PinPreview> preview;
  };
  static constexpr std::size_t kCapacity = 8;

  // The action whose rows these are; kNoId where there is none.
  ActionId sourceOf(const PinRef& pin, QString* reason) const;

  EditedGraph& m_graph;
  EditServices& m_services;
  const PreviewShare m_share;
  std::list<Entry> m_entries;  // the last one that was looked at first
};

}  // namespace kelvarin
