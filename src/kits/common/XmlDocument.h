#pragma once
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// XML as a tree of elements. Text is UTF-8; characters that XML cannot hold (most control characters, bytes
// that are no UTF-8) are left out when it is written, so that what was written can always be read.
// Line ends are read as line feeds.
namespace qm {

class XmlElement {
 public:
  explicit XmlElement(std::string name, std::string text = "");

  const std::string& Name() const { return m_name; }
  // What stands directly in the element, without the text of its children.
  const std::string& Text() const { return m_text; }
  void SetText(std::string text) { m_text = std::move(text); }

  // Attributes in the order in which they were set; "" for one that is not there. Names are exact.
  const std::vector<std::pair<std::string, std::string>>& Attributes() const { return m_attributes; }
  std::string Attribute(std::string_view name) const;
  void SetAttribute(std::string_view name, std::string value);

  const std::vector<std::shared_ptr<XmlElement>>& Children() const { return m_children; }
  // The first child of that name, ignoring case; null without one.
  std::shared_ptr<XmlElement> Child(std::string_view name) const;
  // Shared with the caller; an element must not come to stand within itself.
  void AddChild(std::shared_ptr<XmlElement> child);
  std::shared_ptr<XmlElement> AddChild(std::string name, std::string text = "");
  // A child with this text, unless the text is the one that is left out.
  void AddChildUnless(std::string_view leftOut, std::string name, std::string text);

  // The element as one line, without a declaration.
  std::string ToText() const;

 private:
  std::string m_name;
  std::string m_text;
  std::vector<std::pair<std::string, std::string>> m_attributes;
  std::vector<std::shared_ptr<XmlElement>> m_children;
};

// A document: processing instructions (the one named "xml" is the declaration), then one root element.
// Comments are not kept.
class XmlDocument {
 public:
  struct Instruction {
    std::string name;
    std::string data;  // version="1.0"
  };

  const std::vector<Instruction>& Instructions() const { return m_instructions; }
  void AddInstruction(std::string name, std::string data);

  std::shared_ptr<XmlElement> Root() const { return m_root; }  // null for an empty document
  void SetRoot(std::shared_ptr<XmlElement> root) { m_root = std::move(root); }

  // Bytes that are not UTF-8 are taken for Windows-1252, unless a byte order mark says otherwise. False, with
  // the document as it was, for text that is not one well-formed document or is nested deeper than 200
  // elements.
  bool LoadText(std::string_view text);
  bool Load(std::string_view path);

  // Indented, one element a line. Saving replaces the file as one step; false leaves what was there.
  std::string ToText() const;
  bool Save(std::string_view path) const;

 private:
  std::vector<Instruction> m_instructions;
  std::shared_ptr<XmlElement> m_root;
};

}  // namespace qm
