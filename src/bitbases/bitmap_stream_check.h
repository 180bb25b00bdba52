// A full check of a serialised Roaring bitmap (the portable format) before the library reads it.
// The library's bounded reader stays inside the buffer but trusts what it finds there: a run that
// passes the end of its 65536-value block, or a count that does not match the bits, would later
// make its conversions write out of bounds. Files come from disk, so every field is checked.
#pragma once

#include <cstddef>
#include <cstdint>

namespace BraskBitbases {

// True when bytes[0..size) begin with a well-formed bitmap (what follows it is not looked at).
bool IsWellFormedBitmapStream(const std::uint8_t* bytes, std::size_t size);

}  // namespace BraskBitbases
