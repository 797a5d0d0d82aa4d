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
    "Items follow each other at their ends; with --list each begins when the one before reaches its extro.\n"
    "On a terminal the player is shown live and takes keys: space plays and pauses, c cues, the left and "
    "right arrows\n"
    "seek 5 s, [ and ] change the volume, f fades out within 2 s, l leaves the loop, n goes on with the next "
    "item,\n"
    "q quits; with --list only space, c, [, ] and q. Elsewhere each event is a line, and playing runs to the "
    "end.\n"
    "\n"
    "--desk shows several players side by side and the items as a list below. Up and down choose an item, "
    "Enter cues it\n"
    "on a free player, 1 to 9 on that player, p plays it, a plays all that is cued. F1 to F4 play, pause, "
    "cue "
    "and close\n"
    "player 1, F5 to F8 player 2, F9 to F12 player 3, with shift players 4 to 6 (below six players, Shift+F9 "
    "to F12 work\n"
    "the recorder); F13 to F16 player 4. With alt the chosen item is loaded first (Alt+F1 plays it, Alt+F3 "
    "cues it), with\n"
    "control F1 and F4 seek 5 s back and on, F3 to the start. A terminal or desktop may keep some of these "
    "keys to itself,\n"
    "or send F13 for Shift+F1: what it sends counts. Left and right choose a player for space (play, pause), "
    "c (cue),\n"
    "x (close), f (fade), [ and ] (volume). q leaves, and asks first while something is on the air.\n"
    "\n"
    "--playlogs adds a line of tag text to FILE as each item that was played closes: what, when, how far "
    "into "
    "it, on which\n"
    "player, for whom. With --list each entry leaves its line, and behind them the list as a whole (Flags "
    "16384).\n"
    "\n"
    "Examples:\n"
    "  quillmere play song.ogg jingle.wav --volume 80\n"
    "  quillmere play --list news.mp3 song.ogg::Extro=170 jingle.wav --playlogs plays.log\n"
    "  quillmere play --desk *.wav --players 4\n"
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

void AddManner(CLI::App& command, PlayOptions& options) {
  command.add_flag_callback(
      "--list", [&options] { options.manner = epmList; },
      "Play the items as one running order: each starts at the extro of the one before");
  command.add_flag_callback(
      "--desk", [&options] { options.manner = epmDesk; },
      "Work several players by hand, the items waiting in a list");
  command.add_option("--players", options.players, "Players of the desk; else the profile's, or 4")
      ->check(CLI::Range(1, 99))
      ->type_name("N");
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
  command
      .add_option("--playlogs", options.playLogsPath,
                  "Add the play log record of each play to FILE, a line each")
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
  AddManner(command, options);
  AddJson(command, options.printing, "Print every player event as a JSON line, and nothing else");
  AddFileOptions(command, options.output);
}

const char* const kNotAtTheDesk[] = {"--list", "--json", "--speed", "--stretch", "--fade", "--hook"};

// What the parser cannot know: options that need another.
void CheckPlay(const CLI::App& command, PlayOptions& options) {
  // Several players are of use to somebody who works them.
  if (command.count("--desk") + command.count("--players") > 0) {
    for (const char* name : kNotAtTheDesk)
      if (command.count(name) > 0) throw CLI::ValidationError(name, "does not go with the desk");
    if (PlayOutput::IsFile(options.output.device))
      throw CLI::ValidationError("--device", "the desk needs an output that keeps time");
    options.manner = epmDesk;
  }
  if (options.manner == epmList && command.count("--fade") > 0)
    throw CLI::ValidationError("--fade", "does not go with --list: a list hands over at the extro");
  if (options.output.device == "wav:") throw CLI::ValidationError("--device", "wav: needs a path behind it");
  for (const char* name : kFileOptions)
    if (command.count(name) > 0 && !PlayOutput::IsFile(options.output.device))
      throw CLI::ValidationError(name, "is for --device wav:PATH only");
}

}  // namespace

Command AddPlayCommand(CLI::App& program) {
  CLI::App* app =
      program.add_subcommand("play", "Play items: one after another, as a running order, or by hand");
  app->footer(kPlayHelp);
  const auto options = std::make_shared<PlayOptions>();
  AddOptions(*app, *options);
  app->callback([app, options] { CheckPlay(*app, *options); });
  return {app, [options] { return Play(*options); }};
}

}  // namespace qm::cli
