#include "engines/libburn/SenseWords.h"

#include <catch2/catch.hpp>

namespace trackloom::engines::libburn {

namespace {

struct Words {
  std::int32_t number;
  const char* words;
};

/// By code and qualifier, as annex F of MMC-3 has them.
constexpr Words wordsOfCodes[] = {
    {0x0009, "the head could not follow the track"},
    {0x0200, "the laser could not find its place"},
    {0x0400, "the drive is not ready"},
    {0x0401, "the drive is becoming ready"},
    {0x0402, "the drive must be started first"},
    {0x0403, "the drive is not ready and needs a hand"},
    {0x0404, "the disc is being formatted"},
    {0x0407, "another operation is under way"},
    {0x0408, "a long write is under way"},
    {0x0500, "the drive does not answer"},
    {0x0600, "the disc has no reference position"},
    {0x0800, "the connection to the drive failed"},
    {0x0801, "the drive took too long to answer"},
    {0x0900, "the laser lost the track"},
    {0x0901, "the tracking servo failed"},
    {0x0902, "the focus servo failed"},
    {0x0903, "the spindle servo failed"},
    {0x0904, "the head was jolted"},
    {0x0C00, "write error"},
    {0x0C07, "the disc could not be written further after a write error"},
    {0x0C09, "the loss of streaming could not be recovered from"},
    {0x1100, "a block cannot be read"},
    {0x1105, "a block cannot be corrected"},
    {0x1106, "a block cannot be corrected"},
    {0x1500, "the drive cannot find the position"},
    {0x1502, "the drive cannot find the position"},
    {0x1A00, "a parameter list is of the wrong length"},
    {0x2000, "the drive does not know this command"},
    {0x2100, "the address lies outside of the disc"},
    {0x2102, "the address is not the next writable one"},
    {0x2400, "the drive does not take this command in this form"},
    {0x2600, "the drive does not take these parameters"},
    {0x2700, "the disc is write protected"},
    {0x2800, "another disc was put in"},
    {0x2900, "the drive was reset"},
    {0x2A01, "the settings of the drive were changed by another program"},
    {0x2C00, "the commands came in the wrong order"},
    {0x2E00, "there was no time left"},
    {0x3000, "this disc is not of a kind that can be used here"},
    {0x3001, "the drive cannot read this disc: unknown format"},
    {0x3002, "the drive cannot read this disc: incompatible format"},
    {0x3003, "a cleaning disc is in the drive"},
    {0x3005, "the drive cannot write this disc"},
    {0x3006, "this disc cannot be erased"},
    {0x3100, "the format of the disc is damaged"},
    {0x3A00, "no disc is in the drive"},
    {0x3A01, "no disc is in the drive, and the tray is closed"},
    {0x3A02, "no disc is in the drive, and the tray is open"},
    {0x3E00, "the drive has not yet looked at itself"},
    {0x4000, "a part of the drive failed"},
    {0x4400, "the drive failed within"},
    {0x4700, "the connection to the drive is disturbed"},
    {0x5100, "the disc could not be erased"},
    {0x5300, "the tray cannot be moved"},
    {0x5302, "the tray is locked"},
    {0x5700, "the table of contents cannot be read"},
    {0x5A01, "a hand has asked for the disc"},
    {0x6300, "the disc is at its end"},
    {0x6301, "a block of a packet is missing"},
    {0x6400, "the track is of another kind"},
    {0x6500, "the voltage is wrong"},
    {0x7200, "the session could not be closed"},
    {0x7201, "the lead-in could not be written"},
    {0x7202, "the lead-out could not be written"},
    {0x7203, "the session has no room for its end"},
    {0x7204, "the session has a track that is not complete"},
    {0x7205, "the disc takes no more tracks"},
    {0x7300, "the drive cannot control its laser on this disc"},
    {0x7301, "the power calibration area of the disc is almost full"},
    {0x7302, "the power calibration area of the disc is full"},
    {0x7303, "the laser's power could not be calibrated on this disc"},
    {0x7304, "the program memory of the disc could not be updated"},
    {0x7305, "the program memory of the disc is full"},
};

/// By sense key, as SPC-3, 4.5.6 has them.
constexpr Words wordsOfKeys[] = {
    {0x0, "nothing is wrong"},
    {0x1, "the drive recovered from an error"},
    {0x2, "the drive is not ready"},
    {0x3, "the disc is damaged or dirty"},
    {0x4, "the drive failed"},
    {0x5, "the drive refused the request"},
    {0x6, "the drive or its disc was changed"},
    {0x7, "the disc is protected"},
    {0x8, "the disc is blank there"},
    {0x9, "the drive failed in a way of its own"},
    {0xA, "a copy was ended"},
    {0xB, "the drive ended the command"},
    {0xC, "a comparison found what was asked for"},
    {0xD, "the disc is full"},
    {0xE, "the disc is not what it should be"},
    {0xF, "the drive failed"},
};

}  // namespace

TEST_CASE("Each code that a recorder tells has its words, whatever its key") {
  for (const auto& [code, words] : wordsOfCodes) {
    CHECK(wordsOf(code) == words);
    CHECK(wordsOf(0x0F0000 | code) == words);
  }
}

TEST_CASE("A code that no standard has is told by its key") {
  for (const auto& [key, words] : wordsOfKeys) {
    CHECK(wordsOf(key << 16 | 0xFF17) == words);
    CHECK(wordsOf(key << 16) == words);
  }
}

TEST_CASE("A drive's failure is told with what it failed on, why, and its number") {
  const EngineError error = driveError(0x030C00, "the disc could not be written");
  CHECK(error.words() == "the disc could not be written: write error (3/0C/00)");
  CHECK(error.number() == 0x030C00);
  CHECK(error.kind() == ErrorKind::Device);
}

TEST_CASE("Four senses pass by themselves, and none beside them") {
  for (const std::int32_t passing : {0x020401, 0x020404, 0x020407, 0x020408}) {
    CHECK(isPassing(passing));
    CHECK_FALSE(isPassing(passing | 0x010000));
  }
  for (const std::int32_t lasting : {0, 0x020400, 0x020402, 0x020403, 0x020405, 0x020406, 0x020409})
    CHECK_FALSE(isPassing(lasting));
}

TEST_CASE("The key of a sense stands before its code") {
  CHECK(keyOf(0x0E1D00) == 0x0E);
  CHECK(keyOf(0xFFFF) == 0);
  CHECK(sensekey::unitAttention == 6);
}

}  // namespace trackloom::engines::libburn
