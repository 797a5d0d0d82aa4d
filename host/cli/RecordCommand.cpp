#include <CLI/CLI.hpp>

#include "audio/AudioFileTypes.h"
#include "cli/Command.h"
#include "cli/RecordOptions.h"

namespace qm::cli {

namespace {

constexpr char kRecordHelp[] =
    "The type follows from FILE's extension: wav, mp3, mp2, ogg, wma. An old file is replaced.\n"
    "While recording, FILE can be read up to the last second, whatever becomes of the program.\n"
    "\n"
    "On a terminal the level and the time are shown live, and keys are taken: space pauses and goes on, s "
    "saves and\n"
    "stops, d discards after a question. Ctrl-C saves, and so does every other signal that ends a program.\n"
    "\n"
    "Examples:\n"
    "  quillmere record interview.wav\n"
    "  quillmere record news.mp3 --device 'Studio Input' --bitrate 192 --seconds 180\n"
    "  quillmere record call.ogg --trigger 2000 --trigger-time 0.2 --channels 1\n"
    "  quillmere record copy.wav --device wav:source.ogg --json";

struct Wishes {
  std::int32_t rate = 44100;
  std::int32_t channels = 2;
  std::int32_t bitRate = 128;  // thousands of bits a second
  std::int32_t bits = 16;
};

void AddFormatOptions(CLI::App& command, Wishes& wishes) {
  command.add_option("--rate", wishes.rate, "Sample rate of the file, below 48000; else 44100")
      ->check(CLI::Range(1000, 47999))
      ->type_name("HZ");
  command.add_option("--channels", wishes.channels, "1 or 2 channels; else 2")
      ->check(CLI::Range(1, 2))
      ->type_name("N");
  command.add_option("--bits", wishes.bits, "WAV: bits of a sample, 16, 24 or 32; else 16")
      ->check(CLI::IsMember(std::vector<std::int32_t>{16, 24, 32}))
      ->type_name("N");
  command.add_option("--bitrate", wishes.bitRate, "Compressed types: thousands of bits a second; else 128")
      ->check(CLI::Range(8, 2000))
      ->type_name("N");
}

void AddOptions(CLI::App& command, RecordOptions& options, Wishes& wishes) {
  command.add_option("FILE", options.path, "The file to record into")->required()->type_name("");
  command
      .add_option(
          "--device", options.device,
          "Input: a name or number of 'quillmere devices', or wav:PATH for an audio file in its place, "
          "read as fast as the processor allows; else the system's default input")
      ->type_name("NAME");
  command
      .add_option("--profile", options.profile,
                  "Profile of the audio settings, whose input is taken without --device; where it records "
                  "locally, a FILE on the network is transferred at the end")
      ->type_name("NAME");
  command.add_option("--seconds", options.seconds, "Save and stop when so much is recorded")
      ->check(CLI::Range(0.001, 1e7))
      ->type_name("S");
  command
      .add_option("--trigger", options.triggerLevel,
                  "Begin where the input first reaches LEVEL, a 16-bit peak of 1 to 32767")
      ->check(CLI::Range(1, 32767))
      ->type_name("LEVEL");
  command
      .add_option("--trigger-time", options.triggerSeconds,
                  "With --trigger: the level must hold for S seconds, up to 30; their sound is recorded too")
      ->check(CLI::Range(0.0, 30.0))
      ->type_name("S");
  AddFormatOptions(command, wishes);
  AddJson(command, options.printing);
}

// What the parser cannot know: options that need another.
void Check(const CLI::App& command, RecordOptions& options, const Wishes& wishes) {
  const std::int32_t type = GetTypeForFile(options.path);
  if (type == aftOther)
    throw CLI::ValidationError("FILE", "'" + options.path + "' names no type: wav, mp3, mp2, ogg or wma");
  if (options.device == "wav:") throw CLI::ValidationError("--device", "wav: needs a path behind it");
  if (command.count("--trigger-time") > 0 && command.count("--trigger") == 0)
    throw CLI::ValidationError("--trigger-time", "is for --trigger only");
  if (command.count("--bits") > 0 && type != aftWAV) throw CLI::ValidationError("--bits", "is for WAV only");
  if (command.count("--bitrate") > 0 && type == aftWAV)
    throw CLI::ValidationError("--bitrate", "is for compressed types only");
  cAudioFormat& format = options.format;
  format.SetFormatType(type);
  format.SetSampleRate(wishes.rate);
  format.SetChannels(wishes.channels);
  format.SetWAVFormatTag(type == aftWAV ? wftPCM : 0);
  format.SetBitsPerSample(type == aftWAV ? wishes.bits : 0);
  format.SetBitRate(type == aftWAV ? 0 : wishes.bitRate * 1000);
}

}  // namespace

Command AddRecordCommand(CLI::App& program) {
  CLI::App* app = program.add_subcommand("record", "Record an input into an audio file");
  app->footer(kRecordHelp);
  const auto options = std::make_shared<RecordOptions>();
  const auto wishes = std::make_shared<Wishes>();
  AddOptions(*app, *options, *wishes);
  app->callback([app, options, wishes] { Check(*app, *options, *wishes); });
  return {app, [options] { return Record(*options); }};
}

}  // namespace qm::cli
