#include "ui/help_browser/help_details.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <QCoreApplication>

#include "expression/errors/backend_kind.h"
#include "expression/functions/function_line.h"

namespace kelvarin {

namespace {

struct HelpDetails {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::HelpDetails)
};

QString engineLabels(unsigned backends) {
  QStringList labels;
  for (const auto& [flag, kind] :
       {std::pair{kInNative, BackendKind::native}, std::pair{kInFast, BackendKind::fast},
        std::pair{kInString, BackendKind::string}}) {
    if ((backends & flag) != 0) {
      labels += QLatin1String(editorLabel(kind));
    }
  }
  return labels.join(QLatin1String(", "));
}

QString row(const QString& title, const QString& html) {
  return html.isEmpty() ? QString()
                        : QStringLiteral(
                              "<tr><td style='padding-right:12px'><i>%1</i></td>"
                              "<td>%2</td></tr>")
                              .arg(title.toHtmlEscaped(), html);
}

QString code(const QString& text) {
  return QStringLiteral("<code>%1</code>").arg(text.toHtmlEscaped());
}

// Each with a link that lets it be tried.
QString exampleLines(const HelpEntry& help) {
  QStringList lines;
  for (const HelpExample& example : examplesOf(help)) {
    lines += QStringLiteral("<a href='%1%2'>%3</a> = %4")
                 .arg(kExampleLink, QString::number(lines.size()),
                      code(QString::fromUtf8(example.expression)),
                      code(QString::fromUtf8(example.result)));
  }
  return lines.join(QStringLiteral("<br>"));
}

QString insertLinks(const LanguageEntry& entry) {
  const QStringList insertions = insertionsOf(entry);
  QStringList links;
  for (qsizetype i = 0; i < insertions.size(); ++i) {
    links += QStringLiteral("<a href='%1'><code>%2</code></a>")
                 .arg(QString::number(i), insertions[i].trimmed().toHtmlEscaped());
  }
  return links.join(QStringLiteral("&nbsp;&nbsp; "));
}

QString insertionOf(const LanguageEntry& entry, const QString& name) {
  if (name == u"?:") {
    return QStringLiteral("( ? : )");
  }
  if (entry.kind == HelpKind::function) {
    return name + QStringLiteral("()");
  }
  const bool isInfix = entry.kind == HelpKind::sign && !name.startsWith(u'(') && name != u"!";
  return isInfix ? u' ' + name + u' ' : name;
}

}  // namespace

QString translatedHelp(const char* text) {
  return text == nullptr ? QString() : QCoreApplication::translate("Help", text);
}

bool isFurther(const LanguageEntry& entry) {
  const auto groups = furtherGroups();
  return std::any_of(groups.begin(), groups.end(), [&](const HelpGroup& group) {
    return std::string_view(group.title) == entry.group;
  });
}

QStringList insertionsOf(const LanguageEntry& entry) {
  QStringList insertions;
  for (const std::string& name : entry.names) {
    insertions += insertionOf(entry, QString::fromStdString(name));
  }
  return insertions;
}

QString detailsOf(const LanguageEntry& entry) {
  const HelpEntry& help = *entry.entry;
  QString rows =
      row(HelpDetails::tr("Missing values:"), translatedHelp(help.nulls).toHtmlEscaped());
  rows += row(HelpDetails::tr("Note:"), translatedHelp(help.note).toHtmlEscaped());
  rows += row(HelpDetails::tr("Examples:"), exampleLines(help));
  rows += row(HelpDetails::tr("Engines:"), engineLabels(entry.backends).toHtmlEscaped());
  rows += row(HelpDetails::tr("Insert:"), insertLinks(entry));
  return QStringLiteral("<p><b><code>%1</code></b></p><p>%2</p><table cellpadding='2'>%3</table>")
      .arg(QString::fromUtf8(help.signature).toHtmlEscaped(),
           translatedHelp(help.comment).toHtmlEscaped(), rows);
}

}  // namespace kelvarin
