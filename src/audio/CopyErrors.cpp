#include "audio/CopyErrors.h"

#include "kits/common/Numbers.h"

namespace qm {
namespace {

struct Row {
  std::int32_t code;
  const char* text;
};

constexpr Row kTexts[] = {
    {cerOK, "No problem"},
    {cerSourceInvalid, "The source file was invalid"},
    {cerDestinationInvalid, "The destination file was invalid"},
    {cerSampleRateInvalid, "The sample rate was invalid"},
    {cerChannelsInvalid, "The number of channels was invalid"},
    {cerSourceNotOpened, "The source file could not be opened"},
    {cerStartInvalid, "The Start Position in the source file was invalid"},
    {cerEndInvalid, "The End Position in the source file was invalid"},
    {cerStartAfterEnd, "The Start Position was after the End Position"},
    {cerCompressorNotLoaded, "VellanCompress could not load"},
    {cerDestinationNotCreated, "The destination file could not be created"},
    {cerNoFormat, "No Destination Audio Format was supplied"},
    {cerFormatTypeInvalid, "The Destination Audio Format Type was invalid"},
    {cerRetainInvalid, "The amount of audio to retain was invalid"},
};

}  // namespace

std::string CopyErrorText(std::int32_t code) {
  for (const Row& row : kTexts)
    if (row.code == code) return row.text;
  return "Unknown problem, the code was " + NumberText(code);
}

}  // namespace qm
