#include "model/DockState.h"

#include <array>
#include <cstddef>

#include "controls/DockStudio.h"

namespace trackloom {

namespace {

constexpr std::string_view Magic = "TLDS0001";
/// Far above what any arrangement of five bars takes; a length beyond it is damage.
constexpr std::uint32_t LongestText = 1 << 20;
constexpr std::uint32_t MostTools = 256;
constexpr std::array rememberedTools{"panel1", "panel3", "panel2", "Progress1"};

void putNumber(std::string& bytes, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(static_cast<unsigned char>(value >> shift));
}

void putText(std::string& bytes, std::string_view text) {
  putNumber(bytes, static_cast<std::uint32_t>(text.size()));
  bytes += text;
}

/// Takes values off the front of a byte string; once one is missing, all further ones are.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}

  std::string_view bytes(std::size_t count) {
    if (count > rest_.size()) good_ = false;
    if (!good_) return {};
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }

  std::uint32_t number() {
    std::uint32_t value = 0;
    const std::string_view taken = bytes(4);
    for (std::size_t i = 0; i < taken.size(); ++i)
      value |= std::uint32_t{static_cast<unsigned char>(taken[i])} << (8 * i);
    return value;
  }

  std::string text() {
    const std::uint32_t length = number();
    if (length > LongestText) good_ = false;
    return std::string(bytes(length));
  }

  bool finished() const { return good_ && rest_.empty(); }

 private:
  std::string_view rest_;
  bool good_ = true;
};

}  // namespace

std::string DockState::encode() const {
  std::string bytes(Magic);
  putNumber(bytes, static_cast<std::uint32_t>(useThemeColours));
  putText(bytes, arrangement);
  putNumber(bytes, static_cast<std::uint32_t>(tools.size()));
  for (const ToolState& tool : tools) {
    putText(bytes, tool.name);
    putText(bytes, tool.text);
    putNumber(bytes, static_cast<std::uint32_t>(tool.value));
  }
  return bytes;
}

std::optional<DockState> DockState::decode(std::string_view bytes) {
  Reader reader(bytes);
  if (reader.bytes(Magic.size()) != Magic) return std::nullopt;
  DockState state{static_cast<std::int32_t>(reader.number()), reader.text(), {}};
  const std::uint32_t count = reader.number();
  if (count > MostTools) return std::nullopt;
  for (std::uint32_t i = 0; i < count; ++i)
    state.tools.push_back({reader.text(), reader.text(), static_cast<std::int32_t>(reader.number())});
  if (!reader.finished()) return std::nullopt;
  return state;
}

DockState DockState::of(DockStudio& bars) {
  bars.arrangementWanted();
  DockState state{bars.UseThemeColours, bars.Arrangement, {}};
  for (const char* name : rememberedTools) {
    const Tool& tool = bars.tool(name);
    state.tools.push_back({tool.Name(), tool.Text, tool.Value});
  }
  return state;
}

void DockState::applyTo(DockStudio& bars) const {
  bars.UseThemeColours = useThemeColours == 0 ? 0 : 1;
  bars.Arrangement = arrangement;
  for (const ToolState& remembered : tools) {
    if (!bars.hasTool(remembered.name)) continue;
    Tool& tool = bars.tool(remembered.name);
    tool.Text = remembered.text;
    tool.Value = remembered.value;
  }
}

}  // namespace trackloom
