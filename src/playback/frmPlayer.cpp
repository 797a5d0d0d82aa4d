#include "playback/frmPlayer.h"

#include <algorithm>

#include "contract/PlayerVocabulary.h"
#include "kits/sound/SoundSystem.h"
#include "kits/sound/ctlVellanPlayer.h"

namespace qm {
namespace {

struct PlainNotification {
  Event<> ctlVellanPlayer::Events::*notification;
  enPlayerEvent event;
};

constexpr PlainNotification kPlain[] = {
    {&ctlVellanPlayer::Events::AudioEnd, peAudioEndReached},
    {&ctlVellanPlayer::Events::Closed, peClosed},
    {&ctlVellanPlayer::Events::Cued, peCued},
    {&ctlVellanPlayer::Events::Opened, peOpened},
    {&ctlVellanPlayer::Events::Paused, pePaused},
    {&ctlVellanPlayer::Events::Playing, pePlaying},
    {&ctlVellanPlayer::Events::LoopRestart, peLoopRestart},
    {&ctlVellanPlayer::Events::LoopCompleted, peLoopCompleted},
};

struct ValueNotification {
  Event<float> ctlVellanPlayer::Events::*notification;
  enPlayerEvent event;
};

constexpr ValueNotification kValues[] = {
    {&ctlVellanPlayer::Events::PlaySpeed, pePlaySpeedChanged},
    {&ctlVellanPlayer::Events::TimeStretch, peTimeStretchRationChanged},
    {&ctlVellanPlayer::Events::Volume, peVolumeChanged},
};

struct ReferenceNotification {
  Event<std::int16_t> ctlVellanPlayer::Events::*notification;
  enPlayerEvent event;
};

constexpr ReferenceNotification kReferences[] = {
    {&ctlVellanPlayer::Events::VolumeStart, peVolumeChangeStartNotify},
    {&ctlVellanPlayer::Events::VolumeNotify, peVolumeChangeNotify},
    {&ctlVellanPlayer::Events::VolumeEnd, peVolumeChangeEndNotify},
};

constexpr enPlayerEvent kMarks[] = {peSweeperStartReached, peIntroStartReached, peIntroEndReached,
                                    peHookStartReached,    peHookEndReached,    peExtroReached};

bool IsMark(std::int32_t event) {
  return std::find(std::begin(kMarks), std::end(kMarks), event) != std::end(kMarks);
}

}  // namespace

frmPlayer::frmPlayer(std::shared_ptr<SoundSystem> sound)
    : m_sound(std::move(sound)), m_control(m_sound ? m_sound->CreatePlayer() : nullptr) {}

frmPlayer::~frmPlayer() {
  Unload();
}

void frmPlayer::Load(Handler handler) {
  Unload();
  if (!m_control) return;
  m_handler = std::move(handler);
  auto& events = m_control->events;
  for (const auto& row : kPlain)
    m_wires.push_back(
        (events.*row.notification).connect([this, event = row.event] { m_handler(event, 0, 0, {}); }));
  for (const auto& row : kValues)
    m_wires.push_back((events.*row.notification).connect([this, event = row.event](float value) {
      m_handler(event, value, 0, {});
    }));
  for (const auto& row : kReferences)
    m_wires.push_back((events.*row.notification).connect([this, event = row.event](std::int16_t reference) {
      m_handler(event, reference, 0, {});
    }));
  m_wires.push_back(events.Level.connect(
      [this](std::int16_t left, std::int16_t right) { m_handler(peAudioLevelChanged, left, right, {}); }));
  m_wires.push_back(events.Error.connect([this](std::int32_t number, const std::string& text) {
    m_handler(peError, static_cast<float>(number), 0, text);
  }));
  m_wires.push_back(events.Position.connect([this] {
    m_handler(pePositionChanged, m_control->SecondsPlayed(), m_control->SecondsRemaining(), {});
  }));
  m_wires.push_back(events.Mark.connect([this](std::int32_t event, std::int32_t tag) {
    if (IsMark(event)) m_handler(event, static_cast<float>(tag), 0, {});
  }));
}

void frmPlayer::Unload() {
  for (auto& wire : m_wires) wire.disconnect();
  m_wires.clear();
}

}  // namespace qm
