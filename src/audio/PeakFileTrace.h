#pragma once
#include <cstdint>

namespace qm {

enum enPeakFileErr : std::int32_t;

// The trace lines around one operation.
class PeakFileTrace {
 public:
  explicit PeakFileTrace(const char* name);
  ~PeakFileTrace();
  PeakFileTrace(const PeakFileTrace&) = delete;
  PeakFileTrace& operator=(const PeakFileTrace&) = delete;

  // The operation's result, handed through.
  enPeakFileErr Result(enPeakFileErr error) { return m_error = error; }

 private:
  const char* m_name;
  enPeakFileErr m_error{};
};

}  // namespace qm
