#include "engines/libburn/CdText.h"

#include <catch2/catch.hpp>

namespace trackloom::engines::libburn {

namespace {

/// A session of three tracks with names, as the library has them then.
class Named {
 public:
  explicit Named(const DiscText& text) : session_(burn::burn_session_create()) {
    for (int i = 0; i < 3; ++i) tracks_.emplace_back(burn::burn_track_create());
    nameSession(session_.get(), tracks_, text);
  }

  /// With the zeros at their ends; "none" where there is none.
  std::string ofDisc(int pack) const {
    return told([&](unsigned char** bytes, int* size) {
      return burn::burn_session_get_cdtext(session_.get(), 0, pack, type_, bytes, size, 0);
    });
  }
  std::string ofTrack(std::size_t at, int pack) const {
    return told([&](unsigned char** bytes, int* size) {
      return burn::burn_track_get_cdtext(tracks_.at(at).get(), 0, pack, type_, bytes, size, 0);
    });
  }

 private:
  template <class Ask>
  static std::string told(const Ask& ask) {
    unsigned char* bytes = nullptr;
    int size = 0;
    // In signs of one byte.
    CHECK(ask(&bytes, &size) == 1);
    return bytes == nullptr ? "none"
                            : std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
  }

  static inline char type_[1] = "";
  OwnedSession session_;
  std::vector<OwnedTrack> tracks_;
};

constexpr int titles = 0x80;
constexpr int performers = 0x81;

std::string ended(const std::string& name) {
  return name + '\0';
}

}  // namespace

TEST_CASE("Titles and performers stand each in their packs, each with one zero behind it") {
  const Named named({{"Evening", "Strings"}, {{"One", ""}, {"Two", "Somebody"}, {"Three", ""}}});
  CHECK(named.ofDisc(titles) == ended("Evening"));
  CHECK(named.ofTrack(0, titles) == ended("One"));
  CHECK(named.ofTrack(1, titles) == ended("Two"));
  CHECK(named.ofTrack(2, titles) == ended("Three"));
  CHECK(named.ofDisc(performers) == ended("Strings"));
  CHECK(named.ofTrack(0, performers) == ended("Strings"));
  CHECK(named.ofTrack(1, performers) == ended("Somebody"));
  CHECK(named.ofTrack(2, performers) == ended("Strings"));
}

TEST_CASE("Where one has a name all have one, if only a blank, and where none has one there are no packs") {
  const Named few({{"", ""}, {{"", ""}, {"Two", ""}}});
  CHECK(few.ofDisc(titles) == ended(" "));
  CHECK(few.ofTrack(0, titles) == ended(" "));
  CHECK(few.ofTrack(1, titles) == ended("Two"));
  CHECK(few.ofTrack(2, titles) == ended(" "));
  CHECK(few.ofDisc(performers) == "none");
  CHECK(few.ofTrack(1, performers) == "none");
  CHECK(Named({{"Evening", ""}, {}}).ofTrack(2, titles) == ended(" "));
}

TEST_CASE("Signs of print become their likes, those without one a question mark, and those of ISO 8859-1 stay") {
  const auto title = [](const std::string& utf8) { return Named({{utf8, ""}, {}}).ofDisc(titles); };
  CHECK(title("\u2018a\u2019") == ended("'a'"));
  CHECK(title("\u201Ca\u201D") == ended("\"a\""));
  CHECK(title("a\u2013b\u2014c") == ended("a-b-c"));
  CHECK(title("\u20AC\u0178\u2026") == ended("???"));
  CHECK(title("\u00A0\u00E9\u00FF~") == ended("\xA0\xE9\xFF~"));
}

}  // namespace trackloom::engines::libburn
