#include <nlohmann/json.hpp>

#include "cli/InfoReport.h"
#include "cli/ItemFile.h"
#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "item/cHDItemMark.h"
#include "kits/sound/cAudioFormat.h"

namespace qm::cli {

namespace {

using Json = nlohmann::ordered_json;

Json FieldValue(const cHDItem& item, const ItemField& field, std::int32_t index) {
  if (field.IsText()) return field.text(item, index);
  if (field.kind == ifkFlag) return field.number(item, index) != 0;
  // By way of the text a single keeps its own few digits.
  return Json::parse(FieldText(item, field, index));
}

Json ItemValues(const cHDItem& item) {
  Json values = Json::object();
  for (const ItemField& field : ItemFields()) {
    if (AllDefault(item, field)) continue;
    if (field.count == 1) {
      values[field.name] = FieldValue(item, field, 1);
      continue;
    }
    Json& set = values[field.name] = Json::array();
    for (std::int32_t index = 1; index <= field.count; ++index) set.push_back(FieldValue(item, field, index));
  }
  return values;
}

Json FormatValues(const ItemFile& file) {
  const cAudioFormat& format = *file.item->AudioFormat();
  Json values{{"FormatDescription", format.FormatDescription()},
              {"FormatType", format.FormatType()},
              {"SampleRate", format.SampleRate()},
              {"Channels", format.Channels()}};
  const std::pair<const char*, std::int32_t> whereTold[] = {{"BitsPerSample", format.BitsPerSample()},
                                                            {"BitRate", format.BitRate()},
                                                            {"WAVFormatTag", format.WAVFormatTag()}};
  for (const auto& [name, value] : whereTold)
    if (value != 0) values[name] = value;
  if (!format.WMAProfile().empty()) values["WMAProfile"] = format.WMAProfile();
  values["NumberSamples"] = file.frames;
  values["LengthMilliseconds"] = file.milliseconds;
  return values;
}

Json MarkerValues(const cHDItem& item) {
  Json markers = Json::array();
  for (const auto& mark : item.Markers())
    markers.push_back({{"Guid", mark->Guid()},
                       {"Title", mark->Title()},
                       {"StartSample", mark->StartSample()},
                       {"Duration", mark->Duration()},
                       {"MarkerType", mark->MarkerType()},
                       {"flags", mark->flags()},
                       {"MarkerColour", mark->MarkerColour()}});
  return markers;
}

Json ChunkValues(const std::vector<RiffChunk>& all) {
  Json chunks = Json::array();
  for (const RiffChunk& chunk : all)
    chunks.push_back(
        {{"Name", chunk.id}, {"Type", chunk.type}, {"StartOfData", chunk.start}, {"Length", chunk.length}});
  return chunks;
}

Json TagValues(const std::vector<tyRiffChunkTag>& all) {
  Json tags = Json::array();
  for (const tyRiffChunkTag& tag : all)
    tags.push_back({{"ParentTag", tag.ParentTag},
                    {"TagName", tag.TagName},
                    {"FriendlyName", tag.FriendlyName},
                    {"Data", tag.Data}});
  return tags;
}

}  // namespace

std::string InfoJSON(const std::string& path, const ItemFileContents& contents, enInfoDocument document) {
  const cHDItem& item = *contents.file.item;
  const Json values{{"file", path},
                    {"format", FormatValues(contents.file)},
                    {"item", ItemValues(item)},
                    {"markers", MarkerValues(item)},
                    {"chunks", ChunkValues(contents.chunks)},
                    {"tags", TagValues(contents.tags)}};
  return values.dump(document == eidAlone ? 2 : -1, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace qm::cli
