#pragma once
#include <deque>
#include <optional>
#include <vector>

#include "cli/ItemArgument.h"
#include "cli/PlayRun.h"

namespace qm::cli {

// Plays items one after another, each from the very frame at which the one before it ended. A device that
// cannot be had ends the run.
class PlaySequence : public PlayRun {
 public:
  PlaySequence(PlayPool& pool, std::vector<ItemArgument> items, const PlayWishes& wishes);

  void Start() override { PlayNext(); }
  void LoadAhead() override;
  void Stop() override;
  bool GoOn() override;
  bool FadeAndGoOn(float seconds) override;
  bool SeekBy(float seconds) override;
  void Play() override;
  std::int16_t Volume() const override;
  void SetVolume(std::int16_t volume) override;
  std::shared_ptr<cHDItem> Item() const override;
  float Position() const override;
  std::size_t ItemNumber() const override { return m_number; }
  std::size_t ItemCount() const override { return m_count; }

 protected:
  void Act(const HeardEvent& heard) override;

 private:
  struct Ready {
    std::shared_ptr<cHDItem> item;
    std::size_t number = 0;
  };

  void PlayNext();
  bool PlayOne(const std::shared_ptr<cHDItem>& item);
  std::int16_t VolumeOf(const cHDItem& item) const;
  void ScheduleFade(const cHDItem& item);

  const PlayWishes m_wishes;
  const std::size_t m_count;
  std::deque<ItemArgument> m_waiting;
  std::optional<Ready> m_ready;
  std::size_t m_number = 0;
  bool m_goOnAfterFade = false;
  bool m_told = false;  // of a failure, since the present item was begun
};

}  // namespace qm::cli
