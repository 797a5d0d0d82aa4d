#include <CLI/CLI.hpp>

#include <cstdio>

#include "cli/AudioFolders.h"
#include "cli/Command.h"
#include "cli/Failure.h"
#include "cli/InfoReport.h"
#include "cli/ItemFile.h"
#include "kits/common/Files.h"

namespace qm::cli {

namespace {

struct InfoOptions {
  std::vector<std::string> paths;
  enPrinting printing = epForPeople;
};

// Tells about files one after another; a bad one costs its own line only.
class InfoRun {
 public:
  explicit InfoRun(const InfoOptions& options) : m_options(options) {
    const bool alone = options.paths.size() == 1 && !FolderExists(options.paths.front());
    m_document = alone ? eidAlone : eidLine;
  }

  std::int32_t Run() {
    for (const std::string& path : m_options.paths) {
      if (FolderExists(path))
        ForEachAudioFile(
            path, [this](const std::string& file) { TellAbout(file); },
            [this](const std::string& text) { Fail(text); });
      else
        TellAbout(path);
    }
    if (std::fflush(stdout) != 0) Fail("cannot write to standard output");
    return m_failed ? exsFailed : exsDone;
  }

 private:
  void Fail(const std::string& text) {
    TellFailure(text);
    m_failed = true;
  }

  void TellAbout(const std::string& path) {
    ItemFileContents contents;
    std::string errorText;
    if (!LoadItemFileContents(path, contents, errorText)) return Fail(errorText);
    const std::string text =
        m_options.printing == epJSON ? InfoJSON(path, contents, m_document) : InfoTable(path, contents);
    std::fwrite(text.data(), 1, text.size(), stdout);
  }

  const InfoOptions& m_options;
  enInfoDocument m_document;
  bool m_failed = false;
};

}  // namespace

Command AddInfoCommand(CLI::App& program) {
  CLI::App* app = program.add_subcommand("info", "Tell about audio files");
  const auto options = std::make_shared<InfoOptions>();
  app->add_option("FILE", options->paths, "Audio files, and folders to be looked through for such")
      ->required()
      ->type_name("");
  AddJson(*app, options->printing, "Print a JSON document; for several files one a line");
  return {app, [options] { return InfoRun(*options).Run(); }};
}

}  // namespace qm::cli
