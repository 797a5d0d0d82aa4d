#include "cli/CommandLine.h"

#include <CLI/CLI.hpp>

#include "cli/Command.h"
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
    "  quillmere tag song.ogg 'ItemTitle=Blue Skies' Year=1958\n"
    "  quillmere copy intro.wav song.ogg joined.wav --mix 2 --normalise 90\n"
    "  quillmere wave song.ogg::IntroEnd=12.5 --png song.png --highlight 60-75\n"
    "'quillmere COMMAND --help' tells more about a command.";

// In the order in which --help lists them.
Command (*const kCommands[])(CLI::App&) = {AddPlayCommand,  AddDevicesCommand, AddInfoCommand,
                                           AddTagCommand,   AddCopyCommand,    AddRecordCommand,
                                           AddPeaksCommand, AddWaveCommand};

// One line, whatever the parser has to say.
std::int32_t TellUsage(const CLI::ParseError& error) {
  TellFailure(std::string(error.what()) + " (--help tells how)");
  return exsUsage;
}

}  // namespace

std::int32_t Run(int argc, char** argv) {
  CLI::App program("Plays and copies a radio station's audio items: the command line of qmSoundCore.",
                   "quillmere");
  program.footer(kExamples);
  program.set_version_flag("--version", "quillmere " QM_VERSION);
  std::vector<Command> commands;
  for (const auto add : kCommands) commands.push_back(add(program));
  try {
    program.parse(argc, argv);
    if (program.get_subcommands().empty()) throw CLI::RequiredError("A command");
  } catch (const CLI::ParseError& error) {
    return error.get_exit_code() == 0 ? program.exit(error) : TellUsage(error);
  }
  for (const Command& command : commands)
    if (*command.app) return command.run();
  return exsUsage;
}

}  // namespace qm::cli
