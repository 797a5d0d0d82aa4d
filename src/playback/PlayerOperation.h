#pragma once
#include <memory>

#include "services/TracedOperation.h"

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

// The same around one operation, with its trace lines.
class PlayerOperation : private PlayerKeeper, private TracedOperation {
 public:
  PlayerOperation(cBasePlayer& player, const char* name);
  using TracedOperation::Exit;
};

}  // namespace qm
