#pragma once
// The codec library's headers and owners for its objects. For the sources of this folder that decode or
// encode.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
}

#include <memory>
#include <string>

namespace qm {

template <class T, void (*release)(T**)>
struct LibraryDeleter {
  void operator()(T* object) const { release(&object); }
};

using CodecContextPtr = std::unique_ptr<AVCodecContext, LibraryDeleter<AVCodecContext, avcodec_free_context>>;
using PacketPtr = std::unique_ptr<AVPacket, LibraryDeleter<AVPacket, av_packet_free>>;
using FramePtr = std::unique_ptr<AVFrame, LibraryDeleter<AVFrame, av_frame_free>>;
using ParametersPtr =
    std::unique_ptr<AVCodecParameters, LibraryDeleter<AVCodecParameters, avcodec_parameters_free>>;

// Keeps the library from writing to standard error. Before its first use.
void SilenceLibrary();

std::string LibraryErrorText(int code);

}  // namespace qm
