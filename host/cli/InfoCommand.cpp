#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include <nlohmann/json.hpp>

#include "cli/Command.h"
#include "cli/Failure.h"
#include "cli/ItemFile.h"
#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "kits/common/Dates.h"
#include "kits/common/Numbers.h"
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

bool AllDefault(const cHDItem& item, const ItemField& field) {
  for (std::int32_t index = 1; index <= field.count; ++index)
    if (!IsDefault(item, field, index)) return false;
  return true;
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

void PrintJSON(const std::string& path, const ItemFile& file) {
  const Json document{{"file", path},
                      {"format", FormatValues(file)},
                      {"item", ItemValues(*file.item)},
                      {"markers", Json::array()},
                      {"chunks", Json::array()},
                      {"tags", Json::array()}};
  fmt::print("{}\n", document.dump(2, ' ', false, Json::error_handler_t::replace));
}

void PrintForPeople(const std::string& path, const ItemFile& file) {
  const cHDItem& item = *file.item;
  fmt::print("{}\n  {}\n  {}, {} samples\n", path, item.AudioFormat()->FormatDescription(),
             SecondsToText(file.milliseconds / 1000, ettDuration, true), file.frames);
  for (const ItemField& field : ItemFields()) {
    if (AllDefault(item, field)) continue;
    std::string values;
    for (std::int32_t index = 1; index <= field.count; ++index)
      values += (index > 1 ? ", " : "") + FieldText(item, field, index);
    fmt::print("  {:<18}{}\n", field.name, values);
  }
}

std::int32_t TellAbout(const std::string& path, enPrinting printing) {
  ItemFile file;
  std::string errorText;
  if (!LoadItemFile(path, file, errorText)) {
    TellFailure(errorText);
    return exsFailed;
  }
  if (printing == epJSON)
    PrintJSON(path, file);
  else
    PrintForPeople(path, file);
  return exsDone;
}

struct InfoOptions {
  std::string path;
  enPrinting printing = epForPeople;
};

}  // namespace

Command AddInfoCommand(CLI::App& program) {
  CLI::App* app = program.add_subcommand("info", "Tell about an audio file");
  const auto options = std::make_shared<InfoOptions>();
  app->add_option("FILE", options->path, "The audio file")->required()->type_name("");
  AddJson(*app, options->printing);
  return {app, [options] { return TellAbout(options->path, options->printing); }};
}

}  // namespace qm::cli
