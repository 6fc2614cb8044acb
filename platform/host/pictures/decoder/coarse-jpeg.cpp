#include "pictures/decoder/coarse-jpeg.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "pictures/decoder/huffman.hpp"

namespace phone::pictures {
namespace {

using Data = std::span<const std::uint8_t>;

unsigned number_at(Data data, size_t i) {
  return static_cast<unsigned>(data[i] << 8 | data[i + 1]);
}

constexpr int kGrey = 128;

std::uint8_t clamped(int value) { return static_cast<std::uint8_t>(std::clamp(value, 0, 255)); }

/// One of the three colours, or the only one.
struct Component {
  int id = 0;
  int across = 1;  ///< blocks of it in a unit
  int down = 1;
  unsigned quantization = 0;
  const FirstValueTable *first_values = nullptr;
  const OtherValuesTable *other_values = nullptr;
  int previous = 0;
  int stride = 0;
  /// One sample a block.
  std::vector<std::uint8_t> samples;
};

/// Decodes one file. Every step returns false for whatever is not plain.
class CoarseDecoder {
 public:
  explicit CoarseDecoder(Data data) : data_(data) {}

  bool decode() { return read_markers() && read_scan(); }
  [[nodiscard]] PixbufRef picture() const;

 private:
  static constexpr size_t kTables = 4;

  bool read_markers();
  bool read_segment(int marker, Data segment);
  bool read_quantization(Data segment);
  bool read_codes(Data segment);
  bool read_frame(Data segment);
  bool read_scan_header(Data segment);
  void lay_out();
  bool read_scan();
  bool read_unit(BitReader &bits, int unit_x, int unit_y);
  bool read_blocks(BitReader &bits, Component &component, int unit_x, int unit_y);
  /// The samples of a row of blocks, one for each block of the finest component.
  void spread_row(const Component &component, int y, std::vector<int> &row) const;

