// Functions that work on views of UTF-8 have the results of the same operations on QString, bytes
// that are no UTF-8 included.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

#include "expression/functions/tests/table_calls.h"

namespace kelvarin {
namespace {

using Operation = std::function<QString(const QString&)>;

constexpr std::string_view kPieces[] = {"a",
                                        "Zz9 ",
                                        "\t",
                                        "ü",
                                        "İ",
                                        "日本語",
                                        "😀",
                                        "e\xCC\x81",
                                        "\xFF",
                                        "\xE2\x82",
                                        "\xF0\x9F",
                                        "\xC3",
                                        "\xED\xA0\x80",
                                        "\xF4\x90\x80\x80",
                                        "\xC0\x80",
                                        "\xC2\xA0",
                                        "ß",
                                        "\xE2\x80\xA8",
                                        "\xEF\xBB\xBF",
                                        "long enough for words ",
                                        "\xE0\x80\x80",
                                        "\xF8\x88\x80\x80\x80",
                                        "\x80"};
constexpr double kPositions[] = {-1.0, 0.0, 0.5, 1.0, 2.0, 3.0, 4.0, 7.0, 20.0, 1e300};

class TextViews : public ::testing::Test {
 protected:
  std::string randomText() {
    std::string text;
    for (unsigned left = m_random() % 6; left > 0; --left) {
      text += m_random() % 40 == 0 ? std::string(1, '\0') : randomPiece();
    }
    return text;
  }
  std::string randomPiece() { return std::string(kPieces[m_random() % std::size(kPieces)]); }
  double randomPosition() { return kPositions[m_random() % std::size(kPositions)]; }

  static QString units(const std::string& text) { return QString::fromStdString(text); }
  static int limited(double position, qsizetype size) {
    return static_cast<int>(std::clamp(position, 0.0, static_cast<double>(size)));
  }
  // What a text result is in UTF-8: halves of pairs cannot be stored.
  static std::string bytes(QString text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
      const bool isPair =
          text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
      if (isPair) {
        ++i;
      } else if (text[i].isSurrogate()) {
        text[i] = QChar::ReplacementCharacter;
      }
    }
    return text.toStdString();
  }

  TableCalls m_calls;

