#include "cli/Failure.h"

#include <cstdio>
#include <string>

namespace qm::cli {

void TellFailure(std::string_view text) {
  std::string line = "quillmere: " + std::string(text);
  for (char& c : line)
    if (static_cast<unsigned char>(c) < ' ' || c == 127) c = '?';
  line += '\n';
  std::fputs(line.c_str(), stderr);
}

}  // namespace qm::cli
