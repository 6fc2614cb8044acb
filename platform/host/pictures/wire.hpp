/// What a decoder process and its owner say to each other: one message each way over a
/// SOCK_SEQPACKET pair, each with at most one descriptor beside it. Both sides are built from the
/// same tree, so the messages are plain structs.
#pragma once

#include <cstdint>

namespace phone::pictures::wire {

inline constexpr std::uint32_t kMagic = 0x50424431;  // "PBD1"

/// The descriptor that a decoder finds its end of the pair at.
inline constexpr int kSocket = 3;

/// The exit status of a decoder that could not get memory.
inline constexpr int kOutOfMemory = 77;

enum Flag : std::uint32_t {
  kUpright = 1,  ///< turn the picture as its header says
  kEnlarge = 2,  ///< fill the box even if the picture is smaller
  kPreview = 4,  ///< the preview inside the file will do where it is large enough
  kOpaque = 8,   ///< put what is transparent on white
};

enum class Status : std::uint32_t {
  kOk,
  kDamaged,    ///< the file's own fault
  kTooLarge,   ///< the size or the memory it would take
  kUnknown,    ///< not a format or coding that is decoded here
  kVideo,      ///< a video: a matter for another program
  kDrawing,    ///< a drawing: a matter for a process that knows fonts
  kTransient,  ///< reading failed or a descriptor is missing: says nothing about the file
};

/// The file comes with it as a descriptor.
struct Request {
  std::uint32_t magic = kMagic;
  std::uint32_t id = 0;
  std::uint32_t flags = 0;
  std::int32_t width = 0;  ///< the box
  std::int32_t height = 0;
};

/// With kOk the pixels come with it as a sealed memory file of exactly height * row_stride bytes:
/// 8 bits a channel, RGB or RGBA.
struct Reply {
  std::uint32_t magic = kMagic;
  std::uint32_t id = 0;
  Status status = Status::kOk;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t row_stride = 0;
  std::int32_t channels = 0;
  /// "Thumb::MTime" of a PNG from the desktop's shared cache; -1 when there is none.
  std::int64_t thumbnail_mtime = -1;
};

}  // namespace phone::pictures::wire
