#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include <nlohmann/json.hpp>

#include "cli/Command.h"
#include "cli/Failure.h"
#include "kits/sound/engine/AudioEngine.h"

namespace qm::cli {

namespace {

using Json = nlohmann::ordered_json;

Json Listing(const std::vector<SoundDevice>& devices) {
  Json list = Json::array();
  for (const SoundDevice& device : devices)
    list.push_back({{"number", list.size() + 1}, {"name", device.name}});
  return list;
}

void Print(const char* heading, const std::vector<SoundDevice>& devices) {
  fmt::print("{}\n", heading);
  if (devices.empty()) fmt::print("      none found\n");
  for (std::size_t i = 0; i < devices.size(); ++i) fmt::print("  {:>2}  {}\n", i + 1, devices[i].name);
}

std::int32_t ListDevices(enPrinting printing) {
  const SoundHardware hardware = MachineSound();
  const auto outputs = hardware.list->Outputs(), inputs = hardware.list->Inputs();
  if (printing == epJSON) {
    const Json document{{"outputs", Listing(outputs)}, {"inputs", Listing(inputs)}};
    fmt::print("{}\n", document.dump(2, ' ', false, Json::error_handler_t::replace));
    return exsDone;
  }
  Print("Outputs", outputs);
  Print("Inputs", inputs);
  fmt::print(
      "Without a device\n"
      "  null      a clock: everything happens in real time, without sound\n"
      "  wav:PATH  a WAV file, written as fast as the processor allows\n");
  return exsDone;
}

}  // namespace

Command AddDevicesCommand(CLI::App& program) {
  CLI::App* app = program.add_subcommand("devices", "List the sound outputs and inputs");
  const auto printing = std::make_shared<enPrinting>(epForPeople);
  AddJson(*app, *printing);
  return {app, [printing] { return ListDevices(*printing); }};
}

}  // namespace qm::cli
