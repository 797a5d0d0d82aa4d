#include "kits/sound/AudioFileOgg.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <vector>

#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileLibrary.h"
#include "kits/sound/AudioFileOggLinks.h"
#include "kits/sound/cAudioFile.h"

extern "C" {
#include <libavcodec/vorbis_parser.h>
}

namespace qm {

namespace {

constexpr std::int64_t kFramesPerIndexEntry = 1 << 18;
constexpr std::int64_t kPrerollFrames = 2 * 8192;  // two of the longest blocks
constexpr std::size_t kMostUncounted = 4096;

// All pages are walked once at opening: only that tells the links and their lengths for certain. Then the
// counts in the pages give every packet its place, whatever is missing before it.
class OggSource : public AudioPacketSource {
 public:
  explicit OggSource(std::shared_ptr<AudioFileBytes> bytes) : AudioPacketSource(std::move(bytes)) {}

  AudioFileError Open();
  const char* DecoderName() const override { return "vorbis"; }
  bool FillParameters(AVCodecParameters* parameters) const override;
  bool Next(AVPacket* packet, AudioPacketPlace& place) override;
  bool Position(std::int64_t rawFrame) override;

 private:
  // A page's end from which reading can start.
  struct Entry {
    OggWalk walk;
    std::int64_t raw = 0;
    std::size_t link = 0;
  };
  struct Ready {
    std::vector<std::uint8_t> data;
    AudioPacketPlace place;
  };

  bool AddLink();
  void ScanPages(OggLink& link);
  void MeasureEnd(OggLink& link);
  void Describe();
  void Start(const Entry& entry);
  bool ReadPage();
  void CollectPackets(const OggPage& page);
  void PlacePackets(const OggPage& page);
  const std::vector<std::uint8_t>* HeaderDue();

