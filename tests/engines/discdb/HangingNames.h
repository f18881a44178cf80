#pragma once

namespace trackloom::engines::discdb {

/// A host name that nobody resolves, neither with success nor without, as long as the test program lives.
inline constexpr const char* hangingName = "hangs.test";

}  // namespace trackloom::engines::discdb
