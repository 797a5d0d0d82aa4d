#pragma once
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/common/Clock.h"
#include "kits/common/Registry.h"
#include "kits/sound/cAudioFile.h"
#include "kits/sound/devices/ClockOutput.h"
#include "kits/sound/devices/LiveDevice.h"
#include "kits/sound/engine/EngineBench.h"
#include "playback/cBasePlayer.h"
#include "playback/cListPlayer.h"
#include "settings/cAudioSettings.h"
#include "support/SoundFixtures.h"

// A long running order of random entries over the real engine on an offline device, each handover and each
// sample of it checked while it plays: what is heard must be the sum of what the entries sound like alone,
// each from the frame at which the one before reaches its extro.
namespace qm::test {

// An engine with one output, and settings that lead players to it.
struct ListRig : IPlayerCallback {
  static constexpr std::int32_t kRate = 44100;

  explicit ListRig(std::unique_ptr<Device> output, std::int16_t players = 1)
      : engine(AudioEngine::Create({}, 0.05)) {
    const std::int32_t device = engine->AddOutput(std::move(output));
    platform = std::make_shared<const Platform>(Platform{SystemClock(), MemoryRegistry(), nullptr, engine});
    settings = std::make_shared<cAudioSettings>(platform, engine);
    settings->SetMaxPlayers(players);
    for (std::int16_t n = 1; n <= players; ++n) settings->SetPlayerSoundDevice(n, device);
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

inline std::unique_ptr<Device> Offline(std::unique_ptr<FrameSink> sink) {
  return std::make_unique<OfflineDevice>("offline", std::move(sink), OutputFormat{ListRig::kRate, 2});
}

// A clock that keeps the first `frames` frames it pulls, and is lost once when it has pulled `lifetime`.
class KeepingClock : public ClockOutput, private FrameSource {
 public:
  KeepingClock(std::vector<float>& kept, std::size_t frames, std::size_t lifetime)
      : m_kept(kept), m_lifetime(lifetime) {
    m_kept.reserve(2 * frames);
  }
  ~KeepingClock() override { Close(eocDrop); }  // while Pull is still there
  bool Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText) override {
    OutputShape shape = wanted;
    shape.format = {ListRig::kRate, 2};
    return ClockOutput::Open(shape, match, errorText);
  }
  bool Start(FrameSource& source, std::string& errorText) override {
    m_source = &source;
    return ClockOutput::Start(*this, errorText);
  }
  void Close(enOutputClose how) override {
    ClockOutput::Close(how);
    if (m_pulled >= m_lifetime) m_lifetime = SIZE_MAX;
  }
  bool Alive() override { return m_pulled < m_lifetime && ClockOutput::Alive(); }

 private:
  void Pull(float* interleaved, std::size_t frames) noexcept override {
    m_source->Pull(interleaved, frames);
    m_pulled += frames;
    if (m_kept.size() + 2 * frames <= m_kept.capacity())
      m_kept.insert(m_kept.end(), interleaved, interleaved + 2 * frames);
  }

  std::vector<float>& m_kept;
  std::atomic<std::size_t> m_pulled = 0, m_lifetime;
  FrameSource* m_source = nullptr;
};

// An entry, and what it sounds like alone.
struct Piece {
  std::shared_ptr<cHDItem> item;
  enListItemType type = hlitFull;
  std::int64_t handover = 0;  // device frames from its start to its extro; of hooks the earliest
  std::int64_t latest = 0;    // of hooks: the latest
  std::vector<float> sound;   // stereo
};

// Pieces of all types and rates, full and hook entries, some stretched.
class Palette {
 public:
  Palette(std::size_t count, std::uint32_t seed) : m_seed(seed) {
    const struct {
      const char* extension;
      std::int32_t mode, rate, channels;
    } kinds[] = {
        {"wav", ecmWAV, 44100, 2}, {"wav", ecmWAV, 48000, 2}, {"wav", ecmWAV, 22050, 1},
        {"mp3", ecmMP3, 44100, 2}, {"ogg", ecmOgg, 44100, 2}, {"mp2", ecmMP2, 48000, 2},
        {"wav", ecmWAV, 44100, 1}, {"ogg", ecmOgg, 32000, 1},
    };
    for (std::size_t i = 0; i < count; ++i) {
      const auto& kind = kinds[i % std::size(kinds)];
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
    const double scale = double{ListRig::kRate} / rate * static_cast<double>(item.TimeStretchRatio());
    const double way = std::rint(to * rate) - std::rint(from * rate);
    piece.handover = static_cast<std::int64_t>(std::rint(way * scale));
    // Hooks hand over at the first report of the position at or behind the point; those are 40 ms apart.
    piece.latest = piece.handover + ListRig::kRate / 25 + 1;
    if (piece.type == hlitHook) piece.handover -= 2;
    Listen(piece);
    return piece;
  }

  static void Listen(Piece& piece) {
    ListRig rig(Offline(std::make_unique<MemorySink>(piece.sound)));
    auto player = std::make_shared<cBasePlayer>(rig.platform);
    player->SetPlayerCallback(rig.Owner());
    player->InitPlayer(1, rig.settings);
    player->events.PlayerEvent.connect([&](std::int32_t event, auto&&...) {
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
  int deviceChanges = 0;  // lost, and back
  AudioEngine::Misses misses;
  double residentEarly = 0, residentLate = 0;  // megabytes, after a tenth and at the end
};

class HandoverRun {
 public:
  // As fast as the processor allows.
  HandoverOutcome Play(Palette& palette, std::size_t entries) {
    ListRig rig(Offline(std::make_unique<CheckingSink>(*this)));
    const auto list = Begin(rig, palette, entries);
    rig.Run();
    Finish(*list);
    return m_outcome;
  }

  // On a clock, by a host that comes late by a random time of up to `delay`. The clock is lost behind
  // `lifetime` frames, if it comes to that; the sound is compared of one that is not.
  HandoverOutcome PlayLive(Palette& palette, std::size_t entries, std::chrono::milliseconds delay,
                           std::size_t lifetime = SIZE_MAX) {
    std::vector<float> heard;
    {
      auto device = std::make_unique<LiveDevice>(
          "clock", std::make_unique<KeepingClock>(heard, entries * ListRig::kRate, lifetime));
      device->onStateChange = [this](const std::string&) { ++m_outcome.deviceChanges; };
      ListRig rig(std::move(device));
      const auto list = Begin(rig, palette, entries);
      while (list->Status() != psClosed) {
        pollfd wake{rig.engine->WaitDescriptor(), POLLIN, 0};
        poll(&wake, 1, 100);
        std::this_thread::sleep_for(delay * (palette.Next() % 1000) / 1000);
        rig.engine->Pump();
      }
      m_outcome.misses = rig.engine->CountMisses();
      Finish(*list);
    }
    if (lifetime != SIZE_MAX) return m_outcome;
    // The clock pulls before anything sounds: what is heard first is the beginning of the first piece.
    const std::ptrdiff_t lead = FirstSound(heard) - FirstSound(m_order[0]->sound);
    m_heard = m_starts.front();
    for (auto at = static_cast<std::size_t>(std::max<std::ptrdiff_t>(lead, 0)); 2 * at + 512 <= heard.size();
         at += 256)
      Check(heard.data() + 2 * at, 256);
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

  std::shared_ptr<cListPlayer> Begin(ListRig& rig, Palette& palette, std::size_t entries) {
    const auto list = std::make_shared<cListPlayer>(rig.platform);
    list->SetPlayerCallback(rig.Owner());
    list->InitListPlayer(1, rig.settings);
    for (std::size_t i = 0; i < entries; ++i) {
      m_order.push_back(&palette.pieces[palette.Next() % palette.pieces.size()]);
      list->AddItem(m_order.back()->item, m_order.back()->type);
    }
    list->events.PlayerEvent.connect([&rig, &palette, this](std::int32_t event, auto&&...) {
      if (event == pePlaying) m_starts = {rig.engine->Frame()};
      if (event != pePlayerListCurrentItemChanged) return;
      TakeHandover(rig.engine->Frame());
      m_outcome.mostFilesOpen = std::max(m_outcome.mostFilesOpen, palette.FilesOpen());
      if (m_starts.size() == m_order.size() / 10 + 2) m_outcome.residentEarly = Resident();
    });
    list->PlayItems();
    return list;
  }

  void Finish(const cListPlayer& list) {
    m_outcome.residentLate = Resident();
    m_outcome.handovers = m_starts.size() - 1;
    const std::vector<float>& last = m_order[m_starts.size() - 1]->sound;
    m_outcome.lostFrames = m_starts.back() + static_cast<std::int64_t>(last.size() / 2) - m_heard;
    if (list.Status() != psClosed) m_outcome.lostFrames = INT64_MAX;
  }

  static std::ptrdiff_t FirstSound(const std::vector<float>& frames) {
    const auto first = std::find_if(frames.begin(), frames.end(), [](float value) { return value != 0; });
    return (first - frames.begin()) / 2;
  }

  void TakeHandover(std::int64_t frame) {
    const Piece& before = *m_order[m_starts.size() - 1];
    const std::int64_t passed = frame - m_starts.back();
    const bool right = before.type == hlitHook ? passed >= before.handover && passed <= before.latest
                                               : passed == before.handover;
    if (!right) ++m_outcome.misplaced;
    m_starts.push_back(frame);
  }

  void Check(const float* interleaved, std::size_t frames) {
    m_expected.assign(frames * 2, 0);
    const auto end = [this](std::size_t i) {
      return m_starts[i] + static_cast<std::int64_t>(m_order[i]->sound.size() / 2);
    };
    while (m_first + 1 < m_starts.size() && end(m_first) <= m_heard) ++m_first;
    for (std::size_t i = m_first; i < m_starts.size(); ++i) {
      const std::vector<float>& sound = m_order[i]->sound;
      const std::int64_t from = std::max(m_starts[i], m_heard);
      const std::int64_t to = std::min(end(i), m_heard + static_cast<std::int64_t>(frames));
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
  std::size_t m_first = 0;  // that may still sound
  std::vector<const Piece*> m_order;
  std::vector<std::int64_t> m_starts;
  std::vector<float> m_expected;
  std::int64_t m_heard = 0;
};

}  // namespace qm::test
