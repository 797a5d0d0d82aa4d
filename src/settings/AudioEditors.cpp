#include "settings/AudioEditors.h"

#include "kits/common/Files.h"
#include "kits/common/Registry.h"

namespace qm {

namespace {

struct KnownEditor {
  const char* path;      // of a registry key
  const char* name;      // of its value, a folder or the program itself
  const char* file;      // behind the value
  const char* fallback;  // when there is no such value; "" means not installed
};

constexpr KnownEditor kEditors[] = {
    // The program files folder is a registry value too; without it programs of this kind live under /opt.
    {"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir",
     "\\Quillmere\\VellanEdit v1"
     "\\VellanEdit.exe",
     "/opt"},
    {"Software\\Adobe\\Audition\\3.0", "ApplicationPath", "", ""},
    {"Software\\Syntrillium\\CEPro", "MAINDIR", "\\COOLPRO.EXE", ""},
    {"Software\\Syntrillium\\CE2000", "MAINDIR", "\\COOL2000.EXE", ""},
    {"Software\\Syntrillium\\CE96\\MAINDIR", "", "\\COOL96.EXE", ""},
};

}  // namespace

std::string FindInstalledAudioEditor(const Registry& registry) {
  for (const KnownEditor& editor : kEditors) {
    const std::string place = registry.ReadText(editor.path, editor.name, editor.fallback);
    if (place.empty()) continue;
    const std::string program = NativePath(place + editor.file).string();
    if (FileExists(program)) return program;
  }
  return "";
}

}  // namespace qm
