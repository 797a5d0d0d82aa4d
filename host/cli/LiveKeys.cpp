#include "cli/LiveKeys.h"

#include "cli/PlayRun.h"
#include "contract/PlayerVocabulary.h"
#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "playback/cBasePlayer.h"

namespace qm::cli {

namespace {

constexpr float kSeekSeconds = 5;
constexpr std::int32_t kVolumeStep = 5;  // per cent
constexpr float kFadeSeconds = 2;

void PlayOrPause(PlayRun& run) {
  if (run.Player().Status() == psPlaying)
    run.Player().PauseItem();
  else
    run.Player().PlayItem();
}

void SeekBy(PlayRun& run, float seconds) {
  cBasePlayer& player = run.Player();
  if (!player.HDItem()) return;
  player.SeekItem(
      Limit(player.SecondsPlayed() + seconds, player.HDItem()->AudioStart(1), player.HDItem()->AudioEnd(1)));
}

// The initial volume, so that a fade begins where it is.
void ChangeVolume(PlayRun& run, std::int32_t step) {
  run.Player().SetInitialVolume(static_cast<std::int16_t>(Limit(run.Player().PlayVolume() + step, 0, 100)));
}

// Play on a playing item lets go of its loop.
void LeaveLoop(PlayRun& run) {
  if (run.Player().Status() == psPlaying && run.Player().UseLoop()) run.Player().PlayItem();
}

struct KeyAction {
  std::int32_t key;
  void (*act)(PlayRun& run);
};

constexpr KeyAction kActions[] = {
    {' ', PlayOrPause},
    {'c', [](PlayRun& run) { run.Player().CueItem(); }},
    {ekLeft, [](PlayRun& run) { SeekBy(run, -kSeekSeconds); }},
    {ekRight, [](PlayRun& run) { SeekBy(run, kSeekSeconds); }},
    {'[', [](PlayRun& run) { ChangeVolume(run, -kVolumeStep); }},
    {']', [](PlayRun& run) { ChangeVolume(run, kVolumeStep); }},
    {'f', [](PlayRun& run) { run.FadeAndGoOn(kFadeSeconds); }},
    {'l', LeaveLoop},
    {'n', [](PlayRun& run) { run.GoOn(); }},
    {'q', [](PlayRun& run) { run.Stop(); }},
};

}  // namespace

std::int32_t TakeKey(std::string_view& bytes) {
  if (bytes.empty()) return 0;
  const char first = bytes.front();
  bytes.remove_prefix(1);
  if (first != '\x1b') return static_cast<unsigned char>(first);
  if (bytes.empty() || (bytes.front() != '[' && bytes.front() != 'O')) return 0;
  bytes.remove_prefix(1);
  // Parameters, then the letter that tells the key.
  while (!bytes.empty() && bytes.front() < '@') bytes.remove_prefix(1);
  if (bytes.empty()) return 0;
  const char letter = bytes.front();
  bytes.remove_prefix(1);
  return letter == 'D' ? ekLeft : letter == 'C' ? ekRight : 0;
}

void PressKey(std::int32_t key, PlayRun& run) {
  for (const KeyAction& action : kActions)
    if (action.key == key && !run.Finished()) return action.act(run);
}

}  // namespace qm::cli
