#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace trackloom::engines::helpfile {

// The compiled help file: a header, a directory in chunks of sorted names, and the contents of all files one behind the
// other. Numbers are little endian, but for those of the directory, which are groups of 7 bits, the highest first.

/// The place of what readers look for, by the bytes from the start of its part.
namespace layout {
inline constexpr std::size_t HeaderSize = 0x60;
inline constexpr std::size_t DirectoryOffset = 0x48;
inline constexpr std::size_t ContentOffset = 0x58;
inline constexpr std::size_t DirectoryHeaderSize = 0x54;
inline constexpr std::size_t ChunkSizeOffset = 0x10;
inline constexpr std::size_t ChunkCountOffset = 0x2C;
inline constexpr std::size_t DirectoryHeaderSizeOffset = 8;
inline constexpr std::size_t ListingHeader = 0x14;
inline constexpr std::size_t IndexHeader = 8;
/// A record of the file "#WINDOWS", and the place in it that is an offset into "#STRINGS".
inline constexpr std::uint32_t WindowRecord = 0xC4;
inline constexpr std::size_t WindowName = 0x08;
}  // namespace layout

/// The kinds of entry of the file "#SYSTEM".
namespace system {
inline constexpr std::uint16_t Contents = 0;
inline constexpr std::uint16_t Index = 1;
inline constexpr std::uint16_t FirstPage = 2;
inline constexpr std::uint16_t Title = 3;
inline constexpr std::uint16_t Locale = 4;
inline constexpr std::uint16_t Window = 5;
inline constexpr std::uint16_t Name = 6;
}  // namespace system

}  // namespace trackloom::engines::helpfile
