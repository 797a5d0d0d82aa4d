#include "audio/CopyDestination.h"

#include <cmath>
#include <filesystem>

#include "audio/AudioFileTypes.h"
#include "audio/WriteFormat.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/sound/VellanCompress.h"
#include "kits/sound/cAudioFile.h"
#include "services/Diagnostics.h"

namespace qm {
namespace {

namespace fs = std::filesystem;

// Why what stands at the path may not give way, "" when it may or nothing is there.
std::string DeleteProblem(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(NativePath(path), error);
  if (!fs::exists(status)) return {};
  if (!fs::is_regular_file(status)) return "it is no file";
  const bool readOnly = (status.permissions() & fs::perms::owner_write) == fs::perms::none;
  return readOnly ? "the file is read-only" : std::string();
}

std::string ProfileOf(const cAudioFormat& format) {
  return NumberText(format.SampleRate()) + "," + NumberText(format.Channels()) + "," +
         NumberText(format.BitRate());
}

// What the format says beyond what a recording is made with.
void Refine(cAudioFile& file, const cAudioFormat& format) {
  if (format.FormatType() == aftWAV && format.BitsPerSample() > 0)
    file.SetWAVSettings(format.SampleRate(), format.Channels(), (format.BitsPerSample() + 7) / 8 * 8,
                        format.WAVFormatTag());
  if (format.FormatType() == aftWMA && format.WMAProfile().empty()) file.SetWMAProfile(ProfileOf(format));
}

}  // namespace

CopyDestination::CopyDestination() = default;
CopyDestination::~CopyDestination() {
  Abandon();
}

enCopyError CopyDestination::Open(const std::string& path, const cAudioFormat& format) {
  m_frames = 0;
  m_problem.clear();
  if (const std::string problem = DeleteProblem(path); !problem.empty()) {
    ReportProblem("deleting the destination file " + path, problem, true);
    m_problem = "cannot write '" + path + "': " + problem;
    return cerDestinationNotCreated;
  }
  return VellanCompress::IsFor(format) ? OpenCompressor(path, format) : OpenWriter(path, format);
}

enCopyError CopyDestination::OpenWriter(const std::string& path, const cAudioFormat& format) {
  auto writer = std::make_unique<cAudioFile>();
  const std::int32_t mode = UseFormat(*writer, format);
  Refine(*writer, format);
  if (mode == 0) m_problem = "there is no such format: " + format.FormatDescription();
  if (mode == 0 || writer->CreateFile(path, mode) != afeNone) {
    if (mode != 0) m_problem = writer->ErrorText();
    return cerDestinationNotCreated;
  }
  m_destWriter = std::move(writer);
  TakeFormat(m_destWriter->Format());
  return cerOK;
}

enCopyError CopyDestination::OpenCompressor(const std::string& path, const cAudioFormat& format) {
  auto compressor = std::make_unique<VellanCompress>();
  if (!compressor->Load(format)) {
    m_problem = compressor->ErrorText();
    return cerCompressorNotLoaded;
  }
  if (compressor->CreateFile(path) != afeNone) {
    m_problem = compressor->ErrorText();
    return cerDestinationNotCreated;
  }
  m_destCompressor = std::move(compressor);
  TakeFormat(m_destCompressor->Format());
  return cerOK;
}

void CopyDestination::TakeFormat(const cAudioFormat& format) {
  m_sampleRate = format.SampleRate();
  m_channels = format.Channels();
  const bool whole = format.FormatType() == aftWAV && format.WAVFormatTag() == wftPCM;
  m_ceiling = whole ? 1 - std::exp2(1.0 - format.BitsPerSample()) : 1;
}

bool CopyDestination::Written(std::int32_t error, std::size_t frames) {
  if (error == afeNone) m_frames += static_cast<std::int64_t>(frames);
  if (error != afeNone) m_problem = m_destWriter ? m_destWriter->ErrorText() : m_destCompressor->ErrorText();
  return error == afeNone;
}

bool CopyDestination::Write(std::span<const float> block) {
  const std::size_t frames = m_channels > 0 ? block.size() / static_cast<std::size_t>(m_channels) : 0;
  if (frames == 0) return true;
  if (m_destWriter) return Written(m_destWriter->WriteFrames(block.data(), frames), frames);
  return m_destCompressor && Written(m_destCompressor->WriteFrames(block.data(), frames), frames);
}

bool CopyDestination::WriteStored(std::span<const std::uint8_t> stored) {
  if (!m_destWriter) return false;
  const std::int32_t frameBytes = m_destWriter->Format().BitsPerSample() / 8 * m_channels;
  const std::size_t frames = stored.size() / static_cast<std::size_t>(frameBytes);
  return Written(m_destWriter->WriteStored(stored.data(), frames), frames);
}

bool CopyDestination::PassesStored(const cAudioFormat& source) const {
  const std::int32_t bits = source.BitsPerSample(), tag = source.WAVFormatTag();
  return m_destWriter && source == m_destWriter->Format() &&
         ((tag == wftPCM && bits == 32) || (tag == wftFloat && bits == 64));
}

bool CopyDestination::Finish() {
  const auto writer = std::move(m_destWriter);
  const auto compressor = std::move(m_destCompressor);
  if (writer && writer->Close() != afeNone) return m_problem = writer->ErrorText(), false;
  if (compressor && compressor->Close() != afeNone) return m_problem = compressor->ErrorText(), false;
  return true;
}

void CopyDestination::Abandon() {
  if (m_destWriter) m_destWriter->Abandon();
  if (m_destCompressor) m_destCompressor->Abandon();
  m_destWriter.reset();
  m_destCompressor.reset();
}

float CopyDestination::Duration() const {
  return m_sampleRate > 0 ? static_cast<float>(static_cast<double>(m_frames) / m_sampleRate) : 0;
}

}  // namespace qm
