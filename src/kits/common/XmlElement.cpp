#include "kits/common/Text.h"
#include "kits/common/XmlDocument.h"

namespace qm {

XmlElement::XmlElement(std::string name, std::string text)
    : m_name(std::move(name)), m_text(std::move(text)) {}

std::string XmlElement::Attribute(std::string_view name) const {
  for (const auto& [known, value] : m_attributes)
    if (known == name) return value;
  return "";
}

void XmlElement::SetAttribute(std::string_view name, std::string value) {
  for (auto& [known, old] : m_attributes) {
    if (known != name) continue;
    old = std::move(value);
    return;
  }
  m_attributes.emplace_back(name, std::move(value));
}

std::shared_ptr<XmlElement> XmlElement::Child(std::string_view name) const {
  for (const auto& child : m_children)
    if (EqualIgnoringCase(child->Name(), name)) return child;
  return nullptr;
}

void XmlElement::AddChild(std::shared_ptr<XmlElement> child) {
  if (child) m_children.push_back(std::move(child));
}

std::shared_ptr<XmlElement> XmlElement::AddChild(std::string name, std::string text) {
  m_children.push_back(std::make_shared<XmlElement>(std::move(name), std::move(text)));
  return m_children.back();
}

void XmlElement::AddChildUnless(std::string_view leftOut, std::string name, std::string text) {
  if (text != leftOut) AddChild(std::move(name), std::move(text));
}

}  // namespace qm
