#include "cli/graph_tests/case_settings.h"

#include <algorithm>

#include <QFile>

#include "cli/graph_tests/messages.h"
#include "cli/reports/report_options.h"

namespace kelvarin {

namespace {

QString attributeOf(const XMLNode& node, const char16_t* name) {
  return qString(node.getAttribute(utf16(name)));
}

struct KnownElement {
  const char* name;
  QStringList attributes;
};

const KnownElement* knownElement(const QString& name) {
  static const KnownElement kKnown[] = {
      {"Case", {QStringLiteral("seed"), QStringLiteral("now")}},
      {"Parameter", {QStringLiteral("name"), QStringLiteral("value")}},
      {"Compare",
       {QStringLiteral("file"), QStringLiteral("tolerance"), QStringLiteral("anyOrder")}},
      {"Says", {QStringLiteral("message")}},
      {"Fails", {QStringLiteral("message")}},
  };
  const auto* known = std::ranges::find_if(
      kKnown, [&name](const KnownElement& each) { return name == QLatin1String(each.name); });
  return known == std::end(kKnown) ? nullptr : known;
}

class SettingsReader {
 public:
  explicit SettingsReader(const QString& file) : m_file(file) {}

  Result<CaseSettings, QString> read(const XMLNode& root) {
    if (root.name() != u"Case") {
      return refused(root, test_messages::notACase(root.name()));
    }
    if (const QString fault = takeCase(root); !fault.isNull()) {
      return refused(root, fault);
    }
    for (int i = 0; i < root.nChildNode(); ++i) {
      const XMLNode node = root.getChildNode(i);
      if (const QString fault = take(node); !fault.isNull()) {
        return refused(node, fault);
      }
    }
    return std::move(m_settings);
  }

 private:
  Failure<QString> refused(const XMLNode& node, const QString& message) const {
    return Failure{GraphError{m_file, node.position(), message}.text()};
  }

  static QString unknownAttribute(const XMLNode& node) {
    const QStringList& known = knownElement(node.name())->attributes;
    for (int i = 0; i < node.nAttribute(); ++i) {
      if (!known.contains(node.attributeName(i))) {
        return test_messages::unknownAttribute(node.attributeName(i), node.name(),
                                               known.join(QLatin1String(", ")));
      }
    }
    return {};
  }

  // What is wrong with the element; null: nothing. So below.
  QString takeCase(const XMLNode& root) {
    m_settings.seed = attributeOf(root, u"seed");
    bool isSeed = true;
    if (!m_settings.seed.isEmpty()) {
      (void)m_settings.seed.toUInt(&isSeed);
    }
    if (!isSeed) {
      return test_messages::notASeed(m_settings.seed);
    }
    m_settings.now = attributeOf(root, u"now");
    const std::string fault =
        m_settings.now.isEmpty() ? std::string() : whyNoInstant(m_settings.now.toStdString());
    return fault.empty() ? unknownAttribute(root) : QString::fromStdString(fault);
  }

  QString take(const XMLNode& node) {
    if (knownElement(node.name()) == nullptr || node.name() == u"Case") {
      return test_messages::unknownElement(node.name());
    }
    if (const QString fault = unknownAttribute(node); !fault.isNull()) {
      return fault;
    }
    if (node.name() == u"Parameter") {
      m_settings.parameters.push_back({attributeOf(node, u"name"), attributeOf(node, u"value")});
    } else if (node.name() == u"Says") {
      m_settings.messages += attributeOf(node, u"message");
    } else if (node.name() == u"Fails") {
      m_settings.failure = attributeOf(node, u"message");
    } else {
      return takeComparison(node);
    }
    return {};
  }

  QString takeComparison(const XMLNode& node) {
    ComparedFile comparison{attributeOf(node, u"file"), 0.0,
                            attributeOf(node, u"anyOrder").trimmed() == u"1"};
    if (const QString tolerance = attributeOf(node, u"tolerance"); !tolerance.isEmpty()) {
      bool isNumber = false;
      comparison.tolerance = tolerance.toDouble(&isNumber);
      if (!isNumber || !(comparison.tolerance >= 0.0)) {
        return test_messages::notATolerance(tolerance);
      }
    }
    m_settings.comparisons.push_back(comparison);
    return {};
  }

  const QString m_file;
  CaseSettings m_settings;
};

}  // namespace

ComparedFile CaseSettings::comparisonOf(const QString& file) const {
  for (const QString& name : {file, QString()}) {
    const auto found = std::ranges::find_if(
        comparisons, [&name](const ComparedFile& each) { return each.file == name; });
    if (found != comparisons.end()) {
      return *found;
    }
  }
  return {};
}

Result<CaseSettings, QString> readCaseSettings(const QString& folder) {
  const QString name = folder + QStringLiteral("/case.xml");
  QFile file(name);
  if (!file.open(QIODevice::ReadOnly)) {
    return CaseSettings{};
  }
  const auto parsed = parseXml(file.readAll());
  if (!parsed) {
    return Failure{GraphError{name, parsed.error().position, parsed.error().message}.text()};
  }
  return SettingsReader(name).read(*parsed);
}

}  // namespace kelvarin
