// Any bytes as a WAV file: its chunks and tags walked, the item in it loaded, saved and loaded again. The
// first byte chooses the carriers.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "item/ItemMetadata.h"
#include "item/RiffSource.h"
#include "item/RiffWalk.h"
#include "item/cHDItem.h"
#include "item/cRiffReader.h"
#include "kits/common/Clock.h"
#include "kits/common/Text.h"
#include "kits/sound/Platform.h"

namespace {

using namespace qm;

void Require(bool kept) {
  if (!kept) std::abort();
}

class Memory : public RiffTarget {
 public:
  explicit Memory(std::string content) : bytes(std::move(content)) {}
  std::int64_t Size() const override { return static_cast<std::int64_t>(bytes.size()); }
  std::size_t ReadAt(std::int64_t position, void* out, std::size_t count) const override {
    if (position < 0 || position >= Size()) return 0;
    count = std::min(count, bytes.size() - static_cast<std::size_t>(position));
    std::memcpy(out, bytes.data() + position, count);
    return count;
  }
  bool WriteAt(std::int64_t position, std::string_view part) override {
    Require(position >= 0 && position <= Size());
    const auto at = static_cast<std::size_t>(position);
    bytes.replace(at, std::min(part.size(), bytes.size() - at), part);
    return true;
  }
  bool Flush() override { return true; }
  std::string bytes;
};

RiffForm Walk(const Memory& file) {
  RiffForm form;
  if (!WalkRiff(file, rxForm, form)) return {};
  Require(form.chunks.size() <= kMostRiffChunks && form.statedEnd <= file.Size());
  std::int64_t end = 0;
  for (const RiffChunk& chunk : form.chunks) {
    Require(chunk.Head() >= end && chunk.length >= 0 && chunk.End() <= file.Size());
    end = chunk.End();
  }
  return form;
}

bool IsOurs(const RiffChunk& chunk) {
  return EqualIgnoringCase(chunk.id, "cart") || EqualIgnoringCase(chunk.id, "bext") ||
         EqualIgnoringCase(chunk.id, "ds64");
}

// The chunks of others, in front of what was added.
void RequireOthersKept(const Memory& before, const Memory& after) {
  const RiffForm old = Walk(before), now = Walk(after);
  Require(now.chunks.size() >= old.chunks.size());
  for (std::size_t i = 0; i < old.chunks.size(); ++i) {
    const RiffChunk &was = old.chunks[i], &is = now.chunks[i];
    Require(was.start == is.start && was.length == is.length && was.id == is.id);
    const auto length = static_cast<std::size_t>(was.length);
    Require(IsOurs(was) || before.Read(was.start, length) == after.Read(is.start, length));
  }
}

void LoadItem(cHDItem& item, const Memory& file, enHDFileFlags flags) {
  ResetMarks(item);
  LoadItemWave(item, file, flags);
  RepairMarks(item);
  for (std::int32_t set = 1; set <= 3; ++set) {
    Require(item.AudioStart(set) >= 0 && item.AudioEnd(set) <= item.TotalLength());
    Require(item.Extro(set) <= item.AudioEnd(set) && item.IntroEnd(set) <= item.Extro(set));
    Require(item.IntroStart(set) <= item.IntroEnd(set) && item.HookEnd(set) <= item.AudioEnd(set));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr enHDFileFlags kFlags[] = {llfAutoDetect, llfBext,      llfCartChunk,
                                      llfRCS,        llfQuillmere, llfCartChunk | llfCopyrightFromTitle};
  const enHDFileFlags flags = kFlags[data[0] % std::size(kFlags)];
  const Memory file(std::string(reinterpret_cast<const char*>(data + 1), size - 1));
  Walk(file);
  cRiffReader reader;
  reader.LoadFromSource(file, true, true);
  cHDItem item;
  LoadItem(item, file, flags);
  Platform platform;
  platform.clock = SystemClock();
  Memory saved(file.bytes);
  PrepareItemForSave(item, saved, llfQuillmere, platform);
  const bool cart = SaveItemCart(item, saved, llfQuillmere), bext = SaveItemBext(item, saved, llfQuillmere);
  if (!cart && !bext) return 0;
  RequireOthersKept(file, saved);
  // Saved once more, it is the same.
  Memory again(saved.bytes);
  SaveItemCart(item, again, llfQuillmere);
  SaveItemBext(item, again, llfQuillmere);
  Require(!cart || !bext || again.bytes == saved.bytes);
  cHDItem back;
  LoadItem(back, saved, llfAutoDetect);
  return 0;
}
