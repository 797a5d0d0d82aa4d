#include "cli/LiveKeys.h"

#include "cli/PlayRun.h"
#include "contract/PlayerVocabulary.h"
#include "kits/common/Numbers.h"
#include "playback/cPlayer.h"

namespace qm::cli {

namespace {

constexpr float kSeekSeconds = 5;
constexpr std::int32_t kVolumeStep = 5;  // per cent
constexpr float kFadeSeconds = 2;

bool PlayOrPause(PlayRun& run) {
  if (run.Player().Status() == psPlaying)
    run.Player().PauseItem();
  else
    run.Play();
  return true;
}

bool ChangeVolume(PlayRun& run, std::int32_t step) {
  run.SetVolume(static_cast<std::int16_t>(Limit(run.Volume() + step, 0, 100)));
  return true;
}

// Play on a playing item lets go of its loop.
bool LeaveLoop(PlayRun& run) {
  if (run.Player().Status() == psPlaying && run.Player().UseLoop()) run.Player().PlayItem();
  return true;
}

// False when the run has no such thing.
struct KeyAction {
  std::int32_t code;
  bool (*act)(PlayRun& run);
};

constexpr KeyAction kActions[] = {
    {' ', PlayOrPause},
    {'c', [](PlayRun& run) { return run.Player().CueItem() || true; }},
    {ekLeft, [](PlayRun& run) { return run.SeekBy(-kSeekSeconds); }},
    {ekRight, [](PlayRun& run) { return run.SeekBy(kSeekSeconds); }},
    {'[', [](PlayRun& run) { return ChangeVolume(run, -kVolumeStep); }},
    {']', [](PlayRun& run) { return ChangeVolume(run, kVolumeStep); }},
    {'f', [](PlayRun& run) { return run.FadeAndGoOn(kFadeSeconds); }},
    {'l', LeaveLoop},
    {'n', [](PlayRun& run) { return run.GoOn(); }},
    {'q', [](PlayRun& run) { return run.Stop(), true; }},
};

}  // namespace

void PressKey(const Key& key, PlayRun& run) {
  for (const KeyAction& action : kActions)
    if (action.code == key.code && !run.Finished() && !action.act(run))
      run.Pool().tell("a list goes its own way: it has neither seek nor fade nor next");
}

}  // namespace qm::cli
