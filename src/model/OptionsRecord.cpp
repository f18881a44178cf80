#include "model/OptionsRecord.h"

#include "runtime/Text.h"

namespace trackloom {

namespace {

std::int16_t integerAt(std::string_view bytes, std::size_t offset) {
  const auto low = static_cast<unsigned char>(bytes[offset]);
  const auto high = static_cast<unsigned char>(bytes[offset + 1]);
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(low | (high << 8)));
}

void appendInteger(std::string& bytes, std::int16_t value) {
  const auto bits = static_cast<std::uint16_t>(value);
  bytes += static_cast<char>(static_cast<unsigned char>(bits & 0xFF));
  bytes += static_cast<char>(static_cast<unsigned char>(bits >> 8));
}

}  // namespace

OptionsRecord OptionsRecord::defaults() {
  return {.PromptSave = 1, .LastFolder = std::string(FolderSize, ' '), .ThemeColours = 1};
}

OptionsRecord OptionsRecord::decode(std::string_view bytes) {
  std::string whole(bytes.substr(0, Size));
  whole.resize(Size, '\0');
  OptionsRecord record;
  record.PromptSave = integerAt(whole, 0);
  record.LastFolder = whole.substr(2, FolderSize);
  record.SortMode = integerAt(whole, 262);
  record.SavedDrive = integerAt(whole, 264);
  record.ThemeColours = integerAt(whole, 266);
  record.WinWidth = integerAt(whole, 268);
  record.WinHeight = integerAt(whole, 270);
  record.WinLeft = integerAt(whole, 272);
  record.WinTop = integerAt(whole, 274);
  return record;
}

std::string OptionsRecord::encode() const {
  std::string bytes;
  bytes.reserve(Size);
  appendInteger(bytes, PromptSave);
  bytes += LastFolder;
  for (const std::int16_t value : {SortMode, SavedDrive, ThemeColours, WinWidth, WinHeight, WinLeft, WinTop})
    appendInteger(bytes, value);
  return bytes;
}

void OptionsRecord::setLastFolder(std::string_view folder) {
  std::size_t units = FolderSize;
  std::string cut = Left(folder, units);
  while (cut.size() > FolderSize) cut = Left(cut, --units);
  cut.resize(FolderSize, ' ');
  LastFolder = std::move(cut);
}

}  // namespace trackloom
