#include "cli/Desk.h"
#include "cli/DeskView.h"
#include "cli/TerminalKeys.h"

// What keys mean at the desk.
namespace qm::cli {

namespace {

constexpr std::ptrdiff_t kPage = 10;
constexpr std::ptrdiff_t kFarthest = 1'000'000;
constexpr std::int32_t kVolumeStep = 5;  // per cent
constexpr float kFadeSeconds = 2;

struct KeyAction {
  std::int32_t code;
  void (*act)(Desk& desk);
};

constexpr KeyAction kActions[] = {
    {ekUp, [](Desk& desk) { desk.ChooseFile(-1); }},
    {ekDown, [](Desk& desk) { desk.ChooseFile(1); }},
    {ekPageUp, [](Desk& desk) { desk.ChooseFile(-kPage); }},
    {ekPageDown, [](Desk& desk) { desk.ChooseFile(kPage); }},
    {ekHome, [](Desk& desk) { desk.ChooseFile(-kFarthest); }},
    {ekEnd, [](Desk& desk) { desk.ChooseFile(kFarthest); }},
    {ekEnter, [](Desk& desk) { desk.Cue(); }},
    {'p', [](Desk& desk) { desk.Play(); }},
    {'a', [](Desk& desk) { desk.PlayAll(); }},
    {ekLeft, [](Desk& desk) { desk.ChoosePlayer(-1); }},
    {ekRight, [](Desk& desk) { desk.ChoosePlayer(1); }},
    {ekTab, [](Desk& desk) { desk.ChoosePlayer(1); }},
    {' ', [](Desk& desk) { desk.PlayOrPause(); }},
    {'c', [](Desk& desk) { desk.CueAgain(); }},
    {'x', [](Desk& desk) { desk.Close(); }},
    {'f', [](Desk& desk) { desk.Fade(kFadeSeconds); }},
    {'[', [](Desk& desk) { desk.ChangeVolume(-kVolumeStep); }},
    {']', [](Desk& desk) { desk.ChangeVolume(kVolumeStep); }},
    {'q', [](Desk& desk) { desk.AskToLeave(); }},
};

}  // namespace

void PressKey(const Key& key, Desk& desk) {
  if (key.code >= ekF1 && key.code <= ekF16)
    return desk.PressFunctionKey(static_cast<std::int16_t>(key.code - ekF1 + 1), key.held);
  if (desk.Asking()) return desk.Answer(key.code == 'y' || key.code == 'Y');
  if (key.code >= '1' && key.code <= '9') return desk.Cue(static_cast<std::int16_t>(key.code - '0'));
  for (const KeyAction& action : kActions)
    if (action.code == key.code) return action.act(desk);
}

}  // namespace qm::cli
