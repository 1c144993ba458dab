// What messages of a reader say about its attributes, for somebody who has typed options: "set
// short='null'" becomes "say --short-rows null".
//
// Used by: program_services.h, where a command has made the graph.
#pragma once

#include <QString>

namespace kelvarin {

QString attributesAsOptions(const QString& text);

}  // namespace kelvarin
