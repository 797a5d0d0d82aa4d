#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "cli/PlayPool.h"

namespace qm {
class cHDItem;
}

namespace qm::cli {

// How items are to be played. 0, or nothing, leaves it to the item and the settings.
struct PlayWishes {
  std::optional<std::int16_t> volume;  // per cent
  float speed = 0;
  float stretch = 0;
  float fadeSeconds = 0;  // of a fade that ends with the audio
  bool hook = false;      // only the hooks
};

// What is done with the pool from a start to an end.
class Run {
 public:
  explicit Run(PlayPool& pool);
  virtual ~Run();
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  virtual void Start() = 0;
  // Gets ready what comes next. To be called while there is time.
  virtual void LoadAhead() = 0;
  // Closes what plays; nothing comes after it.
  virtual void Stop() = 0;

  PlayPool& Pool() const { return m_pool; }
  bool Finished() const { return m_finished; }
  bool Failed() const { return m_failed; }

 protected:
  virtual void Act(const HeardEvent& heard) = 0;
  void TellOf(const std::string& text);
  void Finish() { m_finished = true; }

 private:
  PlayPool& m_pool;
  bool m_failed = false;
  bool m_finished = false;
};

// Items that follow each other on player 1. Those that cannot be played are told of and passed over.
class PlayRun : public Run {
 public:
  using Run::Run;

  // False when this kind of run has no such thing.
  virtual bool GoOn() = 0;                      // with the next item, at once
  virtual bool FadeAndGoOn(float seconds) = 0;  // the same at the end of a fade that begins now
  virtual bool SeekBy(float seconds) = 0;
  virtual void Play() = 0;  // what was paused or cued
  virtual std::int16_t Volume() const = 0;
  virtual void SetVolume(std::int16_t volume) = 0;

  cPlayer& Player() const { return Pool().Player(1); }
  virtual std::shared_ptr<cHDItem> Item() const = 0;  // absent when nothing is open
  virtual float Position() const = 0;          // seconds in what the player holds, to the frame if it can
  virtual std::size_t ItemNumber() const = 0;  // of that item, from 1
  virtual std::size_t ItemCount() const = 0;
};

}  // namespace qm::cli
