#include <fmt/format.h>

#include "cli/InfoReport.h"
#include "cli/ItemFile.h"
#include "cli/TerminalText.h"
#include "item/ItemFields.h"
#include "item/RiffTagNames.h"
#include "item/cHDItem.h"
#include "item/cHDItemMark.h"
#include "kits/common/Dates.h"
#include "kits/common/Text.h"
#include "kits/sound/cAudioFormat.h"

namespace qm::cli {

namespace {

constexpr std::size_t kNameWidth = 28;

// What a terminal would obey is not shown; lines of a text stand below one another.
std::string Shown(std::string_view text, std::size_t indent) {
  std::string shown;
  text = Trim(text);
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    if (start > 0) shown += '\n' + std::string(indent, ' ');
    shown += CutText(Trim(text.substr(start, end - start)), text.size());
    start = end + 1;
  }
  return shown;
}

std::string ItemRows(const cHDItem& item) {
  std::string rows;
  for (const ItemField& field : ItemFields()) {
    if (AllDefault(item, field)) continue;
    std::string values;
    for (std::int32_t index = 1; index <= field.count; ++index)
      values += (index > 1 ? ", " : "") + FieldText(item, field, index);
    rows += fmt::format("  {:<{}}{}\n", field.name, kNameWidth, Shown(values, kNameWidth + 2));
  }
  return rows;
}

std::string MarkerRows(const cHDItem& item) {
  std::string rows;
  const double rate = item.AudioFormat()->SampleRate();
  for (const auto& mark : item.Markers()) {
    const std::string at = rate > 0 ? SecondsToText(mark->StartSample() / rate, ettDuration) : "";
    rows +=
        fmt::format("  marker {:>12}{:>12}  type {:<4}flags {:<4}{:>10} samples  {}\n", mark->StartSample(),
                    at, mark->MarkerType(), mark->flags(), mark->Duration(), CutText(mark->Title(), 128));
  }
  return rows;
}

std::string ChunkRows(const ItemFileContents& contents) {
  std::string rows;
  for (const RiffChunk& chunk : contents.chunks)
    rows += fmt::format("  chunk  {:<5}{:<5}{:>16} bytes at {}\n", chunk.id, CutText(chunk.type, 4),
                        chunk.length, chunk.start);
  for (const tyRiffChunkTag& tag : contents.tags) {
    const auto name = tag.FriendlyName.empty() ? std::string(Id3FrameName(tag.TagName)) : tag.FriendlyName;
    rows += fmt::format("  {:<5}{:<5}{:<{}}{}\n", tag.ParentTag, CutText(tag.TagName, 4), name,
                        kNameWidth - 10, Shown(tag.Data, kNameWidth + 2));
  }
  return rows;
}

}  // namespace

std::string InfoTable(const std::string& path, const ItemFileContents& contents) {
  const cHDItem& item = *contents.file.item;
  std::string table = fmt::format(
      "{}\n  {}\n  {}, {} samples\n", CutText(path, path.size()), item.AudioFormat()->FormatDescription(),
      SecondsToText(contents.file.milliseconds / 1000, ettDuration, true), contents.file.frames);
  return table + ItemRows(item) + MarkerRows(item) + ChunkRows(contents);
}

}  // namespace qm::cli
