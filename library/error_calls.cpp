// Versions, errors, stops: the functions of the interface that concern all others.
#include <cstdlib>
#include <stop_token>

#include "library/arrow_streams/output_stream.h"
#include "library/calls.h"

using kelvarin::Done;
using kelvarin::ErrorDetails;
using kelvarin::HandleKind;
using kelvarin::Handles;
using kelvarin::Outcome;

namespace {

const ErrorDetails& detailsOf(const kelvarin_error* error) {
  static const ErrorDetails none = kelvarin::errorOf(KELVARIN_OK, std::string());
  return error == nullptr ? none : error->details;
}

}  // namespace

int32_t kelvarin_abi(void) {
  return KELVARIN_ABI;
}

const char* kelvarin_version(void) {
  return KELVARIN_VERSION;
}

kelvarin_status kelvarin_error_status(const kelvarin_error* error) {
  return detailsOf(error).status;
}

const char* kelvarin_error_message(const kelvarin_error* error) {
  return detailsOf(error).message.c_str();
}

const char* kelvarin_error_action(const kelvarin_error* error) {
  return detailsOf(error).action.c_str();
}

const char* kelvarin_error_output(const kelvarin_error* error) {
  return detailsOf(error).output.c_str();
}

const char* kelvarin_error_expression(const kelvarin_error* error) {
  return detailsOf(error).expression.c_str();
}

const char* kelvarin_error_token(const kelvarin_error* error) {
  return detailsOf(error).token.c_str();
}

int64_t kelvarin_error_position(const kelvarin_error* error) {
  return detailsOf(error).position;
}

const char* kelvarin_error_column(const kelvarin_error* error) {
  return detailsOf(error).column.c_str();
}

int64_t kelvarin_error_row(const kelvarin_error* error) {
  return detailsOf(error).row;
}

const char* kelvarin_error_json(const kelvarin_error* error) {
  return error == nullptr ? "{}" : error->json.c_str();
}

void kelvarin_error_free(kelvarin_error* error) {
  delete error;
}

void kelvarin_free(char* text) {
  std::free(text);
}

kelvarin_status kelvarin_stop_new(kelvarin_stop* out) {
  return kelvarin::answered(nullptr, [&]() -> Outcome<Done> {
    if (const auto isThere = kelvarin::needed(out, "out"); !isThere) {
      return isThere;
    }
    out->id = Handles::instance().add(HandleKind::stop, std::make_shared<std::stop_source>());
    return Done{};
  });
}

kelvarin_status kelvarin_stop_request(kelvarin_stop stop) {
  return kelvarin::withObject<std::stop_source>(HandleKind::stop, stop.id, nullptr,
                                                [](const auto& source) -> Outcome<Done> {
                                                  source->request_stop();
                                                  return Done{};
                                                });
}

kelvarin_status kelvarin_stop_close(kelvarin_stop stop) {
  return kelvarin::closed(HandleKind::stop, stop.id);
}

kelvarin_status kelvarin_stream_error(const struct ArrowArrayStream* stream,
                                      kelvarin_error** error) {
  return kelvarin::answered(error, [&]() -> Outcome<Done> {
    const kelvarin::StreamState* state = stream == nullptr ? nullptr : kelvarin::stateOf(*stream);
    if (state == nullptr) {
      return kelvarin::wrongArgument(kelvarin::library_messages::foreignStream());
    }
    if (const auto last = kelvarin::lastErrorOf(*state)) {
      return kelvarin::Failure{*last};
    }
    return Done{};
  });
}
