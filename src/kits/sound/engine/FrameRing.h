#pragma once
#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <memory>

namespace qm {

// Interleaved float frames between one producing and one consuming thread. Neither call waits, allocates or
// calls the system.
//
// Invariants: m_written and m_read only grow; m_read <= m_written <= m_read + capacity. The producer alone
// stores m_written, behind the frames it tells of; the consumer alone stores m_read, behind its last look at
// them.
class FrameRing {
 public:
  // The capacity is rounded up to a power of two.
  FrameRing(std::size_t frames, std::size_t channels)
      : m_channels(channels), m_capacity(PowerOfTwo(frames)), m_samples(new float[m_capacity * channels]) {}

  std::size_t Capacity() const { return m_capacity; }
  std::size_t Channels() const { return m_channels; }

  // Frames written and not yet consumed. Exact on either side for its own half: the producer sees at least,
  // the consumer at most, what is really there.
  std::size_t Fill() const {
    return m_written.load(std::memory_order_acquire) - m_read.load(std::memory_order_acquire);
  }
  std::size_t Space() const { return m_capacity - Fill(); }

  // Producer only. Appends up to `frames` frames; returns how many found room.
  std::size_t Write(const float* frames, std::size_t count) {
    const std::size_t at = m_written.load(std::memory_order_relaxed);
    count = std::min(count, m_capacity - (at - m_read.load(std::memory_order_acquire)));
    Span(at, count, [&](float* slot, std::size_t offset, std::size_t n) {
      std::memcpy(slot, frames + offset * m_channels, n * m_channels * sizeof(float));
    });
    m_written.store(at + count, std::memory_order_release);
    return count;
  }

  // Consumer only. Copies up to `count` frames, beginning `skip` frames behind the oldest, and leaves them
  // there.
  std::size_t Peek(float* frames, std::size_t count, std::size_t skip = 0) const {
    const std::size_t fill = Fill();
    if (skip >= fill) return 0;
    count = std::min(count, fill - skip);
    Span(m_read.load(std::memory_order_relaxed) + skip, count,
         [&](float* slot, std::size_t offset, std::size_t n) {
           std::memcpy(frames + offset * m_channels, slot, n * m_channels * sizeof(float));
         });
    return count;
  }

  // Consumer only. The oldest frames that lie in one piece: a pointer and how many, at most `count`.
  const float* Front(std::size_t& count) const {
    const std::size_t at = m_read.load(std::memory_order_relaxed) & (m_capacity - 1);
    count = std::min({count, Fill(), m_capacity - at});
    return m_samples.get() + at * m_channels;
  }

  // Consumer only. Gives up the oldest frames; `count` is at most Fill().
  void Consume(std::size_t count) {
    m_read.store(m_read.load(std::memory_order_relaxed) + count, std::memory_order_release);
  }

  // Consumer only.
  std::size_t Read(float* frames, std::size_t count) {
    count = Peek(frames, count);
    Consume(count);
    return count;
  }

 private:
  static std::size_t PowerOfTwo(std::size_t frames) {
    std::size_t power = 1;
    while (power < frames) power *= 2;
    return power;
  }

  // Calls piece(slot, offset, frames) for the one or two runs that `count` frames from counter `at` occupy.
  template <class Piece>
  void Span(std::size_t at, std::size_t count, Piece piece) const {
    const std::size_t index = at & (m_capacity - 1);
    const std::size_t first = std::min(count, m_capacity - index);
    if (first) piece(m_samples.get() + index * m_channels, std::size_t{0}, first);
    if (count > first) piece(m_samples.get(), first, count - first);
  }

  const std::size_t m_channels;
  const std::size_t m_capacity;
  const std::unique_ptr<float[]> m_samples;
  alignas(64) std::atomic<std::size_t> m_written{0};
  alignas(64) std::atomic<std::size_t> m_read{0};
};

}  // namespace qm
