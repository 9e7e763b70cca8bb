// Nx_XMLParser over pugixml. Handles carry pugixml's node records, which live as long as
// the parser's document.
#include "platform/nx_xml.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

#include <pugixml.hpp>

namespace {

// Whitespace-only text is kept when it is an element's only content, so a field of
// blanks prints blanks; indentation between elements is still dropped.
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_ws_pcdata_single;

pugi::xml_node NodeOf(IXMLDOMNodePtr handle) {
  return pugi::xml_node(static_cast<pugi::xml_node_struct*>(handle.impl()));
}

IXMLDOMNodePtr HandleOf(pugi::xml_node node) { return IXMLDOMNodePtr(node ? node.internal_object() : nullptr); }

// A name as the document holds it (UTF-8) against a name as the drivers write it (wide),
// without converting either: the drivers' element and attribute names are ASCII, and
// they are looked up many times for every ticket.
bool SameName(const char* utf8, const wchar_t* wide) {
  for (;; ++utf8, ++wide) {
    const wchar_t w = *wide;
    if (w >= 0x80) return Nx_Stringa(wide).ToUtf8() == utf8;  // the rest, converted
    if (static_cast<unsigned char>(*utf8) != static_cast<unsigned>(w)) return false;
    if (w == 0) return true;
  }
}

bool NameMatches(pugi::xml_node node, const wchar_t* name) {
  return node.type() == pugi::node_element && (!name || SameName(node.name(), name));
}

// The first element at or after node (in sibling order) that matches.
IXMLDOMNodePtr FirstMatching(pugi::xml_node node, const wchar_t* name) {
  for (; node; node = node.next_sibling()) {
    if (NameMatches(node, name)) return HandleOf(node);
  }
  return IXMLDOMNodePtr();
}

// "line L, column C" of a byte offset, counted from 1.
std::string Position(std::string_view text, std::ptrdiff_t offset) {
  if (offset < 0) offset = 0;
  const std::size_t end = std::min(static_cast<std::size_t>(offset), text.size());
  std::size_t line = 1, column = 1;
  for (std::size_t i = 0; i < end; ++i) {
    if (text[i] == '\n') {
      ++line;
      column = 1;
    } else {
      ++column;
    }
  }
  std::ostringstream out;
  out << "line " << line << ", column " << column << " (offset " << offset << ")";
  return out.str();
}

}  // namespace

struct Nx_XMLParser::Impl {
  pugi::xml_document document;

  bool Parse(std::string_view xml, const std::string& source, std::string* error) {
    const pugi::xml_parse_result result = document.load_buffer(xml.data(), xml.size(), kParseOptions);
    if (result && document.document_element()) return true;
    if (error) {
      if (result) {
        *error = source + ": the document has no element";
      } else {
        *error = source + ": " + result.description() + " at " + Position(xml, result.offset);
      }
    }
    document.reset();
    return false;
  }
};

Nx_XMLParser::Nx_XMLParser() : impl_(std::make_unique<Impl>()) {}
Nx_XMLParser::~Nx_XMLParser() = default;

bool Nx_XMLParser::LoadFile(const std::string& path, std::string* error) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    if (error) *error = path + ": cannot open the file";
    impl_->document.reset();
    return false;
  }
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (file.bad()) {
    if (error) *error = path + ": cannot read the file";
    impl_->document.reset();
    return false;
  }
  return impl_->Parse(text, path, error);
}

bool Nx_XMLParser::LoadString(std::string_view xml, std::string* error) {
  return impl_->Parse(xml, "XML document", error);
}

IXMLDOMNodePtr Nx_XMLParser::Root() const { return HandleOf(impl_->document.document_element()); }

Nx_Stringa Nx_XMLParser::GetName(IXMLDOMNodePtr node) const {
  if (node.IsNull()) return Nx_Stringa();
  return Nx_Stringa::FromUtf8(NodeOf(node).name());
}

Nx_Stringa Nx_XMLParser::GetText(IXMLDOMNodePtr node) const {
  if (node.IsNull()) return Nx_Stringa();
  return Nx_Stringa::FromUtf8(NodeOf(node).text().get());
}

void Nx_XMLParser::GetName(IXMLDOMNodePtr node, Nx_Stringa& name) const {
  name.AssignUtf8(node.IsNull() ? "" : NodeOf(node).name());
}

void Nx_XMLParser::GetText(IXMLDOMNodePtr node, Nx_Stringa& text) const {
  text.AssignUtf8(node.IsNull() ? "" : NodeOf(node).text().get());
}

bool Nx_XMLParser::GetAttributeValue(IXMLDOMNodePtr node, const wchar_t* name, Nx_Stringa& value) const {
  if (node.IsNull() || !name) return false;
  for (pugi::xml_attribute attribute = NodeOf(node).first_attribute(); attribute;
       attribute = attribute.next_attribute()) {
    if (SameName(attribute.name(), name)) {
      value.AssignUtf8(attribute.value());
      return true;
    }
  }
  return false;
}

IXMLDOMNodePtr Nx_XMLParser::GetFirstChild(IXMLDOMNodePtr node, const wchar_t* name) const {
  if (node.IsNull()) return IXMLDOMNodePtr();
  return FirstMatching(NodeOf(node).first_child(), name);
}

IXMLDOMNodePtr Nx_XMLParser::GetNextNode(IXMLDOMNodePtr node, const wchar_t* name) const {
  if (node.IsNull()) return IXMLDOMNodePtr();
  return FirstMatching(NodeOf(node).next_sibling(), name);
}
