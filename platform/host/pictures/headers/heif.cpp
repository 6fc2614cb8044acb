#include <optional>
#include <utility>
#include <vector>

#include "pictures/headers/boxes.hpp"
#include "pictures/headers/private.hpp"

namespace phone::pictures {
namespace {

constexpr std::size_t kMostProperties = 1024;
constexpr std::uint32_t kMostItems = 8192;

/// Reads numbers one after the other out of a box.
class Fields {
 public:
  Fields(Source &source, const Box &box) : source_(source), at_(box.begin), end_(box.end) {}

  /// A big-endian number of 0, 1, 2, 4 or 8 bytes.
  std::optional<std::uint64_t> number(unsigned size) {
    if (size == 0) return 0;
    if (size > 8 || at_ > end_ || size > end_ - at_) return std::nullopt;
    const Bytes bytes = source_.at(at_, size);
    if (bytes.empty()) return std::nullopt;
    at_ += size;
    std::uint64_t value = 0;
    for (unsigned i = 0; i < size; ++i) value = value << 8 | byte_at(bytes, i);
    return value;
  }
  /// The same where a missing number may read as 0.
  std::uint64_t number_or_zero(unsigned size) { return number(size).value_or(0); }
  [[nodiscard]] std::uint64_t position() const { return at_; }

