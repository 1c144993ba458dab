// Printed dates as results of functions.
#pragma once

#include "expression/functions/calendar_steps.h"
#include "expression/functions/text_bodies.h"

namespace kelvarin {

// The null text for no date.
inline ColumnText printedDate(TextArena& arena, const DatePrinter& printer, const ClockZone& zone,
                              DateValue date) {
  if (!date) {
    return {};
  }
  char* const bytes = arena.allocate(DatePrinter::kCapacity);
  const std::optional<std::size_t> size = printer.printTo(bytes, *date, zone);
  arena.shrink(DatePrinter::kCapacity - size.value_or(0));
  return size ? ColumnText({bytes, *size}) : textIn(arena, printer.printGenerally(*date, zone));
}

// In the format in force.
inline ColumnText printedDate(TextArena& arena, const DateContext& dates, DateValue date) {
  return printedDate(arena, dates.printer(), dates.zone(), date);
}

}  // namespace kelvarin
