#pragma once
#include <cstddef>
#include <span>
#include <vector>

// Work on blocks of interleaved float audio, full scale 1. Stateless; any thread.
namespace qm {

// The level of a percentage of full scale.
float LevelOfPercent(double percent);

// How many frames come before the first one in which any channel is above the level; all of them when none
// is.
std::size_t FramesBelowLevel(std::span<const float> block, std::size_t channels, float level);

// Scales by a percentage; 100 leaves every bit as it is.
void ApplyGain(std::span<float> block, double percent);

// block = (block + other) at one volume each, in per cent. As many samples of both as the shorter has.
void MixInto(std::span<float> block, std::span<const float> other, double volumePercent);

// Brings samples that no gain could make audio of again into +-65536, so that sums and filters stay finite;
// what is no number becomes 0. Whole-number audio stored as float keeps its values.
void LimitRange(std::span<float> block);

}  // namespace qm
