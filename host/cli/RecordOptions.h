#pragma once
#include <cstdint>
#include <string>

#include "cli/Command.h"
#include "kits/sound/cAudioFormat.h"

namespace qm::cli {

struct RecordOptions {
  std::string path;
  std::string device;   // a name or number of the list of inputs, "wav:PATH"; "" for the default one
  std::string profile;  // of the audio settings: input, local recording; "" for none
  cAudioFormat format;
  double seconds = 0;  // 0: until it is stopped
  std::int16_t triggerLevel = 0;
  float triggerSeconds = 0;
  enPrinting printing = epForPeople;
};

// The exit status.
std::int32_t Record(const RecordOptions& options);

}  // namespace qm::cli
