#include "item/CartTimers.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "kits/common/LittleEndian.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

constexpr std::size_t kTimers = 684;
constexpr std::size_t kTimerCount = 8;
constexpr std::size_t kTimerBytes = 8;
constexpr std::size_t kUsageBytes = 4;
constexpr std::uint32_t kUnused = 0xFFFFFFFF;
constexpr char kAny = '\0';

struct TimerUsage {
  std::string_view letters;  // upper case
  char fourth;               // lower case
  enItemField field;
  std::int32_t set;
  bool oursOnly;
};

// The first that fits is meant.
constexpr TimerUsage kUsages[] = {
    {"SEG", kAny, eifExtro, 1, false},     {"SEC", kAny, eifExtro, 1, false},
    {"OUT", kAny, eifExtro, 1, false},     {"AUD", 's', eifAudioStart, 1, false},
    {"AUD", kAny, eifAudioEnd, 1, false},  {"INT", 's', eifIntroStart, 1, false},
    {"INT", '1', eifIntroStart, 1, false}, {"INT", '2', eifIntroStart, 2, false},
    {"INT", kAny, eifIntroEnd, 1, false},  {"MRK", '1', eifHookStart, 1, false},
    {"MRK", '2', eifHookEnd, 1, false},    {"MRK", '3', eifLoopStart, 1, true},
    {"MRK", '4', eifLoopEnd, 1, true},
};

const TimerUsage* FindUsage(std::string_view usage) {
  const std::string letters = UpperCase(usage.substr(0, 3)), fourth = LowerCase(usage.substr(3));
  const auto found = std::find_if(std::begin(kUsages), std::end(kUsages), [&](const TimerUsage& row) {
    return row.letters == letters && (row.fourth == kAny || row.fourth == fourth[0]);
  });
  return found == std::end(kUsages) ? nullptr : found;
}

struct Timer {
  const char* usage;
  float seconds;
};

std::int64_t Milliseconds(float seconds) {
  return RoundToWhole(static_cast<double>(seconds) * 1000);
}

// What the item has to tell, the pairs last.
class TimerList {
 public:
  void Add(bool wanted, const char* usage, float seconds) {
    if (wanted && Free() >= 1) m_timers.push_back({usage, seconds});
  }
  void AddPair(const char* startUsage, float start, const char* endUsage, float end) {
    if (end <= 0 || Free() < 2) return;
    m_timers.push_back({startUsage, start});
    m_timers.push_back({endUsage, end});
  }
  const std::vector<Timer>& Timers() const { return m_timers; }

 private:
  std::size_t Free() const { return kTimerCount - m_timers.size(); }
  std::vector<Timer> m_timers;
};

TimerList TimersOf(const cHDItem& item) {
  TimerList list;
  list.Add(item.AudioStart(1) > 0, "AUDs", item.AudioStart(1));
  const bool endsEarly = Milliseconds(item.AudioEnd(1)) < Milliseconds(item.TotalLength()) - 1;
  list.Add(item.AudioEnd(1) >= 0 && endsEarly, "AUDe", item.AudioEnd(1));
  list.Add(item.IntroStart(1) > 0, "INTs", item.IntroStart(1));
  list.Add(item.IntroEnd(1) > 0, "INTe", item.IntroEnd(1));
  constexpr const char* kSegues[] = {"SEG1", "SEG2", "SEG3"};
  for (std::int32_t set = 1; set <= 3; ++set) {
    const float extro = item.Extro(set);
    list.Add(extro > 0 && Milliseconds(extro) < Milliseconds(item.AudioEnd(set)), kSegues[set - 1], extro);
  }
  list.AddPair("MRK1", item.HookStart(1), "MRK2", item.HookEnd(1));
  list.AddPair("MRK3", item.LoopStart(), "MRK4", item.LoopEnd());
  return list;
}

}  // namespace

void ReadCartTimers(cHDItem& item, std::string_view fixed, std::int32_t sampleRate, enCartTimerLoops loops) {
  if (sampleRate < 1) return;
  for (std::size_t timer = 0; timer < kTimerCount; ++timer) {
    const std::size_t place = kTimers + timer * kTimerBytes;
    const auto value = ReadLittleEndian<std::uint32_t>(fixed, place + kUsageBytes, kUnused);
    if (value == kUnused) continue;
    const TimerUsage* usage = FindUsage(fixed.substr(place, kUsageBytes));
    if (usage == nullptr || (usage->oursOnly && loops != ctlOurs)) continue;
    ItemFields()[static_cast<std::size_t>(usage->field)].setNumber(item, usage->set,
                                                                   static_cast<double>(value) / sampleRate);
  }
}

void WriteCartTimers(const cHDItem& item, std::string& fixed, std::int32_t sampleRate) {
  std::string bytes;
  if (sampleRate >= 1) {
    const TimerList list = TimersOf(item);
    for (const Timer& timer : list.Timers()) {
      const std::int64_t samples = RoundToWhole(static_cast<double>(timer.seconds) * sampleRate);
      bytes += timer.usage;
      AppendLittleEndian<std::uint32_t>(
          bytes, static_cast<std::uint32_t>(Limit<std::int64_t>(samples, 0, kUnused - 1)));
    }
  }
  while (bytes.size() < kTimerCount * kTimerBytes) {
    bytes += "    ";
    AppendLittleEndian<std::uint32_t>(bytes, kUnused);
  }
  fixed.replace(kTimers, bytes.size(), bytes);
}

}  // namespace qm
