#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "cli/RecordOptions.h"

namespace qm {
class AudioEngine;
class cHDItem;
class cRecorder;
}  // namespace qm

namespace qm::cli {

class RecordOwner;

// One recording through the library's recorder, from an engine of its own.
class RecordRun {
 public:
  explicit RecordRun(const RecordOptions& options);
  ~RecordRun();

  // False, with one line in errorText, when there is nothing to record from or into.
  bool Start(std::string& errorText);
  cRecorder& Recorder() { return *m_recorder; }
  AudioEngine& Engine() { return *m_engine; }
  bool Offline() const { return m_offline; }

  // The input has ended, or as much is recorded as was asked for.
  bool Ended() const;
  // Something went wrong, and was told on standard error.
  bool Failed() const;
  // Saves, or discards.
  void Close(bool keep);
  bool Kept() const { return m_kept; }
  double Seconds() const { return m_seconds; }
  std::uint64_t FramesLost() const { return m_lost; }

 private:
  bool ChooseDevice(std::string& errorText);

  const RecordOptions m_options;
  const std::shared_ptr<AudioEngine> m_engine;
  std::shared_ptr<RecordOwner> m_owner;
  std::shared_ptr<cRecorder> m_recorder;
  std::shared_ptr<cHDItem> m_item;
  std::int16_t m_deviceNumber = 0;
  bool m_offline = false;
  bool m_kept = false;
  double m_seconds = 0;
  std::uint64_t m_lost = 0;
};

}  // namespace qm::cli
