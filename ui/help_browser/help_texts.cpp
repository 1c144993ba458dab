// Writes every text of the help as a source for lupdate, which cannot read it out of the tables:
// help_texts > FILE.cpp
#include <cstdio>
#include <set>
#include <string>

#include "expression/help/foreign_names.h"
#include "expression/help/help_entry.h"
#include "expression/help/language_entries.h"

namespace {

std::string quoted(const std::string& text) {
  std::string literal = "\"";
  for (const char c : text) {
    literal += c == '"' || c == '\\' ? std::string{'\\', c} : std::string{c};
  }
  return literal + '"';
}

void write(std::set<std::string>& written, const char* text) {
  if (text != nullptr && written.insert(text).second) {
    std::printf("    QT_TRANSLATE_NOOP(\"Help\", %s),\n", quoted(text).c_str());
  }
}

}  // namespace

int main() {
  std::set<std::string> written;
  std::puts("#include <QtGlobal>\n\nconst char* const kHelpTexts[] = {");
  write(written, kelvarin::kParametersRemark);
  for (const kelvarin::LanguageEntry& entry : kelvarin::languageEntries()) {
    write(written, entry.group);
    write(written, entry.entry->comment);
    write(written, entry.entry->nulls);
    write(written, entry.entry->note);
  }
  for (const kelvarin::ForeignName& foreign : kelvarin::foreignNames()) {
    write(written, foreign.advice);
  }
  std::puts("};");
  return 0;
}
