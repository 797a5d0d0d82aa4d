#include <CLI/CLI.hpp>

#include "cli/Command.h"
#include "cli/PlayOptions.h"

namespace qm::cli {

namespace {

constexpr char kPlayHelp[] =
    "An ITEM is the path of an audio file (WAV, MP3, MP2, Ogg, WMA), optionally followed by fields of the "
    "item:\n"
    "  song.ogg::AudioStart=1.5,IntroEnd=12,Extro=170,AudioEnd=175\n"
    "  bed.wav::LoopStart=5,LoopEnd=20,LoopNumberLoops=3\n"
    "Times are seconds or m:ss.hh.\n"
    "\n"
    "On a terminal the player is shown live and takes keys: space plays and pauses, c cues, the left and "
    "right arrows\n"
    "seek 5 s, [ and ] change the volume, f fades out within 2 s, l leaves the loop, n goes on with the next "
    "item,\n"
    "q quits. Elsewhere each event is a line, and playing runs to the end.\n"
    "\n"
    "Examples:\n"
    "  quillmere play song.ogg jingle.wav --volume 80\n"
    "  quillmere play song.ogg --device 'Studio Output' --hook\n"
    "  quillmere play a.wav b.mp3 --device wav:joined.wav --rate 48000 --float\n"
    "  quillmere play song.ogg --device null --json";

// What belongs to the file that wav:PATH writes.
const char* const kFileOptions[] = {"--rate", "--channels", "--float"};

void AddFileOptions(CLI::App& command, OutputChoice& output) {
  command.add_option("--rate", output.format.sampleRate, "wav:PATH: sample rate; else the first item's")
      ->check(CLI::Range(1000, 384000))
      ->type_name("HZ");
  command.add_option("--channels", output.format.channels, "wav:PATH: 1 or 2 channels; else 2")
      ->check(CLI::Range(1, 2))
      ->type_name("N");
  command.add_flag_callback(
      "--float", [&output] { output.samples = eskFloat; }, "wav:PATH: 32-bit float samples; else 16-bit");
}

void AddOptions(CLI::App& command, PlayOptions& options) {
  command.add_option("ITEM", options.items, "What to play, in this order")->required()->type_name("");
  command
      .add_option(
          "--device", options.output.device,
          "Output: a name or number of 'quillmere devices', null, or wav:PATH; else the settings' device of "
          "player 1")
      ->type_name("NAME");
  command
      .add_option("--volume", options.wishes.volume, "Volume in per cent; else the item's or the settings'")
      ->check(CLI::Range(0, 100))
      ->type_name("N");
  command.add_option("--profile", options.profile, "Profile of the audio settings; else .default")
      ->type_name("NAME");
  command.add_option("--events", options.eventsPath, "Write every player event to FILE, a JSON line each")
      ->type_name("FILE");
  command.add_option("--speed", options.wishes.speed, "Play this many times as fast, pitch and tempo")
      ->check(CLI::Range(0.1, 10.0))
      ->type_name("X");
  command.add_option("--stretch", options.wishes.stretch, "Make the audio last this many times as long")
      ->check(CLI::Range(0.1, 10.0))
      ->type_name("R");
  command.add_option("--fade", options.wishes.fadeSeconds, "Fade out over the last SECONDS of each item")
      ->check(CLI::NonNegativeNumber)
      ->type_name("SECONDS");
  command.add_flag("--hook", options.wishes.hook, "Play only the hooks of items that have one");
  AddJson(command, options.printing, "Print every player event as a JSON line, and nothing else");
  AddFileOptions(command, options.output);
}

// What the parser cannot know: options that need another.
void CheckPlay(const CLI::App& command, const PlayOptions& options) {
  if (options.output.device == "wav:") throw CLI::ValidationError("--device", "wav: needs a path behind it");
  for (const char* name : kFileOptions)
    if (command.count(name) > 0 && !PlayOutput::IsFile(options.output.device))
      throw CLI::ValidationError(name, "is for --device wav:PATH only");
}

}  // namespace

Command AddPlayCommand(CLI::App& program) {
  CLI::App* app = program.add_subcommand("play", "Play items one after another through one player");
  app->footer(kPlayHelp);
  const auto options = std::make_shared<PlayOptions>();
  AddOptions(*app, *options);
  app->callback([app, options] { CheckPlay(*app, *options); });
  return {app, [options] { return Play(*options); }};
}

}  // namespace qm::cli