  std::vector<OggLink> m_links;
  std::vector<Entry> m_index;
  std::size_t m_link = 0;   // the one that reading is in
  VorbisHeaders m_headers;  // its headers
  VorbisParserPtr m_parser;
  std::size_t m_decoderLink = 0;  // the one whose headers the decoder has
  int m_headersGiven = 0;
  OggPackets m_packets;
  OggWalk m_walk;
  bool m_primed = false;                   // the packet before the next one is known
  std::deque<Ready> m_collected, m_ready;  // without and with a place
};

AudioFileError OggSource::Open() {
  SilenceLibrary();
  while (AddLink()) continue;
  if (m_links.empty()) return {afeUnsupported, "is an Ogg file that holds no Vorbis audio"};
  m_info.preroll = kPrerollFrames;
  m_info.length = m_links.back().RawOf(m_links.back().lastGranule);
  Start(m_index.front());
  Describe();
  return {};
}

// Measures the stream behind those already known; false when there is none that goes on at the same rate.
bool OggSource::AddLink() {
  OggLink link;
  VorbisHeaders headers;
  const OggLink* before = m_links.empty() ? nullptr : &m_links.back();
  if (!FindOggLink(*m_bytes, before ? before->end : 0, link, headers)) return false;
  if (before && headers.SampleRate() != m_headers.SampleRate()) return false;
  m_parser = headers.MakeParser();
  if (!m_parser) return false;
  if (before) link.raw = before->RawOf(before->lastGranule);
  m_headers = std::move(headers);
  MeasureOggStart(*m_bytes, m_headers, link);
  m_link = m_links.size();
  m_links.push_back(link);
  ScanPages(m_links.back());
  MeasureEnd(m_links.back());
  return true;
}

void OggSource::ScanPages(OggLink& link) {
  OggWalk walk{link.audio, link.firstGranule, link.audio};
  m_index.push_back({walk, link.raw, m_link});
  link.lastGranule = link.firstGranule;
  for (OggPage page; NextOggPage(*m_bytes, link, walk, page);) {
    if (page.granule < 0) continue;
    const std::int64_t raw = link.RawOf(page.granule);
    if (raw >= m_index.back().raw + kFramesPerIndexEntry) m_index.push_back({walk, raw, m_link});
    link.lastPage = page.position;
    link.lastGranule = page.granule;
  }
  link.end = walk.position;
}

// The last page may count fewer frames than its packets hold, so their places follow from the page before.
void OggSource::MeasureEnd(OggLink& link) {
  std::size_t entry = m_index.size() - 1;
  while (m_index[entry].raw > link.raw &&
         m_index[entry].raw > link.RawOf(link.lastGranule) - kFramesPerIndexEntry)
    --entry;
  Start(m_index[entry]);
  bool countedBefore = m_index[entry].raw > link.raw;
  std::int64_t before = m_walk.granule;
  for (OggPage page; NextOggPage(*m_bytes, link, m_walk, page);) {
    CollectPackets(page);
    if (page.granule < 0) continue;
    if (page.position == link.lastPage && countedBefore) {
      link.wholeGranule = before;
      for (const Ready& packet : m_collected) link.wholeGranule += packet.place.frames;
    }
    countedBefore = true;
    before = page.granule;
    m_collected.clear();
  }
  link.wholeGranule = std::max(link.wholeGranule, link.lastGranule);
}

void OggSource::Describe() {
  m_info.format.SetFormatType(aftOgg);
  m_info.format.SetSampleRate(m_headers.SampleRate());
  m_info.format.SetChannels(m_headers.Channels());
  std::int64_t bitRate = m_headers.NominalBitRate();
  if (bitRate == 0 && m_info.length > 0)
    bitRate = m_bytes->Size() * 8 * m_headers.SampleRate() / m_info.length;
  m_info.format.SetBitRate(static_cast<std::int32_t>(bitRate));
}

bool OggSource::FillParameters(AVCodecParameters* parameters) const {
  const std::vector<std::uint8_t> extra = m_headers.ExtraData();
  parameters->codec_type = AVMEDIA_TYPE_AUDIO;
  parameters->codec_id = AV_CODEC_ID_VORBIS;
  parameters->sample_rate = m_headers.SampleRate();
  av_channel_layout_default(&parameters->ch_layout, m_headers.Channels());
  parameters->extradata = static_cast<std::uint8_t*>(av_mallocz(extra.size() + AV_INPUT_BUFFER_PADDING_SIZE));
  if (parameters->extradata == nullptr) return false;
  std::memcpy(parameters->extradata, extra.data(), extra.size());
  parameters->extradata_size = static_cast<int>(extra.size());
  return true;
}

void OggSource::Start(const Entry& entry) {
  if (entry.link != m_link) {
    OggLink same;
    FindOggLink(*m_bytes, m_links[entry.link].start, same, m_headers);
    m_parser = m_headers.MakeParser();
    m_link = entry.link;
  }
  m_headersGiven = 0;
  m_packets.Reset();
  m_primed = false;
  m_collected.clear();
  m_ready.clear();
  m_walk = entry.walk;
}

bool OggSource::ReadPage() {
  OggPage page;
  while (!NextOggPage(*m_bytes, m_links[m_link], m_walk, page)) {
    if (m_link + 1 == m_links.size()) return false;
    const OggLink& next = m_links[m_link + 1];
    Start({{next.audio, next.firstGranule, next.audio}, next.raw, m_link + 1});
  }
  CollectPackets(page);
  if (page.granule >= 0) PlacePackets(page);
  return true;
}

void OggSource::CollectPackets(const OggPage& page) {
  std::deque<Ready> ended;
  const bool follows = m_packets.Add(page, [&](const std::uint8_t* data, std::size_t size) {
    const int frames =
        m_parser && size > 0 ? av_vorbis_parse_frame(m_parser.get(), data, static_cast<int>(size)) : 0;
    ended.push_back({{data, data + size}, {0, std::max(0, frames)}});
  });
  // The first packet of all, and the first behind a gap, only prepares the decoder for the second.
  if (!ended.empty() && !(m_primed && follows)) ended.front().place.frames = 0;
  m_primed = !ended.empty() || (m_primed && follows);
  if (m_collected.size() > kMostUncounted) m_collected.clear();
  m_collected.insert(m_collected.end(), ended.begin(), ended.end());
}

// From the page's count backwards.
void OggSource::PlacePackets(const OggPage& page) {
  const OggLink& link = m_links[m_link];
  const std::int64_t last = link.RawOf(link.lastGranule);
  std::int64_t end = link.RawOf(page.position == link.lastPage ? link.wholeGranule : page.granule);
  for (auto packet = m_collected.rbegin(); packet != m_collected.rend(); ++packet) {
    end -= packet->place.frames;
    packet->place.start = end;
    packet->place.frames = std::clamp<std::int64_t>(last - end, 0, packet->place.frames);
  }
  for (Ready& packet : m_collected) m_ready.push_back(std::move(packet));
  m_collected.clear();
}

// The next header that the decoder needs before it can go on in another link.
const std::vector<std::uint8_t>* OggSource::HeaderDue() {
  if (m_decoderLink == m_link) return nullptr;
  if (++m_headersGiven == 1) return &m_headers.identification;
  m_decoderLink = m_link;
  return &m_headers.setup;
}

bool OggSource::Next(AVPacket* packet, AudioPacketPlace& place) {
  while (m_ready.empty())
    if (!ReadPage()) return false;
  const std::vector<std::uint8_t>* header = HeaderDue();
  const std::vector<std::uint8_t>& data = header ? *header : m_ready.front().data;
  place = m_ready.front().place;
  if (header) place.frames = 0;
  if (!data.empty()) {
    if (av_new_packet(packet, static_cast<int>(data.size())) < 0) return false;
    std::memcpy(packet->data, data.data(), data.size());
  }
  if (!header) m_ready.pop_front();
  return true;
}

bool OggSource::Position(std::int64_t rawFrame) {
  auto behind = std::upper_bound(m_index.begin(), m_index.end(), rawFrame,
                                 [](std::int64_t wanted, const Entry& entry) { return wanted < entry.raw; });
  Start(behind == m_index.begin() ? m_index.front() : *std::prev(behind));
  OggPage page;
  for (OggWalk walk = m_walk; NextOggPage(*m_bytes, m_links[m_link], walk, page);) {
    if (page.granule >= 0 && m_links[m_link].RawOf(page.granule) > rawFrame) break;
    if (page.granule >= 0) m_walk = walk;
  }
  return true;
}

}  // namespace

std::unique_ptr<AudioPacketSource> MakeOggSource(std::shared_ptr<AudioFileBytes> bytes,
                                                 AudioFileError& error) {
  auto source = std::make_unique<OggSource>(std::move(bytes));
  error = source->Open();
  if (error) return nullptr;
  return source;
}

}  // namespace qm
