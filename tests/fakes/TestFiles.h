#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace trackloom::fakes {

std::string contentOf(const std::filesystem::path& path);

/// Bytes that differ from seed to seed and hardly compress.
std::string noise(std::size_t bytes, std::size_t seed);

std::string littleEndian(std::uint32_t value, int bytes);

/// A RIFF/WAVE file of 16-bit stereo PCM at 44,100 Hz around these samples (Microsoft's Multimedia Programming
/// Interface and Data Specifications 1.0, chapter 3).
std::string wav(const std::string& samples);

/// What a program of the test machine prints; "" when it fails. `command` is for the shell and made by the test alone.
std::string outputOf(const std::string& command);

}  // namespace trackloom::fakes
