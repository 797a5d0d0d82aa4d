#pragma once
#include <cstdint>
#include <string>

namespace qm {

// One named position in the audio of an item.
class cHDItemMark {
 public:
  // With a new identity.
  cHDItemMark();

  const std::string& Guid() const { return m_guid; }
  void SetGuid(std::string guid) { m_guid = std::move(guid); }
  const std::string& Title() const { return m_title; }
  void SetTitle(std::string title) { m_title = std::move(title); }
  std::int32_t StartSample() const { return m_startSample; }
  void SetStartSample(std::int32_t sample) { m_startSample = sample; }
  std::int32_t Duration() const { return m_duration; }  // samples
  void SetDuration(std::int32_t samples) { m_duration = samples; }
  std::int32_t MarkerType() const { return m_markerType; }  // normally one of enHDItemMarkTypes
  void SetMarkerType(std::int32_t type) { m_markerType = type; }
  std::int32_t flags() const { return m_flags; }
  void Setflags(std::int32_t value) { m_flags = value; }
  std::int32_t MarkerColour() const { return m_markerColour; }
  void SetMarkerColour(std::int32_t colour) { m_markerColour = colour; }

 private:
  std::string m_guid;
  std::string m_title;
  std::int32_t m_startSample = 0;
  std::int32_t m_duration = 0;
  std::int32_t m_markerType = 0;
  std::int32_t m_flags = 0;
  std::int32_t m_markerColour = 65535;
};

}  // namespace qm
