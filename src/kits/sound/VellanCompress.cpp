#include "kits/sound/VellanCompress.h"

#include <exception>

#include "kits/sound/AudioFileLibrary.h"
#include "kits/sound/AudioFileWriters.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

namespace {

struct Row {
  std::int32_t tag;
  std::int32_t mode;
  const char* encoder;
};

constexpr Row kRows[] = {{wftMPEG, ecwLayer2, "libtwolame"}, {wftMPEGLayer3, ecwLayer3, "libmp3lame"}};

const Row* RowFor(const cAudioFormat& format) {
  for (const Row& row : kRows)
    if (format.FormatType() == aftWAV && format.WAVFormatTag() == row.tag) return &row;
  return nullptr;
}

}  // namespace

VellanCompress::VellanCompress() = default;
VellanCompress::~VellanCompress() = default;

template <class Work>
std::int32_t VellanCompress::Guarded(Work work) {
  AudioFileError error;
  try {
    error = work();
  } catch (const std::exception& failure) {
    error = {afeCannotWrite, failure.what()};
  }
  m_errorText = error.text;
  return error.number;
}

bool VellanCompress::IsFor(const cAudioFormat& format) {
  return RowFor(format) != nullptr;
}

bool VellanCompress::Load(const cAudioFormat& format) {
  const Row* row = RowFor(format);
  SilenceLibrary();
  if (row == nullptr || avcodec_find_encoder_by_name(row->encoder) == nullptr) {
    m_errorText = "there is no encoder for " + format.FormatDescription();
    return false;
  }
  m_format = format;
  m_format.SetBitsPerSample(0);
  m_mode = row->mode;
  return true;
}

std::int32_t VellanCompress::CreateFile(const std::string& path) {
  m_writeError = 0;
  return Guarded([&] {
    AudioFileSettings settings;
    settings.sampleRate = m_format.SampleRate();
    settings.channels = m_format.Channels();
    settings.bitRate = m_format.BitRate();
    AudioFileError error;
    m_writer = CreateEncodingWriter(path, m_mode, settings, error);
    return error;
  });
}

std::int32_t VellanCompress::WriteFrames(const float* interleaved, std::size_t frames) {
  const std::int32_t number = Guarded([&]() -> AudioFileError {
    if (!m_writer) return {afeNotOpen, "no file is open for writing"};
    return m_writer->Write(interleaved, frames);
  });
  if (number != afeNone) m_writeError = number;
  return number;
}

std::int32_t VellanCompress::Close() {
  const auto writer = std::move(m_writer);
  if (!writer || m_writeError != afeNone) return m_writeError;
  return Guarded([&] { return writer->Finish(); });
}

void VellanCompress::Abandon() {
  m_writer.reset();
}

}  // namespace qm
