#include <CLI/CLI.hpp>

#include "audio/AudioFileTypes.h"
#include "cli/CopyOptions.h"
#include "kits/sound/cAudioFormat.h"

namespace qm::cli {

namespace {

constexpr char kCopyHelp[] =
    "DEST's name tells its type: .wav, .mp3, .mp2, .ogg or .wma. What is not asked for is as in the first "
    "SOURCE.\n"
    "Several sources are joined one behind the other; --mix lays the end of each over the start of the "
    "next.\n"
    "DEST is replaced when all of it is written: a copy that fails or is stopped leaves what was there.\n"
    "The sound alone is copied: titles and marks are saved with 'quillmere tag'.\n"
    "\n"
    "Examples:\n"
    "  quillmere copy song.wav song.mp3 --bitrate 192\n"
    "  quillmere copy interview.mp3 clip.wav --start 12.5 --end 47 --auto-top 2 --normalise 90\n"
    "  quillmere copy intro.wav news.wav outro.wav programme.wav --mix 1.5 --rate 48000 --channels 2\n"
    "  quillmere copy archive.wav broadcast.mp2 --rate 48000 --bitrate 256 --json";

const std::vector<std::int32_t> kRates = {8000, 11025, 22050, 32000, 33075, 44100, 48000, 96000};

void AddSoundOptions(CLI::App& command, CopyOptions& options) {
  command
      .add_option("--normalise", options.normalise,
                  "Scale each source to PCT of full scale; up to 100 nothing clips")
      ->check(CLI::Range(0.00001, 500.0))
      ->type_name("PCT");
  command
      .add_option("--auto-top", options.autoTop,
                  "Cut the start of each source up to the first level above PCT")
      ->check(CLI::Range(0.00001, 100.0))
      ->type_name("PCT");
  command.add_option("--start", options.start, "Begin at second S of each source")
      ->check(CLI::NonNegativeNumber)
      ->type_name("S");
  command.add_option("--end", options.end, "End at second S of each source")
      ->check(CLI::NonNegativeNumber)
      ->type_name("S");
  command
      .add_option("--mix", options.mix, "Mix the last S seconds of each source with the start of the next")
      ->check(CLI::NonNegativeNumber)
      ->type_name("S");
  command.add_option("--mix-volume", options.mixVolume, "Volume of both while they are mixed; else 75")
      ->check(CLI::Range(0.00001, 100.0))
      ->type_name("PCT");
}

void AddFormatOptions(CLI::App& command, CopyOptions& options) {
  command
      .add_option("--rate", options.rate,
                  "Sample rate: 8000, 11025, 22050, 32000, 33075, 44100, 48000 or 96000")
      ->check(CLI::IsMember(kRates))
      ->type_name("N");
  command.add_option("--channels", options.channels, "1 or 2 channels")
      ->check(CLI::Range(1, 2))
      ->type_name("N");
  command.add_option("--bits", options.bits, "WAV: bits of a sample, 8, 16, 24 or 32")
      ->check(CLI::IsMember(std::vector<std::int32_t>{8, 16, 24, 32}))
      ->type_name("N");
  command
      .add_option("--bitrate", options.bitRate, "Compressed types: thousands of bits a second; else fitting")
      ->check(CLI::Range(1, 2000000))
      ->type_name("N");
}

// The parser's one list of paths is shown as what it means.
class CopyFormatter : public CLI::Formatter {
 public:
  std::string make_option_usage(const CLI::Option*) const override { return kPaths; }
  std::string make_option_name(const CLI::Option* option, bool positional) const override {
    return positional ? kPaths : CLI::Formatter::make_option_name(option, positional);
  }

 private:
  static constexpr char kPaths[] = "SOURCE... DEST";
};

// What the parser cannot know.
void CheckCopy(const CopyOptions& options) {
  if (options.paths.size() < 2)
    throw CLI::ValidationError("DEST", "is missing: a source and a destination are needed");
  const std::int32_t type = GetTypeForFile(options.paths.back());
  if (type == aftOther)
    throw CLI::ValidationError("DEST",
                               "'" + options.paths.back() + "' ends in none of .wav .mp3 .mp2 .ogg .wma");
  if (options.bits != 0 && type != aftWAV) throw CLI::ValidationError("--bits", "is for WAV only");
  if (options.bitRate != 0 && type == aftWAV)
    throw CLI::ValidationError("--bitrate", "is for compressed types only");
}

}  // namespace

Command AddCopyCommand(CLI::App& program) {
  CLI::App* app = program.add_subcommand("copy", "Copy, convert, cut, level and join audio files");
  app->footer(kCopyHelp);
  app->formatter(std::make_shared<CopyFormatter>());
  const auto options = std::make_shared<CopyOptions>();
  app->add_option("SOURCE", options->paths, "What to copy, in this order, and the file to write")
      ->required()
      ->option_text(" ");
  AddSoundOptions(*app, *options);
  AddFormatOptions(*app, *options);
  AddJson(*app, options->printing);
  app->callback([options] { CheckCopy(*options); });
  return {app, [options] { return Copy(*options); }};
}

}  // namespace qm::cli
