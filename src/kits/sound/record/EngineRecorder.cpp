#include "kits/sound/record/EngineRecorder.h"

#include <algorithm>
#include <exception>

#include "kits/sound/cAudioFile.h"
#include "kits/sound/devices/OutputKeeper.h"
#include "kits/sound/engine/AudioEngine.h"
#include "kits/sound/record/RecordingChain.h"
#include "kits/sound/record/RecordingFeed.h"
#include "kits/sound/record/RecordingFile.h"
#include "kits/sound/record/RecordingNotes.h"

namespace qm {

namespace {
constexpr int kStepsPerPump = 50;  // so that a host with nothing to hear still gets its turn
}

// The feed goes first: its thread works on all the others.
struct EngineRecorder::Session {
  explicit Session(std::function<void()> onPending) : notes(std::move(onPending)) {}

  // Everything taken is in the file.
  void Stop() {
    feed->Stop();
    chain->Finish();
  }

  RecordingFile file;
  RecordingNotes notes;
  std::unique_ptr<RecordingChain> chain;
  std::unique_ptr<RecordingFeed> feed;
};

// Nobody is told: those who listen may be going too.
EngineRecorder::~EngineRecorder() {
  if (!m_session) return;
  m_session->Stop();
  m_session->file.Finish();
}

std::int32_t EngineRecorder::Fail(std::int32_t number, const std::string& text) {
  events.Error(number, text);
  return number;
}

std::int32_t EngineRecorder::Open(const RecordingRequest& request) {
  if (m_session) return Fail(ereOpen, "a recording is open already");
  auto session = std::make_shared<Session>(m_engine->PendingHook());
  try {
    if (const std::int32_t number = Prepare(*session, request)) return number;
  } catch (const std::exception& caught) {
    return Fail(afeCannotWrite, caught.what());
  }
  m_session = std::move(session);
  return 0;
}

// The input first, so that a file is replaced only when there is something to replace it.
std::int32_t EngineRecorder::Prepare(Session& session, const RecordingRequest& request) {
  std::string errorText;
  if (request.format.Channels() < 1 || request.format.Channels() > 2)
    return Fail(afeBadSettings, "recordings have one or two channels");
  session.feed = m_engine->MakeFeed(m_deviceNumber, errorText);
  if (!session.feed || !session.feed->Open(request.format.SampleRate(), errorText))
    return Fail(edfAbsent, errorText);
  if (const AudioFileError error = session.file.Create(request.path, request.format))
    return Fail(error.number, error.text);
  session.chain =
      std::make_unique<RecordingChain>(session.feed->Format(), request, session.file, session.notes);
  if (m_limitSeconds > 0) session.chain->SetLimit(m_limitSeconds);
  if (!session.feed->Start(*session.chain, session.notes, errorText)) {
    session.file.Delete();
    return Fail(edfAbsent, errorText);
  }
  m_position = 0;
  m_remaining = session.feed->Seconds() >= 0 ? session.feed->Seconds() : session.file.SecondsOfRoom();
  if (m_limitSeconds > 0) m_remaining = std::min(m_remaining, m_limitSeconds);
  return 0;
}

bool EngineRecorder::Stop() {
  const auto session = m_session;
  if (!session) return false;
  session->Stop();
  Deliver();
  return true;
}

std::int32_t EngineRecorder::Close(enRecordingKeep keep) {
  if (!Stop()) return 0;
  const auto session = std::move(m_session);
  if (!session) return 0;  // closed by a listener
  std::int32_t number = 0;
  if (keep == erkKeep)
    number = session->file.Finish().number;
  else
    session->file.Delete();
  events.Closed();
  return number;
}

bool EngineRecorder::Pause() {
  if (m_session) m_session->chain->SetGate(m_session->feed->Captured(), ergPaused);
  return m_session != nullptr;
}

bool EngineRecorder::Resume() {
  if (m_session) m_session->chain->SetGate(m_session->feed->Captured(), ergOpen);
  return m_session != nullptr;
}

void EngineRecorder::SetTriggerLevel(std::int16_t level) {
  if (m_session) m_session->chain->SetTriggerLevel(level);
}

std::uint64_t EngineRecorder::FramesLost() const {
  return m_session ? m_session->feed->Lost() : 0;
}

bool EngineRecorder::Pump() {
  const auto session = m_session;
  bool any = false;
  for (int step = 0; step < kStepsPerPump && session && m_session == session; ++step) {
    const bool moved = session->feed->Pump();
    any = Deliver() || moved || any;
    if (!moved) break;
  }
  return any;
}

// A listener may close, or open anew.
bool EngineRecorder::Deliver() {
  const auto session = m_session;
  bool any = false;
  while (session && m_session == session) {
    const std::optional<RecordingNote> note = session->notes.Next();
    if (!note) break;
    Tell(*note, session->file.Format().SampleRate());
    any = true;
  }
  return any;
}

void EngineRecorder::Tell(const RecordingNote& note, std::int32_t sampleRate) {
  switch (note.kind) {
    case ernPosition:
      m_position = static_cast<double>(note.frames) / sampleRate;
      m_remaining = note.remaining;
      return events.Position();
    case ernLevel:
      return events.Level(note.left, note.right);
    case ernState:
      return events.State(note.number);
    case ernError:
      return events.Error(note.number, note.text);
    case ernEnd:
      return events.EndReached();
  }
}

}  // namespace qm
