#include <gtest/gtest.h>

#include "host/xml/xml_node.h"

using kelvarin::parseXml;
using kelvarin::qString;
using kelvarin::utf16;

namespace {

XMLNode parsed(const QByteArray& xml) {
  const auto node = parseXml(xml);
  EXPECT_TRUE(node) << node.error().message.toStdString();
  return node ? *node : XMLNode();
}

struct Refusal {
  std::string message;
  long long line = 0;
  long long column = 0;
};

Refusal refusalOf(const QByteArray& xml) {
  const auto node = parseXml(xml);
  if (node) {
    return {};
  }
  return {node.error().message.toStdString(), node.error().position.line,
          node.error().position.column};
}

std::string attribute(const XMLNode& node, const char16_t* name) {
  return qString(node.getAttribute(utf16(name))).toStdString();
}

QByteArray nested(int levels) {
  return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
}

TEST(Xml, ReturnsChildrenAttributesAndTextsInTheirOrder) {
  const XMLNode root =
      parsed("<r b='2' a='1'> <x>one</x>\n <y/> tail <!-- c -->end<x><![CDATA[<&]]></x></r>");
  ASSERT_EQ(root.nAttribute(), 2);
  EXPECT_EQ(root.attributeName(0), "b");
  EXPECT_EQ(root.attributeValue(1), "1");
  ASSERT_EQ(root.nChildNode(), 3);
  int index = 0;
  EXPECT_EQ(root.getChildNode(utf16(u"x"), &index).text(), "one");
  EXPECT_EQ(root.getChildNode(utf16(u"x"), &index).text(), "<&");
  EXPECT_TRUE(root.getChildNode(utf16(u"x"), &index).isEmpty());
  EXPECT_EQ(qString(root.getText(0)), " tail end");
  EXPECT_EQ(root.getText(1), nullptr);
  EXPECT_TRUE(root.getChildNode(3).isEmpty());
  EXPECT_EQ(root.getAttribute(utf16(u"c")), nullptr);
}

TEST(Xml, KeepsBlanksOfAnElementWithoutChildren) {
  EXPECT_EQ(parsed("<V>  </V>").text(), "  ");
  EXPECT_EQ(parsed("<V></V>").getText(0), nullptr);
}

TEST(Xml, PositionsAreThoseOfTheOpeningBracket) {
  const XMLNode root = parsed(
      "<?xml version='1.0'?>\n<!-- <no/> -->\r\n<r t='>'>\xC3\xA9\xF0\x9F\x98\x80<a/>\r\n"
      "<![CDATA[<b/>]]>  <c\n  d='1'/> x ]]> <e/></r>");
  EXPECT_EQ(root.position().line, 3);
  EXPECT_EQ(root.position().column, 1);
  const long long expected[][2] = {{3, 12}, {4, 19}, {5, 17}};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(root.getChildNode(i).position().line, expected[i][0]) << i;
    EXPECT_EQ(root.getChildNode(i).position().column, expected[i][1]) << i;
  }
}

TEST(Xml, TextMayHoldTheEndOfACharacterSection) {
  EXPECT_EQ(parsed("<e>a[b[1]]>2</e>").text(), "a[b[1]]>2");
  EXPECT_EQ(parsed("<e><!-- ]]> --><![CDATA[x]]>]]]>&gt;</e>").text(), "x]]]>>");
  EXPECT_EQ(attribute(parsed("<e t='a]]>b'/>"), u"t"), "a]]>b");
  const Refusal after = refusalOf("<e>]]>]]>\n]]>]]> & </e>");
  EXPECT_EQ(after.line, 2);
  EXPECT_GE(after.column, 8);
  EXPECT_LE(after.column, 10);
}

TEST(Xml, RefusalsSayWhatAndWhere) {
  EXPECT_EQ(refusalOf("").message, "The file holds no XML element.");
  const Refusal open = refusalOf("<a>\n  <b>\n");
  EXPECT_EQ(open.message, "The file ends before <b>, which opens at line 2, is closed.");
  EXPECT_EQ(open.line, 3);
  const Refusal crossed = refusalOf("<a>\n<b>\n</a>");
  EXPECT_NE(crossed.message.find("inside <b>, which opens at line 2"), std::string::npos)
      << crossed.message;
  EXPECT_EQ(crossed.line, 3);
  const Refusal type = refusalOf("<?xml version='1.0'?>\n<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>");
  EXPECT_NE(type.message.find("DOCTYPE"), std::string::npos);
  EXPECT_EQ(type.line, 2);
  const Refusal bytes = refusalOf("<a>\n  x\xFF\n</a>");
  EXPECT_NE(bytes.message.find("UTF-8"), std::string::npos);
  EXPECT_EQ(bytes.line, 2);
  EXPECT_EQ(bytes.column, 4);
  EXPECT_NE(refusalOf("<?xml version='1.0' encoding='ISO-8859-1'?><a/>").message.find("ISO-8859-1"),
            std::string::npos);
  for (const char* broken :
       {"<a x='1' x='2'/>", "<a/><b/>", "<a>&no;</a>", "<a x=1/>", "text", "<", "<a", "<a x='"}) {
    EXPECT_NE(refusalOf(broken).message, "") << broken;
  }
}

