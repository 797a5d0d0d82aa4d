#include <CLI/CLI.hpp>

#include <charconv>

#include "cli/WaveOptions.h"
#include "controls/uWaveform.h"

namespace qm::cli {

namespace {

constexpr char kWaveHelp[] =
    "FILE is the path of an audio file, optionally followed by fields of the item:\n"
    "  song.ogg::IntroEnd=12,Extro=170\n"
    "Shown are the waveform, the item's intros, hooks, extros and loop, markers of a marker file beside the\n"
    "audio, and above it a bar with the whole file and the part that is shown. Its peak file is made when\n"
    "there is none. Times are seconds.\n"
    "\n"
    "Examples:\n"
    "  quillmere wave song.ogg --png song.png\n"
    "  quillmere wave song.ogg::IntroEnd=12,Extro=170 --png intro.png --end 30 --position 4.5\n"
    "  quillmere wave talk.mp3 --png cut.png --highlight 61-64.5 --zoom highlight --size 800x150";

constexpr std::int32_t kLargest = 8192;

// All of the text, as a number.
template <class T, class... Base>
bool Parse(std::string_view text, T& value, Base... base) {
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, value, base...);
  return read.ec == std::errc() && read.ptr == end;
}

template <class T>
bool ParseTwo(std::string_view text, char between, T& first, T& second) {
  const auto at = text.find(between);
  return at != text.npos && Parse(text.substr(0, at), first) && Parse(text.substr(at + 1), second);
}

void TakeSize(const std::string& text, WaveOptions& options) {
  const auto fits = [](std::int32_t size) { return size >= 1 && size <= kLargest; };
  if (!ParseTwo(text, 'x', options.width, options.height) || !fits(options.width) || !fits(options.height))
    throw CLI::ValidationError("--size", "'" + text + "' is no WIDTHxHEIGHT of 1 to 8192 pixels each");
}

void TakeHighlight(const std::string& text, WaveOptions& options) {
  double start = 0, end = 0;
  if (!ParseTwo(text, '-', start, end) || !(start >= 0 && start < end && end <= 1e9))
    throw CLI::ValidationError("--highlight", "'" + text + "' is no START-END in seconds");
  options.highlight = {start, end};
}

void TakeZoom(const std::string& text, WaveOptions& options) {
  constexpr std::pair<const char*, void (uWaveform::*)(bool)> kWays[] = {
      {"highlight", &uWaveform::ZoomToSelection},
      {"highlight-start", &uWaveform::ZoomToSelectionStart},
      {"highlight-end", &uWaveform::ZoomToSelectionEnd}};
  for (const auto& [name, way] : kWays)
    if (text == name) options.zoom = way;
  if (options.zoom) return;
  if (!Parse(text, options.zoomIns) || options.zoomIns < 0 || options.zoomIns > 100)
    throw CLI::ValidationError("--zoom", "'" + text +
                                             "' is neither 0 to 100 nor highlight, highlight-start or "
                                             "highlight-end");
}

void TakeColour(const char* option, const std::string& text, std::int32_t& colour) {
  std::uint32_t rgb = 0;
  if (text.size() != 7 || text[0] != '#' || !Parse(std::string_view(text).substr(1), rgb, 16))
    throw CLI::ValidationError(option, "'" + text + "' is no colour: #RRGGBB is meant");
  colour = static_cast<std::int32_t>((rgb & 0xFF) << 16 | (rgb & 0xFF00) | rgb >> 16);
}

// Options that are texts to the parser.
struct WaveTexts {
  std::string item, size, highlight, zoom, lineColour, fillColour, backColour;
};

void AddOptions(CLI::App& command, WaveOptions& options, WaveTexts& texts) {
  command.add_option("FILE", texts.item, "What to draw")->required()->type_name("");
  command.add_option("--png", options.png, "The picture to write")->required()->type_name("OUT");
  command.add_option("--size", texts.size, "Width and height in pixels; else 1920x200")->type_name("WxH");
  const auto seconds = [&command](const char* name, std::optional<double>& value, const char* help) {
    command.add_option(name, value, help)->check(CLI::Range(0.0, 1e9))->type_name("S");
  };
  seconds("--start", options.start, "Show the audio from here");
  seconds("--end", options.end, "Show it up to here");
  seconds("--position", options.position, "Draw the play cursor here");
  command.add_option("--highlight", texts.highlight, "Highlight a selection")->type_name("S-E");
  command
      .add_option(
          "--zoom", texts.zoom,
          "Zoom in N times to the middle half of what is shown, or to the highlight, highlight-start or "
          "highlight-end")
      ->type_name("N");
  command.add_option("--line-colour", texts.lineColour, "Colour of the outline")->type_name("#RRGGBB");
  command.add_option("--fill-colour", texts.fillColour, "Colour of the waveform")->type_name("#RRGGBB");
  command.add_option("--back-colour", texts.backColour, "Colour behind it")->type_name("#RRGGBB");
  command.add_flag_callback(
      "--single", [&options] { options.drawType = dwtSingle; }, "Draw it single-sided, from the bottom");
  command.add_flag("--auto-scale", options.autoScale, "Scale the louder channel to full height");
  command.add_flag("--no-bar", options.noBar, "Leave out the bar with the whole file");
  AddJson(command, options.printing);
}

void TakeTexts(const WaveTexts& texts, WaveOptions& options) {
  std::string errorText;
  if (!ParseItemArgument(texts.item, options.item, errorText)) throw CLI::ValidationError("FILE", errorText);
  if (!texts.size.empty()) TakeSize(texts.size, options);
  if (!texts.highlight.empty()) TakeHighlight(texts.highlight, options);
  if (!texts.zoom.empty()) TakeZoom(texts.zoom, options);
  if (!texts.lineColour.empty()) TakeColour("--line-colour", texts.lineColour, options.lineColour);
  if (!texts.fillColour.empty()) TakeColour("--fill-colour", texts.fillColour, options.fillColour);
  if (!texts.backColour.empty()) TakeColour("--back-colour", texts.backColour, options.backColour);
  if (options.end && *options.end <= options.start.value_or(0))
    throw CLI::ValidationError("--end", "lies before what is shown begins");
  if (options.zoom && !options.highlight)
    throw CLI::ValidationError("--zoom", "there is no --highlight to zoom to");
}

}  // namespace

Command AddWaveCommand(CLI::App& program) {
  CLI::App* app = program.add_subcommand("wave", "Draw an audio file's waveform as a picture");
  app->footer(kWaveHelp);
  const auto options = std::make_shared<WaveOptions>();
  const auto texts = std::make_shared<WaveTexts>();
  AddOptions(*app, *options, *texts);
  app->callback([options, texts] { TakeTexts(*texts, *options); });
  return {app, [options] { return Wave(*options); }};
}

}  // namespace qm::cli
