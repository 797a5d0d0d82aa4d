#pragma once
#include <cstdint>
#include <memory>
#include <string>

namespace qm {

class cAudioSettings;
class cPlayer;

// The owner of players: hears every event of theirs and lends them its settings. Host thread only.
// Text and values come by reference so that a query's Cancel can be written into sValue2.
class IPlayerCallback {
 public:
  virtual ~IPlayerCallback() = default;
  virtual void PlayerEvent(std::int16_t PlayerReference, std::int32_t EventReference,
                           std::string& HDReference, float& sValue1, float& sValue2, std::string& strValue1,
                           std::string& strValue2) = 0;
  virtual void RecorderEvent(std::int32_t EventReference, std::string& HDReference, float& sValue1,
                             float& sValue2, std::string& strValue1, std::string& strValue2) = 0;
  virtual std::shared_ptr<cAudioSettings> AudioSettings() const = 0;
  virtual std::int16_t NumberPlayers() const = 0;
  virtual std::shared_ptr<cPlayer> Player(std::int16_t index) const = 0;
};

}  // namespace qm
