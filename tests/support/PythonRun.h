#pragma once
#include <string>

#include "support/SoundFixtures.h"

namespace qm::test {

// What a program of the system's python3 prints, which has the packages; "" when it fails.
inline std::string Python(const TempFolder& folder, const std::string& program) {
  WriteBytes(folder.File("program.py"), program);
  const std::string out = folder.File("program.out");
  const std::string command =
      "PYTHONIOENCODING=utf-8 /usr/bin/python3 " + Quoted(folder.File("program.py")) + " >" + Quoted(out);
  return RunCommand("cd " + Quoted(folder.Path()) + " && " + command) ? ReadBytes(out) : "";
}

}  // namespace qm::test
