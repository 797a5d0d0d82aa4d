#pragma once

namespace qm::test {

// While one lives, its thread is under the audio thread's promise: a call that allocates, frees, locks, waits
// or enters the system ends the program and says which call it was.
class AudioThreadGuard {
 public:
  AudioThreadGuard();
  ~AudioThreadGuard();
  AudioThreadGuard(const AudioThreadGuard&) = delete;
  AudioThreadGuard& operator=(const AudioThreadGuard&) = delete;

  // False in a build with a sanitizer, which needs the same calls for itself.
  static bool Works();
};

}  // namespace qm::test
