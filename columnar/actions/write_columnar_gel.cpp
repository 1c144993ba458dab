#include "columnar/actions/write_columnar_gel.h"

#include "actions/frame/known_elements.h"
#include "actions/frame/messages.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

using Settings = WriteColumnarSettings;

constexpr char16_t kColumnStrategy[] = u"ColumnStrategy";

constexpr Attribute<Settings> kAttributes[] = {
    attribute<&Settings::threadCount>(u"nThread"),
    attribute<&Settings::rowsInBlock>(u"nRowsInBlock"),
    attribute<&Settings::columnStrategy>(u"columnStrategy"),
    attribute<&Settings::split>(u"split"),
    attribute<&Settings::segmentSize>(u"segmentSize"),
    attribute<&Settings::splitColumn>(u"splitVar"),
    attribute<&Settings::testColumn>(u"testCol"),
    attribute<&Settings::testValue>(u"testValue"),
    attribute<&Settings::deleteTimeOutSeconds>(u"deleteTimeOut"),
    attribute<&Settings::checkNameCollision>(u"checkNameCollision"),
    attribute<&Settings::alwaysDelete>(u"alwaysDelete"),
    attribute<&Settings::createDirectory>(u"createDir"),
    attribute<&Settings::advancedNaming>(u"advancedNaming"),
    attribute<&Settings::writeAllRows>(u"writeAllRows"),
    attribute<&Settings::file>(u"file"),
};

const KnownElements kElements[] = {
    {QString(), {QStringLiteral("ColumnStrategy")}},
    {QStringLiteral("ColumnStrategy"), {QStringLiteral("C")}},
};

WriteColumnarGel::ColumnSets readColumnSets(const XMLNode& node) {
  WriteColumnarGel::ColumnSets sets;
  for (int i = 0; i < node.nChildNode(); ++i) {
    const XMLNode child = node.getChildNode(i);
    if (child.name() == u"C") {
      sets.emplace_back(qString(child.getAttribute(utf16(u"n"))),
                        xmltoi(child.getAttribute(utf16(u"s")), 0));
    }
  }
  return sets;
}

void writeColumnSets(std::wostream& out, const WriteColumnarGel::ColumnSets& sets) {
  out << L"  <ColumnStrategy>";
  for (const auto& [column, set] : sets) {
    out << L"<C";
    writeAttribute(out, u"n", column);
    writeAttribute(out, u"s", set);
    out << L"/>";
  }
  out << L"</ColumnStrategy>\n";
}

}  // namespace

const ActionDescription& WriteColumnarGel::catalogue() {
  static const ActionDescription entry{
      .typeName = "writeColumnarGel",  // kept: graph files have it with a small letter
      .toolTip = "Write a columnar .cgel_kelvarin file",
      .helpId = "5_27_3_kelvarin_columnar_gel_",
      .tag = nullptr,
      .keywords = {"columnar", "file", "export", "output", "save", "cgel_kelvarin", "cgel", "gel",
                   "write", "out"},
      .fileType = nullptr,
      .image = ":/KelvarinMathParser/columnarWrite.svg",
      .version = 3.19};
  return entry;
}

WriteColumnarGel::WriteColumnarGel(XMLNode node, GlobalParameters* parameters)
    : Catalogued(node, parameters) {
  m_inputPinCount = 1;
  m_outputPinCount = 0;
  m_endpoint = static_cast<std::int32_t>(Endpoint::writer);
  m_fileAccess = kWritesFiles;
  readAttributes<Settings>(node, kAttributes, m_settings);
  m_columnSets = readColumnSets(node.getChildNode(utf16(kColumnStrategy)));
}

void WriteColumnarGel::saveXML(std::wostringstream& out, QString name) {
  saveAI(out, name, catalogue().version);
  writeAttributes<Settings>(out, kAttributes, m_settings);
  out << L">\n";
  if (!m_columnSets.empty()) {
    writeColumnSets(out, m_columnSets);
  }
  out << L"</" << typeName() << L">\n";
}

char WriteColumnarGel::init() {
  ActionItem::init();
  reportUnknownElements(*this, kElements);
  MainUI::addLog(LogLevel::error,
                 messages::runningNotAvailable(QString::fromLatin1(typeName()), name()));
  return 1;
}

void WriteColumnarGel::setComputeRoutine() {
  computeRoutine = [](ActionItem*) { return true; };
}

}  // namespace kelvarin
