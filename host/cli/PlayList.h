#pragma once
#include <set>
#include <string>
#include <vector>

#include "cli/ItemArgument.h"
#include "cli/PlayRun.h"

namespace qm::cli {

// Plays items as one running order through the player's list: each begins on the frame at which the one
// before reaches its extro. Entries that the list passes over are told of.
class PlayList : public PlayRun {
 public:
  PlayList(PlayPool& pool, std::vector<ItemArgument> items, const PlayWishes& wishes);

  void Start() override;
  void LoadAhead() override {}  // the list does so itself
  void Stop() override;
  bool GoOn() override { return false; }
  bool FadeAndGoOn(float) override { return false; }
  bool SeekBy(float) override { return false; }
  void Play() override;
  std::int16_t Volume() const override { return m_volume; }
  void SetVolume(std::int16_t volume) override;
  std::shared_ptr<cHDItem> Item() const override;
  float Position() const override;
  std::size_t ItemNumber() const override;
  std::size_t ItemCount() const override { return m_paths.size(); }

 protected:
  void Act(const HeardEvent& heard) override;

 private:
  void AddItems();
  void AddItem(const ItemArgument& argument);
  bool TakeOffFirst();
  void HearError(std::int32_t number, const std::string& text);
  void MoveTo(std::int32_t entry);
  void TellPassedOver(std::int32_t entry);

  const std::vector<ItemArgument> m_items;
  const PlayWishes m_wishes;
  std::vector<std::string> m_paths;  // of the list's entries
  std::int16_t m_volume = 0;         // of the run; a list tells that of one of its players only
  std::int32_t m_current = 0;        // entry on the air, from 1
  bool m_stopping = false;
  bool m_told = false;                 // of an error, since the entry on the air began
  std::int64_t m_faultFrame = -1;      // of the device's last fault
  std::set<std::string> m_toldErrors;  // of entries, which are tried again and again
};

}  // namespace qm::cli
