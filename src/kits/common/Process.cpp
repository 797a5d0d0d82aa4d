#include "kits/common/Process.h"

#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <sstream>

#include "kits/common/Files.h"

namespace qm {

std::string ProgramName() {
  return program_invocation_short_name;
}

std::optional<ProcessMemory> CurrentProcessMemory() {
  std::string text;
  if (!ReadWholeFile("/proc/self/statm", text)) return {};
  std::istringstream pages(text);
  std::int64_t all = 0, resident = 0;
  if (!(pages >> all >> resident)) return {};
  const double pageMiB = static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024 * 1024);
  return ProcessMemory{static_cast<double>(resident) * pageMiB, static_cast<double>(all) * pageMiB};
}

}  // namespace qm
