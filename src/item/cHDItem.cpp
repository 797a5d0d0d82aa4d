#include "item/cHDItem.h"

#include <limits>

#include "item/ItemFields.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/Clock.h"
#include "kits/common/Dates.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {

namespace {

constexpr std::int32_t kSets = 3;
constexpr double kSecondsOfDay = 86400;

using Extras = item_field::Triple<std::shared_ptr<cHDItemTimeExtra>>;

void MakeExtras(Extras& extras) {
  for (std::int32_t set = 1; set <= kSets; ++set) extras.Set(set, std::make_shared<cHDItemTimeExtra>());
}

bool Same(const Extras& first, const Extras& second) {
  for (std::int32_t set = 1; set <= kSets; ++set)
    if (!first.Get(set)->IsSame(second.Get(set))) return false;
  return true;
}

void AppendWord(std::string& text, std::string_view word) {
  word = Trim(word);
  if (word.empty()) return;
  if (!text.empty()) text += ' ';
  text += word;
}

}  // namespace

cHDItem::cHDItem() : m_audioFormat(std::make_shared<cAudioFormat>()) {
#define QM_EXTRA(Name, ...) MakeExtras(m_##Name);
#include "item/cHDItemFields.def"
}

cHDItem::~cHDItem() = default;

void cHDItem::SetTotalLength(float value) {
  const float before = m_TotalLength;
  m_TotalLength = value;
  for (std::int32_t set = 1; set <= kSets; ++set)
    SetAudioEnd(set, before > 0 || value <= 0 ? Limit(AudioEnd(set), 0.0f, value) : value);
}

void cHDItem::SetAudioEnd(std::int32_t index, float value) {
  m_AudioEnd.Set(index, value);
  const float end = AudioEnd(index);
  if (Extro(index) > end) SetExtro(index, end);
  if (HookEnd(index) > end) SetHookEnd(index, end);
  if (IntroEnd(index) > end) SetIntroEnd(index, end);
  if (index != 1 || m_LoopEnd <= end) return;
  m_LoopEnd = end;
  if (m_LoopStart > m_LoopEnd) m_LoopStart = m_LoopEnd;
}

void cHDItem::SetIntroEnd(std::int32_t index, float value) {
  m_IntroEnd.Set(index, value);
  if (IntroStart(index) > IntroEnd(index)) SetIntroStart(index, IntroEnd(index));
}

void cHDItem::SetHookEnd(std::int32_t index, float value) {
  m_HookEnd.Set(index, value);
  if (HookStart(index) > HookEnd(index)) SetHookStart(index, HookEnd(index));
}

void cHDItem::ReplaceAudioFormat(const cAudioFormat& format) {
  m_audioFormat = std::make_shared<cAudioFormat>(format);
}

float cHDItem::AudioLength(std::int32_t index) const {
  return AudioEnd(index) - Greater(AudioStart(index), 0.0f);
}
float cHDItem::IntroLength(std::int32_t index) const {
  return IntroEnd(index) - IntroStart(index);
}
float cHDItem::HookLength(std::int32_t index) const {
  return HookEnd(index) - HookStart(index);
}

std::string cHDItem::FullDescription() const {
  std::string text;
  AppendWord(text, m_ItemTitle);
  for (std::int32_t index = 1; index <= kSets; ++index) AppendWord(text, ArtistName(index));
  for (std::int32_t index = 1; index <= kSets; ++index) AppendWord(text, ItemDescription(index));
  return text;
}

std::int16_t cHDItem::NumberLastPlays() const {
  constexpr std::size_t most = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(Limit<std::size_t>(m_plays.size(), 0, most));
}

void cHDItem::ClearLastPlays() {
  m_plays.clear();
}

std::int16_t cHDItem::AddLastPlay(double dtPlayed, const std::string& Reference) {
  if (dtPlayed == 0) return 0;
  m_plays.push_back({dtPlayed, Reference});
  return NumberLastPlays();
}

bool cHDItem::RemoveLastPlay(std::int32_t index) {
  if (index < 1 || index > std::ssize(m_plays)) return false;
  m_plays.erase(m_plays.begin() + index - 1);
  return true;
}

double cHDItem::LastPlay(std::int32_t index) const {
  return index < 1 || index > std::ssize(m_plays) ? 0 : m_plays[static_cast<std::size_t>(index - 1)].played;
}

std::string cHDItem::LastPlayReference(std::int32_t index) const {
  return index < 1 || index > std::ssize(m_plays) ? ""
                                                  : m_plays[static_cast<std::size_t>(index - 1)].reference;
}

bool cHDItem::WasPlayedRecently(std::int16_t Mode, float Value, const std::string& Reference,
                                const Clock* clock) const {
  if (AudioLength(1) <= 0 || m_TotalLength <= 0 || (Mode != 1 && Mode != 2)) return false;
  const double wanted = Mode == 1 ? Value : static_cast<double>(Value) * AudioLength(1);
  // The span is a time of day, which ends before midnight.
  const double span =
      static_cast<double>(Limit<std::int64_t>(RoundToWhole(wanted), -86399, 86399)) / kSecondsOfDay;
  const double now = SerialDateTime(DateTimeNow(clock ? *clock : *SystemClock()));
  for (const Play& play : m_plays)
    if (play.played + span > now && (Reference.empty() || SameReference(play.reference, Reference)))
      return true;
  return false;
}

std::string cHDItem::EndTypeDescription(enItemDescType DescriptionType) const {
  return EndTypeWord(m_EndType, DescriptionType);
}

void cHDItem::SetEndTypeDescription(enItemDescType, const std::string& word) {
  m_EndType = EndTypeOfWord(word);
}

void cHDItem::IncrementVersion() {
  if (m_Version > 32000) m_Version = 1;
  if (m_Version == 31) m_Version = 32;
  ++m_Version;
}

bool cHDItem::SameExtras(const cHDItem& other) const {
#define QM_EXTRA(Name, ...) \
  if (!Same(m_##Name, other.m_##Name)) return false;
#include "item/cHDItemFields.def"
  return true;
}

bool cHDItem::IsSame(const std::shared_ptr<const cHDItem>& other, bool TestLastPlays) const {
  return other && SameFields(*this, *other) && (!TestLastPlays || m_plays == other->m_plays) &&
         *m_audioFormat == *other->m_audioFormat && SameExtras(*other);
}

}  // namespace qm
