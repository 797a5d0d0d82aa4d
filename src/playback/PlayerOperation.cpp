#include "playback/PlayerOperation.h"

#include "playback/cBasePlayer.h"

namespace qm {

PlayerKeeper::PlayerKeeper(cBasePlayer& player)
    : m_player(player.weak_from_this().lock()), m_form(player.m_form) {}

PlayerOperation::PlayerOperation(cBasePlayer& player, const char* name)
    : PlayerKeeper(player), TracedOperation("BasePlayer(", player.Reference(), ").", name) {}

}  // namespace qm
