#include "ui/editors/committed_texts.h"

#include <algorithm>

namespace kelvarin {

void CommittedTexts::add(const QString& field, Read text, Show show) {
  m_fields.push_back({field, std::move(text), std::move(show), {}});
}

const CommittedTexts::Field* CommittedTexts::find(const QString& name) const {
  const auto found = std::find_if(m_fields.begin(), m_fields.end(),
                                  [&](const Field& field) { return field.name == name; });
  return found == m_fields.end() ? nullptr : &*found;
}

bool CommittedTexts::isCommitted(const QString& field) const {
  const Field* found = find(field);
  return found == nullptr || found->text() == found->committed;
}

void CommittedTexts::setCommitted(const QString& field) {
  if (const Field* found = find(field)) {
    m_fields[static_cast<std::size_t>(found - m_fields.data())].committed = found->text();
  }
}

void CommittedTexts::setAllCommitted() {
  for (Field& field : m_fields) {
    field.committed = field.text();
  }
}

QMap<QString, QString> CommittedTexts::uncommitted() const {
  QMap<QString, QString> texts;
  for (const Field& field : m_fields) {
    if (const QString text = field.text(); text != field.committed) {
      texts[field.name] = text;
    }
  }
  return texts;
}

void CommittedTexts::restore(const QMap<QString, QString>& texts) const {
  for (const Field& field : m_fields) {
    if (const auto text = texts.find(field.name); text != texts.end()) {
      field.show(*text);
    }
  }
}

}  // namespace kelvarin
