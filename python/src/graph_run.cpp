#include "python/src/graph_run.h"

#include <optional>

#include <nanobind/stl/optional.h>
#include <nanobind/stl/pair.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/unique_ptr.h>
#include <nanobind/stl/vector.h>

#include "python/src/forwarded_stream.h"
#include "python/src/input_options.h"
#include "python/src/stream.h"

namespace kelvarin_python {

namespace {

class GraphRun {
 public:
  // A file, or a document whose name in messages is `path`.
  GraphRun(const std::string& path, const std::optional<std::string>& document,
           const Pairs& parameters, int threads, int diskWaitSeconds)
      : m_state(std::make_shared<StreamState>()) {
    const auto settings = settingsOf(parameters);
    kelvarin_run_options options = KELVARIN_RUN_OPTIONS_INIT;
    options.parameters = settings.data();
    options.parameter_count = static_cast<int32_t>(settings.size());
    options.threads = threads;
    options.disk_wait_seconds = diskWaitSeconds;
    options.stop = m_state->stop.handle();
    options.log = m_state->log.receiver();
    Outcome outcome;
    {
      const nb::gil_scoped_release release;
      outcome.set(document ? kelvarin_run_open_document(
                                 document->data(), static_cast<int64_t>(document->size()),
                                 path.c_str(), &options, &m_handle, outcome.error())
                           : kelvarin_run_open(path.c_str(), &options, &m_handle, outcome.error()));
    }
    outcome.check();
  }
  ~GraphRun() {
    releaseWithoutLock([this] { kelvarin_run_close(m_handle); });
  }
  GraphRun(const GraphRun&) = delete;
  GraphRun& operator=(const GraphRun&) = delete;

  // name, type, input pins, output pins of each action
  nb::list actions() const {
    nb::list found;
    kelvarin_action_info info{};
    info.size = sizeof info;
    while (kelvarin_run_get_action(m_handle, static_cast<int32_t>(found.size()), &info, nullptr) ==
           KELVARIN_OK) {
      found.append(nb::make_tuple(info.name, info.type, info.inputs, info.outputs));
    }
    return found;
  }

  void bindInput(const std::string& action, nb::handle table, NamedNumbers types,
                 NamedNumbers sortedBy, bool takesBadValuesAsNull) {
    const InputOptions options(std::move(types), std::move(sortedBy), takesBadValuesAsNull);
    ArrowArrayStream given = streamOf(table).take();
    withoutLockAndChecked(kelvarin_run_bind_input, action.c_str(), &given, options.get());
  }

  std::unique_ptr<Stream> bindOutput(const std::string& action, int textFormat) {
    kelvarin_stream_options options = KELVARIN_STREAM_OPTIONS_INIT;
    options.text_format = textFormat;
    ArrowArrayStream stream{};
    withoutLockAndChecked(kelvarin_run_bind_output, action.c_str(), &options, &stream);
    return std::make_unique<Stream>(StreamOwner(stream), m_state);
  }

  void start() { call(kelvarin_run_start, m_handle); }
  void stop() { kelvarin_run_stop(m_handle); }

  // Whether it has ended by then, however.
  bool wait(int64_t milliseconds) const {
    const nb::gil_scoped_release release;
    return kelvarin_run_wait(m_handle, milliseconds, nullptr) != KELVARIN_NOT_FINISHED;
  }
  // Raises why it has not ended well.
  void check() const { call(kelvarin_run_wait, m_handle, 0); }

  std::string result() const { return textBy(kelvarin_run_result); }
  std::string progress() const { return textBy(kelvarin_run_progress); }

 private:
  template <typename Function, typename... Arguments>
  void withoutLockAndChecked(Function function, Arguments... arguments) {
    Outcome outcome;
    {
      const nb::gil_scoped_release release;
      outcome.set(function(m_handle, arguments..., outcome.error()));
    }
    outcome.check();
  }

  template <typename Function>
  std::string textBy(Function function) const {
    char* json = nullptr;
    call(function, m_handle, &json);
    const std::unique_ptr<char, decltype(&kelvarin_free)> owner(json, kelvarin_free);
    return json;
  }

  std::shared_ptr<StreamState> m_state;  // which the run uses to its end
  kelvarin_run m_handle{};
};

}  // namespace

void bindGraphRuns(nb::module_& module) {
  nb::class_<GraphRun>(module, "GraphRun")
      .def(
          nb::init<const std::string&, const std::optional<std::string>&, const Pairs&, int, int>(),
          nb::arg("path"), nb::kw_only(), nb::arg("document").none(), nb::arg("parameters"),
          nb::arg("threads"), nb::arg("disk_wait_seconds"))
      .def("actions", &GraphRun::actions)
      .def("bind_input", &GraphRun::bindInput, nb::arg("action"), nb::arg("table"), nb::kw_only(),
           nb::arg("types"), nb::arg("sorted_by"), nb::arg("takes_bad_values_as_null"))
      .def("bind_output", &GraphRun::bindOutput, nb::arg("action"), nb::kw_only(),
           nb::arg("text_format"))
      .def("start", &GraphRun::start)
      .def("stop", &GraphRun::stop)
      .def("wait", &GraphRun::wait, nb::arg("milliseconds"))
      .def("check", &GraphRun::check)
      .def("result", &GraphRun::result)
      .def("progress", &GraphRun::progress);
}

}  // namespace kelvarin_python
