#include "kits/sound/AudioFileSamples.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstring>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileBytes.h"

namespace qm {

namespace {

using LawTable = std::array<float, 256>;

// ITU-T G.711.
LawTable MakeALaw() {
  LawTable table{};
  for (int code = 0; code < 256; ++code) {
    int bits = code ^ 0x55;
    int segment = bits >> 4 & 7;
    int value = (bits & 15) << 4;
    value = segment == 0 ? value + 8 : (value + 0x108) << (segment - 1);
    table[code] = static_cast<float>(bits & 0x80 ? value : -value) / 32768.0f;
  }
  return table;
}

LawTable MakeMuLaw() {
  LawTable table{};
  for (int code = 0; code < 256; ++code) {
    int bits = ~code & 0xFF;
    int value = ((((bits & 15) << 3) + 0x84) << (bits >> 4 & 7)) - 0x84;
    table[code] = static_cast<float>(bits & 0x80 ? -value : value) / 32768.0f;
  }
  return table;
}

void DecodeLaw(const LawTable& table, const std::uint8_t* stored, std::size_t count, float* out) {
  for (std::size_t i = 0; i < count; ++i) out[i] = table[stored[i]];
}

float Finite(double value) {
  if (std::isnan(value)) return 0;
  if (std::isinf(value)) return value > 0 ? 1.0f : -1.0f;
  return static_cast<float>(std::clamp(value, -static_cast<double>(FLT_MAX), static_cast<double>(FLT_MAX)));
}

// Adding and taking off 1.5 times 2^23 (2^52) leaves a whole number, rounded as the processor rounds: half to
// even.
float Rounded(float value) {
  return (value + 12582912.0f) - 12582912.0f;
}
double Rounded(double value) {
  return (value + 6755399441055744.0) - 6755399441055744.0;
}

// Signed whole numbers of `bytes` bytes; in double, as a float holds not every 32-bit number.
void EncodeWhole(const float* samples, std::size_t count, std::size_t bytes, std::uint8_t* stored) {
  const double scale = std::exp2(8.0 * static_cast<double>(bytes) - 1);
  for (std::size_t i = 0; i < count; ++i) {
    const double value = std::clamp(static_cast<double>(Finite(samples[i])) * scale, -scale, scale - 1);
    std::uint8_t raw[4];
    StoreLittleEndian(raw, static_cast<std::int32_t>(Rounded(value)));
    std::memcpy(stored + i * bytes, raw, bytes);
  }
}

}  // namespace

std::size_t BytesOf(SampleCoding coding) {
  static constexpr std::size_t bytes[] = {1, 2, 3, 4, 4, 8, 1, 1};
  return bytes[static_cast<std::size_t>(coding)];
}

void DecodeSamples(SampleCoding coding, const std::uint8_t* stored, std::size_t count, float* out) {
  static const LawTable aLaw = MakeALaw(), muLaw = MakeMuLaw();
  switch (coding) {
    case SampleCoding::unsigned8:
      for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<float>(stored[i] - 128) * (1.0f / 128);
      return;
    case SampleCoding::signed16:
      for (std::size_t i = 0; i < count; ++i)
        out[i] = static_cast<float>(LoadLittleEndian<std::int16_t>(stored + 2 * i)) * (1.0f / 32768);
      return;
    case SampleCoding::signed24:
      for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* p = stored + 3 * i;
        auto value = static_cast<std::int32_t>(LoadLittleEndian<std::uint16_t>(p) << 8 |
                                               static_cast<std::uint32_t>(p[2]) << 24);
        out[i] = static_cast<float>(value >> 8) * (1.0f / 8388608);
      }
      return;
    case SampleCoding::signed32:
      for (std::size_t i = 0; i < count; ++i)
        out[i] = static_cast<float>(LoadLittleEndian<std::int32_t>(stored + 4 * i)) * (1.0f / 2147483648.0f);
      return;
    case SampleCoding::float32:
      for (std::size_t i = 0; i < count; ++i) out[i] = LoadLittleEndian<float>(stored + 4 * i);
      return MakeFinite(out, count);
    case SampleCoding::float64:
      for (std::size_t i = 0; i < count; ++i) out[i] = Finite(LoadLittleEndian<double>(stored + 8 * i));
      return;
    case SampleCoding::aLaw:
      return DecodeLaw(aLaw, stored, count, out);
    case SampleCoding::muLaw:
      return DecodeLaw(muLaw, stored, count, out);
  }
}

void EncodeSamples(SampleCoding coding, const float* samples, std::size_t count, std::uint8_t* stored) {
  if (coding == SampleCoding::float32) {
    for (std::size_t i = 0; i < count; ++i) StoreLittleEndian(stored + 4 * i, Finite(samples[i]));
  } else if (coding == SampleCoding::float64) {
    for (std::size_t i = 0; i < count; ++i)
      StoreLittleEndian(stored + 8 * i, static_cast<double>(Finite(samples[i])));
  } else {
    EncodeWhole(samples, count, BytesOf(coding), stored);
  }
  // The narrowest samples are the only ones that WAV stores without a sign.
  if (coding == SampleCoding::unsigned8)
    for (std::size_t i = 0; i < count; ++i) stored[i] ^= 0x80;
}

void FloatTo16Bit(const float* samples, std::size_t count, std::int16_t* out) {
  for (std::size_t i = 0; i < count; ++i) {
    float value = samples[i] * 32768.0f;
    value = value > -32768.0f ? value : -32768.0f;
    value = value < 32767.0f ? value : 32767.0f;
    out[i] = static_cast<std::int16_t>(static_cast<std::int32_t>(Rounded(value)));
  }
}

void Float16Bit(const std::int16_t* samples, std::size_t count, float* out) {
  for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<float>(samples[i]) * (1.0f / 32768);
}

void MakeFinite(float* samples, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    float value = samples[i];
    value = value == value ? value : 0.0f;
    value = value > FLT_MAX ? 1.0f : value;
    samples[i] = value < -FLT_MAX ? -1.0f : value;
  }
}

}  // namespace qm
