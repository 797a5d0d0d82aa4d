#pragma once
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/common/Clock.h"
#include "kits/common/Registry.h"
#include "kits/sound/cAudioFile.h"
#include "kits/sound/engine/AudioEngine.h"
#include "kits/sound/engine/OfflineDevice.h"
#include "playback/cBasePlayer.h"
#include "playback/cListPlayer.h"
#include "settings/cAudioSettings.h"
#include "support/SoundFixtures.h"

// A long running order of random entries over the real engine on an offline device, each handover and each
// sample of it checked while it plays: what is heard must be the sum of what the entries sound like alone,
// each from the frame at which the one before reaches its extro.
namespace qm::test {

// An engine with one offline device into a sink, and settings that lead player 1 to it.
struct OfflineRig : IPlayerCallback {
  static constexpr std::int32_t kRate = 44100;

  explicit OfflineRig(std::unique_ptr<FrameSink> sink) : engine(AudioEngine::Create({}, 0.05)) {
    const std::int32_t device = engine->AddOutput(
        std::make_unique<OfflineDevice>("offline", std::move(sink), OutputFormat{kRate, 2}));
    platform = std::make_shared<const Platform>(Platform{SystemClock(), MemoryRegistry(), nullptr, engine});
    settings = std::make_shared<cAudioSettings>(platform, engine);
    settings->SetMaxPlayers(1);
    settings->SetPlayerSoundDevice(1, device);
  }
  std::shared_ptr<IPlayerCallback> Owner() { return {std::shared_ptr<void>(), this}; }
  void Run() {
    while (engine->Pump()) {
    }
  }

  void PlayerEvent(std::int16_t, std::int32_t, std::string&, float&, float&, std::string&,
                   std::string&) override {}
  void RecorderEvent(std::int32_t, std::string&, float&, float&, std::string&, std::string&) override {}
  std::shared_ptr<cAudioSettings> AudioSettings() const override { return settings; }
  std::int16_t NumberPlayers() const override { return 1; }
  std::shared_ptr<cPlayer> Player(std::int16_t) const override { return nullptr; }

  std::shared_ptr<AudioEngine> engine;
  std::shared_ptr<const Platform> platform;
  std::shared_ptr<cAudioSettings> settings;
};

// An entry, and what it sounds like alone.
struct Piece {
  std::shared_ptr<cHDItem> item;
  enListItemType type = hlitFull;
  std::int64_t handover = 0;  // device frames from its start to its extro; of hooks the earliest
  std::int64_t latest = 0;    // of hooks: the latest
  std::vector<float> sound;   // stereo
};

class KeepingSink : public FrameSink {
 public:
  explicit KeepingSink(std::vector<float>& sound) : m_sound(sound) {}
  bool Open(const OutputFormat&, std::string&) override { return true; }
  bool Write(const float* interleaved, std::size_t frames, std::string&) override {
    m_sound.insert(m_sound.end(), interleaved, interleaved + 2 * frames);
    return true;
  }
  bool Close(std::string&) override { return true; }

 private:
  std::vector<float>& m_sound;
};

// Pieces of all types and rates, full and hook entries, some stretched.
class Palette {
 public:
  Palette(std::size_t count, std::uint32_t seed) : m_seed(seed) {
    struct Kind {
      const char* extension;
      std::int32_t mode, rate, channels;
    };
    constexpr Kind kinds[] = {
        {"wav", ecmWAV, 44100, 2}, {"wav", ecmWAV, 48000, 2}, {"wav", ecmWAV, 22050, 1},
        {"mp3", ecmMP3, 44100, 2}, {"ogg", ecmOgg, 44100, 2}, {"mp2", ecmMP2, 48000, 2},
        {"wav", ecmWAV, 44100, 1}, {"ogg", ecmOgg, 32000, 1},
    };
    for (std::size_t i = 0; i < count; ++i) {
      const Kind& kind = kinds[i % std::size(kinds)];
      const std::string path = m_folder.File(std::to_string(i) + "." + kind.extension);
      const double seconds = Between(0.9, 1.2);
      Write(path, kind.mode, kind.rate, kind.channels, static_cast<std::size_t>(seconds * kind.rate));
      pieces.push_back(MakePiece(path, kind.rate, seconds, i));
    }
  }

