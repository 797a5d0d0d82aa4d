#include <CLI/CLI.hpp>

#include "cli/PeaksOptions.h"

namespace qm::cli {

namespace {

constexpr char kPeaksHelp[] =
    "A peak file lies in the folder Peakfiles beside its audio file and is made when there is none that\n"
    "belongs to the audio as it is now. Audio files that differ in their extension alone share one.\n"
    "A folder stands for every audio file in it and in the folders within. A bad file costs one line.\n"
    "With --check nothing is written: each file is valid, outdated or missing, and the exit status is 1\n"
    "unless all are valid.\n"
    "\n"
    "Examples:\n"
    "  quillmere peaks audiowall/\n"
    "  quillmere peaks --check --json audiowall/ new.mp3\n"
    "  quillmere peaks --force song.ogg";

}  // namespace

Command AddPeaksCommand(CLI::App& program) {
  CLI::App* app =
      program.add_subcommand("peaks", "Make or check the peak files that waveforms are drawn from");
  app->footer(kPeaksHelp);
  const auto options = std::make_shared<PeaksOptions>();
  app->add_option("FILE", options->paths, "Audio files, and folders to be looked through for such")
      ->required()
      ->type_name("");
  auto* check = app->add_flag_callback(
      "--check", [options] { options->task = eptCheck; }, "Only tell which peak files are valid");
  app->add_flag_callback(
         "--force", [options] { options->task = eptMakeAnew; }, "Make valid ones anew as well")
      ->excludes(check);
  AddJson(*app, options->printing, "Print a JSON document for each file, one a line");
  return {app, [options] { return Peaks(*options); }};
}

}  // namespace qm::cli
