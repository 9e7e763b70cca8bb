// The job document as the drivers see it through Nx_XMLParser.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/nx_xml.h"

namespace {

const char* const kJob =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<SingleField Justify=\"LEFT\" Char=\"\">\n"
    "  <Field>one</Field>\n"
    "  <LeftField>L</LeftField>\n"
    "  <!-- a note -->\n"
    "  <field>lower</field>\n"
    "  <Field>Caf\xC3\xA9</Field>\n"
    "  <Field>   </Field>\n"
    "</SingleField>\n";

std::vector<std::wstring> Children(const Nx_XMLParser& parser, const wchar_t* name, bool texts) {
  std::vector<std::wstring> out;
  for (auto node = parser.GetFirstChild(parser.Root(), name); !node.IsNull(); node = parser.GetNextNode(node, name))
    out.push_back((texts ? parser.GetText(node) : parser.GetName(node)).wstr());
  return out;
}

TEST(Xml, NamesAttributesAndChildren) {
  Nx_XMLParser parser;
  std::string error;
  ASSERT_TRUE(parser.LoadString(kJob, &error)) << error;
  EXPECT_EQ(parser.GetName(parser.Root()), L"SingleField");

  Nx_Stringa value(L"unchanged");
  EXPECT_TRUE(parser.GetAttributeValue(parser.Root(), L"Justify", value));
  EXPECT_EQ(value, L"LEFT");
  EXPECT_TRUE(parser.GetAttributeValue(parser.Root(), L"Char", value));
  EXPECT_EQ(value, L"");
  value = L"unchanged";
  EXPECT_FALSE(parser.GetAttributeValue(parser.Root(), L"justify", value));
  EXPECT_FALSE(parser.GetAttributeValue(parser.Root(), L"Margin", value));
  EXPECT_EQ(value, L"unchanged");

  EXPECT_EQ(Children(parser, nullptr, false),
            (std::vector<std::wstring>{L"Field", L"LeftField", L"field", L"Field", L"Field"}));
  EXPECT_EQ(Children(parser, L"Field", true), (std::vector<std::wstring>{L"one", L"Caf\u00E9", L"   "}));
  EXPECT_TRUE(parser.GetFirstChild(parser.Root(), L"RightField").IsNull());
}

TEST(Xml, NullNodesAreEmpty) {
  Nx_XMLParser parser;
  const IXMLDOMNodePtr none;
  Nx_Stringa value;
  EXPECT_TRUE(parser.Root().IsNull());
  EXPECT_EQ(parser.GetName(none), L"");
  EXPECT_EQ(parser.GetText(none), L"");
  EXPECT_FALSE(parser.GetAttributeValue(none, L"Type", value));
  EXPECT_TRUE(parser.GetFirstChild(none).IsNull());
  EXPECT_TRUE(parser.GetNextNode(none).IsNull());
}

TEST(Xml, MalformedDocumentsAreReported) {
  const struct {
    const char* name;
    const char* xml;
    const char* mentions;
  } cases[] = {
      {"unclosed element", "<LINE>\n<Field>x</LINE>", "line 2"},
      {"empty", "", "XML document"},
      {"no element", "<!-- only a comment -->", "No document element"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Nx_XMLParser parser;
    std::string error;
    EXPECT_FALSE(parser.LoadString(c.xml, &error));
    EXPECT_NE(error.find(c.mentions), std::string::npos) << error;
    EXPECT_TRUE(parser.Root().IsNull());
  }
}

TEST(Xml, MissingFileIsNamed) {
  Nx_XMLParser parser;
  std::string error;
  EXPECT_FALSE(parser.LoadFile("/nonexistent/job.xml", &error));
  EXPECT_NE(error.find("/nonexistent/job.xml"), std::string::npos) << error;
}

}  // namespace
