// Plays one file and prints what the player has to say:
//   play_one FILE              through the default sound device
//   play_one FILE wav:OUT.wav  into a WAV file, as fast as it goes
#include <poll.h>

#include <cstdio>
#include <memory>
#include <string>

#include "contract/PlayerVocabulary.h"
#include "item/cHDItem.h"
#include "kits/common/Clock.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Registry.h"
#include "kits/sound/Platform.h"
#include "kits/sound/cAudioFile.h"
#include "kits/sound/engine/AudioEngine.h"
#include "kits/sound/engine/OfflineDevice.h"
#include "playback/cBasePlayer.h"
#include "settings/cAudioSettings.h"

using namespace qm;

int main(int argc, char** argv) {
  if (argc < 2) return std::fprintf(stderr, "usage: play_one FILE [wav:OUT.wav]\n"), 2;
  const std::string path = argv[1], output = argc > 2 ? argv[2] : "";

  cAudioFile file;
  if (file.OpenForRead(path) != 0) return std::fprintf(stderr, "play_one: %s\n", file.ErrorText().c_str()), 1;
  auto item = std::make_shared<cHDItem>();
  item->SetReference(path);
  item->SetAudioFileName(path);
  item->SetTotalLength(static_cast<float>(file.LengthMilliseconds() / 1000));
  file.Close();

  // An engine, and the settings that tell the player which of its devices to use; 0 is the default one.
  const auto engine = AudioEngine::Create();
  const auto platform =
      std::make_shared<Platform>(Platform{SystemClock(), MemoryRegistry(), ConsoleMessageBox(), engine});
  const auto settings = std::make_shared<cAudioSettings>(platform);
  if (output.starts_with("wav:"))
    settings->SetPlayerSoundDevice(
        1, engine->AddOutput(std::make_unique<OfflineDevice>(output, WavSink(output.substr(4), eskPCM16))));

  const auto player = std::make_shared<cBasePlayer>(platform);
  player->InitPlayer(1, settings);
  bool failed = false;
  player->events.PlayerEvent.connect([&](std::int32_t event, std::string&, float& sValue1, float& sValue2,
                                         std::string& strValue1, std::string&) {
    if (event == peAudioLevelChanged || event == pePositionChanged) return;
    std::printf("frame %lld  %s %g %g %s\n", static_cast<long long>(engine->Frame()), PlayerEventName(event),
                static_cast<double>(sValue1), static_cast<double>(sValue2), strValue1.c_str());
    if (event == peError) failed = true;
    if (event == peAudioEndReached) player->CloseItem();
  });

  if (!player->PlayItem(item)) return 1;
  while (player->Status() != psClosed) {
    if (engine->Pump()) continue;
    pollfd wake{engine->WaitDescriptor(), POLLIN, 0};
    poll(&wake, 1, 20);
  }
  player->TerminatePlayer();
  return failed ? 1 : 0;
}
