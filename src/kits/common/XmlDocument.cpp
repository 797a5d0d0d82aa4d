#include "kits/common/XmlDocument.h"

#include <pugixml.hpp>

#include "kits/common/EightBitText.h"
#include "kits/common/Files.h"
#include "kits/common/Text.h"
#include "kits/common/Utf8.h"

namespace qm {
namespace {

// Deeper ones serve nobody and would exhaust the stack of whoever walks them.
constexpr int kDeepest = 200;

constexpr bool MayStandInXml(char32_t character) {
  if (character < 32) return character == '\t' || character == '\n' || character == '\r';
  return character != 0xFFFE && character != 0xFFFF;
}

std::string WritableText(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    char32_t character = 0;
    if (!NextCharacter(text, at, character))
      ++at;
    else if (MayStandInXml(character))
      result.append(text.substr(start, at - start));
  }
  return result;
}

struct TextWriter : pugi::xml_writer {
  std::string text;
  void write(const void* data, std::size_t size) override {
    text.append(static_cast<const char*>(data), size);
  }
};

void Append(pugi::xml_node parent, const XmlElement& element) {
  pugi::xml_node node = parent.append_child(element.Name().c_str());
  for (const auto& [name, value] : element.Attributes())
    node.append_attribute(name.c_str()).set_value(WritableText(value).c_str());
  if (const std::string text = WritableText(element.Text()); !text.empty())
    node.append_child(pugi::node_pcdata).set_value(text.c_str());
  for (const auto& child : element.Children()) Append(node, *child);
}

// Null for an element that is nested too deep.
std::shared_ptr<XmlElement> ElementOf(pugi::xml_node node, int depth = 1) {
  if (depth > kDeepest) return nullptr;
  auto element = std::make_shared<XmlElement>(node.name());
  for (const pugi::xml_attribute attribute : node.attributes())
    element->SetAttribute(attribute.name(), attribute.value());
  std::string text;
  for (const pugi::xml_node child : node) {
    if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) text += child.value();
    if (child.type() != pugi::node_element) continue;
    auto inner = ElementOf(child, depth + 1);
    if (!inner) return nullptr;
    element->AddChild(std::move(inner));
  }
  element->SetText(std::move(text));
  return element;
}

// A declaration holds its data as attributes, any other instruction as text.
std::string DataOf(pugi::xml_node instruction) {
  std::string data = instruction.value();
  for (const pugi::xml_attribute attribute : instruction.attributes()) {
    if (!data.empty()) data += ' ';
    data += std::string(attribute.name()) + "=\"" + attribute.value() + '"';
  }
  return data;
}

bool IsInstruction(pugi::xml_node node) {
  return node.type() == pugi::node_declaration || node.type() == pugi::node_pi;
}

bool SaysItsEncoding(std::string_view text) {
  return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
}

bool Parse(pugi::xml_document& parsed, std::string_view text) {
  const bool marked = SaysItsEncoding(text);
  const std::string utf8 = marked ? std::string(text) : TextFromEightBit(text);
  const auto encoding = marked ? pugi::encoding_auto : pugi::encoding_utf8;
  return bool(parsed.load_buffer(utf8.data(), utf8.size(), pugi::parse_full, encoding));
}

}  // namespace

std::string XmlElement::ToText() const {
  pugi::xml_document document;
  Append(document, *this);
  TextWriter writer;
  document.first_child().print(writer, "", pugi::format_raw, pugi::encoding_utf8);
  return writer.text;
}

void XmlDocument::AddInstruction(std::string name, std::string data) {
  m_instructions.push_back({std::move(name), std::move(data)});
}

bool XmlDocument::LoadText(std::string_view text) {
  pugi::xml_document parsed;
  if (!Parse(parsed, text)) return false;
  XmlDocument loaded;
  for (const pugi::xml_node node : parsed) {
    if (IsInstruction(node)) loaded.AddInstruction(node.name(), DataOf(node));
    if (node.type() != pugi::node_element) continue;
    if (loaded.m_root) return false;
    loaded.m_root = ElementOf(node);
    if (!loaded.m_root) return false;
  }
  *this = std::move(loaded);
  return true;
}

bool XmlDocument::Load(std::string_view path) {
  std::string text;
  return ReadWholeFile(path, text) && LoadText(text);
}

std::string XmlDocument::ToText() const {
  std::string text;
  for (const Instruction& instruction : m_instructions)
    text += "<?" + instruction.name + ' ' + WritableText(instruction.data) + "?>\n";
  pugi::xml_document document;
  if (m_root) Append(document, *m_root);
  TextWriter writer;
  document.save(writer, "  ", pugi::format_indent | pugi::format_no_declaration, pugi::encoding_utf8);
  return text + writer.text;
}

bool XmlDocument::Save(std::string_view path) const {
  return WriteFileAtomically(path, ToText());
}

}  // namespace qm
