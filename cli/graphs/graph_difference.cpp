#include "cli/graphs/graph_difference.h"

#include <algorithm>
#include <optional>

#include <QHash>
#include <QSet>

namespace kelvarin {

namespace {

constexpr double kAlike = 0.6;  // share of the settings that a renamed action has kept

QString quoted(const QString& text) {
  return u'\'' + text + u'\'';
}

// Every setting of an action as a path and a value.
std::vector<NamedValue> settingsOf(const ActionFacts& action) {
  std::vector<NamedValue> settings;
  for (const ActionFact& fact : action.facts) {
    if (fact.element.isEmpty()) {
      settings.push_back(fact.attributes.front());
      continue;
    }
    settings.push_back({fact.path, fact.text.isNull() ? QString() : fact.text});
    for (const NamedValue& attribute : fact.attributes) {
      settings.push_back({fact.path + u'@' + attribute.name, attribute.value});
    }
  }
  return settings;
}

using Values = QHash<QString, QString>;

Values valuesOf(const std::vector<NamedValue>& settings) {
  Values values;
  for (const NamedValue& setting : settings) {
    values.insert(setting.name, setting.value);
  }
  return values;
}

// Of the settings of both and their neighbours, the share that is the same.
double likeness(const ActionFacts& before, const ActionFacts& after, const GraphFacts& all,
                const GraphFacts& allAfter) {
  const auto neighbours = [](const GraphFacts& graph, const QString& name) {
    std::vector<NamedValue> ends;
    for (const LinkFacts& link : graph.links) {
      if (link.from == name) {
        ends.push_back({QStringLiteral("> %1 %2").arg(link.fromPin, link.to), link.toPin});
      } else if (link.to == name) {
        ends.push_back({QStringLiteral("< %1 %2").arg(link.toPin, link.from), link.fromPin});
      }
    }
    return ends;
  };
  std::vector<NamedValue> one = settingsOf(before);
  std::vector<NamedValue> other = settingsOf(after);
  std::ranges::copy(neighbours(all, before.name), std::back_inserter(one));
  std::ranges::copy(neighbours(allAfter, after.name), std::back_inserter(other));
  const Values known = valuesOf(one);
  const auto same = std::ranges::count_if(other, [&known](const NamedValue& each) {
    const auto found = known.constFind(each.name);
    return found != known.constEnd() && *found == each.value;
  });
  const auto count = static_cast<double>(one.size() + other.size());
  return count == 0.0 ? 1.0 : 2.0 * static_cast<double>(same) / count;
}

class Comparison {
 public:
  Comparison(const GraphFacts& before, const GraphFacts& after)
      : m_before(before), m_after(after) {}

  QStringList lines() {
    compareParameters();
    findRenamed();
    compareActions();
    compareLinks();
    return std::move(m_lines);
  }

 private:
  void compareParameters() {
    const Values before = valuesOf(m_before.parameters);
    const Values after = valuesOf(m_after.parameters);
    for (const NamedValue& each : m_before.parameters) {
      if (!after.contains(each.name)) {
        m_lines += QStringLiteral("- parameter %1 = %2").arg(each.name, quoted(each.value));
      }
    }
    for (const NamedValue& each : m_after.parameters) {
      if (!before.contains(each.name)) {
        m_lines += QStringLiteral("+ parameter %1 = %2").arg(each.name, quoted(each.value));
      } else if (before.value(each.name) != each.value) {
        m_lines += QStringLiteral("~ parameter %1: %2 -> %3")
                       .arg(each.name, quoted(before.value(each.name)), quoted(each.value));
      }
    }
  }

  // An action that is gone and one that is new are one where most of their settings are the same.
  void findRenamed() {
    for (const ActionFacts& gone : m_before.actions) {
      if (m_after.indexOf(gone.name) >= 0) {
        continue;
      }
      double best = kAlike;
      QString name;
      for (const ActionFacts& added : m_after.actions) {
        if (m_before.indexOf(added.name) >= 0 || added.typeName != gone.typeName ||
            m_oldName.contains(added.name)) {
          continue;
        }
        if (const double alike = likeness(gone, added, m_before, m_after); alike >= best) {
          best = alike;
          name = added.name;
        }
      }
      if (!name.isNull()) {
        m_newName.insert(gone.name, name);
        m_oldName.insert(name, gone.name);
      }
    }
  }

