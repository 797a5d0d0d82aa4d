#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "ProgramRun.h"

namespace qm {
namespace {

using namespace test;
using Json = nlohmann::ordered_json;

TEST(InfoProgram, TellsFormatLengthAndItem) {
  TempFolder folder;
  WriteBytes(folder.File("Blue \"Skies\".wav"), Wav16(std::vector<std::int16_t>(2 * 4851), 22050, 2));
  ProgramRun run(folder, Quillmere("info --json", {"Blue \"Skies\".wav"}));
  ASSERT_EQ(run.Status(), 0) << run.Err();
  const Json told = Json::parse(run.Out());
  const Json expected = Json::parse(R"({
    "file": "Blue \"Skies\".wav",
    "format": {"FormatDescription": "WAV 22050 Hz stereo 16-bit", "FormatType": 2, "SampleRate": 22050, "Channels": 2,
               "BitsPerSample": 16, "WAVFormatTag": 1, "NumberSamples": 4851, "LengthMilliseconds": 220.0},
    "item": {"Reference": "Blue \"Skies\".wav", "AudioFileName": "Blue \"Skies\".wav", "AudioFileLength": 19448,
             "AudioFileExists": true, "AudioFileType": 2, "ItemTitle": "Blue \"Skies\"", "LoopStart": 0, "LoopEnd": 0,
             "TotalLength": 0.22, "ScheduledLength": 0, "AudioEnd": [0.22, 0.22, 0.22], "Extro": [0.22, 0.22, 0.22]},
    "markers": [], "chunks": [{"Name": "fmt ", "Type": "", "StartOfData": 20, "Length": 16},
                              {"Name": "data", "Type": "", "StartOfData": 44, "Length": 19404}], "tags": []})");
  EXPECT_EQ(told, expected) << told.dump(2);
}

// A WAV file with a text, and with a marker beside it.
void WriteFull(const TempFolder& folder, const std::string& name) {
  std::string wave = Wav16(Noise16(1000), 1000, 1);
  wave += Chunk("LIST", "INFO" + Chunk("IART", "B\xE9nny\nand band"));
  WriteBytes(folder.File(name), Chunk("RIFF", wave.substr(8)));
  WriteBytes(folder.File(name + ".pmk"), "Here" + std::string(124, ' ') + LittleEndian(500, 4) +
                                             LittleEndian(20, 4) + LittleEndian(1, 4) +
                                             std::string(116, '\0'));
}

TEST(InfoProgram, TellsMarkersChunksAndTags) {
  TempFolder folder;
  WriteFull(folder, "--full.wav");
  ProgramRun json(folder, Quillmere("info --json -- --full.wav"));
  ASSERT_EQ(json.Status(), 0) << json.Err();
  Json told = Json::parse(json.Out());
  EXPECT_EQ(told["item"]["ArtistName"], Json::parse(R"(["B\u00e9nny\nand band", "", ""])"));
  EXPECT_EQ(told["tags"], Json::parse(R"([{"ParentTag": "LIST", "TagName": "IART", "FriendlyName": "Artist",
                                           "Data": "B\u00e9nny\nand band"}])"));
  EXPECT_EQ(told["chunks"][2],
            Json::parse(R"({"Name": "LIST", "Type": "INFO", "StartOfData": 2052, "Length": 26})"));
  told["markers"][0].erase("Guid");
  EXPECT_EQ(told["markers"],
            Json::parse(R"([{"Title": "Here", "StartSample": 500, "Duration": 20, "MarkerType": 1,
                                              "flags": 0, "MarkerColour": 65535}])"));
  ProgramRun table(folder, Quillmere("info ./--full.wav"));
  ASSERT_EQ(table.Status(), 0) << table.Err();
  for (const char* part :
       {"ArtistName", "B\xC3\xA9nny\n       ", "Here", "0:00.50", "LIST INFO", "data", "LIST IART"})
    EXPECT_NE(table.Out().find(part), std::string::npos) << part << " in\n" << table.Out();
}

TEST(InfoProgram, GoesThroughFoldersWhateverIsInThem) {
  TempFolder folder;
  std::filesystem::create_directories(folder.File("a/b"));
  WriteFull(folder, "a/b/one.WAV");
  WriteFull(folder, "a/t\nw\xE9o.wav");
  WriteBytes(folder.File("a/notes.txt"), "no audio");
  WriteBytes(folder.File("a/bad.wav"), "RIFF");
  WriteBytes(folder.File("a/empty.mp3"), "");
  std::filesystem::create_directory_symlink(folder.File("a"), folder.File("a/b/loop"));
  std::filesystem::create_directory(folder.File("a/folder.wav"));
  ProgramRun run(folder, Quillmere("info a gone.wav a/b/one.WAV --json"));
  EXPECT_EQ(run.Status(), 1);
  std::vector<std::string> files;
  for (const std::string& line : Lines(run.Out())) files.push_back(Json::parse(line)["file"]);
  EXPECT_THAT(files, testing::ElementsAre("a/b/one.WAV", "a/t\nw\xEF\xBF\xBDo.wav", "a/b/one.WAV"));
  EXPECT_THAT(Lines(run.Err()),
              testing::ElementsAre(testing::HasSubstr("a/bad.wav"), testing::HasSubstr("a/empty.mp3"),
                                   testing::HasSubstr("gone.wav")));
}

TEST(DevicesProgram, WorksWithoutASoundServer) {
  TempFolder folder;
  ProgramRun run(folder, Quillmere("devices --json"));
  EXPECT_EQ(run.Status(), 0);
  EXPECT_EQ(run.Err(), "");
  const Json told = Json::parse(run.Out());
  for (const char* list : {"outputs", "inputs"}) {
    ASSERT_TRUE(told[list].is_array());
    for (std::size_t i = 0; i < told[list].size(); ++i) EXPECT_EQ(told[list][i]["number"], i + 1);
  }
}

}  // namespace
}  // namespace qm
