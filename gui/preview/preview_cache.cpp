#include "gui/preview/preview_cache.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>

namespace kelvarin {

namespace {

bool isEnough(const PinPreview& preview, long long limit) {
  using State = PinPreview::State;
  const bool isWhole = preview.state() == State::complete || preview.state() == State::failed;
  return isWhole || preview.limit() >= limit;
}

}  // namespace

std::shared_ptr<PinPreview> PreviewCache::preview(const PinRef& pin, long long limit,
                                                  QString* reason) {
  const ActionId source = sourceOf(pin, reason);
  if (source == kNoId) {
    forget(pin);
    return nullptr;
  }
  BranchDependencies branch = dependenciesOfBranch(m_graph, source);
  const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                  [&](const Entry& entry) { return entry.pin == pin; });
  if (found != m_entries.end() && found->branch == branch && isEnough(*found->preview, limit)) {
    m_entries.splice(m_entries.begin(), m_entries, found);
    return found->preview;
  }
  forget(pin);
  const auto ask = [&](long long rows, std::shared_ptr<RowsReceiver> receiver) {
    return m_services.requestRows(m_graph.action(pin.action), pin.pin, pin.isOutput, rows,
                                  std::move(receiver));
  };
  m_entries.push_front({pin, std::move(branch), std::make_shared<PinPreview>(m_share, limit, ask)});
  if (m_entries.size() > kCapacity) {
    m_entries.pop_back();
  }
  return m_entries.front().preview;
}

void PreviewCache::forget(const PinRef& pin) {
  m_entries.remove_if([&pin](const Entry& entry) { return entry.pin == pin; });
}

ActionId PreviewCache::sourceOf(const PinRef& pin, QString* reason) const {
  ActionId source = pin.action;
  if (!pin.isOutput) {
    const LinkId link = m_graph.linkInto(pin.action, pin.pin);
    if (link == kNoId || !m_graph.link(link).whyBroken.isEmpty()) {
      *reason = QCoreApplication::translate(
          "PreviewCache",
          "Nothing is linked to this pin, so no rows come here. Draw a link to it.");
      return kNoId;
    }
    source = m_graph.link(link).from;
  } else if (pin.pin >= m_graph.pinCount(pin.action, true)) {
    *reason = QCoreApplication::translate("PreviewCache",
                                          "The action has no such output pin any more. Choose "
                                          "another one.");
    return kNoId;
  }
  return source;
}

}  // namespace kelvarin