  void compareActions() {
    for (const ActionFacts& action : m_before.actions) {
      const int index = m_after.indexOf(m_newName.value(action.name, action.name));
      if (index < 0) {
        m_lines += QStringLiteral("- action %1 (%2)").arg(quoted(action.name), action.typeName);
      } else {
        compare(action, m_after.actions[static_cast<std::size_t>(index)]);
      }
    }
    for (const ActionFacts& action : m_after.actions) {
      if (m_before.indexOf(action.name) < 0 && !m_oldName.contains(action.name)) {
        m_lines += QStringLiteral("+ action %1 (%2)").arg(quoted(action.name), action.typeName);
        for (const NamedValue& setting : settingsOf(action)) {
          addSetting(u'+', setting.name, setting.value);
        }
      }
    }
  }

  void addSetting(char16_t sign, const QString& path, const QString& value) {
    m_lines += QStringLiteral("    %1 %2%3")
                   .arg(QChar(sign), path,
                        value.isEmpty() ? QString() : QStringLiteral(" = ") + quoted(value));
  }

  void compare(const ActionFacts& before, const ActionFacts& after) {
    const qsizetype start = m_lines.size();
    const std::vector<NamedValue> settings = settingsOf(after);
    const std::vector<NamedValue> earlier = settingsOf(before);
    const Values values = valuesOf(earlier);
    const Values newValues = valuesOf(settings);
    for (const NamedValue& each : earlier) {
      if (!newValues.contains(each.name)) {
        addSetting(u'-', each.name, each.value);
      }
    }
    for (const NamedValue& each : settings) {
      const auto known = values.constFind(each.name);
      if (known == values.constEnd()) {
        addSetting(u'+', each.name, each.value);
      } else if (*known != each.value) {
        m_lines +=
            QStringLiteral("    ~ %1: %2 -> %3").arg(each.name, quoted(*known), quoted(each.value));
      }
    }
    compareOrder(earlier, settings, start);
    const bool isRenamed = before.name != after.name;
    const bool isOther = before.typeName != after.typeName;
    if (m_lines.size() == start && !isRenamed && !isOther) {
      return;
    }
    QString line = QStringLiteral("~ action %1 (%2)").arg(quoted(after.name), after.typeName);
    line += isRenamed ? QStringLiteral(", before %1").arg(quoted(before.name)) : QString();
    line += isOther ? QStringLiteral(", before a %1").arg(before.typeName) : QString();
    m_lines.insert(start, line);
  }

  // Outputs are computed one after the other, and rows keep theirs.
  void compareOrder(const std::vector<NamedValue>& before, const std::vector<NamedValue>& after,
                    qsizetype start) {
    const auto elements = [](const std::vector<NamedValue>& settings) {
      QStringList names;
      for (const NamedValue& each : settings) {
        if (each.name.contains(u' ') && !each.name.contains(u'@')) {
          names += each.name;
        }
      }
      return names;
    };
    QStringList one = elements(before);
    QStringList other = elements(after);
    if (m_lines.size() != start || one == other) {
      return;
    }
    for (qsizetype i = 0; i < std::min(one.size(), other.size()); ++i) {
      if (one[i] != other[i]) {
        m_lines += QStringLiteral("    ~ the order: %1 comes before %2").arg(other[i], one[i]);
        return;
      }
    }
  }

  void compareLinks() {
    std::vector<LinkFacts> before = m_before.links;
    for (LinkFacts& link : before) {
      link.from = m_newName.value(link.from, link.from);
      link.to = m_newName.value(link.to, link.to);
    }
    addLinks(QStringLiteral("- link "), before, m_after.links);
    addLinks(QStringLiteral("+ link "), m_after.links, before);
  }

  // Those that are missing in `others`.
  void addLinks(const QString& start, const std::vector<LinkFacts>& links,
                const std::vector<LinkFacts>& others) {
    QSet<QString> known;
    for (const LinkFacts& link : others) {
      known.insert(textOfLink(link));
    }
    for (const LinkFacts& link : links) {
      if (!known.contains(textOfLink(link))) {
        m_lines += start + textOfLink(link);
      }
    }
  }

  const GraphFacts& m_before;
  const GraphFacts& m_after;
  QHash<QString, QString> m_newName;  // by the old one
  QHash<QString, QString> m_oldName;
  QStringList m_lines;
};

}  // namespace

QStringList differenceOf(const GraphFacts& before, const GraphFacts& after) {
  return Comparison(before, after).lines();
}

}  // namespace kelvarin