TEST(Xml, WhateverIsChangedItIsReadOrRefusedWithItsPosition) {
  const QByteArray document =
      "<?xml version='1.0'?><!-- c --><a b='1>'>x ]]> &lt;<![CDATA[<y>]]><c/>\n<?p?></a>";
  const QByteArrayList changes{
      "<", ">", "'", "\"", "&", "]]>", "<!", "<?", "-->", "\xFF", QByteArray(1, 0), ""};
  for (qsizetype at = 0; at < document.size(); ++at) {
    for (const QByteArray& change : changes) {
      QByteArray changed = document;
      changed.replace(at, 1, change);
      const auto node = parseXml(changed);
      if (!node) {
        EXPECT_FALSE(node.error().message.isEmpty()) << changed.constData();
        EXPECT_GE(node.error().position.line, 1) << changed.constData();
        EXPECT_GE(node.error().position.column, 1) << changed.constData();
      }
    }
  }
}

TEST(Xml, DepthIsLimited) {
  EXPECT_FALSE(parsed(nested(200)).isEmpty());
  EXPECT_EQ(refusalOf(nested(201)).message, "The elements are nested more than 200 levels deep.");
  EXPECT_NE(refusalOf(QByteArray("<a>").repeated(1000000)).message, "");
}

TEST(Xml, AHandleKeepsItsDocument) {
  XMLNode inner;
  {
    const XMLNode root = parsed("<a><b c='d'/></a>");
    inner = root.getChildNode(0);
    const XMLNode copy = inner;
    inner = copy;
  }
  EXPECT_EQ(attribute(inner, u"c"), "d");
}

TEST(Xml, ConvertersGiveTheDefaultForWhatIsNoValue) {
  EXPECT_EQ(xmltoi(nullptr, 7), 7);
  EXPECT_EQ(xmltoi(utf16(u"-12"), 7), -12);
  EXPECT_EQ(xmltoi(utf16(u"99999999999"), 7), 7);
  EXPECT_EQ(xmltoi(utf16(u"1x"), 7), 7);
  EXPECT_EQ(xmltob(utf16(u"0"), 1), 0);
  EXPECT_EQ(xmltob(utf16(u"1"), 0), 1);
  EXPECT_EQ(xmltob(utf16(u"maybe"), 1), 1);
  EXPECT_EQ(xmltof(utf16(u"2.5e3"), 0), 2500);
  EXPECT_EQ(xmltof(utf16(u"2,5"), 1), 1);
  EXPECT_EQ(xmltoc(utf16(u";x"), u','), u';');
  EXPECT_EQ(xmltoc(utf16(u""), u','), u',');
  const unsigned short* otherwise = utf16(u"o");
  EXPECT_EQ(xmltoa(nullptr, otherwise), otherwise);
}

TEST(Xml, WhatIsWrittenIsReadBack) {
  const QString text = QString::fromUtf8("a<b>&'\"\t\r\n]]> \xC3\xA9\xF0\x9F\x98\x80");
  ToXMLStringTool tool;
  EXPECT_STREQ(tool.toXML("<&>'\"\t\n\r"), L"&lt;&amp;&gt;&apos;&quot;&#9;&#10;&#13;");
  const QString element = "<e t='" + QString::fromWCharArray(tool.toXML(text)) + "'/>";
  EXPECT_EQ(attribute(parsed(element.toUtf8()), u"t"), text.toStdString());

  std::wostringstream out;
  const QStringList list{"a & b", "", "<x>]]>", " "};
  toXML(list, out);
  EXPECT_EQ(out.str().substr(0, 31), L"<SL><S>a &amp; b</S><S></S><S>&");
  const QByteArray saved = QString::fromStdWString(out.str()).toUtf8();
  EXPECT_EQ(fromXMLSL(parsed(saved)), list);
  EXPECT_EQ(fromXMLSL(parsed("<p>" + saved + "</p>")), list);
}

TEST(Xml, WhatItCannotHoldBecomesAReplacementCharacter) {
  const QString hostile = QString(u'a') + QChar(0) + QChar(0x1B) + QChar(0xD800) + QChar(0xFFFE);
  ToXMLStringTool tool;
  EXPECT_STREQ(tool.toXML(hostile), L"a\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(kelvarin::elementText(QString(QChar(0xDC00)) + u'\t'), L"\uFFFD\t");
}

}  // namespace
