// Graphs: the functions of the interface that run them.
#include "library/calls.h"
#include "library/input_settings.h"
#include "library/runs/graph_run.h"

using kelvarin::Done;
using kelvarin::GraphRun;
using kelvarin::GraphRunSettings;
using kelvarin::HandleKind;
using kelvarin::Handles;
using kelvarin::Outcome;

namespace texts = kelvarin::library_messages;

namespace {

// Calls work(run).
template <typename Work>
kelvarin_status withRun(kelvarin_run run, kelvarin_error** error, Work work) noexcept {
  return kelvarin::withObject<GraphRun>(HandleKind::run, run.id, error,
                                        [&](const auto& found) { return work(*found); });
}

Outcome<GraphRunSettings> settingsOf(const kelvarin_run_options& options) {
  auto parameters = kelvarin::namedValuesOf<kelvarin::ParameterOverride>(
      options.parameters, options.parameter_count, "parameters");
  auto work = kelvarin::workSettingsOf(options.threads, options.stop, options.log,
                                       options.disk_wait_seconds);
  if (!parameters || !work) {
    return kelvarin::Failure{parameters ? work.error() : parameters.error()};
  }
  return GraphRunSettings{std::move(*parameters), std::move(*work), options.progress};
}

Outcome<Done> open(const std::optional<QByteArray>& document, const char* path,
                   const kelvarin_run_options* options, kelvarin_run* out) {
  for (const auto& checked : {kelvarin::needed(path, "path"), kelvarin::needed(out, "out")}) {
    if (!checked) {
      return checked;
    }
  }
  const auto given = kelvarin::optionsOf(options, kelvarin_run_options(KELVARIN_RUN_OPTIONS_INIT));
  if (!given) {
    return kelvarin::Failure{given.error()};
  }
  auto settings = settingsOf(*given);
  if (!settings) {
    return kelvarin::Failure{settings.error()};
  }
  auto run = GraphRun::open(document, kelvarin::absolutePath(path), std::move(*settings));
  if (!run) {
    return kelvarin::Failure{run.error()};
  }
  out->id = Handles::instance().add(HandleKind::run, std::move(*run));
  return Done{};
}

// Stores a text for the caller.
Outcome<Done> storeText(const Outcome<std::string>& text, char** out) {
  if (!text) {
    return kelvarin::Failure{text.error()};
  }
  *out = kelvarin::copiedText(*text);
  return Done{};
}

}  // namespace

kelvarin_status kelvarin_run_open(const char* path, const kelvarin_run_options* options,
                                  kelvarin_run* out, kelvarin_error** error) {
  return kelvarin::answered(error, [&] { return open(std::nullopt, path, options, out); });
}

kelvarin_status kelvarin_run_open_document(const char* document, int64_t size, const char* path,
                                           const kelvarin_run_options* options, kelvarin_run* out,
                                           kelvarin_error** error) {
  return kelvarin::answered(error, [&]() -> Outcome<Done> {
    if (auto checked = kelvarin::needed(document, "document"); !checked) {
      return checked;
    }
    if (size < 0) {
      return kelvarin::wrongArgument(texts::outOfRange(QStringLiteral("size"), size));
    }
    return open(QByteArray(document, static_cast<qsizetype>(size)), path, options, out);
  });
}

kelvarin_status kelvarin_run_close(kelvarin_run run) {
  return kelvarin::answered(nullptr, [&]() -> Outcome<Done> {
    const auto removed =
        std::static_pointer_cast<GraphRun>(Handles::instance().remove(HandleKind::run, run.id));
    if (removed == nullptr) {
      return kelvarin::wrongHandle(HandleKind::run);
    }
    removed->stop();  // for calls that still wait for it on other threads
    return Done{};
  });
}

