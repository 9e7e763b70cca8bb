// The job document as the drivers see it through Nx_XMLParser.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/nx_xml.h"

namespace {

using Names = std::vector<std::wstring>;

// Names and attributes as written (case counts); children in document order, by name or all.
TEST(Xml, NamesAttributesAndChildren) {
  Nx_XMLParser parser;
  std::string error;
  ASSERT_TRUE(parser.LoadString("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<SingleField Justify=\"LEFT\" Char=\"\">\n"
                                "  <Field>one</Field><LeftField>L</LeftField><!-- a note -->\n"
                                "  <field>lower</field><Field>Caf\xC3\xA9</Field><Field>   </Field>\n"
                                "</SingleField>\n",
                                &error))
      << error;
  const IXMLDOMNodePtr root = parser.Root();
  EXPECT_EQ(parser.GetName(root), L"SingleField");
  Nx_Stringa value(L"unchanged");
  EXPECT_TRUE(parser.GetAttributeValue(root, L"Justify", value));
  EXPECT_EQ(value, L"LEFT");
  EXPECT_TRUE(parser.GetAttributeValue(root, L"Char", value));  // present, empty
  EXPECT_EQ(value, L"");
  value = L"unchanged";
  EXPECT_FALSE(parser.GetAttributeValue(root, L"justify", value));
  EXPECT_FALSE(parser.GetAttributeValue(root, L"Margin", value));
  EXPECT_EQ(value, L"unchanged");
  Names all, fields;
  for (auto node = parser.GetFirstChild(root); !node.IsNull(); node = parser.GetNextNode(node))
    all.push_back(parser.GetName(node).wstr());
  for (auto node = parser.GetFirstChild(root, L"Field"); !node.IsNull(); node = parser.GetNextNode(node, L"Field"))
    fields.push_back(parser.GetText(node).wstr());
  EXPECT_EQ(all, (Names{L"Field", L"LeftField", L"field", L"Field", L"Field"}));
  EXPECT_EQ(fields, (Names{L"one", L"Caf\u00E9", L"   "}));
  EXPECT_TRUE(parser.GetFirstChild(root, L"RightField").IsNull());
  const IXMLDOMNodePtr none;  // a null node is empty
  EXPECT_EQ(parser.GetName(none).wstr() + parser.GetText(none).wstr(), L"");
  EXPECT_FALSE(parser.GetAttributeValue(none, L"Type", value));
  EXPECT_TRUE(parser.GetFirstChild(none).IsNull() && parser.GetNextNode(none).IsNull());
}

TEST(Xml, MalformedDocumentsAndMissingFilesAreReported) {
  const std::pair<const char*, const char*> cases[] = {
      {"<LINE>\n<Field>x</LINE>", "line 2"}, {"", "XML document"}, {"<!-- only a comment -->", "No document element"}};
  for (const auto& [xml, mentions] : cases) {
    Nx_XMLParser parser;
    std::string error;
    EXPECT_FALSE(parser.LoadString(xml, &error));
    EXPECT_NE(error.find(mentions), std::string::npos) << error;
    EXPECT_TRUE(parser.Root().IsNull());  // and a failed load leaves no document
  }
  Nx_XMLParser parser;
  std::string error;
  EXPECT_FALSE(parser.LoadFile("/nonexistent/job.xml", &error));
  EXPECT_NE(error.find("/nonexistent/job.xml"), std::string::npos) << error;
}

}  // namespace
