#pragma once
#include <chrono>
#include <optional>
#include <string>

// Dates of files on the scale of peak files: serial days (day 0 is 30 December 1899) in UTC, so that a change
// of the clocks or another time zone leaves peak files valid.
namespace qm {

class Clock;

// When the file was last written; nothing when it cannot be told.
std::optional<std::chrono::system_clock::time_point> GetFileModified(const std::string& path);

// In whole seconds, rounded down: file systems differ in what they keep beyond that.
double NormaliseFileDate(std::chrono::system_clock::time_point moment);

double CurrentFileDate(const Clock& clock);

}  // namespace qm
