#pragma once
#include <cstdint>
#include <memory>

namespace qm {

class cBasePlayer;
class frmPlayer;

// Keeps a player and its control alive while something of theirs runs, whatever a listener lets go of
// meanwhile.
class PlayerKeeper {
 public:
  explicit PlayerKeeper(cBasePlayer& player);

 private:
  // The form goes first: its control may report to the player until then.
  std::shared_ptr<cBasePlayer> m_player;  // null while the player is being destroyed
  std::shared_ptr<frmPlayer> m_form;
};

// The same around one operation, with its "Start", "Finish" and "Exit" trace lines.
class PlayerOperation : private PlayerKeeper {
 public:
  PlayerOperation(cBasePlayer& player, const char* name);
  ~PlayerOperation();
  PlayerOperation(const PlayerOperation&) = delete;
  PlayerOperation& operator=(const PlayerOperation&) = delete;

  // Leaves early: always false.
  bool Exit(const char* reason);

 private:
  const char* m_name;
  std::int16_t m_reference;
  bool m_left = false;
};

}  // namespace qm
