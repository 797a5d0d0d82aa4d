#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include <nlohmann/json.hpp>

#include "cli/AudioFolders.h"
#include "cli/Command.h"
#include "cli/Failure.h"
#include "cli/TagFile.h"
#include "cli/TerminalText.h"
#include "kits/common/Files.h"

namespace qm::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr char kTagHelp[] =
    "Field names are those that 'quillmere info' shows; indexed ones as Extro2 or ArtistName3.\n"
    "A folder stands for every audio file in it and in the folders within. A file whose name holds '=' is\n"
    "taken as a file when it exists.\n"
    "\n"
    "What files can hold:\n"
    "  WAV   bext: ItemTitle or ItemDescription (256 bytes), Originator, OriginatorReference,\n"
    "        OriginationDate, OriginationTime, Version\n"
    "        cart: ItemTitle, ArtistName, CutID, Client, ContentTypeInfo, CategoryInfo, OutCue (64 bytes "
    "each),\n"
    "        air dates, copyright, notes, colours, EndType, and marks of set 1\n"
    "        quillmere is both with this system's own conventions; rcs is cart with those of RCS\n"
    "  WMA   ItemTitle, ArtistName, URL, Publisher, Composer, Performer, Originator, CategoryInfo, Year,\n"
    "        StudioNotes, marks of all sets, the loop\n"
    "  MP3, MP2, Ogg  the same without marks; an MP3 file that ends in an ID3v1 tag and has no other:\n"
    "        ItemTitle, ArtistName (30 bytes), StudioNotes (28), Year, CategoryInfo of the list of genres\n"
    "A text that is cut is told, with what is left of it. A field that a file has no place for is an error;\n"
    "the others are saved all the same.\n"
    "\n"
    "Examples:\n"
    "  quillmere tag song.mp3 'ItemTitle=Blue Skies' ArtistName=Ella Year=1958\n"
    "  quillmere tag news.wav Extro=58.5 KillDate=2026-12-31 --carriers cart\n"
    "  quillmere tag jingles/ Publisher='Radio One' --json";

struct TagOptions {
  std::vector<std::string> words;
  std::vector<std::string> carriers{"quillmere"};
  enPrinting printing = epForPeople;

  std::vector<std::string> paths;
  ItemArgument fields;
  enHDFileFlags flags = llfAutoDetect;
};

const std::pair<const char*, enHDFileFlags> kCarriers[] = {
    {"bext", llfBext}, {"cart", llfCartChunk}, {"quillmere", llfQuillmere}, {"rcs", llfRCS}};

bool IsPath(const std::string& word) {
  return word.find('=') == word.npos || FileExists(word) || FolderExists(word);
}

void TakeField(const std::string& word, TagOptions& options) {
  std::string errorText;
  if (!ParseItemField(word, options.fields, errorText)) throw CLI::ValidationError("Field=value", errorText);
  const std::string& name = options.fields.fields.back().first;
  if (IsFactOfFile(name))
    throw CLI::ValidationError("Field=value", name + " says what the file is, and cannot be saved");
}

// What the parser cannot know: which words are files, and what the fields are.
void TakeWords(TagOptions& options) {
  options.paths.clear();
  options.fields = {};
  for (const std::string& word : options.words) {
    if (!IsPath(word)) {
      TakeField(word, options);
      continue;
    }
    if (!options.fields.fields.empty())
      throw CLI::ValidationError("FILE", "'" + word + "' stands behind a Field=value: files come first");
    options.paths.push_back(word);
  }
  if (options.paths.empty()) throw CLI::ValidationError("FILE", "is missing");
  if (options.fields.fields.empty()) throw CLI::ValidationError("Field=value", "is missing");
  options.flags = llfAutoDetect;
  for (const std::string& carrier : options.carriers)
    for (const auto& [name, flags] : kCarriers)
      if (carrier == name) options.flags = options.flags | flags;
}

Json ResultOf(const TaggedFile& told) {
  Json result{{"file", told.path}, {"saved", told.errorText.empty()}};
  if (!told.errorText.empty()) result["error"] = told.errorText;
  for (const auto& [name, value] : told.changed) result["changed"][name] = value;
  if (!told.lost.empty()) result["lost"] = told.lost;
  return result;
}

std::string Shown(const std::string& text) {
  constexpr std::size_t kWidest = 4096;
  return CutText(text, kWidest);
}

void PrintForPeople(const TaggedFile& told) {
  if (!told.errorText.empty()) return;
  fmt::print("{}: saved\n", Shown(told.path));
  for (const auto& [name, value] : told.changed) fmt::print("  {} holds only: {}\n", name, Shown(value));
}

void TellTrouble(const TaggedFile& told) {
  if (!told.errorText.empty()) return TellFailure(told.errorText);
  if (!told.lost.empty())
    TellFailure(fmt::format("'{}' has no place for {}", told.path, fmt::join(told.lost, ", ")));
}

class TagWork {
 public:
  explicit TagWork(const TagOptions& options) : m_options(options) {}

  std::int32_t Run() {
    for (const std::string& path : m_options.paths) {
      if (FolderExists(path))
        TagFolder(path);
      else
        TagFile(path);
    }
    if (m_options.printing == epJSON)
      fmt::print("{}\n", Json{{"files", m_results}}.dump(2, ' ', false, Json::error_handler_t::replace));
    return m_status;
  }

 private:
  void TagFolder(const std::string& folder) {
    bool found = false;
    ForEachAudioFile(
        folder,
        [&](const std::string& file) {
          found = true;
          TagFile(file);
        },
        [&](const std::string& text) { Fail(text); });
    if (!found) Fail("'" + folder + "' holds no audio file");
  }

  void Fail(const std::string& text) {
    m_status = exsFailed;
    TellFailure(text);
  }

  void TagFile(const std::string& path) {
    const TaggedFile told = TagOneFile(path, m_options.fields, m_options.flags);
    if (!told.errorText.empty() || !told.lost.empty()) m_status = exsFailed;
    TellTrouble(told);
    if (m_options.printing == epJSON)
      m_results.push_back(ResultOf(told));
    else
      PrintForPeople(told);
  }

  const TagOptions& m_options;
  Json m_results = Json::array();
  std::int32_t m_status = exsDone;
};

}  // namespace

Command AddTagCommand(CLI::App& program) {
  CLI::App* app = program.add_subcommand("tag", "Save fields into audio files");
  app->footer(kTagHelp);
  const auto options = std::make_shared<TagOptions>();
  app->add_option("FILE... Field=value", options->words, "Files and folders, then what to save in them")
      ->required()
      ->type_name("");
  std::vector<std::string> names;
  for (const auto& row : kCarriers) names.emplace_back(row.first);
  app->add_option("--carriers", options->carriers, "WAV: where to save, of bext,cart,quillmere,rcs")
      ->delimiter(',')
      ->check(CLI::IsMember(names))
      ->type_name("LIST");
  AddJson(*app, options->printing);
  app->callback([options] { TakeWords(*options); });
  return {app, [options] { return TagWork(*options).Run(); }};
}

}  // namespace qm::cli
