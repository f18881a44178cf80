#include "engines/virtual/RecorderSettings.h"

using trackloom::engines::virtualrecorder::RecorderSettings;

#include <catch2/catch.hpp>
#include <random>

TEST_CASE("An empty recorder.ini gives the defaults, and the one that is shipped says the same") {
  for (const std::string& ini : {std::string(), RecorderSettings::defaultIni()}) {
    const RecorderSettings settings = RecorderSettings::parse(ini);
    CHECK(settings.vendor == "Virtual");
    CHECK(settings.product == "CD Recorder");
    CHECK(settings.maximumSpeed == 52);
    CHECK(settings.writeGuard);
    CHECK_FALSE(settings.realTimePacing);
    CHECK(settings.automaticFeed);
    CHECK_FALSE(settings.refuseSelect);
    CHECK_FALSE(settings.refuseEject);
    CHECK_FALSE(settings.failWriteAt);
    CHECK_FALSE(settings.failTestAt);
    CHECK(settings.failClosing.empty());
    CHECK(settings.failTrack == 0);
    CHECK(settings.failKind == trackloom::engines::ErrorKind::Device);
    CHECK_FALSE(settings.failErasing);
    CHECK_FALSE(settings.failEjecting);
    CHECK_FALSE(settings.failCachingAt);
    CHECK(settings.failText.empty());
  }
}

TEST_CASE("Every setting of recorder.ini is taken") {
  const RecorderSettings settings = RecorderSettings::parse(
      "[recorder]\nvendor = ACME\nproduct = Burner 9\nmaximumSpeed = 8\nwriteGuard = no\nrealTimePacing = yes\n"
      "automaticFeed = off\nrefuseSelect = true\nrefuseEject = 1\n"
      "[faults]\nfailWriteAt = 100\nfailTestAt = 0\nfailClosing = disc\nfailTrack = 3\nfailCode = 17\nfailErasing = "
      "yes\nfailEjecting = yes\nfailCachingAt = 7\nfailNumber = 4/3E/02\nfailText = smoke\n");
  CHECK(settings.vendor == "ACME");
  CHECK(settings.product == "Burner 9");
  CHECK(settings.maximumSpeed == 8);
  CHECK_FALSE(settings.writeGuard);
  CHECK(settings.realTimePacing);
  CHECK_FALSE(settings.automaticFeed);
  CHECK(settings.refuseSelect);
  CHECK(settings.refuseEject);
  CHECK(settings.failWriteAt == 100);
  CHECK(settings.failTestAt == 0);
  CHECK(settings.failClosing == "disc");
  CHECK(settings.failTrack == 3);
  CHECK(settings.failKind == static_cast<trackloom::engines::ErrorKind>(17));
  CHECK(settings.failErasing);
  CHECK(settings.failEjecting);
  CHECK(settings.failCachingAt == 7);
  CHECK(settings.failNumber == 0x043E02);
  CHECK(settings.failText == "smoke");
}

TEST_CASE("A speed of none and an empty name are settings like others") {
  const RecorderSettings settings = RecorderSettings::parse("[recorder]\nmaximumSpeed = 0\nvendor =\n");
  CHECK(settings.maximumSpeed == 0);
  CHECK(settings.vendor.empty());
}

TEST_CASE("Values of recorder.ini that are none stand as their defaults") {
  for (const char* speed : {"-1", "101", "fast", "", "99999999999"})
    CHECK(RecorderSettings::parse("[recorder]\nmaximumSpeed = " + std::string(speed)).maximumSpeed == 52);
  CHECK(RecorderSettings::parse("[recorder]\nautomaticFeed = perhaps").automaticFeed);
  CHECK(RecorderSettings::parse("[recorder]\nvendor = a\tb").vendor == "Virtual");
  CHECK(RecorderSettings::parse("[recorder]\nvendor = \xFF\xFE").vendor == "Virtual");
  CHECK(RecorderSettings::parse("[recorder]\nvendor = " + std::string(41, 'x')).vendor == "Virtual");
  CHECK_FALSE(RecorderSettings::parse("[faults]\nfailWriteAt = -4").failWriteAt);
  for (const char* number : {"3/0C", "3/0C/", "3/0C/00/1", "103/0C/00", "x/y/z", "1F/00/00", "-3/0C/00", "3 /0C/00"})
    CHECK(RecorderSettings::parse("[faults]\nfailNumber = " + std::string(number)).failNumber == 0x030C00);
}

TEST_CASE("A failure's text may have 200 bytes, and a longer one is none") {
  const auto textOf = [](const std::string& text) {
    return RecorderSettings::parse("[faults]\nfailText = " + text + "\n").failText;
  };
  CHECK(textOf(std::string(200, 'x')) == std::string(200, 'x'));
  CHECK(textOf(std::string(201, 'x')).empty());
}

TEST_CASE("No bytes whatever make the reader of recorder.ini fail") {
  std::mt19937 random(99);
  for (int round = 0; round < 5000; ++round) {
    std::string text = RecorderSettings::defaultIni();
    for (std::uint32_t change = 0; change < 1 + random() % 40; ++change) {
      const std::size_t at = random() % text.size();
      if (text[at] == ';' || random() % 2 == 0)
        text[at] = static_cast<char>(random());
      else
        text.erase(at, random() % 4);
    }
    const RecorderSettings settings = RecorderSettings::parse(text);
    CHECK(settings.maximumSpeed >= 0);
    CHECK(settings.maximumSpeed <= 100);
  }
}
