#include "kits/sound/engine/SourceReader.h"

#include <algorithm>
#include <chrono>
#include <limits>

#include "kits/sound/cAudioFile.h"
#include "kits/sound/engine/VoiceStream.h"

namespace qm {

namespace {
// How long a ring may empty unnoticed: far below what it holds.
constexpr auto kLookEvery = std::chrono::milliseconds(5);
constexpr std::size_t kNothingWanted = std::numeric_limits<std::size_t>::max();
}  // namespace

SourceReader::SourceReader(std::unique_ptr<cAudioFile> file) : m_file(std::move(file)) {}

SourceReader::~SourceReader() = default;

void SourceReader::SetStream(std::shared_ptr<VoiceStream> stream) {
  // The one before may be the last holder's: it is let go outside the lock.
  const std::lock_guard lock(m_mutex);
  m_stream.swap(stream);
}

std::shared_ptr<VoiceStream> SourceReader::Stream() const {
  const std::lock_guard lock(m_mutex);
  return m_stream;
}

bool SourceReader::Work() {
  const std::shared_ptr<VoiceStream> stream = Stream();
  if (!stream || !stream->WantsMore()) return false;
  stream->Produce(*m_file, VoiceStream::kChunk);
  return true;
}

std::size_t SourceReader::Urgency() const {
  const std::shared_ptr<VoiceStream> stream = Stream();
  return stream && stream->WantsMore() ? stream->Fill() : kNothingWanted;
}

ReaderPool::~ReaderPool() {
  {
    const std::lock_guard lock(m_mutex);
    m_stop = true;
  }
  m_wake.notify_all();
  // No thread makes another once m_stop is set.
  for (std::thread& thread : m_threads) thread.join();
}

void ReaderPool::Add(const std::shared_ptr<SourceReader>& reader) {
  {
    const std::lock_guard lock(m_mutex);
    m_entries.push_back({reader, false});
    LeaveOneFree();
  }
  Wake();
}

void ReaderPool::Remove(const std::shared_ptr<SourceReader>& reader) {
  const std::lock_guard lock(m_mutex);
  std::erase_if(m_entries, [&](const Entry& entry) { return entry.reader == reader; });
}

void ReaderPool::Wake() {
  m_wake.notify_one();
}

std::shared_ptr<SourceReader> ReaderPool::TakeMostUrgent() {
  Entry* most = nullptr;
  std::size_t least = kNothingWanted;
  for (Entry& entry : m_entries) {
    const std::size_t urgency = entry.busy ? kNothingWanted : entry.reader->Urgency();
    if (urgency < least) {
      least = urgency;
      most = &entry;
    }
  }
  if (!most) return nullptr;
  most->busy = true;
  return most->reader;
}

void ReaderPool::PutBack(const std::shared_ptr<SourceReader>& reader) {
  const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                  [&](const Entry& candidate) { return candidate.reader == reader; });
  if (entry != m_entries.end()) entry->busy = false;
}

// With the lock held.
void ReaderPool::LeaveOneFree() {
  if (m_free > 0) {
    m_wake.notify_one();
  } else if (!m_stop && m_threads.size() <= m_entries.size()) {
    m_threads.emplace_back([this] { Run(); });
  }
}

void ReaderPool::WaitForWork(std::unique_lock<std::mutex>& lock) {
  ++m_free;
  if (m_lookout) {
    m_wake.wait(lock);
  } else {
    m_lookout = true;
    m_wake.wait_for(lock, kLookEvery);
    m_lookout = false;
  }
  --m_free;
}

void ReaderPool::Run() {
  std::unique_lock lock(m_mutex);
  while (!m_stop) {
    if (std::shared_ptr<SourceReader> reader = TakeMostUrgent()) {
      LeaveOneFree();
      lock.unlock();
      reader->Work();
      lock.lock();
      PutBack(reader);
      // A removed reader closes its file here, where waiting for a slow disk hurts nobody.
      lock.unlock();
      reader.reset();
      lock.lock();
    } else {
      WaitForWork(lock);
    }
  }
}

}  // namespace qm
