#include "kits/sound/AudioFileLibrary.h"

namespace qm {

void SilenceLibrary() {
  [[maybe_unused]] static const bool done = [] {
    av_log_set_level(AV_LOG_QUIET);
    return true;
  }();
}

std::string LibraryErrorText(int code) {
  char text[AV_ERROR_MAX_STRING_SIZE] = "";
  av_strerror(code, text, sizeof text);
  return text;
}

}  // namespace qm
