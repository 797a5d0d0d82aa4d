#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kits/common/Event.h"

namespace qm {

class ctlVellanPlayer;
class SoundSystem;

// The hidden form of a player: hosts its playback control and turns the control's notifications into player
// events.
class frmPlayer {
 public:
  // EventReference (enPlayerEvent), sValue1, sValue2, strValue1.
  using Handler = std::function<void(std::int32_t, float, float, const std::string&)>;

  explicit frmPlayer(std::shared_ptr<SoundSystem> sound);
  ~frmPlayer();
  frmPlayer(const frmPlayer&) = delete;
  frmPlayer& operator=(const frmPlayer&) = delete;

  // From here on the control's notifications reach the handler.
  void Load(Handler handler);
  // Nothing reaches the handler any more. The control stays until the form goes, which may be later: its
  // owner may be unloading it from within one of the control's own calls.
  void Unload();

  // Null when the sound system gave none.
  ctlVellanPlayer* Control() const { return m_control.get(); }

 private:
  using Wires = std::vector<Event<>::Connection>;

  std::shared_ptr<SoundSystem> m_sound;
  std::unique_ptr<ctlVellanPlayer> m_control;
  Handler m_handler;
  Wires m_wires;
};

}  // namespace qm