kelvarin_status kelvarin_run_get_action(kelvarin_run run, int32_t index, kelvarin_action_info* out,
                                        kelvarin_error** error) {
  return withRun(run, error, [&](const GraphRun& found) -> Outcome<Done> {
    if (index < 0 || static_cast<std::size_t>(index) >= found.actions().size()) {
      return kelvarin::wrongArgument(texts::outOfRange(QStringLiteral("index"), index));
    }
    const GraphRun::Action& action = found.actions()[static_cast<std::size_t>(index)];
    return kelvarin::store(kelvarin_action_info{.size = 0,
                                                .name = action.name.c_str(),
                                                .type = action.type.c_str(),
                                                .inputs = action.inputs,
                                                .outputs = action.outputs},
                           out);
  });
}

kelvarin_status kelvarin_run_bind_input(kelvarin_run run, const char* action,
                                        struct ArrowArrayStream* input,
                                        const kelvarin_input_options* options,
                                        kelvarin_error** error) {
  return kelvarin::answered(error, [&]() -> Outcome<Done> {
    if (auto checked = kelvarin::needed(input, "input"); !checked) {
      return checked;
    }
    kelvarin::InputStream stream(*input);
    const auto found = Handles::instance().find<GraphRun>(HandleKind::run, run.id);
    if (found == nullptr) {
      return kelvarin::wrongHandle(HandleKind::run);
    }
    if (auto checked = kelvarin::needed(action, "action"); !checked) {
      return checked;
    }
    auto settings = kelvarin::inputSettingsOf(options);
    if (!settings) {
      return kelvarin::Failure{settings.error()};
    }
    return found->bindInput(QString::fromUtf8(action), std::move(stream), std::move(*settings));
  });
}

kelvarin_status kelvarin_run_bind_output(kelvarin_run run, const char* action,
                                         const kelvarin_stream_options* options,
                                         struct ArrowArrayStream* out, kelvarin_error** error) {
  return withRun(run, error, [&](GraphRun& found) -> Outcome<Done> {
    for (const auto& checked : {kelvarin::needed(action, "action"), kelvarin::needed(out, "out")}) {
      if (!checked) {
        return checked;
      }
    }
    const auto given =
        kelvarin::optionsOf(options, kelvarin_stream_options(KELVARIN_STREAM_OPTIONS_INIT));
    if (!given) {
      return kelvarin::Failure{given.error()};
    }
    const auto form = kelvarin::batchFormOf(given->text_format, given->batch_rows);
    if (!form) {
      return kelvarin::Failure{form.error()};
    }
    auto supply = found.bindOutput(QString::fromUtf8(action), *form);
    if (!supply) {
      return kelvarin::Failure{supply.error()};
    }
    kelvarin::exportStream(std::move(*supply), form->texts, *out);
    return Done{};
  });
}

kelvarin_status kelvarin_run_start(kelvarin_run run, kelvarin_error** error) {
  return withRun(run, error, [](GraphRun& found) { return found.start(); });
}

kelvarin_status kelvarin_run_stop(kelvarin_run run) {
  return withRun(run, nullptr, [](GraphRun& found) -> Outcome<Done> {
    found.stop();
    return Done{};
  });
}

kelvarin_status kelvarin_run_wait(kelvarin_run run, int64_t milliseconds, kelvarin_error** error) {
  return withRun(run, error, [&](GraphRun& found) { return found.wait(milliseconds); });
}

kelvarin_status kelvarin_run_result(kelvarin_run run, char** json, kelvarin_error** error) {
  return withRun(run, error, [&](GraphRun& found) -> Outcome<Done> {
    if (auto checked = kelvarin::needed(json, "json"); !checked) {
      return checked;
    }
    return storeText(found.result(), json);
  });
}

kelvarin_status kelvarin_run_progress(kelvarin_run run, char** json, kelvarin_error** error) {
  return withRun(run, error, [&](GraphRun& found) -> Outcome<Done> {
    if (auto checked = kelvarin::needed(json, "json"); !checked) {
      return checked;
    }
    return storeText(found.progress(), json);
  });
}
