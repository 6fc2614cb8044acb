/// Count of what media-attributes.h and image-headers.h have handed out.
#pragma once

namespace fake {

extern int header_objects;

}  // namespace fake