 private:
  Source &source_;
  std::uint64_t at_;
  std::uint64_t end_;
};

/// A property of a picture item; a width of 0 means that it is not a size.
struct Property {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  bool sideways = false;
};

struct Meta {
  Box primary, infos, locations, properties;
};

std::vector<Property> read_properties(Source &source, const Box &container, int &budget) {
  std::vector<Property> properties;
  BoxWalk walk(source, container.begin, container.end, budget);
  while (const auto box = walk.next()) {
    Property property;
    Fields fields(source, *box);
    if (box->type == box_type("ispe")) {
      fields.number(4);
      property.width = static_cast<std::uint32_t>(fields.number_or_zero(4));
      property.height = static_cast<std::uint32_t>(fields.number_or_zero(4));
    } else if (box->type == box_type("irot")) {
      property.sideways = (fields.number_or_zero(1) & 1) != 0;
    }
    properties.push_back(property);
    if (properties.size() >= kMostProperties) break;
  }
  return properties;
}

/// Properties take effect in their order: a turn turns the size that stands before it.
void apply(const Property &property, Property &result) {
  if (property.width != 0) {
    result.width = property.width;
    result.height = property.height;
  }
  if (property.sideways) std::swap(result.width, result.height);
}

/// Adds up the properties that belong to one item.
void read_associations(Source &source, const Box &box, std::uint64_t item,
                       const std::vector<Property> &properties, Property &result) {
  Fields fields(source, box);
  const std::uint64_t head = fields.number_or_zero(4);
  const unsigned id_size = (head >> 24) < 1 ? 2 : 4;
  const bool wide = (head & 1) != 0;
  const std::uint64_t count = fields.number_or_zero(4);
  for (std::uint64_t i = 0; i < count && i < kMostItems; ++i) {
    const auto id = fields.number(id_size);
    const auto links = fields.number(1);
    if (!id || !links) return;
    for (std::uint64_t k = 0; k < *links; ++k) {
      const auto link = fields.number(wide ? 2 : 1);
      if (!link) return;
      const std::uint64_t index = *link & (wide ? 0x7fff : 0x7f);
      if (*id == item && index >= 1 && index <= properties.size()) {
        apply(properties[index - 1], result);
      }
    }
  }
}

void read_size(Source &source, const Box &container, std::uint64_t item, int &budget,
               Header &header) {
  std::vector<Property> properties;
  Property result;
  BoxWalk walk(source, container.begin, container.end, budget);
  while (const auto box = walk.next()) {
    if (box->type == box_type("ipco")) properties = read_properties(source, *box, budget);
    if (box->type == box_type("ipma")) read_associations(source, *box, item, properties, result);
  }
  set_size(header, result.width, result.height);
}

std::optional<std::uint64_t> find_exif_item(Source &source, const Box &infos, int &budget) {
  Fields head(source, infos);
  const unsigned count_size = head.number_or_zero(4) >> 24 == 0 ? 2 : 4;
  head.number(count_size);
  BoxWalk walk(source, head.position(), infos.end, budget);
  while (const auto box = walk.next()) {
    if (box->type != box_type("infe")) continue;
    Fields fields(source, *box);
    const std::uint64_t version = fields.number_or_zero(4) >> 24;
    if (version < 2) continue;
    const auto id = fields.number(version == 2 ? 2 : 4);
    fields.number(2);
    if (fields.number(4) == box_type("Exif")) return id;
  }
  return std::nullopt;
}

struct Place {
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
};

std::optional<Place> find_place(Source &source, const Box &locations, std::uint64_t wanted) {
  Fields fields(source, locations);
  const std::uint64_t version = fields.number_or_zero(4) >> 24;
  const std::uint64_t sizes = fields.number_or_zero(2);
  const unsigned offset_size = sizes >> 12 & 15, length_size = sizes >> 8 & 15;
  const unsigned base_size = sizes >> 4 & 15, index_size = version == 0 ? 0 : sizes & 15;
  const std::uint64_t count = fields.number_or_zero(version < 2 ? 2 : 4);
  for (std::uint64_t i = 0; i < count && i < kMostItems; ++i) {
    const auto id = fields.number(version < 2 ? 2 : 4);
    const std::uint64_t method = version == 0 ? 0 : fields.number_or_zero(2) & 15;
    fields.number(2);
    const std::uint64_t base = fields.number_or_zero(base_size);
    const auto extents = fields.number(2);
    if (!id || !extents) return std::nullopt;
    for (std::uint64_t k = 0; k < *extents && k < kMostItems; ++k) {
      fields.number(index_size);
      const auto offset = fields.number(offset_size);
      const auto length = fields.number(length_size);
      if (!offset || !length) return std::nullopt;
      if (*id != wanted) continue;
      if (method != 0 || *offset > kEndOfFile - base) return std::nullopt;
      return Place{base + *offset, *length};
    }
  }
  return std::nullopt;
}

void read_exif_item(Source &source, const Meta &meta, int &budget, Header &header) {
  const auto item = find_exif_item(source, meta.infos, budget);
  if (!item) return;
  const auto place = find_place(source, meta.locations, *item);
  if (!place || place->length < 12 || place->offset > kEndOfFile - place->length) return;
  const Bytes skip_field = source.at(place->offset, 4);
  if (skip_field.empty()) return;
  const std::uint64_t skip = 4ull + big32(skip_field, 0);
  if (skip >= place->length) return;
  read_exif(source, place->offset + skip, place->length - skip, false, header);
  header.orientation = 1;
}

}  // namespace

void read_heif(Source &source, Header &header) {
  int budget = kMostBoxes;
  Meta meta;
  BoxWalk top(source, 0, kEndOfFile, budget);
  std::optional<Box> box;
  while ((box = top.next()) && box->type != box_type("meta")) {
  }
  if (!box || box->end - box->begin < 4) return;
  BoxWalk walk(source, box->begin + 4, box->end, budget);
  while (const auto part = walk.next()) {
    if (part->type == box_type("pitm")) meta.primary = *part;
    if (part->type == box_type("iinf")) meta.infos = *part;
    if (part->type == box_type("iloc")) meta.locations = *part;
    if (part->type == box_type("iprp")) meta.properties = *part;
  }
  Fields primary(source, meta.primary);
  const unsigned id_size = primary.number_or_zero(4) >> 24 == 0 ? 2 : 4;
  const auto item = primary.number(id_size);
  if (!item) return;
  read_size(source, meta.properties, *item, budget, header);
  read_exif_item(source, meta, budget, header);
}

}  // namespace phone::pictures
