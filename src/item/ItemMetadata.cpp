#include "item/ItemMetadata.h"

#include <exception>
#include <filesystem>
#include <limits>

#include "audio/AudioFileTypes.h"
#include "audio/cPeakFile.h"
#include "item/ItemFlags.h"
#include "item/ItemTagFiles.h"
#include "item/RiffFile.h"
#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Numbers.h"
#include "kits/common/Process.h"
#include "kits/sound/Platform.h"
#include "kits/sound/cAudioFormat.h"
#include "services/Diagnostics.h"

namespace qm {
namespace {

constexpr std::int32_t kSets = 3;
constexpr float kUnset = -1;
constexpr float kLowestLoopStart = 4.5f;  // seconds
constexpr float kShortestLoop = 0.1f;
constexpr std::int32_t kTraceLevel = 5;

std::int32_t Length32(std::int64_t length) {
  return static_cast<std::int32_t>(Limit<std::int64_t>(length, 0, std::numeric_limits<std::int32_t>::max()));
}

bool Exit(const char* reason) {
  Trace(kTraceLevel, ednCloses, "Exit : ", reason);
  return false;
}

bool Finish(const char* operation) {
  Trace(kTraceLevel, ednCloses, "Finish ", operation);
  return true;
}

bool LoadWave(cHDItem& item, const std::string& path, enHDFileFlags flags) {
  RiffFile file;
  return file.Open(path, rfaRead) && LoadItemWave(item, file, flags);
}

bool LoadByType(cHDItem& item, const std::string& path, enHDFileFlags flags) {
  switch (item.AudioFileType()) {
    case aftWAV:
      return LoadWave(item, path, flags);
    case aftWMA:
      return LoadItemWma(item, path);
    default:
      return LoadItemTags(item, path);
  }
}

bool IsReadOnly(const std::string& path) {
  std::error_code error;
  const auto permissions = std::filesystem::status(NativePath(path), error).permissions();
  return (permissions & std::filesystem::perms::owner_write) == std::filesystem::perms::none;
}

// A carrier of WAV files and what is told when its file cannot be opened.
struct Carrier {
  enHDFileFlags flag;
  bool (*save)(const cHDItem& item, RiffTarget& file, enHDFileFlags flags);
  const char* refusal;
};
constexpr Carrier kCarriers[] = {
    {llfCartChunk, SaveItemCart,
     "The WAV audio file is not read only, but Windows would not let the CartChunk information be updated"},
    {llfBext, SaveItemBext,
     "The WAV audio file is not read only, but Windows would not let the Broadcast WAVE (BEXT) information "
     "be "
     "updated"},
};

bool SaveCarrier(const cHDItem& item, const Carrier& carrier, const std::string& path, enHDFileFlags flags,
                 const Platform& platform) {
  RiffFile file;
  if (IsReadOnly(path)) return false;
  if (file.Open(path, rfaReadAndWrite)) return carrier.save(item, file, flags);
  platform.messageBox->Show(carrier.refusal, mbsExclamation, ProgramName());
  return false;
}

bool SaveWave(cHDItem& item, const std::string& path, enHDFileFlags flags, const Platform& platform) {
  {
    RiffFile file;
    file.Open(path, rfaRead);  // one that cannot be opened has no length
    PrepareItemForSave(item, file, flags, platform);
  }
  bool written = false;
  for (const Carrier& carrier : kCarriers) {
    if (!HasFlags(flags, carrier.flag)) continue;
    if (!SaveCarrier(item, carrier, path, flags, platform)) return false;
    written = true;
  }
  return written;
}

bool SaveByType(cHDItem& item, const std::string& path, enHDFileFlags flags, const Platform& platform) {
  switch (GetTypeForFile(path)) {
    case aftWAV:
      return SaveWave(item, path, flags, platform);
    case aftWMA:
      return SaveItemWma(item, path);
    default:
      return SaveItemTags(item, path);
  }
}

}  // namespace

void ResetMarks(cHDItem& item) {
  item.SetTotalLength(0);
  item.SetScheduledLength(0);
  for (std::int32_t set = 1; set <= kSets; ++set) {
    item.SetAudioStart(set, kUnset);
    item.SetAudioEnd(set, kUnset);
    item.SetIntroStart(set, kUnset);
    item.SetIntroEnd(set, kUnset);
    item.SetHookStart(set, kUnset);
    item.SetHookEnd(set, kUnset);
    item.SetExtro(set, kUnset);
  }
  item.SetLoopStart(0);
  item.SetLoopEnd(0);
  item.SetLoopNumberLoops(0);
}

void RepairMarks(cHDItem& item) {
  const float length = item.TotalLength();
  if (item.LoopStart() > 0) {
    item.SetLoopStart(Limit(item.LoopStart(), kLowestLoopStart, length));
    item.SetLoopEnd(Limit(item.LoopEnd(), item.LoopStart() + kShortestLoop, length));
  }
  for (std::int32_t set = 1; set <= kSets; ++set) {
    if (item.AudioStart(set) < 0) item.SetAudioStart(set, 0);
    if (item.AudioEnd(set) < 0 || item.AudioEnd(set) > length) item.SetAudioEnd(set, length);
    const float end = item.AudioEnd(set);
    if (item.Extro(set) < 0 || item.Extro(set) > end) item.SetExtro(set, end);
    item.SetIntroEnd(set, Limit(item.IntroEnd(set), 0.0f, item.Extro(set)));
    item.SetIntroStart(set, Limit(item.IntroStart(set), 0.0f, item.IntroEnd(set)));
    item.SetHookStart(set, Limit(item.HookStart(set), 0.0f, end));
    item.SetHookEnd(set, Limit(item.HookEnd(set), item.HookStart(set), end));
  }
}

bool cHDItem::LoadFromFile(const std::string& Filename, enHDFileFlags flags) try {
  Trace(kTraceLevel, ednOpens, "Start cHDItem.LoadFromFile ", Filename);
  const std::int64_t length = FileLength(Filename);
  if (length <= 0) return Exit("no such file");
  ResetMarks(*this);
  SetAudioFileName(Filename);
  SetAudioFileLength(Length32(length));
  SetAudioFileExists(true);
  SetAudioFileType(GetTypeForFile(Filename));
  if (!LoadByType(*this, Filename, flags)) return Exit("the file was not understood");
  RepairMarks(*this);
  return Finish("cHDItem.LoadFromFile");
} catch (const std::exception&) {
  return false;
}

bool cHDItem::SaveToFile(const std::string& Filename, enHDFileFlags flags, const Platform* platform) try {
  Trace(kTraceLevel, ednOpens, "Start cHDItem.SaveToFile ", Filename);
  const std::int64_t length = FileLength(Filename);
  if (length <= 0) return Exit("no such file");
  const auto standard = platform ? nullptr : DefaultPlatform();
  const Platform& used = platform ? *platform : *standard;
  SetAudioFileName(Filename);
  SetAudioFileLength(Length32(length));
  if (!SaveByType(*this, Filename, flags, used)) return Exit("nothing was written");
  if (GetTypeForFile(Filename) == aftWAV) SetAudioFileLength(Length32(FileLength(Filename)));
  cPeakFile(used.clock).UpdatePeakFileHeader(Filename, "", true);
  return Finish("cHDItem.SaveToFile");
} catch (const std::exception&) {
  return false;
}

}  // namespace qm
