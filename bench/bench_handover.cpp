// A running order of 10,000 entries: every handover on its frame, every sample right, memory and open files.
#include <cstdio>

#include "Bench.h"
#include "support/HandoverRun.h"

int main() {
  using namespace qm;
  test::Palette palette(40, 2026);
  const double from = bench::ProcessSeconds();
  const test::HandoverOutcome outcome = test::HandoverRun().Play(palette, 10001);
  const double spent = bench::ProcessSeconds() - from;
  bench::Row("Running order of 10,001 random entries: handovers", static_cast<double>(outcome.handovers), "",
             "10000");
  bench::Row("- handovers off their frame", static_cast<double>(outcome.misplaced), "", "0");
  bench::Row("- frames that are not the sum of what should sound", static_cast<double>(outcome.wrongFrames), "",
             "0");
  bench::Row("- frames lost at the ends", static_cast<double>(outcome.lostFrames), "", "0");
  bench::Row("- most files open at once", outcome.mostFilesOpen, "", "<= 3");
  bench::Row("- memory at the end against a tenth of the way", outcome.residentLate / outcome.residentEarly, "",
             "about 1");
  bench::Row("- processor time of a handover, checking included", spent / 10000 * 1e3, " ms");
  return outcome.misplaced == 0 && outcome.wrongFrames == 0 && outcome.lostFrames == 0 ? 0 : 1;
}
