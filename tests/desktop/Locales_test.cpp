#include <QCoreApplication>
#include <QFontMetrics>
#include <QProcess>
#include <QProgressBar>
#include <catch2/catch.hpp>
#include <iostream>

#include "desktop/Host.h"
#include "desktop/LiveProgram.h"

namespace trackloom {

namespace {

constexpr const char* Narrow = "\u202F";

using Environment = std::vector<std::pair<QString, QString>>;

/// This program started anew with nothing of the locale but `variables`, to run one hidden test; what that prints.
QString printedBy(const QString& test, const Environment& variables) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const QString& name : environment.keys())
    if (name == "LANG" || name == "LANGUAGE" || name.startsWith("LC_")) environment.remove(name);
  for (const auto& [name, value] : variables) environment.insert(name, value);
  QProcess child;
  child.setProcessEnvironment(environment);
  child.start(QCoreApplication::applicationFilePath(), {test});
  REQUIRE(child.waitForFinished());
  return QString::fromUtf8(child.readAllStandardOutput());
}

/// The signs with which a million and a half would be written: "1,000,000.5".
std::string signsUnder(const Environment& variables) {
  return printedBy("[.signs]", variables).section("signs<", 1).section('>', 0, 0).toStdString();
}

}  // namespace

TEST_CASE("Prints the number signs of this process", "[.signs]") {
  const Separators signs = systemSeparators();
  std::cout << "signs<" << signs.group << " " << signs.decimal << ">\n";
}

TEST_CASE("Shows the meter of an empty layout with the number signs of this process", "[.meter]") {
  trial::LiveProgram live(systemSeparators());
  live.startQuietly();
  live.newLayout(AudioLayout);
  const auto& meter = *live.window().findChild<QProgressBar*>();
  std::cout << "meter<" << meter.text().toStdString() << ">\n";
  // A sign without a drawing would come as a box as wide as a letter.
  const QFontMetrics letters = meter.fontMetrics();
  const int sign = letters.horizontalAdvance("359\u202F849") - letters.horizontalAdvance("359849");
  std::cout << (sign > 0 && sign < letters.horizontalAdvance('m') ? "narrow sign" : "no narrow sign") << '\n';
}

TEST_CASE("The number signs are those of the user's locale") {
  CHECK(signsUnder({{"LANG", "C.UTF-8"}}) == ", .");
  CHECK(signsUnder({{"LANG", "en_US.UTF-8"}}) == ", .");
  CHECK(signsUnder({{"LANG", "de_DE.UTF-8"}}) == ". ,");
  CHECK(signsUnder({{"LANG", "fr_FR.UTF-8"}}) == std::string(Narrow) + " ,");
}

TEST_CASE("LC_NUMERIC goes before LANG, and LC_ALL before both") {
  CHECK(signsUnder({{"LANG", "C.UTF-8"}, {"LC_NUMERIC", "de_DE.UTF-8"}}) == ". ,");
  CHECK(signsUnder({{"LANG", "de_DE.UTF-8"}, {"LC_NUMERIC", "C.UTF-8"}}) == ", .");
  CHECK(signsUnder({{"LANG", "de_DE.UTF-8"}, {"LC_NUMERIC", "de_DE.UTF-8"}, {"LC_ALL", "C.UTF-8"}}) == ", .");
  CHECK(signsUnder({}) == ", .");
}

TEST_CASE("The main window shows its figures in the user's locale") {
  const QString french = printedBy("[.meter]", {{"LANG", "fr_FR.UTF-8"}});
  CHECK(french.contains("meter<0 Blocks of 359\u202F849 Blocks  (0% of CD Used)>"));
  CHECK(french.contains("\nnarrow sign"));
  CHECK(
      printedBy("[.meter]", {{"LANG", "de_DE.UTF-8"}}).contains("meter<0 Blocks of 359.849 Blocks  (0% of CD Used)>"));
}

}  // namespace trackloom
