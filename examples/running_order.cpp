// Plays files as one running order through the pool of players, each from the extro of the one before, and
// prints the play log record of each:
//   running_order wav:OUT.wav FILE...   into a WAV file, as fast as it goes
//   running_order default FILE...       through the default sound device
#include <poll.h>

#include <cstdio>
#include <memory>
#include <string>

#include "contract/PlayerVocabulary.h"
#include "item/cHDItem.h"
#include "item/cHDItems.h"
#include "kits/common/Clock.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Registry.h"
#include "kits/sound/Platform.h"
#include "kits/sound/engine/AudioEngine.h"
#include "kits/sound/engine/OfflineDevice.h"
#include "playback/cListPlayer.h"
#include "playback/cPlayLog.h"
#include "playback/cPlayer.h"
#include "playback/cPlayers.h"
#include "settings/cAudioSettings.h"

using namespace qm;

int main(int argc, char** argv) {
  if (argc < 3) return std::fprintf(stderr, "usage: running_order wav:OUT.wav|default FILE...\n"), 2;
  const std::string output = argv[1];

  // The order. Marks and titles come from the files themselves.
  const auto order = std::make_shared<cHDItems>();
  for (int i = 2; i < argc; ++i) {
    auto item = std::make_shared<cHDItem>();
    item->SetReference(argv[i]);
    if (!item->LoadFromFile(argv[i]))
      return std::fprintf(stderr, "running_order: cannot read %s\n", argv[i]), 1;
    order->AddItem(item);
  }

  // An engine, the settings, and the pool that is built from them.
  const auto engine = AudioEngine::Create();
  const auto platform =
      std::make_shared<Platform>(Platform{SystemClock(), MemoryRegistry(), ConsoleMessageBox(), engine});
  const auto settings = std::make_shared<cAudioSettings>(platform);
  settings->SetNumberPlayers(1);
  if (output.starts_with("wav:"))
    settings->SetPlayerSoundDevice(
        1, engine->AddOutput(std::make_unique<OfflineDevice>(output, WavSink(output.substr(4), eskPCM16))));
  const auto pool = std::make_shared<cPlayers>(platform);
  pool->SetAudioSettings(settings);

  const auto player = pool->Player(1);
  const auto list = player->BaseListPlayer();
  pool->events.PlayerEvent.connect(
      [&](std::int16_t, std::int32_t event, std::string&, float&, float&, std::string&, std::string&) {
        // A station stores the records; here they are printed.
        if (event == pePlayerListItemFinished)
          std::printf("%s\n", list->PreviousListItemPlayLog()->Serialisation(plsoBasic).c_str());
        if (event == peClosing)
          std::printf("%s\n", player->PreviousItemPlayLog()->Serialisation(plsoBasic).c_str());
      });

  if (!player->ListAddList(order) || !player->PlayItem()) return 1;
  while (player->Status() != psClosed) {
    if (engine->Pump()) continue;
    pollfd wake{engine->WaitDescriptor(), POLLIN, 0};
    poll(&wake, 1, 20);
  }
  pool->Terminate();
  return 0;
}
