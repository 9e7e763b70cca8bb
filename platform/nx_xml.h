// Nx_XMLParser: reads a print job document; drivers see one element at a time.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/nx_string.h"

// A handle on one element of a parsed document (the framework's smart pointer to
// IXMLDOMNode). Copyable; valid while its parser lives. A null handle is an empty node.
class IXMLDOMNodePtr {
 public:
  IXMLDOMNodePtr() = default;
  explicit IXMLDOMNodePtr(void* impl) : impl_(impl) {}
  bool IsNull() const { return impl_ == nullptr; }
  void* impl() const { return impl_; }
  void Release() { impl_ = nullptr; }

 private:
  void* impl_ = nullptr;
};

class Nx_XMLParser {
 public:
  Nx_XMLParser();
  ~Nx_XMLParser();
  Nx_XMLParser(const Nx_XMLParser&) = delete;
  Nx_XMLParser& operator=(const Nx_XMLParser&) = delete;

  // Parse a document; false with a message naming the problem.
  bool LoadFile(const std::string& path, std::string* error);
  bool LoadString(std::string_view xml, std::string* error);
  IXMLDOMNodePtr Root() const;

  // Element name as written (case kept); empty for a null node.
  Nx_Stringa GetName(IXMLDOMNodePtr node) const;
  // The element's text content; empty for a null node.
  Nx_Stringa GetText(IXMLDOMNodePtr node) const;
  // The same into a string the caller keeps, reusing its storage.
  void GetName(IXMLDOMNodePtr node, Nx_Stringa& name) const;
  void GetText(IXMLDOMNodePtr node, Nx_Stringa& text) const;
  // True when the attribute is present (its value may be empty).
  bool GetAttributeValue(IXMLDOMNodePtr node, const wchar_t* name, Nx_Stringa& value) const;
  // First child element (of that name, compared as written, when name is given).
  IXMLDOMNodePtr GetFirstChild(IXMLDOMNodePtr node, const wchar_t* name = nullptr) const;
  // Next sibling element in document order (of that name when given).
  IXMLDOMNodePtr GetNextNode(IXMLDOMNodePtr node, const wchar_t* name = nullptr) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
