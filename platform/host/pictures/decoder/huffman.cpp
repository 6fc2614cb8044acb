#include "pictures/decoder/huffman.hpp"

#include <algorithm>

namespace phone::pictures {

std::optional<HuffmanCodes> HuffmanCodes::from(std::span<const std::uint8_t, 16> counts,
                                               std::span<const std::uint8_t> symbols) {
  HuffmanCodes codes;
  std::uint32_t code = 0;
  int symbol = 0;
  for (int length = 1; length <= 16; ++length) {
    const auto i = static_cast<size_t>(length);
    codes.first_code_[i] = code;
    codes.first_symbol_[i] = symbol;
    code += counts[i - 1];
    symbol += counts[i - 1];
    codes.end_code_[i] = code;
    if (code > 1u << length) return std::nullopt;
    code <<= 1;
  }
  if (static_cast<size_t>(symbol) > symbols.size() || symbol > 256) return std::nullopt;
  std::copy_n(symbols.begin(), symbol, codes.symbols_.begin());
  return codes;
}

HuffmanCodes::Match HuffmanCodes::match(std::uint32_t bits) const {
  for (int length = 1; length <= 16; ++length) {
    const auto i = static_cast<size_t>(length);
    const std::uint32_t code = bits >> (16 - length);
    if (code >= first_code_[i] && code < end_code_[i]) {
      const auto place = static_cast<size_t>(first_symbol_[i]) + (code - first_code_[i]);
      return {length, symbols_[place]};
    }
  }
  return {};
}

/// The code at the beginning of every window; none where the window does not show it whole.
template <int kWindow>
std::array<HuffmanCodes::Match, 1 << kWindow> matches_of(const HuffmanCodes &codes) {
  std::array<HuffmanCodes::Match, 1 << kWindow> matches{};
  for (std::uint32_t window = 0; window < matches.size();) {
    const HuffmanCodes::Match found = codes.match(window << (16 - kWindow));
    const bool whole = found.length != 0 && found.length <= kWindow;
    const std::uint32_t alike = whole ? 1u << (kWindow - found.length) : 1;
    if (whole) std::fill_n(matches.begin() + window, alike, found);
    window += alike;
  }
  return matches;
}

FirstValueTable::FirstValueTable(const HuffmanCodes &codes)
    : codes_(codes), quick_(matches_of<kWindow>(codes)) {}

OtherValuesTable::OtherValuesTable(const HuffmanCodes &codes) : codes_(codes) {
  const auto matches = matches_of<kWindow>(codes);
  for (std::uint32_t window = 0; window < several_.size(); ++window) {
    // As many whole codes as the window shows. The value behind the last of them may reach out
    // of the window: it is stepped over unseen.
    Steps sum;
    while (sum.bits < kWindow && !sum.ends) {
      const HuffmanCodes::Match found = matches[window << sum.bits & (several_.size() - 1)];
      const Steps one = steps_of(found);
      const bool seen = found.length != 0 && sum.bits + found.length <= kWindow;
      if (!seen || sum.places + one.places >= kBlock) break;
      sum = {sum.bits + one.bits, sum.places + one.places, one.ends};
    }
    const unsigned places = static_cast<unsigned>(sum.places) + (sum.ends ? 1 : 0);
    several_[window] = static_cast<std::uint16_t>(static_cast<unsigned>(sum.bits) |
                                                  (sum.ends ? kEnds : 0) | places << kPlacesShift);
  }
}

OtherValuesTable::Steps OtherValuesTable::steps_of(HuffmanCodes::Match match) {
  const int zeros = match.symbol >> 4;
  const int size = match.symbol & 15;
  constexpr int kSixteenZeros = 15;
  if (size == 0 && zeros != kSixteenZeros) return {match.length, 0, true};
  return {match.length + size, zeros + 1, false};
}

bool OtherValuesTable::skip_singly(BitReader &bits, int place) const {
  while (place < kBlock) {
    bits.fill();
    const HuffmanCodes::Match found = codes_.match(bits.peek(16));
    if (found.length == 0) return false;
    const Steps one = steps_of(found);
    bits.skip(one.bits);
    if (one.ends) return true;
    place += one.places;
  }
  return true;
}

}  // namespace phone::pictures
