#pragma once
#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "kits/sound/ctlVellanPlayer.h"
#include "kits/sound/engine/AudioEngine.h"

namespace qm::test {

// Sixteen players of the first added output, of which a host asks anything at any time.
class RandomHost {
 public:
  RandomHost(AudioEngine& engine, std::vector<std::string> paths, std::uint32_t seed)
      : m_paths(std::move(paths)), m_random(seed) {
    for (auto& player : players) {
      player = engine.CreatePlayer();
      player->SetDeviceType(2);
      player->SetDeviceNumber(1);
      player->Open(Path());
    }
  }

  std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(m_random()) % limit; }
  void DoSomething() {
    ctlVellanPlayer& player = *players[Below(16)];
    kCommands[Below(kCommands.size())](*this, player);
  }

  std::array<std::unique_ptr<ctlVellanPlayer>, 16> players;

 private:
  using Player = ctlVellanPlayer;
  using Command = void (*)(RandomHost&, Player&);
  static const std::array<Command, 16> kCommands;

  const std::string& Path() { return m_paths[Below(static_cast<std::uint32_t>(m_paths.size()))]; }
  float Unit() { return static_cast<float>(Below(1000)) / 1000; }

  std::vector<std::string> m_paths;
  std::mt19937 m_random;
};

inline constexpr auto kPlay = [](RandomHost&, ctlVellanPlayer& player) { player.Play(); };

inline const std::array<RandomHost::Command, 16> RandomHost::kCommands = {
    kPlay,
    kPlay,
    kPlay,
    [](RandomHost& host, Player& player) { player.Open(host.Path()); },
    [](RandomHost&, Player& player) { player.Cue(); },
    [](RandomHost&, Player& player) { player.Pause(); },
    [](RandomHost& host, Player& player) { player.Seek(static_cast<double>(host.Unit() * 100)); },
    [](RandomHost& host, Player& player) { player.SetVolume(host.Unit() * 100); },
    [](RandomHost& host, Player& player) { player.SetPlaySpeed(host.Below(2) ? 1 : 0.5f + host.Unit()); },
    [](RandomHost& host, Player& player) {
      player.SetTimeStretchRatio(host.Below(4) ? 1 : 0.8f + host.Unit() * 0.4f);
    },
    [](RandomHost& host, Player& player) {
      player.AddPositionEvent({host.Unit() * 2, static_cast<std::int32_t>(host.Below(4)), 0});
    },
    [](RandomHost& host, Player& player) {
      player.SetLoopStart(host.Unit());
      player.SetLoopEnd(host.Unit() * 2);
      player.SetUseLoop(host.Below(2) == 0);
    },
    [](RandomHost& host, Player& player) { player.SetLoopCount(static_cast<std::int32_t>(host.Below(4))); },
    [](RandomHost&, Player& player) { player.ExitLoop(); },
    [](RandomHost& host, Player& player) {
      const auto reference = static_cast<std::int16_t>(host.Below(3));
      player.AddVolumeChange({reference, host.Unit(), host.Unit(), 100 * host.Unit(), 100 * host.Unit(), 50,
                              host.Below(2) == 0, host.Below(2) == 0});
    },
    [](RandomHost& host, Player& player) {
      if (host.Below(3) == 0)
        player.Close();
      else
        player.SetAudioEnd(host.Unit() * 2);
    }};

}  // namespace qm::test
