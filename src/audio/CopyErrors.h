#pragma once
#include <cstdint>
#include <string>

namespace qm {

// What the operations of cCopyAudioFileNCT answer.
enum enCopyError : std::int32_t {
  cerOK = 0,
  cerSourceInvalid = -1,
  cerDestinationInvalid = -2,
  cerSampleRateInvalid = -3,
  cerChannelsInvalid = -4,
  cerSourceNotOpened = -5,
  cerStartInvalid = -6,
  cerEndInvalid = -7,
  cerStartAfterEnd = -8,
  cerCompressorNotLoaded = -9,
  cerDestinationNotCreated = -10,  // also one that could not be written to its end
  cerNoFormat = -11,
  cerFormatTypeInvalid = -12,
  cerRetainInvalid = -13,
  cerCancelled = -14,
};

// In words for people.
std::string CopyErrorText(std::int32_t code);

}  // namespace qm
