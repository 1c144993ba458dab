// Elements of the expression actions as tests type them, and how tests look at log lines.
#pragma once

#include <string>

namespace kelvarin::testing {

inline const std::string kNumberInput = "<InputVar column='a'/>";
inline const std::string kTextInput = kNumberInput + "<InputVar column='t' isNumber='0'/>";

inline std::string output(const std::string& name, const std::string& expression,
                          const std::string& more = "") {
  return "<OutputVar name='" + name + "' " + more + ">" + expression + "</OutputVar>";
}

inline std::string calculator(const std::string& outputs, const std::string& attributes = "",
                              const std::string& inputs = kNumberInput,
                              const std::string& type = "Calculator") {
  return "<" + type + " name='c' " + attributes + "><InputVars>" + inputs +
         "</InputVars><OutputVars>" + outputs + "</OutputVars></" + type + ">";
}

inline bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

inline bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace kelvarin::testing
