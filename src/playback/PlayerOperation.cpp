#include "playback/PlayerOperation.h"

#include "playback/cBasePlayer.h"
#include "services/Diagnostics.h"

namespace qm {
namespace {
constexpr std::int32_t kTraceLevel = 5;
}

PlayerKeeper::PlayerKeeper(cBasePlayer& player)
    : m_player(player.weak_from_this().lock()), m_form(player.m_form) {}

PlayerOperation::PlayerOperation(cBasePlayer& player, const char* name)
    : PlayerKeeper(player), m_name(name), m_reference(player.Reference()) {
  Trace(kTraceLevel, ednOpens, "Start BasePlayer(", m_reference, ").", m_name);
}

PlayerOperation::~PlayerOperation() {
  if (!m_left) Trace(kTraceLevel, ednCloses, "Finish BasePlayer(", m_reference, ").", m_name);
}

bool PlayerOperation::Exit(const char* reason) {
  m_left = true;
  Trace(kTraceLevel, ednCloses, "Exit : ", reason);
  return false;
}

}  // namespace qm