  std::uint32_t Next() { return m_seed = m_seed * 1664525u + 1013904223u, m_seed >> 8; }
  double Between(double low, double high) { return low + (high - low) * (Next() % 65536) / 65536.0; }

  // Files of the palette that this process has open.
  int FilesOpen() const {
    int open = 0;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", ignored))
      if (std::filesystem::read_symlink(entry.path(), ignored).string().starts_with(m_folder.Path())) ++open;
    return open;
  }

  std::vector<Piece> pieces;

 private:
  void Write(const std::string& path, std::int32_t mode, std::int32_t rate, std::int32_t channels,
             std::size_t frames) {
    const auto samples =
        Noise16(frames * static_cast<std::size_t>(channels), 0.1, static_cast<std::uint32_t>(Next()));
    if (mode == ecmWAV) return WriteBytes(path, Wav16(samples, rate, channels));
    cAudioFile file;
    file.SetMP3Settings({rate, 128000, channels});
    file.SetOggSettings(rate, channels, 96000, 0, 0, true);
    file.SetMP2Settings(rate, 192000, channels);
    if (file.CreateFile(path, mode) != 0 || file.WriteSamples(samples.data(), frames) != 0 ||
        file.Close() != 0)
      std::abort();
  }

  Piece MakePiece(const std::string& path, std::int32_t rate, double seconds, std::size_t number) {
    Piece piece;
    piece.item = std::make_shared<cHDItem>();
    cHDItem& item = *piece.item;
    item.SetReference("P" + std::to_string(number));
    item.SetAudioFileName(path);
    item.SetTotalLength(static_cast<float>(std::floor(seconds * rate) / rate));
    item.SetAudioStart(1, static_cast<float>(Between(0, 0.2)));
    const double ratios[] = {1, 1, 1, 0.8, 1.25};
    item.SetTimeStretchRatio(static_cast<float>(ratios[Next() % std::size(ratios)]));
    if (number % 4 == 3) {
      piece.type = hlitHook;
      item.SetHookEnd(1, static_cast<float>(Between(0.45, 0.6)));
      item.SetHookStart(1, static_cast<float>(Between(0, 0.1)));
    } else {
      // Ends run out before the next entry hands over in turn: for more than three at once there are no
      // players.
      item.SetExtro(1, item.AudioStart(1) + static_cast<float>(Between(0.25, 0.5)));
      item.SetAudioEnd(1, item.Extro(1) + static_cast<float>(Between(0.02, 0.15)));
    }
    const double from = static_cast<double>(piece.type == hlitHook ? item.HookStart(1) : item.AudioStart(1));
    const double to = piece.type == hlitHook ? static_cast<double>(item.HookEnd(1)) - 0.1
                                             : static_cast<double>(item.Extro(1));
    const double scale = double{OfflineRig::kRate} / rate * static_cast<double>(item.TimeStretchRatio());
    const double way = std::rint(to * rate) - std::rint(from * rate);
    piece.handover = static_cast<std::int64_t>(std::rint(way * scale));
    // Hooks hand over at the first report of the position at or behind the point; those are 40 ms apart.
    piece.latest = piece.handover + OfflineRig::kRate / 25 + 1;
    if (piece.type == hlitHook) piece.handover -= 2;
    Listen(piece);
    return piece;
  }

  static void Listen(Piece& piece) {
    OfflineRig rig(std::make_unique<KeepingSink>(piece.sound));
    auto player = std::make_shared<cBasePlayer>(rig.platform);
    player->SetPlayerCallback(rig.Owner());
    player->InitPlayer(1, rig.settings);
    player->events.PlayerEvent.connect(
        [&](std::int32_t event, std::string&, float&, float&, std::string&, std::string&) {
          if (event == peAudioEndReached) player->CloseItem();
        });
    player->SetTimeStretchRatio(piece.item->TimeStretchRatio());
    if (piece.type == hlitHook) {
      player->CueItemHook(piece.item, 100);
      player->SetCloseAtHookEnd(true);
      player->PlayItemHook();
    } else {
      player->CueItem(piece.item, 100);
      player->PlayItem();
    }
    rig.Run();
    player->TerminatePlayer();
  }

