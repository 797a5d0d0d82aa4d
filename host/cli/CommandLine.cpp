#include "cli/CommandLine.h"

#include <CLI/CLI.hpp>

#include "cli/Commands.h"
#include "cli/Failure.h"

namespace qm::cli {

namespace {

constexpr char kExamples[] =
    "Examples:\n"
    "  quillmere play song.ogg jingle.wav\n"
    "  quillmere play 'song.ogg::IntroEnd=12.5,Extro=170' news.mp3 --fade 4\n"
    "  quillmere play bed.wav --device wav:out.wav --events events.jsonl\n"
    "  quillmere devices\n"
    "  quillmere info --json song.ogg\n"
    "'quillmere COMMAND --help' tells more about a command.";

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

CLI::App* AddPlay(CLI::App& program, PlayOptions& options, bool& json) {
  CLI::App* command = program.add_subcommand("play", "Play items one after another through one player");
  command->footer(kPlayHelp);
  command->add_option("ITEM", options.items, "What to play, in this order")->required()->type_name("");
  command
      ->add_option(
          "--device", options.output.device,
          "Output: a name or number of 'quillmere devices', null, or wav:PATH; else the settings' device of "
          "player 1")
      ->type_name("NAME");
  command
      ->add_option("--volume", options.wishes.volume, "Volume in per cent; else the item's or the settings'")
      ->check(CLI::Range(0, 100))
      ->type_name("N");
  command->add_option("--profile", options.profile, "Profile of the audio settings; else .default")
      ->type_name("NAME");
  command->add_option("--events", options.eventsPath, "Write every player event to FILE, a JSON line each")
      ->type_name("FILE");
  command->add_option("--speed", options.wishes.speed, "Play this many times as fast, pitch and tempo")
      ->check(CLI::Range(0.1, 10.0))
      ->type_name("X");
  command->add_option("--stretch", options.wishes.stretch, "Make the audio last this many times as long")
      ->check(CLI::Range(0.1, 10.0))
      ->type_name("R");
  command->add_option("--fade", options.wishes.fadeSeconds, "Fade out over the last SECONDS of each item")
      ->check(CLI::NonNegativeNumber)
      ->type_name("SECONDS");
  command->add_flag("--hook", options.wishes.hook, "Play only the hooks of items that have one");
  command->add_flag("--json", json, "Print every player event as a JSON line, and nothing else");
  AddFileOptions(*command, options.output);
  return command;
}

// What the parser cannot know: options that need another.
void CheckPlay(const CLI::App& command, const PlayOptions& options) {
  if (options.output.device == "wav:") throw CLI::ValidationError("--device", "wav: needs a path behind it");
  for (const char* name : kFileOptions)
    if (command.count(name) > 0 && !PlayOutput::IsFile(options.output.device))
      throw CLI::ValidationError(name, "is for --device wav:PATH only");
}

// One line, whatever the parser has to say.
std::int32_t TellUsage(const CLI::ParseError& error) {
  TellFailure(std::string(error.what()) + " (--help tells how)");
  return exsUsage;
}

}  // namespace

std::int32_t Run(int argc, char** argv) {
  CLI::App program("Plays a radio station's audio items: the command line of qmSoundCore.", "quillmere");
  program.footer(kExamples);
  program.set_version_flag("--version", "quillmere " QM_VERSION);

  PlayOptions play;
  bool json = false;
  std::string infoPath;
  CLI::App* playCommand = AddPlay(program, play, json);
  CLI::App* devicesCommand = program.add_subcommand("devices", "List the sound outputs and inputs");
  devicesCommand->add_flag("--json", json, "Print one JSON document");
  CLI::App* infoCommand = program.add_subcommand("info", "Tell about an audio file");
  infoCommand->add_option("FILE", infoPath, "The audio file")->required()->type_name("");
  infoCommand->add_flag("--json", json, "Print one JSON document");

  try {
    program.parse(argc, argv);
    if (program.get_subcommands().empty()) throw CLI::RequiredError("A command");
    if (*playCommand) CheckPlay(*playCommand, play);
  } catch (const CLI::ParseError& error) {
    return error.get_exit_code() == 0 ? program.exit(error) : TellUsage(error);
  }
  const enPrinting printing = json ? epJSON : epForPeople;
  if (*devicesCommand) return ListDevices(printing);
  if (*infoCommand) return TellAbout(infoPath, printing);
  play.printing = printing;
  return Play(play);
}

}  // namespace qm::cli
