#pragma once
#include <cstddef>
#include <cstdint>

// Conversion of sample values, in loops that the compiler turns into vector code.
namespace qm {

// How WAV files store a sample; little-endian, whatever the processor.
enum class SampleCoding : std::uint8_t {
  unsigned8,
  signed16,
  signed24,
  signed32,
  float32,
  float64,
  aLaw,
  muLaw
};

std::size_t BytesOf(SampleCoding coding);

// Stored samples to full scale 1. Values that are no number become 0, infinite ones full scale.
void DecodeSamples(SampleCoding coding, const std::uint8_t* stored, std::size_t count, float* out);

// Full scale 1 to stored samples, rounded half to even and clipped; float codings keep values beyond full
// scale. Not for the two laws.
void EncodeSamples(SampleCoding coding, const float* samples, std::size_t count, std::uint8_t* stored);

void FloatTo16Bit(const float* samples, std::size_t count, std::int16_t* out);
void Float16Bit(const std::int16_t* samples, std::size_t count, float* out);

// Not a number to 0, infinite to full scale.
void MakeFinite(float* samples, std::size_t count);

}  // namespace qm
