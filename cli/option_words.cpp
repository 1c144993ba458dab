#include "cli/option_words.h"

#include <QHash>
#include <QRegularExpression>

namespace kelvarin {

QString inWordsOfOptions(const QString& text) {
  static const QHash<QString, QString> kOptions{{"nullText", "--null"},
                                                {"separator", "--separator"},
                                                {"encoding", "--encoding"},
                                                {"short", "--short-rows"},
                                                {"long", "--long-rows"}};
  static const QRegularExpression kSetting(QStringLiteral("(\\bset )?\\b(\\w+)=('[^']*')"));
  static const QRegularExpression kWord(QStringLiteral("^'([\\w-]+)'$"));
  QString said;
  qsizetype done = 0;
  for (const QRegularExpressionMatch& match : kSetting.globalMatch(text)) {
    const auto option = kOptions.constFind(match.captured(2));
    if (option == kOptions.constEnd()) {
      continue;
    }
    const QRegularExpressionMatch word = kWord.match(match.captured(3));
    said += QStringView(text).mid(done, match.capturedStart() - done);
    said += match.captured(1).isEmpty() ? *option : QStringLiteral("say ") + *option;
    said += u' ' + (word.hasMatch() ? word.captured(1) : match.captured(3));
    done = match.capturedEnd();
  }
  said += QStringView(text).mid(done);
  return said.replace(QLatin1String("See the attributes decimal and thousands."),
                      QLatin1String("See --decimal and --thousands."));
}

}  // namespace kelvarin
