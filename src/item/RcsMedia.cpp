#include "item/RcsMedia.h"

#include <optional>
#include <string>

#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/common/TagText.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

// The attributes in one line, "" without the element.
std::string Attributes(std::string_view tagText) {
  constexpr std::string_view kOpening = "<m:Media ", kClosing = "/>";
  const std::size_t opened = FindIgnoringCase(tagText, kOpening);
  if (opened == std::string_view::npos) return {};
  const std::size_t start = opened + kOpening.size();
  const std::size_t end = tagText.find(kClosing, start);
  if (end == std::string_view::npos) return {};
  std::string attributes(tagText.substr(start, end - start));
  for (char& c : attributes)
    if (c == '\r' || c == '\n' || c == '\t') c = ' ';
  return attributes;
}

class Media {
 public:
  Media(cHDItem& item, std::string attributes) : m_item(item), m_attributes(std::move(attributes)) {}

  void Apply() {
    ApplyTrim();
    const float start = m_item.AudioStart(1), end = m_item.AudioEnd(1);
    if (const auto at = Behind("runTime", start)) m_item.SetExtro(1, Limit(*at, start, end));
    if (const auto at = Behind("hookStart", start)) m_item.SetHookStart(1, Limit(*at, start, end));
    if (const auto at = Behind("hookEnd", start)) m_item.SetHookEnd(1, Limit(*at, m_item.HookStart(1), end));
    if (const auto at = Behind("intro1", start)) m_item.SetIntroStart(1, Limit(*at, start, m_item.Extro(1)));
    if (const auto at = Behind("intro3", start))
      m_item.SetIntroEnd(1, Limit(*at, m_item.IntroStart(1), m_item.Extro(1)));
  }

 private:
  void ApplyTrim() {
    const float length = m_item.TotalLength();
    if (const auto at = Behind("trimStart", 0)) m_item.SetAudioStart(1, Limit(*at, 0.0f, length));
    if (const auto at = Behind("trimEnd", 0)) m_item.SetAudioEnd(1, Limit(*at, m_item.AudioStart(1), length));
    if (m_item.AudioStart(1) < 0) m_item.SetAudioStart(1, 0);
    if (m_item.AudioEnd(1) < 0) m_item.SetAudioEnd(1, length);
  }

  // The number of an attribute behind a position; nothing without the attribute.
  std::optional<float> Behind(const char* name, float position) const {
    const std::string value = GetTagValue(m_attributes, name);
    if (value.empty()) return {};
    return position + static_cast<float>(ParseNumber(value));
  }

  cHDItem& m_item;
  const std::string m_attributes;
};

}  // namespace

void ReadRcsMedia(cHDItem& item, std::string_view tagText) {
  std::string attributes = Attributes(tagText);
  if (!attributes.empty()) Media(item, std::move(attributes)).Apply();
}

}  // namespace qm
