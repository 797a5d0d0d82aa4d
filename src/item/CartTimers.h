#pragma once
#include <cstdint>
#include <string>
#include <string_view>

// The eight post timers of a cart chunk: positions in samples. Without a sample rate none is read or written.
namespace qm {

class cHDItem;

// Loops are told by the timers of our own files only.
enum enCartTimerLoops : std::int32_t { ctlForeign, ctlOurs };

// In their order, through the item's properties. A chunk that ends within the timers has fewer.
void ReadCartTimers(cHDItem& item, std::string_view fixed, std::int32_t sampleRate, enCartTimerLoops loops);

// Replaces all eight; marks beyond them are left out.
void WriteCartTimers(const cHDItem& item, std::string& fixed, std::int32_t sampleRate);

}  // namespace qm
