#include "audio/FileDates.h"

#include <filesystem>

#include "kits/common/Clock.h"
#include "kits/common/Dates.h"
#include "kits/common/Files.h"

namespace qm {

using std::chrono::system_clock;

std::optional<system_clock::time_point> GetFileModified(const std::string& path) {
  std::error_code error;
  const auto written = std::filesystem::last_write_time(NativePath(path), error);
  if (error) return std::nullopt;
  return std::chrono::time_point_cast<system_clock::duration>(std::chrono::file_clock::to_sys(written));
}

double NormaliseFileDate(system_clock::time_point moment) {
  constexpr double kDaySeconds = 86400;
  static const double epoch = DayNumber({1970, 1, 1});
  const auto seconds = std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
  return epoch + static_cast<double>(seconds) / kDaySeconds;
}

double CurrentFileDate(const Clock& clock) {
  return NormaliseFileDate(clock.Now());
}

}  // namespace qm