  TempFolder m_folder;
  std::uint32_t m_seed;
};

// What a run came to.
struct HandoverOutcome {
  std::size_t handovers = 0;
  std::size_t misplaced = 0;    // handovers off the frame where they belong
  std::size_t wrongFrames = 0;  // frames that are not the sum of what should sound there
  std::int64_t lostFrames = 0;  // what should have been heard, less what was
  int mostFilesOpen = 0;
  double residentEarly = 0, residentLate = 0;  // megabytes, after a tenth and at the end
};

class HandoverRun {
 public:
  HandoverOutcome Play(Palette& palette, std::size_t entries) {
    OfflineRig rig(std::make_unique<CheckingSink>(*this));
    auto list = std::make_shared<cListPlayer>(rig.platform);
    list->SetPlayerCallback(rig.Owner());
    list->InitListPlayer(1, rig.settings);
    m_order.clear();
    for (std::size_t i = 0; i < entries; ++i) {
      m_order.push_back(&palette.pieces[palette.Next() % palette.pieces.size()]);
      list->AddItem(m_order.back()->item, m_order.back()->type);
    }
    list->events.PlayerEvent.connect(
        [&](std::int32_t event, std::string&, float&, float&, std::string&, std::string&) {
          if (event != pePlayerListCurrentItemChanged) return;
          Begin(rig.engine->Frame());
          m_outcome.mostFilesOpen = std::max(m_outcome.mostFilesOpen, palette.FilesOpen());
          if (m_starts.size() == entries / 10 + 2) m_outcome.residentEarly = Resident();
        });
    m_starts = {0};
    if (!list->PlayItems()) return {};
    rig.Run();
    m_outcome.residentLate = Resident();
    m_outcome.handovers = m_starts.size() - 1;
    m_outcome.lostFrames =
        m_starts.back() + static_cast<std::int64_t>(m_order[m_starts.size() - 1]->sound.size() / 2) - m_heard;
    if (list->Status() != psClosed) m_outcome.lostFrames = INT64_MAX;
    return m_outcome;
  }

 private:
  class CheckingSink : public FrameSink {
   public:
    explicit CheckingSink(HandoverRun& run) : m_run(run) {}
    bool Open(const OutputFormat&, std::string&) override { return true; }
    bool Write(const float* interleaved, std::size_t frames, std::string&) override {
      m_run.Check(interleaved, frames);
      return true;
    }
    bool Close(std::string&) override { return true; }

   private:
    HandoverRun& m_run;
  };

  void Begin(std::int64_t frame) {
    const Piece& before = *m_order[m_starts.size() - 1];
    const std::int64_t passed = frame - m_starts.back();
    const bool right = before.type == hlitHook ? passed >= before.handover && passed <= before.latest
                                               : passed == before.handover;
    if (!right) ++m_outcome.misplaced;
    m_starts.push_back(frame);
  }

  void Check(const float* interleaved, std::size_t frames) {
    m_expected.assign(frames * 2, 0);
    for (std::size_t i = m_starts.size(); i-- > 0 && m_starts.size() - i <= 4;) {
      const std::vector<float>& sound = m_order[i]->sound;
      const std::int64_t from = std::max(m_starts[i], m_heard);
      const std::int64_t to = std::min(m_starts[i] + static_cast<std::int64_t>(sound.size() / 2),
                                       m_heard + static_cast<std::int64_t>(frames));
      for (std::int64_t s = 2 * from; s < 2 * to; ++s)
        m_expected[static_cast<std::size_t>(s - 2 * m_heard)] +=
            sound[static_cast<std::size_t>(s - 2 * m_starts[i])];
    }
    for (std::size_t f = 0; f < frames; ++f)
      if (std::fabs(m_expected[2 * f] - interleaved[2 * f]) > 1e-6f ||
          std::fabs(m_expected[2 * f + 1] - interleaved[2 * f + 1]) > 1e-6f)
        ++m_outcome.wrongFrames;
    m_heard += static_cast<std::int64_t>(frames);
  }

  static double Resident() {
    std::ifstream file("/proc/self/statm");
    double pages = 0;
    file >> pages >> pages;
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
  }

  HandoverOutcome m_outcome;
  std::vector<const Piece*> m_order;
  std::vector<std::int64_t> m_starts;
  std::vector<float> m_expected;
  std::int64_t m_heard = 0;
};

}  // namespace qm::test
