// The property editors of the host's own actions: CSV, Parquet, Arrow, inline table, discard.
//
// Host actions have no setters: their editors hold the action's element and report another one,
// from which the window makes the action anew (gui/forms/element_editor.h).
// Threads: the user-interface thread.
#pragma once

#include "host/contract/editor_registry.h"

namespace kelvarin {

void addHostEditors(EditorRegistry& registry);

}  // namespace kelvarin
