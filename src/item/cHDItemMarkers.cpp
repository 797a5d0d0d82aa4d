#include <algorithm>
#include <limits>

#include "item/cHDItem.h"
#include "item/cHDItemMark.h"
#include "kits/common/Colours.h"
#include "kits/common/Numbers.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {

namespace {

bool IsOfType(const cHDItemMark& mark, std::int32_t type) {
  return type == 0 || mark.MarkerType() == type;
}

std::int32_t TimingColour(enHDItemMarkTypes type) {
  switch (type) {
    case himtIntro:
      return 65280;
    case himtHook:
      return 0xC0C0C0;
    case himtExtro:
      return 255;
    default:
      return ConvertColour(0xFF0000);
  }
}

std::int32_t ToSamples(double samples) {
  using Range = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(Limit<std::int64_t>(RoundToWhole(samples), Range::min(), Range::max()));
}

}  // namespace

std::int32_t cHDItem::NumberMarkers(std::int32_t MarkerType) const {
  return static_cast<std::int32_t>(
      std::ranges::count_if(m_markers, [&](const auto& mark) { return IsOfType(*mark, MarkerType); }));
}

std::shared_ptr<cHDItemMark> cHDItem::Marker(std::int32_t index) const {
  return index < 1 || index > std::ssize(m_markers) ? nullptr
                                                    : m_markers[static_cast<std::size_t>(index - 1)];
}

void cHDItem::SetMarker(std::int32_t index, const std::shared_ptr<cHDItemMark>& mark) {
  if (mark && index >= 1 && index <= std::ssize(m_markers))
    m_markers[static_cast<std::size_t>(index - 1)] = mark;
}

std::vector<std::shared_ptr<cHDItemMark>> cHDItem::Markers(std::int32_t MarkerType) const {
  std::vector<std::shared_ptr<cHDItemMark>> found;
  std::ranges::copy_if(m_markers, std::back_inserter(found),
                       [&](const auto& mark) { return IsOfType(*mark, MarkerType); });
  return found;
}

std::shared_ptr<cHDItemMark> cHDItem::GetFirstMarkerByType(std::int32_t MarkerType) const {
  const auto found =
      std::ranges::find(m_markers, MarkerType, [](const auto& mark) { return mark->MarkerType(); });
  return found == m_markers.end() ? nullptr : *found;
}

std::int32_t cHDItem::AddMarker(const std::shared_ptr<cHDItemMark>& NewMarker) {
  if (!NewMarker) return -1;
  // A marker moved or replaced by its holder may stand out of order, so the list is walked.
  const auto later = std::ranges::find_if(
      m_markers, [&](const auto& mark) { return mark->StartSample() > NewMarker->StartSample(); });
  const auto place = m_markers.insert(later, NewMarker);
  return static_cast<std::int32_t>(place - m_markers.begin()) + 1;
}

bool cHDItem::RemoveMarker(std::int32_t index) {
  if (index < 1 || index > std::ssize(m_markers)) return false;
  m_markers.erase(m_markers.begin() + index - 1);
  return true;
}

void cHDItem::ClearMarkers() {
  m_markers.clear();
}

void cHDItem::AddTimingMarker(const char* title, std::int32_t set, enHDItemMarkTypes type, double start,
                              double end) {
  const double rate = m_audioFormat->SampleRate();
  const auto mark = std::make_shared<cHDItemMark>();
  mark->SetTitle(set == 0 ? title : title + (' ' + NumberText(set)));
  mark->SetMarkerType(type);
  mark->SetMarkerColour(TimingColour(type));
  mark->SetStartSample(ToSamples(start * rate));
  mark->SetDuration(ToSamples((end - start) * rate));
  AddMarker(mark);
}

bool cHDItem::CreateMarkersFromTiming() {
  ClearMarkers();
  if (m_audioFormat->SampleRate() == 0 || m_TotalLength <= 0) return false;
  for (std::int32_t set = 1; set <= 3; ++set) {
    if (IntroEnd(set) > 0) AddTimingMarker("Intro", set, himtIntro, IntroStart(set), IntroEnd(set));
    if (HookStart(set) > 0 || HookEnd(set) > 0)
      AddTimingMarker("Hook", set, himtHook, HookStart(set), HookEnd(set));
    if (Extro(set) > 0) AddTimingMarker("Extro", set, himtExtro, Extro(set), Extro(set));
  }
  if (m_LoopStart > 0 || m_LoopEnd > 0) AddTimingMarker("Loop", 0, himtLoop, m_LoopStart, m_LoopEnd);
  return true;
}

}  // namespace qm
