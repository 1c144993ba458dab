#include "ui/language/sub_expressions.h"

#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include <QStringList>

#include "expression/evaluator/expression_evaluator.h"

namespace kelvarin {
namespace {

// The tree written with a bracket around each part.
QString bracketed(const SubExpressions& tree, std::size_t index) {
  using Kind = ExpressionPart::Kind;
  const ExpressionPart& part = tree[index];
  QStringList parts;
  for (const std::size_t child : part.parts) {
    parts += bracketed(tree, child);
  }
  switch (part.kind) {
    case Kind::call:
      return part.sign + u'(' + parts.join(u',') + u')';
    case Kind::prefix:
      return u'(' + part.sign + parts[0] + u')';
    case Kind::postfix:
      return u'(' + parts[0] + part.sign + u')';
    case Kind::assignment:
      return u'(' + parts[0] + part.sign + parts[1] + u')';
    case Kind::binary:
      return u'(' + parts[0] + u' ' + part.sign + u' ' + parts[1] + u')';
    case Kind::conditional:
      return u'(' + parts[0] + u'?' + parts[1] + u':' + parts[2] + u')';
    case Kind::element:
      return parts[0] + u'[' + parts.mid(1).join(u',') + u']';
    case Kind::array:
      return u'{' + parts.join(u',') + u'}';
    default:
      return tree.textOf(index);
  }
}

QString bracketed(const QString& expression) {
  const SubExpressions tree(expression);
  return tree.isComplete() ? bracketed(tree, tree.root()) : QStringLiteral("no expression");
}

std::string bracketedText(const char* expression) {
  return bracketed(QString::fromLatin1(expression)).toStdString();
}

// Random expressions of the String Parser with few brackets.
class RandomExpression {
 public:
  explicit RandomExpression(unsigned seed) : m_random(seed) {}

  QString number(int depth) {
    static const char* const signs[] = {" + ", "-", "*", "/", "%", "^", "&", "|", "<<", ">>"};
    switch (depth <= 0 ? below(3) : below(12)) {
      case 0:
        return QString::number(below(40));
      case 1:
        return QStringLiteral("x");
      case 2:
        return QStringLiteral("y");
      case 3:
        return u'(' + number(depth - 1) + u')';
      case 4:
        return u'-' + number(depth - 1);
      case 5:
        return QStringLiteral("(int)") + number(depth - 1);
      case 6:
        return number(0) + u'!';
      case 7:
        return number(0) + QStringLiteral("{k}");
      case 8:
        return QStringLiteral("max(") + number(depth - 1) + u',' + number(depth - 1) + u')';
      case 9:
        return u'(' + condition(depth - 1) + u'?' + number(depth - 1) + u':' + value(depth - 1) +
               u')';
      default:
        return number(depth - 1) + QLatin1String(signs[below(std::size(signs))]) +
               number(depth - 1);
    }
  }

  // What may stand behind a colon.
  QString value(int depth) {
    return below(3) > 0 ? number(depth)
                        : condition(depth - 1) + u'?' + number(depth - 1) + u':' + value(depth - 1);
  }

 private:
  QString condition(int depth) {
    static const char* const signs[] = {"<", "<=", ">", ">=", "==", "!="};
    static const char* const words[] = {" && ", "||", " and ", " or "};
    if (depth > 0 && below(3) == 0) {
      return condition(depth - 1) + QLatin1String(words[below(std::size(words))]) +
             condition(depth - 1);
    }
    return number(depth - 1) + QLatin1String(signs[below(std::size(signs))]) + number(depth - 1);
  }

  int below(std::size_t end) { return static_cast<int>(m_random() % end); }

  std::mt19937 m_random;
};

// The bits of the value, or the error's text.
QString valueOf(const QString& expression) {
  InputVariable x;
  x.label = QStringLiteral("x");
  x.number = 3.0;
  InputVariable y = x;
  y.label = QStringLiteral("y");
  y.number = -7.5;
  ExpressionSet set;
  set.configure({}, {x, y}, nullptr, false);
  set.requireBackend(BackendKind::string);
  OutputVariable output;
  output.expression = expression;
  const ExpressionCheck check = set.check(output, ResultUse::anyValue);
  if (!check.value) {
    return QStringLiteral("none");
  }
  quint64 bits = 0;
  std::memcpy(&bits, &check.value->number, sizeof bits);
  return QString::number(static_cast<int>(check.value->type)) + u' ' + QString::number(bits, 16);
}

TEST(SubExpressions, BindAsTheStringParserDoes) {
  EXPECT_EQ(bracketedText("a + b * c ^ d ^ e"), "(a + (b * (c ^ (d ^ e))))");
  EXPECT_EQ(bracketedText("-a^2 * -b"), "((-(a ^ 2)) * (-b))");
  EXPECT_EQ(bracketedText("a<b and c==d//e"), "((a < b) and (c == (d // e)))");
  EXPECT_EQ(bracketedText("a>0?1:b>0?2:3"), "((a > 0)?1:((b > 0)?2:3))");
  EXPECT_EQ(bracketedText("a?b?1:2:3"), "(a?(b?1:2):3)");
  EXPECT_EQ(bracketedText("(int)x^2 + 3{k}! # note"), "(((int)(x ^ 2)) + ((3{k})!))");
  EXPECT_EQ(bracketedText("f(a, g(), {1,2}[i])"), "f(a,g(),{1,2}[i])");
  EXPECT_EQ(bracketedText("x += a ? 1 : 2"), "(x+=(a?1:2))");
}

TEST(SubExpressions, GiveTheSameValuesWithABracketAroundEach) {
  int valued = 0;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    const QString plain = RandomExpression(seed).value(4);
    const QString whole = bracketed(plain);
    const QString value = valueOf(plain);
    if (value != u"none") {  // the parser refuses some signs behind others
      ASSERT_EQ(valueOf(whole).toStdString(), value.toStdString()) << plain.toStdString() << "\n"
                                                                   << whole.toStdString();
      ++valued;
    }
  }
  EXPECT_GT(valued, 1500);
}

TEST(SubExpressions, AreFoundAtCharacters) {
  const SubExpressions tree(QStringLiteral("price * (1 - discount) + round( x )"));
  const auto textAt = [&](qsizetype start, qsizetype size) {
    return tree.textOf(tree.smallestAt(start, size)).toStdString();
  };
  EXPECT_EQ(textAt(2, 0), "price");
  EXPECT_EQ(textAt(6, 0), "price * (1 - discount)");  // its sign
  EXPECT_EQ(textAt(8, 14), "1 - discount");           // with its brackets
  EXPECT_EQ(textAt(9, 4), "1 - discount");
  EXPECT_EQ(textAt(24, 0), tree.expression().toStdString());
  EXPECT_EQ(textAt(27, 0), "round( x )");
  EXPECT_EQ(textAt(31, 3), "x");
}

TEST(SubExpressions, AreNoneOfWhatIsNoExpression) {
  for (const char* wrong : {"", "a +", "a b", "(a", "a)", "f(a,", "f(,a)", "a ? b", "a : b", "3k",
                            "1,2", "(1,2)", "\"open", "a $ b", "x[1", "{1", "()", "a ? (b : c)"}) {
    EXPECT_FALSE(SubExpressions(QString::fromLatin1(wrong)).isComplete()) << wrong;
  }
  const QString deep = QString(10'000, u'(') + u'x' + QString(10'000, u')');
  EXPECT_EQ(SubExpressions(deep).size(), 1U);
}

}  // namespace
}  // namespace kelvarin
