#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qm {

class RiffTarget;

// What is written as one chunk of a RIFF WAVE file.
struct RiffChunkContent {
  std::string_view id;
  std::string_view fixed;       // its fixed part
  std::string_view text;        // what follows; filled with blanks, or cut, to the room there is
  std::size_t newTextRoom = 0;  // in a new chunk; 0: what follows the fixed part is left alone
};

// Writes into the chunk there is as far as it reaches, or appends a new one. Nothing in the file moves, and
// at whatever byte a power cut ends the writing, the file is a RIFF file with all its audio: a new chunk is
// complete on disk before the form's length takes it in, and lengths that a writer left unfilled are filled
// in before that. What an interrupted call left behind the form is written over.
//
// False, with chunks and audio untouched, where no chunk can be added: no RIFF WAVE, something else than
// chunks at its end, longer than its lengths can say.
bool WriteRiffChunk(RiffTarget& file, const RiffChunkContent& content);

// The first bytes of a chunk, fewer where it has fewer; "" where there is none.
std::string ReadRiffChunk(const RiffTarget& file, std::string_view id, std::size_t bytes);

}  // namespace qm
