// A graph file as a text, for the commands that look at it or write it anew without running it.
//
// Errors: logged, each with its position in the file.
#pragma once

#include <optional>
#include <string>

#include <QByteArray>

#include "cli/graph_run.h"
#include "host/engine/action_catalogue.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

struct GraphFile {
  QString name;      // as the user gave it; of standard input, what messages call it
  QByteArray bytes;  // as they were read
  QString document;  // without a byte order mark, lines ended by LF
  XMLNode root;
};

// "-" is standard input. Nothing where it cannot be read, or is no graph file.
std::optional<GraphFile> readGraphText(const std::string& path, Console& console);
// The same of a document that is at hand.
std::optional<GraphFile> graphFileOf(const QString& name, const QByteArray& bytes,
                                     Console& console);

// Null where the plug-in cannot be loaded, which is logged.
std::unique_ptr<ActionCatalogue> loadCatalogueOf(const std::string& plugin, Console& console);

// Replaces the file, or writes to standard output where `path` is "-".
bool writeGraphText(const std::string& path, const QString& document, Console& console);

}  // namespace kelvarin
