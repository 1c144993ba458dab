// What is dragged from the palette to the canvas.
#pragma once

namespace kelvarin {

// The name of an action type, as UTF-8.
inline constexpr char kActionTypeMime[] = "application/x-kelvarin-action-type";

}  // namespace kelvarin
