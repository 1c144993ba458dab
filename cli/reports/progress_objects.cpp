#include "cli/reports/progress_objects.h"

#include <algorithm>
#include <cmath>

#include <QFileInfo>

#include "host/contract/file_user.h"
#include "host/reports/run_json.h"

namespace kelvarin {

namespace {

constexpr auto kInterval = std::chrono::seconds(1);

double rounded(double seconds) {
  constexpr double kThousandths = 1000.0;
  return std::round(seconds * kThousandths) / kThousandths;
}

Json knownOrNull(double number) {
  return number < 0.0 ? Json(nullptr) : Json(rounded(number));
}

// Those whose names stand for one file each.
long long bytesReadBy(const ActionItem& action) {
  const auto* user = dynamic_cast<const FileUser*>(&action);
  long long bytes = 0;
  if (user != nullptr && action.inputPinCount() == 0) {
    for (const UsedFile& file : user->usedFiles()) {
      const QFileInfo info(file.path);
      bytes += file.use == FileUse::reads && info.isFile() ? info.size() : 0;
    }
  }
  return bytes;
}

}  // namespace

double remainingSeconds(double fractionDone, double seconds) {
  constexpr double kMinFraction = 0.01;
  constexpr double kMinSeconds = 0.5;
  if (fractionDone < kMinFraction || seconds < kMinSeconds) {
    return -1.0;
  }
  return std::max(0.0, seconds * (1.0 - fractionDone) / fractionDone);
}

ProgressObjects::ProgressObjects(const Graph& graph, bool isLimited, Write write)
    : m_write(std::move(write)), m_isLimited(isLimited), m_sources(sourcesOf(graph)) {
  for (const GraphAction& action : graph.actions) {
    m_names.push_back(action.name.toStdString());
  }
  m_thread = std::thread([this] { beat(); });
}

ProgressObjects::~ProgressObjects() {
  stop();
}

std::vector<ProgressObjects::Source> ProgressObjects::sourcesOf(const Graph& graph) {
  std::vector<Source> sources;
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    const GraphAction& action = graph.actions[i];
    const long long bytes = action.isDisabled ? 0 : bytesReadBy(*action.item);
    if (bytes > 0) {
      sources.push_back({i, bytes});
    }
  }
  return sources;
}

void ProgressObjects::stop() {
  {
    const std::lock_guard lock(m_mutex);
    m_mustEnd = true;
  }
  m_ending.notify_one();
  if (m_thread.joinable()) {
    m_thread.join();
  }
}

void ProgressObjects::beat() {
  std::unique_lock lock(m_mutex);
  auto next = m_start + kInterval;
  while (!m_ending.wait_until(lock, next, [this] { return m_mustEnd; })) {
    m_write(lineOf(m_latest, nullptr));
    next += kInterval;
  }
}

void ProgressObjects::update(const RunProgress& now) {
  const std::lock_guard lock(m_mutex);
  m_latest = now;
}

void ProgressObjects::end(const RunResult& result) {
  stop();
  RunProgress last;
  last.fractionDone = result.isOk() ? 1.0 : m_latest.fractionDone;
  for (const ActionResult& action : result.actions) {
    last.actions.push_back({.phase = action.phase,
                            .rowsIn = action.rowsIn,
                            .rowsOut = action.rowsOut,
                            .fractionDone = shareRead(last.actions.size(), action.phase)});
    if (action.rowsIn.empty()) {
      for (const long long rows : action.rowsOut) {
        last.rowsRead += rows;
      }
    }
  }
  m_write(lineOf(last, statusWord(result.state)));
}

// Of a source that is closed. One whose rows sufficed has not read all of its files.
double ProgressObjects::shareRead(std::size_t action, ActionPhase phase) const {
  if (phase == ActionPhase::finished && !m_isLimited) {
    return 1.0;
  }
  return action < m_latest.actions.size() ? m_latest.actions[action].fractionDone : -1.0;
}

double ProgressObjects::secondsSinceStart() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
}

// -1 when it is not known.
double ProgressObjects::bytesRead(const RunProgress& now) const {
  double bytes = m_sources.empty() ? -1.0 : 0.0;
  for (const Source& source : m_sources) {
    const double share =
        source.action < now.actions.size() ? now.actions[source.action].fractionDone : -1.0;
    if (share < 0.0) {
      return -1.0;
    }
    bytes += std::min(share, 1.0) * static_cast<double>(source.bytes);
  }
  return bytes;
}

std::string ProgressObjects::lineOf(const RunProgress& now, const char* status) const {
  const double seconds = secondsSinceStart();
  Json object = {{"seconds", rounded(seconds)}, {"done", knownOrNull(now.fractionDone)}};
  if (status == nullptr) {
    object["remaining"] = knownOrNull(remainingSeconds(now.fractionDone, seconds));
  } else {
    object["status"] = status;
  }
  object["rowsRead"] = now.rowsRead;
  const double bytes = bytesRead(now);
  object["bytesRead"] = bytes < 0.0 ? Json(nullptr) : Json(std::llround(bytes));
  object["actions"] = Json::array();
  for (std::size_t i = 0; i < m_names.size(); ++i) {
    const bool isKnown = i < now.actions.size();
    object["actions"].push_back(
        {{"name", m_names[i]},
         {"rowsIn", isKnown ? now.actions[i].rowsIn : std::vector<long long>()},
         {"rowsOut", isKnown ? now.actions[i].rowsOut : std::vector<long long>()}});
  }
  return object.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace kelvarin
