// The parts of the product that the library opens when they are needed: the plug-in with the
// actions, which lies in a folder beside the library.
//
// Threads: any.
// Errors: texts for the user.
#pragma once

#include "host/engine/action_catalogue.h"
#include "library/errors/error_details.h"

namespace kelvarin {

// The plug-in's actions and the host's own, loaded at the first call; it lives as long as the
// process. The environment variable KELVARIN_PLUGIN may name another plug-in.
Outcome<const ActionCatalogue*> installedActions();

}  // namespace kelvarin