  Data data_;
  size_t scan_begin_ = 0;
  int width_ = 0;
  int height_ = 0;
  int units_across_ = 0;
  int units_down_ = 0;
  int most_across_ = 1;
  int most_down_ = 1;
  int restart_interval_ = 0;
  std::vector<Component> components_;
  std::array<unsigned, kTables> quantization_{};
  std::array<std::unique_ptr<FirstValueTable>, kTables> first_values_;
  std::array<std::unique_ptr<OtherValuesTable>, kTables> other_values_;
};

bool CoarseDecoder::read_markers() {
  for (size_t at = 2; at + 4 <= data_.size();) {
    if (data_[at] != 0xff) return false;
    const int marker = data_[at + 1];
    if (marker == 0xff) {
      ++at;  // a fill byte
      continue;
    }
    const size_t length = number_at(data_, at + 2);
    if (length < 2 || length > data_.size() - at - 2) return false;
    const Data segment = data_.subspan(at + 4, length - 2);
    at += 2 + length;
    if (marker == 0xda) {
      scan_begin_ = at;
      return read_scan_header(segment);
    }
    if (!read_segment(marker, segment)) return false;
  }
  return false;
}

bool CoarseDecoder::read_segment(int marker, Data segment) {
  switch (marker) {
    case 0xdb:
      return read_quantization(segment);
    case 0xc4:
      return read_codes(segment);
    case 0xc0:
    case 0xc1:
      return components_.empty() && read_frame(segment);
    case 0xdd:
      if (segment.size() != 2) return false;
      restart_interval_ = static_cast<int>(number_at(segment, 0));
      return true;
    case 0xee:
      // Colours other than the usual ones are told here.
      return segment.size() < 12 || std::memcmp(segment.data(), "Adobe", 5) != 0 ||
             segment[11] == 1;
    default:
      return (marker >= 0xe0 && marker <= 0xef) || marker == 0xfe;
  }
}

bool CoarseDecoder::read_quantization(Data segment) {
  while (!segment.empty()) {
    const bool wide = segment[0] >> 4 == 1;
    const size_t table = segment[0] & 15;
    const size_t size = 1 + (wide ? 128 : 64);
    if (segment[0] >> 4 > 1 || table >= kTables || segment.size() < size) return false;
    quantization_[table] = wide ? number_at(segment, 1) : segment[1];
    segment = segment.subspan(size);
  }
  return true;
}

bool CoarseDecoder::read_codes(Data segment) {
  while (!segment.empty()) {
    constexpr size_t kHead = 17;
    if (segment.size() < kHead) return false;
    const bool for_others = segment[0] >> 4 == 1;
    const size_t table = segment[0] & 15;
    if (segment[0] >> 4 > 1 || table >= kTables) return false;
    const auto counts = segment.subspan<1, 16>();
    size_t symbols = 0;
    for (const std::uint8_t count : counts) symbols += count;
    if (segment.size() < kHead + symbols) return false;
    const auto codes = HuffmanCodes::from(counts, segment.subspan(kHead, symbols));
    if (!codes) return false;
    if (for_others) {
      other_values_[table] = std::make_unique<OtherValuesTable>(*codes);
    } else {
      first_values_[table] = std::make_unique<FirstValueTable>(*codes);
    }
    segment = segment.subspan(kHead + symbols);
  }
  return true;
}

bool CoarseDecoder::read_frame(Data segment) {
  if (segment.size() < 6 || segment[0] != 8) return false;
  height_ = static_cast<int>(number_at(segment, 1));
  width_ = static_cast<int>(number_at(segment, 3));
  const size_t count = segment[5];
  if (width_ == 0 || height_ == 0 || (count != 1 && count != 3) ||
      segment.size() != 6 + 3 * count) {
    return false;
  }
  for (size_t i = 0; i < count; ++i) {
    const Data field = segment.subspan(6 + 3 * i, 3);
    Component component;
    component.id = field[0];
    // With one component a unit is one block, whatever the file says.
    component.across = count == 1 ? 1 : field[1] >> 4;
    component.down = count == 1 ? 1 : field[1] & 15;
    const bool plain = component.across >= 1 && component.across <= 2 && component.down >= 1 &&
                       component.down <= 2 && field[2] < kTables;
    // Three letters instead of numbers name the colours themselves.
    if (!plain || (count == 3 && component.id == "RGB"[i])) return false;
    component.quantization = field[2];
    most_across_ = std::max(most_across_, component.across);
    most_down_ = std::max(most_down_, component.down);
    components_.push_back(std::move(component));
  }
  return true;
}

bool CoarseDecoder::read_scan_header(Data segment) {
  const size_t count = components_.size();
  if (count == 0 || segment.size() != 4 + 2 * count || segment[0] != count) return false;
  for (size_t i = 0; i < count; ++i) {
    Component &component = components_[i];
    const size_t first = segment[2 + 2 * i] >> 4;
    const size_t other = segment[2 + 2 * i] & 15;
    if (segment[1 + 2 * i] != component.id || first >= kTables || other >= kTables) return false;
    component.first_values = first_values_[first].get();
    component.other_values = other_values_[other].get();
    if (component.first_values == nullptr || component.other_values == nullptr) return false;
  }
  const Data range = segment.subspan(1 + 2 * count, 3);
  return range[0] == 0 && range[1] == 63 && range[2] == 0;
}

void CoarseDecoder::lay_out() {
  const auto units = [](int pixels, int blocks) {
    return (pixels + 8 * blocks - 1) / (8 * blocks);
  };
  units_across_ = units(width_, most_across_);
  units_down_ = units(height_, most_down_);
  for (Component &component : components_) {
    component.stride = units_across_ * component.across;
    component.samples.resize(static_cast<size_t>(component.stride) *
                             static_cast<size_t>(units_down_ * component.down));
  }
}

bool CoarseDecoder::read_blocks(BitReader &bits, Component &component, int unit_x, int unit_y) {
  const auto quantization = static_cast<int>(quantization_[component.quantization]);
  // Larger sums only come from damaged files, where they could grow without end.
  constexpr int kLargestSum = 1 << 15;
  const auto stride = static_cast<size_t>(component.stride);
  std::uint8_t *row = component.samples.data() +
                      static_cast<size_t>(unit_y * component.down) * stride +
                      static_cast<size_t>(unit_x * component.across);
  for (int y = 0; y < component.down; ++y, row += stride) {
    for (int x = 0; x < component.across; ++x) {
      bits.fill();
      const auto difference = component.first_values->read(bits);
      if (!difference || !component.other_values->skip_block(bits)) return false;
      component.previous += *difference;
      if (component.previous > kLargestSum || component.previous < -kLargestSum) return false;
      // An eighth of the first value is the mean of the block; grey is in the middle.
      const int mean = (component.previous * quantization + 4) >> 3;
      row[x] = clamped(mean + kGrey);
    }
  }
  return true;
}

bool CoarseDecoder::read_unit(BitReader &bits, int unit_x, int unit_y) {
  return std::all_of(components_.begin(), components_.end(), [&](Component &component) {
    return read_blocks(bits, component, unit_x, unit_y);
  });
}

bool CoarseDecoder::read_scan() {
  lay_out();
  BitReader bits(data_.subspan(scan_begin_));
  int until_restart = restart_interval_;
  int restarts = 0;
  for (int y = 0; y < units_down_; ++y) {
    for (int x = 0; x < units_across_; ++x) {
      if (restart_interval_ > 0 && until_restart-- == 0) {
        if (!bits.restart(restarts++ % 8)) return false;
        for (Component &component : components_) component.previous = 0;
        until_restart = restart_interval_ - 1;
      }
      if (!read_unit(bits, x, y)) return false;
    }
    if (bits.overrun()) return false;
  }
  return true;
}

void CoarseDecoder::spread_row(const Component &component, int y, std::vector<int> &row) const {
  const int own_y = component.down == most_down_ ? y : y / 2;
  const std::uint8_t *samples =
      component.samples.data() + static_cast<size_t>(own_y) * static_cast<size_t>(component.stride);
  const unsigned shift = component.across == most_across_ ? 0 : 1;
  for (size_t x = 0; x < row.size(); ++x) row[x] = samples[x >> shift];
}

PixbufRef CoarseDecoder::picture() const {
  const int width = (width_ + 7) / 8;
  const int height = (height_ + 7) / 8;
  PixbufRef pixbuf = PixbufRef::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height));
  if (!pixbuf) return {};
  std::array<std::vector<int>, 3> rows;
  rows.fill(std::vector<int>(static_cast<size_t>(width), kGrey));
  for (int y = 0; y < height; ++y) {
    for (size_t i = 0; i < components_.size(); ++i) spread_row(components_[i], y, rows[i]);
    guchar *to = gdk_pixbuf_get_pixels(pixbuf.get()) +
                 static_cast<std::ptrdiff_t>(y) * gdk_pixbuf_get_rowstride(pixbuf.get());
    for (size_t x = 0; x < rows[0].size(); ++x, to += 3) {
      const int light = rows[0][x];
      const int blue = rows[1][x] - kGrey;
      const int red = rows[2][x] - kGrey;
      // The usual weights, in 65536ths.
      to[0] = clamped(light + ((91881 * red + 32768) >> 16));
      to[1] = clamped(light - ((22554 * blue + 46802 * red + 32768) >> 16));
      to[2] = clamped(light + ((116130 * blue + 32768) >> 16));
    }
  }
  return pixbuf;
}

}  // namespace

PixbufRef decode_coarse_jpeg(std::span<const std::byte> file) {
  const Data data(reinterpret_cast<const std::uint8_t *>(file.data()), file.size());
  if (data.size() < 4 || data[0] != 0xff || data[1] != 0xd8) return {};
  CoarseDecoder decoder(data);
  return decoder.decode() ? decoder.picture() : PixbufRef();
}

}  // namespace phone::pictures
