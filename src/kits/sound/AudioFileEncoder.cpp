#include <algorithm>
#include <cstdio>
#include <vector>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileAsfProperties.h"
#include "kits/sound/AudioFileLibrary.h"
#include "kits/sound/AudioFileSamples.h"
#include "kits/sound/AudioFileTarget.h"
#include "kits/sound/AudioFileWriters.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

namespace {

constexpr int kBufferBytes = 1 << 15;

struct Encoding {
  std::int32_t mode;
  std::int32_t type;
  const char* name;
  const char* encoder;
  const char* muxer;
  // Blocks of silence around the audio. The Windows Media decoder drops two blocks where the encoder's delay
  // is one, and needs a block behind the last to complete it.
  int blocksAhead, blocksBehind;
};

constexpr Encoding kEncodings[] = {
    {ecmMP3, aftMP3, "MP3", "libmp3lame", "mp3", 0, 0},
    {ecmMP2, aftMP2, "MP2", "libtwolame", "mp2", 0, 0},
    {ecmOgg, aftOgg, "Ogg", "libvorbis", "ogg", 0, 0},
    {ecmWMA, aftWMA, "WMA", "wmav2", "asf", 1, 1},
    {ecwLayer2, aftWAV, "MP2 in WAV", "libtwolame", "wav", 0, 0},
    {ecwLayer3, aftWAV, "MP3 in WAV", "libmp3lame", "wav", 0, 0},
};

// The encoder's quality step (0 best) whose usual bit rate comes nearest from above.
int QualityForBitRate(std::int32_t bitRate) {
  constexpr std::int32_t kUsual[] = {245000, 225000, 190000, 175000, 165000,
                                     130000, 115000, 100000, 85000,  65000};
  int step = 9;
  while (step > 0 && kUsual[step] < bitRate) --step;
  return step;
}

class EncodingWriter : public AudioFileWriter {
 public:
  EncodingWriter(const Encoding& encoding, const AudioFileSettings& settings, const std::string& path)
      : m_encoding(encoding), m_settings(settings), m_path(path) {}
  ~EncodingWriter() override;

  AudioFileError Create();
  AudioFileError Write(const float* interleaved, std::size_t frames) override;
  AudioFileError Checkpoint(AudioFileSync sync) override;
  AudioFileError Finish() override;

 private:
  static int WritePacket(void* self, std::uint8_t* bytes, int count);
  static std::int64_t SeekTo(void* self, std::int64_t offset, int whence);

  AudioFileError Refused(const std::string& why) const {
    return {afeBadSettings, "cannot create '" + m_path + "': " + why};
  }
  AudioFileError CheckSettings(const AVCodec& encoder) const;
  AudioFileError OpenEncoder();
  AudioFileError OpenMuxer();
  AudioFileError WriteSilence(int blocks);
  AudioFileError EncodeBlock();
  void StateDuration(std::int64_t frames);
  AudioFileError Encode(const AVFrame* frame);
  AudioFileError Failed(int code) const;
  std::size_t Channels() const { return static_cast<std::size_t>(m_settings.channels); }

