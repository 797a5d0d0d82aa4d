#pragma once
#include <string>

namespace qm {

class Registry;

// The program file of the first known audio editor that is installed, told from its makers' registry values;
// "" for none.
std::string FindInstalledAudioEditor(const Registry& registry);

}  // namespace qm
