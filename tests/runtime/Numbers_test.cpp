#include "runtime/Numbers.h"

#include <catch2/catch.hpp>
#include <limits>

#include "fakes/ErrorNumber.h"

namespace trackloom {

namespace {

const Separators English{};
const Separators German{".", ","};

}  // namespace

TEST_CASE("A number becomes 16 bits by rounding halves to even, and overflows loudly") {
  CHECK(ToInt16(12.5) == 12);
  CHECK(ToInt16(13.5) == 14);
  CHECK(ToInt16(-0.5) == 0);
  CHECK(ToInt16(32767.4) == 32767);
  CHECK(fakes::errorNumberOf([] { ToInt16(32767.5); }) == 6);
  CHECK(fakes::errorNumberOf([] { ToInt16(-32769); }) == 6);
  CHECK(fakes::errorNumberOf([] { ToInt16(std::numeric_limits<double>::quiet_NaN()); }) == 6);
  CHECK(fakes::errorNumberOf([] { ToInt32(std::int64_t{1} << 31); }) == 6);
}

TEST_CASE("Val reads the number at the start of a text") {
  CHECK(Val(" 12 tracks") == 12);
  CHECK(Val("+7") == 7);
  CHECK(Val("-3.5x") == -3.5);
  CHECK(Val("abc") == 0);
  CHECK(Val("") == 0);
}

TEST_CASE("Grouped numbers have no digit for zero") {
  CHECK(FormatGrouped(0, English).empty());
  CHECK(FormatGrouped(7, English) == "7");
  CHECK(FormatGrouped(1000, English) == "1,000");
  CHECK(FormatGrouped(359849, German) == "359.849");
  CHECK(FormatGrouped(-1234567, English) == "-1,234,567");
  CHECK(FormatGrouped(1234567, Separators{"\xE2\x80\xAF", ","}) ==
        "1\xE2\x80\xAF"
        "234\xE2\x80\xAF"
        "567");
}

TEST_CASE("Two decimals round halves of the decimal value away from zero") {
  CHECK(FormatFixed2(1.125, English) == "1.13");
  CHECK(FormatFixed2(1.005, English) == "1.01");
  CHECK(FormatFixed2(0.995, English) == "1.00");
  CHECK(FormatFixed2(9.999, English) == "10.00");
  CHECK(FormatFixed2(0, English) == "0.00");
  CHECK(FormatFixed2(702.83, German) == "702,83");
  CHECK(FormatFixed2(-1.5, English) == "-1.50");
  CHECK(FormatFixed2(123456789012345678.0, English) == "123456789012345680.00");
}

TEST_CASE("The ends of 16 and of 32 bits are numbers, what lies beyond them is an overflow") {
  CHECK(ToInt16(32767) == 32767);
  CHECK(ToInt16(-32768) == -32768);
  CHECK(ToInt16(-32768.5) == -32768);
  CHECK(fakes::errorNumberOf([] { ToInt16(-32768.6); }) == 6);
  CHECK(ToInt32(2147483647) == 2147483647);
  CHECK(ToInt32(-2147483648LL) == -2147483647 - 1);
  CHECK(fakes::errorNumberOf([] { ToInt32(2147483648LL); }) == 6);
  CHECK(fakes::errorNumberOf([] { ToInt32(-2147483649LL); }) == 6);
}

TEST_CASE("Val takes no other writing of numbers, and no number that is none") {
  CHECK(Val("   7") == 7);
  CHECK(Val("~7") == 0);
  CHECK(Val("+ 7") == 0);
  CHECK(Val("1e3") == 1);
  CHECK(Val("ff") == 0);
  CHECK(Val("inf") == 0);
  CHECK(Val("nan") == 0);
  CHECK(Val(std::string(400, '9')) == 0);
}

TEST_CASE("A number of two digits at least has a zero before a single one") {
  CHECK(FormatTwoDigits(0) == "00");
  CHECK(FormatTwoDigits(9) == "09");
  CHECK(FormatTwoDigits(10) == "10");
  CHECK(FormatTwoDigits(100) == "100");
  CHECK(FormatTwoDigits(-5) == "-05");
}

TEST_CASE("Groups begin where a third digit ends") {
  CHECK(FormatGrouped(999, English) == "999");
  CHECK(FormatGrouped(-1, English) == "-1");
  CHECK(FormatGrouped(-999, English) == "-999");
  CHECK(FormatGrouped(100000, English) == "100,000");
  CHECK(FormatGrouped(-9223372036854775807LL - 1, English) == "-9,223,372,036,854,775,808");
}

TEST_CASE("Two decimals stand behind any number, in the signs of the user") {
  CHECK(Separators{}.group == ",");
  CHECK(Separators{}.decimal == ".");
  CHECK(FormatFixed2(1, English) == "1.00");
  CHECK(FormatFixed2(0.1, English) == "0.10");
  CHECK(FormatFixed2(0.5, English) == "0.50");
  CHECK(FormatFixed2(0.004, English) == "0.00");
  CHECK(FormatFixed2(0.005, English) == "0.01");
  CHECK(FormatFixed2(0.094, English) == "0.09");
  CHECK(FormatFixed2(0.095, English) == "0.10");
  CHECK(FormatFixed2(99.995, English) == "100.00");
  CHECK(FormatFixed2(1023.994, English) == "1023.99");
  CHECK(FormatFixed2(999999999999.99, English) == "999999999999.99");
  CHECK(FormatFixed2(0.1 + 0.2 + 4.7, English) == "5.00");
}

}  // namespace trackloom