 private:
  std::mt19937 m_random{7};
};

TEST_F(TextViews, PartsAreThoseOfQString) {
  for (int i = 0; i < 20'000; ++i) {
    const std::string text = randomText();
    const QString all = units(text);
    const double start = randomPosition();
    const double length = randomPosition();
    const int from = limited(start, all.size());
    const FunctionArgument s = textArgument(text);
    const FunctionArgument a = numberArgument(start);
    const FunctionArgument b = numberArgument(length);
    const QString part = all.mid(from, limited(length, all.size() - from));
    ASSERT_EQ(m_calls.number("strlen", {s}), all.size()) << text;
    ASSERT_EQ(m_calls.text("substr", {s, a, b}), bytes(part)) << text << start << " " << length;
    ASSERT_EQ(m_calls.text("left", {s, a}), bytes(all.left(from))) << text << start;
    ASSERT_EQ(m_calls.text("right", {s, a}), bytes(all.right(from))) << text << start;
    const int to = limited(length, all.size());
    const std::string between = std::trunc(length) <= std::trunc(start)
                                    ? "null"
                                    : bytes(all.mid(from, std::max(0, to - from)));
    ASSERT_EQ(m_calls.text("substring", {s, a, b}), between) << text << start << " " << length;
    const bool isInside = start >= 0 && from < all.size();
    ASSERT_EQ(m_calls.number("charAt", {s, a}), isInside ? all[from].unicode() : -1) << text;
  }
}

TEST_F(TextViews, BlanksAndCasesAreThoseOfQString) {
  const auto withoutBlanksBefore = [](const QString& text) {
    return text.last(text.end() - std::find_if_not(text.begin(), text.end(),
                                                   [](QChar c) { return c.isSpace(); }));
  };
  const std::pair<const char*, Operation> operations[] = {
      {"trim", [](const QString& text) { return text.trimmed(); }},
      {"ltrim", withoutBlanksBefore},
      {"toupper", [](const QString& text) { return text.toUpper(); }},
      {"tolower", [](const QString& text) { return text.toLower(); }},
      {"toCaseFolded", [](const QString& text) { return text.toCaseFolded(); }}};
  for (int i = 0; i < 10'000; ++i) {
    const std::string text = randomText();
    for (const auto& [name, operation] : operations) {
      ASSERT_EQ(m_calls.text(name, {textArgument(text)}), bytes(operation(units(text))))
          << name << " of " << text;
    }
  }
  QString all;
  for (char16_t c = 0; c < 0x300; ++c) {  // each letter alone, and behind all others
    all += QChar(c);
    for (const QString& text : {QString(QChar(c)), all}) {
      for (const auto& [name, operation] : operations) {
        ASSERT_EQ(m_calls.text(name, {textArgument(text.toStdString())}), bytes(operation(text)))
            << name << " of U+" << std::hex << static_cast<int>(c);
      }
    }
  }
}

TEST_F(TextViews, SearchesAreThoseOfQString) {
  for (int i = 0; i < 20'000; ++i) {
    const std::string text = randomText();
    const std::string wanted = i % 2 == 0 ? randomText().substr(0, 2) : randomPiece();
    const QString all = units(text);
    const QString part = units(wanted);
    const double start = randomPosition();
    const qsizetype from = limited(start, all.size());
    const qsizetype last = all.size() - part.size();
    const FunctionArgument s = textArgument(text);
    const FunctionArgument w = textArgument(wanted);
    const FunctionArgument a = numberArgument(start);
    const auto lastIndex = [&](qsizetype position) {
      return last < 0 ? -1 : all.lastIndexOf(part, std::min(position, last));
    };
    SCOPED_TRACE(text + " | " + wanted + " | " + std::to_string(start));
    ASSERT_EQ(m_calls.number("indexOf", {s, w}), all.indexOf(part));
    ASSERT_EQ(m_calls.number("indexOf2", {s, w, a}), all.indexOf(part, from));
    ASSERT_EQ(m_calls.number("lastIndexOf", {s, w}), lastIndex(last));
    ASSERT_EQ(m_calls.number("lastIndexOf2", {s, w, a}), lastIndex(from));
  }
}

TEST_F(TextViews, EncodingsAreThoseOfTheLibrary) {
  std::mt19937 random(11);
  for (int i = 0; i < 20'000; ++i) {
    const std::string text = randomText();
    const QByteArray plain = QByteArray::fromStdString(text);
    ASSERT_EQ(m_calls.text("urlEncode", {textArgument(text)}),
              plain.toPercentEncoding().toStdString());
    const QByteArray digits = plain.toBase64();
    ASSERT_EQ(m_calls.text("atob64", {textArgument(text)}), digits.toStdString());
    // Some with a digit less, or another sign.
    QByteArray damaged = digits.left(digits.size() - static_cast<qsizetype>(random() % 4));
    if (!damaged.isEmpty() && random() % 3 == 0) {
      damaged[static_cast<qsizetype>(random() % static_cast<std::size_t>(damaged.size()))] =
          "=A-\xC3"[random() % 4];
    }
    const auto decoded =
        QByteArray::fromBase64Encoding(damaged, QByteArray::AbortOnBase64DecodingErrors);
    const bool isRead = decoded && damaged.size() % 4 != 1;
    ASSERT_EQ(m_calls.text("b64toa2", {textArgument(damaged.toStdString())}),
              isRead ? QString::fromLatin1(*decoded).toStdString() : "null")
        << damaged.toStdString();
    ASSERT_EQ(m_calls.text("b64toa", {textArgument(damaged.toStdString())}),
              isRead && decoded.decoded.isValidUtf8() ? decoded.decoded.toStdString() : "null")
        << damaged.toStdString();
  }
}

// With texts that are longer, as long and shorter than what they replace.
TEST_F(TextViews, ReplacingIsThatOfBytes) {
  for (int i = 0; i < 20'000; ++i) {
    const std::string text = randomText() + randomText();
    const std::string before = randomText().substr(0, 2);
    const std::string after = randomText();
    const QString latin = QString::fromLatin1(text.c_str(), static_cast<qsizetype>(text.size()));
    const auto latinOf = [](const std::string& part) {
      return QString::fromLatin1(part.c_str(), static_cast<qsizetype>(part.size()));
    };
    const QString expected =
        before.empty() ? latin : QString(latin).replace(latinOf(before), latinOf(after));
    ASSERT_EQ(
        m_calls.text("replace", {textArgument(text), textArgument(before), textArgument(after)}),
        expected.toLatin1().toStdString());
  }
}

}  // namespace
}  // namespace kelvarin
