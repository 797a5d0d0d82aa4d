#pragma once
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace qm {

class cAudioFile;
class VoiceStream;

// The open file of a voice and the stream that is being made from it. The file belongs to whoever runs Work.
class SourceReader {
 public:
  // Takes over an open file.
  explicit SourceReader(std::unique_ptr<cAudioFile> file);
  ~SourceReader();

  // Any thread. From now on sound is made for this stream; one that is being worked on is left at the next
  // chunk.
  void SetStream(std::shared_ptr<VoiceStream> stream);

  // One caller at a time. Makes a chunk of the present stream; false when nothing was wanted.
  bool Work();

  // Device frames that are ready, for choosing the reader that needs work most; nothing wanted: the largest
  // value.
  std::size_t Urgency() const;

 private:
  std::shared_ptr<VoiceStream> Stream() const;

  const std::unique_ptr<cAudioFile> m_file;
  mutable std::mutex m_mutex;
  std::shared_ptr<VoiceStream> m_stream;
};

// Threads that read ahead for many voices, the one with the least sound in hand first.
//
// A thread that takes work leaves another one free behind it, made if need be: a file on a disk that hangs
// keeps its own voice waiting and no other.
class ReaderPool {
 public:
  ReaderPool() = default;
  ~ReaderPool();

  // Host thread. A removed reader's file is closed when the thread that works on it lets go.
  void Add(const std::shared_ptr<SourceReader>& reader);
  void Remove(const std::shared_ptr<SourceReader>& reader);
  // There is new work. Rings that empty are looked after every few milliseconds anyway.
  void Wake();

 private:
  struct Entry {
    std::shared_ptr<SourceReader> reader;
    bool busy = false;
  };
  void Run();
  void WaitForWork(std::unique_lock<std::mutex>& lock);
  void LeaveOneFree();
  std::shared_ptr<SourceReader> TakeMostUrgent();
  void PutBack(const std::shared_ptr<SourceReader>& reader);

  std::mutex m_mutex;
  std::condition_variable m_wake;
  std::vector<Entry> m_entries;
  std::size_t m_free = 0;  // threads that wait
  bool m_lookout = false;  // one of them looks at the rings from time to time
  bool m_stop = false;
  std::vector<std::thread> m_threads;
};

}  // namespace qm
