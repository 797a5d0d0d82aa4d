#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "kits/common/Descriptor.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/record/RecordingFile.h"

namespace qm {

namespace {

namespace fs = std::filesystem;

// A lease for writing is given only while nobody else has the file open. A system or a file that knows no
// leases tells nothing.
bool OpenElsewhere(const Descriptor& file) {
  // Somebody who opens the file now and waits for the lease makes a signal that nobody need hear.
  fcntl(file.Number(), F_SETSIG, SIGURG);
  const bool refused = fcntl(file.Number(), F_SETLEASE, F_WRLCK) != 0 && errno == EAGAIN;
  if (!refused) fcntl(file.Number(), F_SETLEASE, F_UNLCK);
  return refused;
}

}  // namespace

bool RecordingPathUsable(const std::string& path, std::string& errorText) {
  std::error_code ignored;
  const fs::path native = AudioFilePath(path);
  const auto refuse = [&](const std::string& why) {
    errorText = "cannot record to '" + path + "': " + why;
    return false;
  };
  const fs::path folder = native.has_parent_path() ? native.parent_path() : fs::path(".");
  if (fs::is_directory(native, ignored)) return refuse("it is a folder");
  if (!fs::is_directory(folder, ignored)) return refuse("there is no such folder");
  if (!fs::exists(native, ignored))
    return access(folder.c_str(), W_OK) == 0 || refuse(std::generic_category().message(errno));
  if (!fs::is_regular_file(native, ignored)) return refuse("it is no file");
  const Descriptor file(native, O_RDWR);
  if (!file.IsOpen()) return refuse(std::generic_category().message(errno));
  return !OpenElsewhere(file) || refuse("the file is in use");
}

}  // namespace qm