  const Encoding& m_encoding;
  const AudioFileSettings m_settings;
  const std::string m_path;
  AudioFileTarget m_target;
  std::int64_t m_position = 0;  // the muxer's, in the target
  AVIOContext* m_output = nullptr;
  AVFormatContext* m_muxer = nullptr;
  CodecContextPtr m_codec;
  PacketPtr m_packet{av_packet_alloc()};
  FramePtr m_frame{av_frame_alloc()};
  std::size_t m_blockFrames = 0;
  std::vector<float> m_block;  // interleaved, of m_blockFrames at most
  std::int64_t m_encoded = 0;  // frames
};

EncodingWriter::~EncodingWriter() {
  avformat_free_context(m_muxer);
  if (m_output != nullptr) av_freep(&m_output->buffer);
  avio_context_free(&m_output);
}

int EncodingWriter::WritePacket(void* self, std::uint8_t* bytes, int count) {
  auto& writer = *static_cast<EncodingWriter*>(self);
  if (!writer.m_target.WriteAt(writer.m_position, bytes, static_cast<std::size_t>(count)))
    return AVERROR(EIO);
  writer.m_position += count;
  return count;
}

std::int64_t EncodingWriter::SeekTo(void* self, std::int64_t offset, int whence) {
  auto& writer = *static_cast<EncodingWriter*>(self);
  whence &= ~AVSEEK_FORCE;
  if (whence == AVSEEK_SIZE) return writer.m_target.Size();
  if (whence == SEEK_CUR) offset += writer.m_position;
  if (whence == SEEK_END) offset += writer.m_target.Size();
  if (offset < 0) return AVERROR(EINVAL);
  return writer.m_position = offset;
}

AudioFileError EncodingWriter::Create() {
  if (AudioFileError error = OpenEncoder()) return error;
  if (AudioFileError error = m_target.Create(m_path, m_settings.place)) return error;
  if (AudioFileError error = OpenMuxer()) return error;
  m_format.SetFormatType(m_encoding.type);
  m_format.SetSampleRate(m_settings.sampleRate);
  m_format.SetChannels(m_settings.channels);
  m_format.SetBitRate(m_settings.bitRate);
  if (m_encoding.type == aftWMA)
    m_format.SetWMAProfile(std::to_string(m_settings.sampleRate) + "," + std::to_string(m_settings.channels) +
                           "," + std::to_string(m_settings.bitRate));
  return WriteSilence(m_encoding.blocksAhead);
}

AudioFileError EncodingWriter::CheckSettings(const AVCodec& encoder) const {
  const std::string name = m_encoding.name;
  if (m_settings.channels < 1 || m_settings.channels > 2)
    return Refused(name + " has no " + std::to_string(m_settings.channels) + " channels");
  bool rateFits = m_settings.sampleRate > 0 && encoder.supported_samplerates == nullptr;
  for (const int* rate = encoder.supported_samplerates; rate != nullptr && *rate != 0; ++rate)
    rateFits = rateFits || *rate == m_settings.sampleRate;
  if (!rateFits)
    return Refused(name + " has no sample rate of " + std::to_string(m_settings.sampleRate) + " Hz");
  if (m_settings.bitRate < 1) return Refused("no bit rate is set");
  return {};
}

AudioFileError EncodingWriter::OpenEncoder() {
  SilenceLibrary();
  const AVCodec* encoder = avcodec_find_encoder_by_name(m_encoding.encoder);
  if (encoder == nullptr || !m_packet || !m_frame)
    return Refused(std::string("needs the encoder ") + m_encoding.encoder);
  if (AudioFileError error = CheckSettings(*encoder)) return error;
  m_codec.reset(avcodec_alloc_context3(encoder));
  if (!m_codec) return Failed(AVERROR(ENOMEM));
  m_codec->sample_fmt = AV_SAMPLE_FMT_FLTP;
  m_codec->sample_rate = m_settings.sampleRate;
  m_codec->time_base = {1, m_settings.sampleRate};
  av_channel_layout_default(&m_codec->ch_layout, m_settings.channels);
  m_codec->bit_rate = m_settings.bitRate;
  m_codec->rc_min_rate = m_settings.minimumBitRate;
  m_codec->rc_max_rate = m_settings.maximumBitRate;
  m_codec->thread_count = 1;
  if (m_settings.variableBitRate && m_encoding.type == aftMP3) {
    m_codec->flags |= AV_CODEC_FLAG_QSCALE;
    m_codec->global_quality = QualityForBitRate(m_settings.bitRate) * FF_QP2LAMBDA;
  }
  const AVOutputFormat* format = av_guess_format(m_encoding.muxer, nullptr, nullptr);
  if (format != nullptr && format->flags & AVFMT_GLOBALHEADER) m_codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  if (avcodec_open2(m_codec.get(), encoder, nullptr) < 0)
    return Refused(std::string(m_encoding.name) + " cannot hold " + std::to_string(m_settings.sampleRate) +
                   " Hz, " + std::to_string(m_settings.channels) + " channels at " +
                   std::to_string(m_settings.bitRate) + " bits a second");
  m_blockFrames = m_codec->frame_size > 0 ? static_cast<std::size_t>(m_codec->frame_size) : 1152;
  m_block.reserve(m_blockFrames * Channels());
  m_frame->format = m_codec->sample_fmt;
  m_frame->sample_rate = m_codec->sample_rate;
  m_frame->nb_samples = static_cast<int>(m_blockFrames);
  av_channel_layout_copy(&m_frame->ch_layout, &m_codec->ch_layout);
  if (int code = av_frame_get_buffer(m_frame.get(), 0); code < 0) return Failed(code);
  return {};
}

AudioFileError EncodingWriter::OpenMuxer() {
  if (int code = avformat_alloc_output_context2(&m_muxer, nullptr, m_encoding.muxer, nullptr); code < 0)
    return Failed(code);
  auto* buffer = static_cast<std::uint8_t*>(av_malloc(kBufferBytes));
  m_output = avio_alloc_context(buffer, kBufferBytes, 1, this, nullptr, WritePacket, SeekTo);
  AVStream* stream = avformat_new_stream(m_muxer, nullptr);
  if (m_output == nullptr || stream == nullptr) return Failed(AVERROR(ENOMEM));
  m_muxer->pb = m_output;
  stream->time_base = m_codec->time_base;
  if (int code = avcodec_parameters_from_context(stream->codecpar, m_codec.get()); code < 0)
    return Failed(code);
  AVDictionary* options = nullptr;
  if (m_encoding.type == aftMP3)
    av_dict_set(&options, "id3v2_version", "0", 0);  // tags are the item's business
  int code = avformat_write_header(m_muxer, &options);
  av_dict_free(&options);
  return code < 0 ? Failed(code) : AudioFileError{};
}

AudioFileError EncodingWriter::WriteSilence(int blocks) {
  const std::vector<float> silence(m_blockFrames * Channels());
  for (int i = 0; i < blocks; ++i)
    if (AudioFileError error = Write(silence.data(), m_blockFrames)) return error;
  return {};
}

AudioFileError EncodingWriter::Write(const float* interleaved, std::size_t frames) {
  const std::size_t whole = m_blockFrames * Channels();
  for (std::size_t left = frames * Channels(); left > 0;) {
    const std::size_t part = std::min(left, whole - m_block.size());
    m_block.insert(m_block.end(), interleaved, interleaved + part);
    interleaved += part;
    left -= part;
    if (m_block.size() < whole) break;
    if (AudioFileError error = EncodeBlock()) return error;
  }
  return {};
}

// Hands the block, which may be a short last one, to the encoder.
AudioFileError EncodingWriter::EncodeBlock() {
  const std::size_t frames = m_block.size() / Channels();
  MakeFinite(m_block.data(), m_block.size());
  if (int code = av_frame_make_writable(m_frame.get()); code < 0) return Failed(code);
  m_frame->nb_samples = static_cast<int>(frames);
  for (std::size_t c = 0; c < Channels(); ++c) {
    auto* plane = reinterpret_cast<float*>(m_frame->extended_data[c]);
    for (std::size_t i = 0; i < frames; ++i) plane[i] = m_block[i * Channels() + c];
  }
  m_frame->pts = m_encoded;
  m_encoded += static_cast<std::int64_t>(frames);
  m_block.clear();
  return Encode(m_frame.get());
}

AudioFileError EncodingWriter::Encode(const AVFrame* frame) {
  if (int code = avcodec_send_frame(m_codec.get(), frame); code < 0) return Failed(code);
  for (;;) {
    int code = avcodec_receive_packet(m_codec.get(), m_packet.get());
    if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) return m_target.Error();
    if (code < 0) return Failed(code);
    av_packet_rescale_ts(m_packet.get(), m_codec->time_base, m_muxer->streams[0]->time_base);
    code = av_write_frame(m_muxer, m_packet.get());
    av_packet_unref(m_packet.get());
    if (code < 0) return Failed(code);
  }
}

