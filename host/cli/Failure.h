#pragma once
#include <cstdint>
#include <string_view>

namespace qm::cli {

enum enExitStatus : std::int32_t {
  exsDone = 0,
  exsFailed = 1,    // refused or failed, with one line on standard error
  exsUsage = 2,     // wrong usage, likewise
  exsSignal = 128,  // and the number of the signal that ended it
};

// "quillmere: TEXT" on standard error, as one line whatever the text holds.
void TellFailure(std::string_view text);

}  // namespace qm::cli
