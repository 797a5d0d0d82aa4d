#include <poll.h>
#include <signal.h>

#include <memory>
#include <optional>

#include "cli/EventWriter.h"
#include "cli/Failure.h"
#include "cli/PlayLoop.h"
#include "cli/PlayOptions.h"
#include "cli/StopSignals.h"
#include "kits/common/Clock.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Registry.h"
#include "kits/common/Text.h"
#include "kits/sound/Platform.h"
#include "kits/sound/engine/AudioEngine.h"
#include "settings/cAudioSettings.h"

namespace qm::cli {

namespace {

constexpr char kProfiles[] = "SOFTWARE\\Quillmere\\AudioSettings\\Profiles";
constexpr char kDefaultProfile[] = ".default";

bool ProfileIsStored(const Registry& registry, const std::string& profile) {
  for (const std::string& name : registry.SubKeys(kProfiles))
    if (EqualIgnoringCase(name, profile.empty() ? kDefaultProfile : profile)) return true;
  return false;
}

// Settings look the devices over, which takes time. That is left out where they have nothing to say about
// them: the default device is played to then.
std::shared_ptr<cAudioSettings> LoadSettings(const std::shared_ptr<const Platform>& platform,
                                             const std::string& profile, std::int32_t deviceNumber) {
  std::shared_ptr<const SoundDeviceList> devices = platform->sound;
  if (deviceNumber >= 0 || !ProfileIsStored(*platform->registry, profile))
    devices = std::make_shared<FixedSoundDeviceList>(std::vector<SoundDevice>{}, std::vector<SoundDevice>{});
  auto settings = std::make_shared<cAudioSettings>(platform, devices);
  settings->LoadProfile(profile);
  if (deviceNumber >= 0) settings->SetPlayerSoundDevice(1, deviceNumber);
  return settings;
}

bool ParseItems(const std::vector<std::string>& texts, std::vector<ItemArgument>& items) {
  for (const std::string& text : texts) {
    std::string errorText;
    items.emplace_back();
    if (ParseItemArgument(text, items.back(), errorText)) continue;
    TellFailure("'" + text + "': " + errorText);
    return false;
  }
  return true;
}

bool OpenWriters(const PlayOptions& options, std::vector<std::unique_ptr<EventWriter>>& writers,
                 std::string& errorText) {
  if (options.printing == epJSON) writers.push_back(EventWriter::ToStandardOutput());
  if (options.eventsPath.empty()) return true;
  auto writer = EventWriter::Open(options.eventsPath, errorText);
  if (!writer) return false;
  writers.push_back(std::move(writer));
  return true;
}

// Both are finished whatever became of the other; a failure already told is not told again.
bool FinishAll(PlayOutput& output, std::vector<std::unique_ptr<EventWriter>>& writers, bool told) {
  std::string errorText;
  bool good = output.Finish(errorText);
  for (const auto& writer : writers) good = writer->Finish(errorText) && good;
  if (!good && !told) TellFailure(errorText);
  return good;
}

}  // namespace

std::int32_t Play(const PlayOptions& options) {
  std::vector<ItemArgument> items;
  if (!ParseItems(options.items, items)) return exsUsage;
  const StopSignals signals;
  signal(SIGPIPE, SIG_IGN);  // a reader that goes away must not take the sound with it

  PlayOutput output;
  std::vector<std::unique_ptr<EventWriter>> writers;
  std::string errorText;
  if (!output.Choose(options.output, errorText) || !OpenWriters(options, writers, errorText)) {
    TellFailure(errorText);
    return exsFailed;
  }
  const auto platform = std::make_shared<Platform>(
      Platform{SystemClock(), UserRegistry(), ConsoleMessageBox(), output.Engine()});
  const auto run = std::make_shared<PlayRun>(PlayRun::Parts{
      platform, output.Engine(), LoadSettings(platform, options.profile, output.DeviceNumber()),
      std::move(items), options.wishes});
  for (const auto& writer : writers) run->Observe(*writer);
  PlayLoop loop(*run, output, signals);
  const int ended = loop.Run(options.printing);
  run->Terminate();
  const bool finished = FinishAll(output, writers, run->Failed());
  if (ended != 0) return exsSignal + ended;
  return finished && !run->Failed() ? exsDone : exsFailed;
}

}  // namespace qm::cli
