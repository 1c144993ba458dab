// Which engine evaluates an expression, whether by the batch, and what keeps it from more.
#pragma once

#include <QString>

#include "expression/batches/batch_refusal.h"
#include "expression/errors/backend_kind.h"

namespace kelvarin {

struct EngineChoice {
  enum class Reason {
    fastest,      // there is no faster engine
    token,        // the next faster engine does not take the token
    textResult,   // the result is a text
    observed,     // a step debugger looks on
    nativeIsOff,  // the options do without native code
    required      // the caller asked for this engine
  };

  BackendKind engine = BackendKind::string;
  Reason reason = Reason::fastest;
  // For Reason::token, as far as the faster engine reports it.
  QString token;
  int position = -1;  // 0-based UTF-16 unit of the user's expression

  // As far as this expression is concerned; rows of an action come by the batch where all of its
  // expressions take them so.
  bool takesBatches = false;
  BatchRefusal batchRefusal;  // else, as far as a token is the reason
};

}  // namespace kelvarin
