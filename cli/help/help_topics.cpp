#include "cli/help/help_topics.h"

#include <algorithm>

#include <QString>
#include <QStringList>

namespace kelvarin {

std::vector<HelpTopic> helpTopics() {
  std::vector<HelpTopic> topics;
  std::ranges::copy(languageTopics(), std::back_inserter(topics));
  std::ranges::copy(programTopics(), std::back_inserter(topics));
  return topics;
}

const HelpTopic* findTopic(const std::vector<HelpTopic>& topics, const std::string& name) {
  const QString wanted = QString::fromStdString(name).toLower();
  const auto found = std::ranges::find_if(topics, [&wanted](const HelpTopic& topic) {
    const QStringList others = QString::fromLatin1(topic.otherNames).split(u',');
    return wanted == QLatin1String(topic.name) || others.contains(wanted);
  });
  return found == topics.end() ? nullptr : &*found;
}

}  // namespace kelvarin
