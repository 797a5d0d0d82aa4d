#pragma once
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "cli/ItemArgument.h"
#include "cli/PlayRun.h"
#include "kits/common/Event.h"

namespace qm::cli {

// A file that waits at the desk.
struct DeskFile {
  ItemArgument argument;
  std::shared_ptr<cHDItem> item;  // absent until it is read, and when that failed
  std::string errorText;          // of a failed reading
  bool played = false;
};

struct DeskLevels {
  std::int16_t left = 0, right = 0;  // signed 16-bit peaks
};

// A pool of players and a list of files, worked from one place: files are cued and played on players as
// somebody wants them, and each player is closed when its audio ends. There is always one file and one player
// that is chosen.
class Desk : public Run {
 public:
  // Without a volume items play at their own.
  Desk(PlayPool& pool, std::vector<ItemArgument> items, std::optional<std::int16_t> volume);
  ~Desk() override;

  void Start() override {}
  void LoadAhead() override;
  void Stop() override;

  // The files.
  const std::vector<DeskFile>& Files() const { return m_files; }
  std::size_t ChosenFile() const { return m_chosen; }  // from 0
  void ChooseFile(std::ptrdiff_t steps);
  // The chosen file, on that player or, for 0, on one that is free.
  void Cue(std::int16_t player = 0);
  void Play(std::int16_t player = 0);

  // The players.
  std::int16_t ChosenPlayer() const { return m_player; }
  void ChoosePlayer(std::int16_t steps);
  void PlayOrPause();
  void CueAgain();
  void Close();
  void Fade(float seconds);  // and close
  void ChangeVolume(std::int32_t step);
  void PlayAll();
  // F1 to F16, by what the pool makes of them; `held` in its bits.
  void PressFunctionKey(std::int16_t number, std::int16_t held);
  DeskLevels Levels(std::int16_t player) const;
  bool Fading(std::int16_t player) const { return m_fading.count(player) > 0; }

  // Leaves at once when nothing is on the air, else asks.
  void AskToLeave();
  bool Asking() const { return m_asking; }
  void Answer(bool leave);

  // What there is to say at present.
  const std::string& Message() const { return m_message; }
  bool IsRefusal() const { return m_refusal; }
  void Say(const std::string& text);
  void Refuse(const std::string& text);

 protected:
  void Act(const HeardEvent& heard) override;

 private:
  using QuickOperation = std::int16_t (cPlayers::*)(const std::shared_ptr<cHDItem>&, std::int16_t,
                                                    std::int16_t);

  void Load(DeskFile& file);
  std::shared_ptr<cHDItem> ChosenItem();
  void Quick(QuickOperation operation, const char* done, std::int16_t player);
  void HearError(const HeardEvent& heard);
  void HearClosing(std::int16_t number);
  std::string NumbersOnAir() const;

  std::vector<DeskFile> m_files;
  const std::optional<std::int16_t> m_volume;
  std::vector<Event<>::Connection> m_wires;
  std::size_t m_loaded = 0;  // files looked at, from the first on
  std::size_t m_chosen = 0;
  std::int16_t m_player = 1;
  std::map<std::int16_t, DeskLevels> m_levels;
  std::set<std::int16_t> m_played;  // since their item was opened
  std::set<std::int16_t> m_fading;
  bool m_told = false;  // of a failure, since it was last looked
  std::int64_t m_errorFrame = -1;
  std::string m_message;
  bool m_refusal = false;
  bool m_asking = false;
};

}  // namespace qm::cli
