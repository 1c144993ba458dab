// Short pages about what belongs to no single command.
//
// A page fits a screen or two: at most 100 columns. Its examples are lines that begin with
// "  kelvarin ", which a test runs.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace kelvarin {

struct HelpTopic {
  const char* name;
  const char* otherNames;  // separated by commas
  const char* title;
  const char* text;
};

std::vector<HelpTopic> helpTopics();
// By name, upper and lower case being one. Null where there is none.
const HelpTopic* findTopic(const std::vector<HelpTopic>& topics, const std::string& name);

// language_topics.cpp
std::span<const HelpTopic> languageTopics();
// program_topics.cpp
std::span<const HelpTopic> programTopics();

}  // namespace kelvarin
