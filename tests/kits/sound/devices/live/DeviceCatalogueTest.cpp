#include "kits/sound/devices/DeviceCatalogue.h"

#include <gtest/gtest.h>

#include "SoundServerBench.h"

namespace qm {
namespace {

using test::PulseServer;

std::vector<std::string> Names(const std::vector<SoundDevice>& devices) {
  std::vector<std::string> names;
  for (const SoundDevice& device : devices) names.push_back(device.name);
  return names;
}

TEST(DeviceCatalogue, ListsDevicesByNameAndFindsThemAgain) {
  PulseServer server;
  if (!server.Installed()) GTEST_SKIP() << "pulseaudio is not installed";
  ASSERT_TRUE(server.Start());
  ASSERT_TRUE(server.AddSink("twin", "Twin"));
  DeviceCatalogue catalogue(essPulseAudio);
  EXPECT_EQ(Names(catalogue.Outputs()), (std::vector<std::string>{"ProbeSink", "Twin"}));
  EXPECT_EQ(Names(catalogue.Inputs()), (std::vector<std::string>{"Monitor of ProbeSink", "Monitor of Twin"}));
  EXPECT_EQ(catalogue.Outputs()[0].formats, 4u | 8u | 64u | 128u | 0x400u | 0x800u);

  ASSERT_TRUE(server.AddSink("another", "Another"));
  EXPECT_EQ(catalogue.Outputs().size(), 2u) << "read once";
  catalogue.Refresh();
  EXPECT_EQ(Names(catalogue.Outputs()), (std::vector<std::string>{"Another", "ProbeSink", "Twin"}));
  EXPECT_EQ(catalogue.OutputNumber("probesink"), 2);
  EXPECT_EQ(catalogue.OutputNumber("nobody"), 0);

  std::string error;
  for (std::int32_t number : {-1, 0, 1, 3}) {
    const auto output = catalogue.MakeOutput(number, error);
    ASSERT_NE(output, nullptr) << number;
    EXPECT_TRUE(output->Open({}, eomNearest, error)) << number << " " << error;
    EXPECT_EQ(output->Shape().format.sampleRate, 48000);
  }
  EXPECT_EQ(catalogue.MakeOutput(4, error), nullptr);
  EXPECT_EQ(error, "there is no sound output number 4");

  server.Signal(SIGSTOP);
  DeviceCatalogue stuck(essPulseAudio);
  EXPECT_TRUE(stuck.Outputs().empty()) << "a server that does not answer is not waited for";
  catalogue.Refresh();
  EXPECT_EQ(catalogue.Outputs().size(), 3u) << "what is known stays";
  server.Signal(SIGCONT);
}

}  // namespace
}  // namespace qm
