#include "item/cHDItemTimeExtra.h"

#include "kits/common/Numbers.h"
#include "kits/common/TagText.h"
#include "kits/common/Text.h"

namespace qm {

bool cHDItemTimeExtra::IsSame(const std::shared_ptr<const cHDItemTimeExtra>& other) const {
  return other && m_hardwareLine == other->m_hardwareLine && m_hardwareAction == other->m_hardwareAction &&
         m_commandName == other->m_commandName;
}

std::string cHDItemTimeExtra::Serialisation() const {
  std::string text;
  if (m_hardwareLine > 0) text = AppendTag(std::move(text), "HardwareLine", NumberText(m_hardwareLine));
  if (m_hardwareAction > 0) text = AppendTag(std::move(text), "HardwareAction", NumberText(m_hardwareAction));
  if (!m_commandName.empty()) text = AppendTag(std::move(text), "CommandName", m_commandName, "=", true);
  return text;
}

void cHDItemTimeExtra::SetSerialisation(const std::string& text) {
  const std::string action = GetTagValue(text, "HardwareAction");
  m_hardwareLine = ParseWhole(GetTagValue(text, "HardwareLine"));
  m_hardwareAction = ParseWhole(action);
  m_commandName = Trim(action);
}

}  // namespace qm