// The muxer counts whole milliseconds and silence: without this a file would grow by every copy.
void EncodingWriter::StateDuration(std::int64_t frames) {
  std::string head(kAsfHeadBytes, '\0');
  head.resize(m_target.ReadAt(0, head.data(), head.size()));
  const std::optional<AsfDuration> duration = FindAsfDuration(head);
  if (!duration) return;
  std::string stored;
  AppendLittleEndian<std::uint64_t>(stored, duration->StoredFor(frames, m_settings.sampleRate));
  m_target.WriteAt(static_cast<std::int64_t>(duration->position), stored.data(), stored.size());
}

AudioFileError EncodingWriter::Checkpoint(AudioFileSync sync) {
  // Without a packet the muxer gives out what it has gathered for one of its own pages.
  if (int code = av_write_frame(m_muxer, nullptr); code < 0) return Failed(code);
  avio_flush(m_output);
  if (sync == AudioFileSync::disk) m_target.Flush();
  return m_target.Error();
}

AudioFileError EncodingWriter::Finish() {
  const auto silence = static_cast<std::int64_t>(m_blockFrames) * m_encoding.blocksAhead;
  const std::int64_t audio = m_encoded + static_cast<std::int64_t>(m_block.size() / Channels()) - silence;
  // A stream without any block is not a file that others can open.
  const int blocks = m_encoded == 0 && m_block.empty() ? 1 : m_encoding.blocksBehind;
  if (AudioFileError error = WriteSilence(blocks)) return error;
  if (!m_block.empty())
    if (AudioFileError error = EncodeBlock()) return error;
  if (AudioFileError error = Encode(nullptr)) return error;
  if (int code = av_write_trailer(m_muxer); code < 0) return Failed(code);
  avio_flush(m_output);
  if (m_encoding.type == aftWMA) StateDuration(audio);
  return m_target.Commit();
}

AudioFileError EncodingWriter::Failed(int code) const {
  if (m_target.Error()) return m_target.Error();
  return {afeCannotWrite, "cannot write '" + m_path + "': " + LibraryErrorText(code)};
}

}  // namespace

std::unique_ptr<AudioFileWriter> CreateEncodingWriter(const std::string& path, std::int32_t mode,
                                                      const AudioFileSettings& settings,
                                                      AudioFileError& error) {
  for (const Encoding& encoding : kEncodings) {
    if (encoding.mode != mode) continue;
    auto writer = std::make_unique<EncodingWriter>(encoding, settings, path);
    error = writer->Create();
    if (error) return nullptr;
    return writer;
  }
  error = {afeBadSettings, "cannot create '" + path + "': there is no creation mode " + std::to_string(mode)};
  return nullptr;
}

}  // namespace qm
