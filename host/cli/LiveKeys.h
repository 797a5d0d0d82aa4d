#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace qm::cli {

class PlayRun;

enum enKey : std::int32_t { ekLeft = 256, ekRight = 257 };

// The first key of the bytes a terminal has sent, which are taken off: a character, enKey, or 0 for a key
// that has no meaning here.
std::int32_t TakeKey(std::string_view& bytes);

// Does what the key stands for.
void PressKey(std::int32_t key, PlayRun& run);

}  // namespace qm::cli
