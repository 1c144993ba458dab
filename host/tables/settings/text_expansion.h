// Replaces graph parameters by their values. Attributes that are texts keep their parameters, which
// are known when a graph is loaded and again when it runs.
#pragma once

#include <functional>

#include <QString>

namespace kelvarin {

using TextExpansion = std::function<QString(const QString&)>;

}  // namespace kelvarin
