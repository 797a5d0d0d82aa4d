#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ProgramRun.h"

namespace qm {
namespace {

using namespace test;
using Json = nlohmann::ordered_json;

TEST(InfoProgram, TellsFormatLengthAndItem) {
  TempFolder folder;
  WriteBytes(folder.File("Blue \"Skies\".wav"), Wav16(std::vector<std::int16_t>(2 * 4851), 22050, 2));
  ProgramRun run(folder, Quillmere({"info", "Blue \"Skies\".wav", "--json"}));
  ASSERT_EQ(run.Status(), 0) << run.Err();
  const Json told = Json::parse(run.Out());
  const Json expected = Json::parse(R"({
    "file": "Blue \"Skies\".wav",
    "format": {"FormatDescription": "WAV 22050 Hz stereo 16-bit", "FormatType": 2, "SampleRate": 22050, "Channels": 2,
               "BitsPerSample": 16, "WAVFormatTag": 1, "NumberSamples": 4851, "LengthMilliseconds": 220.0},
    "item": {"Reference": "Blue \"Skies\".wav", "AudioFileName": "Blue \"Skies\".wav", "AudioFileLength": 19448,
             "AudioFileExists": true, "AudioFileType": 2, "ItemTitle": "Blue \"Skies\"", "LoopStart": 0, "LoopEnd": 0,
             "TotalLength": 0.22, "AudioEnd": [0.22, 0.22, 0.22], "Extro": [0.22, 0.22, 0.22]},
    "markers": [], "chunks": [], "tags": []})");
  EXPECT_EQ(told, expected) << told.dump(2);
}

TEST(DevicesProgram, WorksWithoutASoundServer) {
  TempFolder folder;
  ProgramRun run(folder, Quillmere({"devices", "--json"}));
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
