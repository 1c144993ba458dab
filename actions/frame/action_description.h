// What the palette of a host shows about an action, and the version its element carries in graph
// files.
#pragma once

#include <QStringList>

namespace kelvarin {

struct ActionDescription {
  const char* typeName;  // the XML element's name
  const char* toolTip;
  const char* helpId;
  // Null: what the host answers for an action that does not say.
  const char* tag;
  QStringList keywords;
  const char* fileType;
  const char* image;  // path of an SVG resource
  double version;
};

}  // namespace kelvarin
