// How actions read their attributes while a graph is loaded: values may refer to the graph's
// parameters, and what nobody asks for or can use is remembered, with the faults that actions
// report.
//
// The contract has every action read its attributes in its constructor, so that an attribute that
// was not asked for then is a slip of the user's pen. It needs no list of names from anybody, and
// the actions of every plug-in are covered. A value that no converter can use is an error, like a
// fault that the action itself finds.
// Users: host/engine makes one for an action; XMLNode and the converters of its texts report to it.
// Threads: each has its own.
#pragma once

#include <vector>

#include <QHash>
#include <QStringList>

#include "host/contract/global_parameters.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

class KELVARIN_CORE AttributeReading {
 public:
  struct Finding {
    XMLNode element;
    QString attribute;
    QStringList known;  // of the element; empty when the attribute is known but not its value
    const char* wanted = nullptr;  // what the value should have been
    const char* effect = nullptr;  // what the value does; null: it cannot be used
  };

  // What an action has found wrong in its own element.
  struct Refusal {
    XMLNode element;
    QString message;
  };

  explicit AttributeReading(const GlobalParameters& parameters) : m_parameters(parameters) {}

  // While it lives, this thread's readings of attributes are reported to `reading`.
  class KELVARIN_CORE Scope {
   public:
    explicit Scope(AttributeReading& reading);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    AttributeReading* m_outer;
  };

  // Null outside of a scope.
  static AttributeReading* current();

  void ask(const QString& element, QStringView attribute);
  // `effect`, where the value has one nevertheless. Both texts outlive the reading.
  void cannotUse(const unsigned short* value, const char* wanted, const char* effect = nullptr) {
    m_odd[value] = {wanted, effect};
  }
  void refuse(const XMLNode& element, const QString& message) {
    m_refusals.push_back({element, message});
  }
  const std::vector<Refusal>& refusals() const { return m_refusals; }
  QString expanded(const QString& value) const { return m_parameters.expandString2(value); }

  // About `element` and what it contains, in the order of the file. Elements that nobody has asked
  // for anything are left out.
  std::vector<Finding> findings(const XMLNode& element) const;

 private:
  void addFindings(const XMLNode& element, std::vector<Finding>& found) const;

  const GlobalParameters& m_parameters;
  QHash<QString, QStringList> m_known;                   // attributes by element
  struct OddValue {
    const char* wanted = nullptr;
    const char* effect = nullptr;
  };
  QHash<const unsigned short*, OddValue> m_odd;  // by value, an attribute's own text
  std::vector<Refusal> m_refusals;
};

}  // namespace kelvarin
