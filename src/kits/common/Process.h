#pragma once
#include <optional>
#include <string>

// The process that the library runs in.
namespace qm {

// The program's name, without its folder.
std::string ProgramName();

struct ProcessMemory {
  double residentMiB = 0;  // in the computer's memory
  double virtualMiB = 0;   // of addresses
};

// Nothing when the system does not tell.
std::optional<ProcessMemory> CurrentProcessMemory();

}  // namespace qm
