// The XML document helpers: opening documents in the encodings the suite's
// files come in, the case rules of element and attribute lookups, the
// attribute value encoding and its 255-character buffers, and null nodes.
#include "korvalen/drawing/xml_documents.h"

#include <gtest/gtest.h>

#include <string>

#include "temp_dir_test.h"

namespace {

using korvalen::testing::RunningUnderWine;
using korvalen::testing::Utf16Le;
using korvalen::testing::WriteBytes;

class XmlDocumentsTest : public korvalen::testing::TempDirTest {};

// The BSTR as a string, freed.
std::wstring Take(BSTR value) {
  std::wstring text(value != nullptr ? value : L"", SysStringLen(value));
  SysFreeString(value);
  return text;
}

std::wstring Value(const IXMLDOMNodePtr& node, const wchar_t* name) {
  return Take(GetAttributeValue(node, name));
}

TEST_F(XmlDocumentsTest, OpensTheEncodingsOfTheSuitesFiles) {
  const struct {
    const char* what;
    std::string bytes;
    bool needs_unicode_label;
  } files[] = {
      {"UTF-16LE with a mark, labelled Unicode",
       Utf16Le(
           L"<?xml version=\"1.0\" encoding=\"Unicode\"?>\r\n<LNKCFGPAR LanID=\"\u00e9\"/>\r\n"),
       true},
      {"UTF-16LE with a mark, labelled UTF-16",
       Utf16Le(L"<?xml version=\"1.0\" encoding=\"UTF-16\"?><LNKCFGPAR LanID=\"\u00e9\"/>"), false},
      {"UTF-8 without a declaration", "<LNKCFGPAR LanID=\"\xC3\xA9\"/>", false},
      {"UTF-8 with a mark", "\xEF\xBB\xBF<LNKCFGPAR LanID=\"\xC3\xA9\"/>", false},
      {"8-bit, labelled windows-1252",
       "<?xml version=\"1.0\" encoding=\"windows-1252\"?><LNKCFGPAR LanID=\"\xE9\"/>", false},
  };
  for (const auto& f : files) {
    if (f.needs_unicode_label && RunningUnderWine()) continue;  // Wine's msxml3 refuses the label
    WriteBytes("doc.xml", f.bytes);
    const IXMLDOMNodePtr main = GetXMLMainNodeObjectFromFile(L"doc.xml");
    ASSERT_NE(main, nullptr) << f.what;
    EXPECT_EQ(Value(main, L"LanID"), L"\u00e9") << f.what;
  }
}

TEST_F(XmlDocumentsTest, BadDocumentsGiveNullNodes) {
  const std::string bad[] = {
      "",
      "<a><b></a>",
      "<a/><b/>",
      "\xFF\xFE<\0a\0",      // UTF-16 cut in the middle of the element
      "\xFF\xFE<\0a\0/\0>",  // an odd number of bytes
      "\xFF\xFE\x01\xD8\x02",
      "<a x=\"\xC3\"/>",  // not UTF-8
  };
  for (const std::string& bytes : bad) {
    WriteBytes("bad.xml", bytes);
    EXPECT_EQ(GetXMLMainNodeObjectFromFile(L"bad.xml"), nullptr) << bytes;
  }
  EXPECT_EQ(GetXMLMainNodeObjectFromFile(L"missing.xml"), nullptr);
  EXPECT_EQ(GetXMLMainNodeObjectFromFile(nullptr), nullptr);
  EXPECT_EQ(GetXMLMainNodeObjectFromString(L"<a>"), nullptr);
  EXPECT_EQ(GetXMLMainNodeObjectFromString(nullptr), nullptr);
}

TEST_F(XmlDocumentsTest, ElementsMatchWithoutRegardToCaseAttributesWithIt) {
  const IXMLDOMNodePtr main = GetXMLMainNodeObjectFromString(
      L"<LANGS><!-- c --><Language LanID=\"1\"/>text<PrdCnn/><LANGUAGE LanID=\"2\"><LANGUAGE "
      L"LanID=\"9\"/></LANGUAGE></LANGS>");
  ASSERT_NE(main, nullptr);
  const IXMLDOMNodePtr first = GetSimpleChildElementNode(main, L"language");
  EXPECT_EQ(Value(first, L"LanID"), L"1");
  EXPECT_EQ(Value(first, L"lanid"), L"");
  EXPECT_NE(GetSimpleChildElementNode(main, L"prdcnn"), nullptr);
  // Following siblings only: the nested LANGUAGE is no sibling.
  const IXMLDOMNodePtr second = GetSimpleNextElementNode(first, L"LANGUAGE");
  EXPECT_EQ(Value(second, L"LanID"), L"2");
  EXPECT_EQ(GetSimpleNextElementNode(second, L"LANGUAGE"), nullptr);
  EXPECT_EQ(GetSimpleChildElementNode(main, L"missing"), nullptr);
}

TEST_F(XmlDocumentsTest, ValuesRoundTripEncodedAndDecodeTheNamedEntities) {
  const IXMLDOMNodePtr main =
      GetXMLMainNodeObjectFromString(L"<A v=\"x\" named=\"&amp;lt; &quot;&gt;&lt;\"/>");
  ASSERT_NE(main, nullptr);
  const std::wstring tricky = L"a<b & \"c\">\nd";
  ChangeAttributeValue(main, L"v", tricky.c_str());
  EXPECT_EQ(Value(main, L"v"), tricky);
  // The stored text is the encoded one.
  wchar_t encoded[256];
  TranslateTxtAttributeValue(tricky.c_str(), encoded);
  EXPECT_STREQ(encoded, L"a&#x3c;b &#x26; &#x22;c&#x22;&#x3e;@#NwLn#@d");
  // "&amp;lt;" is "&lt;" in the DOM, which decodes to "<": "&" decodes last.
  EXPECT_EQ(Value(main, L"named"), L"< \"><");
  ChangeAttributeValue(main, L"absent", L"x");
  EXPECT_EQ(Value(main, L"absent"), L"");
}

TEST_F(XmlDocumentsTest, WorkBuffersCutAt255Characters) {
  const IXMLDOMNodePtr main = GetXMLMainNodeObjectFromString(L"<A v=\"x\"/>");
  ChangeAttributeValue(main, L"v", std::wstring(300, L'a').c_str());
  EXPECT_EQ(Value(main, L"v"), std::wstring(255, L'a'));
  // Encoding grows the text, and the buffer keeps 255 characters of it.
  wchar_t encoded[256];
  TranslateTxtAttributeValue(std::wstring(100, L'&').c_str(), encoded);
  std::wstring expected;
  while (expected.size() < 255) expected += L"&#x26;";
  EXPECT_EQ(std::wstring(encoded), expected.substr(0, 255));
  // Names compare within 255 characters too.
  const std::wstring long_name(300, L'n');
  const IXMLDOMNodePtr parent =
      GetXMLMainNodeObjectFromString((L"<P><" + long_name + L"/></P>").c_str());
  EXPECT_NE(GetSimpleChildElementNode(parent, (std::wstring(255, L'n') + L"x").c_str()), nullptr);
}

// Deep, long and large documents: values and names within their buffers, and
// no crash (a DOM may also refuse the deepest nesting: a null node).
TEST_F(XmlDocumentsTest, HugeDocumentsStayWithinTheirBuffers) {
  std::wstring deep;
  for (int i = 0; i < 10000; ++i) deep += L"<d>";
  for (int i = 0; i < 10000; ++i) deep += L"</d>";
  const IXMLDOMNodePtr nested = GetXMLMainNodeObjectFromString(deep.c_str());
  if (nested != nullptr) {
    EXPECT_NE(GetSimpleChildElementNode(nested, L"D"), nullptr);
  }

  const std::wstring long_value(100000, L'v');
  const std::wstring big = L"<A v=\"" + long_value + L"\">" + std::wstring(5000000, L' ') + L"</A>";
  const IXMLDOMNodePtr main = GetXMLMainNodeObjectFromString(big.c_str());
  ASSERT_NE(main, nullptr);
  EXPECT_EQ(Value(main, L"v"), std::wstring(255, L'v'));
}

TEST_F(XmlDocumentsTest, AppendsTheMainElementOfAText) {
  const IXMLDOMNodePtr main = GetXMLMainNodeObjectFromString(L"<A><B/></A>");
  AppendChildXMLText(main, L"<C x=\"1\"><D/></C>");
  AppendChildXMLText(main, L"<broken>");
  const IXMLDOMNodePtr c = GetSimpleNextElementNode(GetSimpleChildElementNode(main, L"B"), L"C");
  EXPECT_EQ(Value(c, L"x"), L"1");
  EXPECT_NE(GetSimpleChildElementNode(c, L"D"), nullptr);
  EXPECT_EQ(GetSimpleNextElementNode(c, L"broken"), nullptr);
}

TEST_F(XmlDocumentsTest, NullNodesAreQuiet) {
  const IXMLDOMNodePtr none;
  EXPECT_EQ(GetSimpleChildElementNode(none, L"A"), nullptr);
  EXPECT_EQ(GetSimpleNextElementNode(none, L"A"), nullptr);
  AppendChildXMLText(none, L"<A/>");
  ChangeAttributeValue(none, L"A", L"B");
  EXPECT_EQ(Value(none, L"A"), L"");
  EXPECT_EQ(Take(GetAttributeNodeValue(none)), L"");
  // An element has no text value of its own.
  EXPECT_EQ(Take(GetAttributeNodeValue(GetXMLMainNodeObjectFromString(L"<A>t</A>"))), L"");
}

}  // namespace
