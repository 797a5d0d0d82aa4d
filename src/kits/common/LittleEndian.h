#pragma once
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

// Numbers in the byte order of the files that the library reads and writes: integers of any width and floats,
// the lowest byte first.
namespace qm {

// The number that begins at bytes, of which sizeof(T) are read.
template <class T>
T LoadLittleEndian(const void* bytes) {
  static_assert(std::is_arithmetic_v<T>);
  std::array<std::byte, sizeof(T)> raw;
  std::memcpy(raw.data(), bytes, raw.size());
  if constexpr (std::endian::native == std::endian::big) std::reverse(raw.begin(), raw.end());
  return std::bit_cast<T>(raw);
}

// Puts the number into the sizeof(T) bytes that begin at bytes.
template <class T>
void StoreLittleEndian(void* bytes, T value) {
  static_assert(std::is_arithmetic_v<T>);
  auto raw = std::bit_cast<std::array<std::byte, sizeof(T)>>(value);
  if constexpr (std::endian::native == std::endian::big) std::reverse(raw.begin(), raw.end());
  std::memcpy(bytes, raw.data(), raw.size());
}

// The number at a position of a buffer; the fallback when it does not lie wholly within it.
template <class T>
T ReadLittleEndian(std::string_view buffer, std::size_t position, T fallback = {}) {
  if (position > buffer.size() || buffer.size() - position < sizeof(T)) return fallback;
  return LoadLittleEndian<T>(buffer.data() + position);
}

template <class T>
void AppendLittleEndian(std::string& buffer, std::type_identity_t<T> value) {
  char raw[sizeof(T)];
  StoreLittleEndian<T>(raw, value);
  buffer.append(raw, sizeof(T));
}

}  // namespace qm
