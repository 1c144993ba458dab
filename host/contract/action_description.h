// What an action declares about itself: its entry in the catalogue, and the attributes and elements
// that its XML element may hold.
//
// An action declares each of them once. The reader of graph files finds slips of the pen by it, the
// command line lists it, and editors can be drawn from it.
#pragma once

#include <limits>
#include <vector>

#include <QString>
#include <QStringList>

namespace kelvarin {

enum class AttributeKind {
  text,  // graph parameters in it are replaced when it is used
  flag,  // 0 or 1
  wholeNumber,
  cutNumber,  // a number whose fraction is cut off
  number,
  typeCode,  // one letter for a column's type
  sample,    // a number where the element's flag isNumber is set, else a text
};

// The values that an attribute takes, where its kind alone does not say it.
struct AllowedValues {
  int min = std::numeric_limits<int>::min();
  int max = std::numeric_limits<int>::max();
  const char* codes = "";                // the letters of a type code
  const char* inWords = "";              // for the user: "0, 1 or 2"
  const char* effectOfOthers = nullptr;  // null: another value is an error
};

struct AttributeDescription {
  QString name;
  AttributeKind kind = AttributeKind::text;
  QString meaning;      // one line
  QString defaultText;  // null: it depends on other attributes, as `meaning` says
  AllowedValues allowed = {};
};

struct ElementDescription {
  QString name;
  QString meaning;           // one line
  QString textMeaning = {};  // what its text is; empty: no text may stand in it
  bool mayRepeat = false;
  // Of older files: the element is read only where no element of this name stands beside it.
  QString replacedBy = {};
  std::vector<AttributeDescription> attributes = {};
  std::vector<ElementDescription> children = {};
};

struct ActionDescription {
  const char* typeName;  // the XML element's name
  const char* toolTip;
  const char* helpId = nullptr;
  QStringList tags = {};
  QStringList keywords = {};
  QStringList fileTypes = {};
  const char* image = nullptr;  // path of an SVG resource
  double version = 1.0;         // of the XML element
  // Beside those of every action.
  std::vector<AttributeDescription> attributes = {};
  std::vector<ElementDescription> children = {};
};

}  // namespace kelvarin
