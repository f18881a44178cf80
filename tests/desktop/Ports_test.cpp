#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <array>
#include <catch2/catch.hpp>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <thread>

#include "desktop/Appearance.h"
#include "desktop/DesktopOpener.h"
#include "desktop/Host.h"
#include "desktop/QtEvents.h"
#include "desktop/QtMessageBoxes.h"
#include "desktop/Trial.h"
#include "desktop/User.h"
#include "fakes/ChildProcess.h"
#include "fakes/ErrorNumber.h"
#include "fakes/TempFolder.h"
#include "runtime/FileDescriptor.h"
#include "runtime/Files.h"

namespace trackloom {

using trial::comesTrue;
using Lines = std::vector<std::string>;

namespace {

/// Whether somebody holds a lock on the file or folder.
bool locks(const std::string& path) {
  const FileDescriptor file = FileDescriptor::open(path, O_RDONLY);
  return ::flock(file.get(), LOCK_EX | LOCK_NB) != 0;
}

/// Shows a box, lets `user` deal with it, and gives the answer.
BoxAnswer answerTo(const MessageBox& box, const std::function<void(QMessageBox&)>& user) {
  QtDesk desk;
  QTimer::singleShot(0, qApp, [&] { user(*qobject_cast<QMessageBox*>(QApplication::activeModalWidget())); });
  return QtMessageBoxes(desk).show(box);
}

}  // namespace

TEST_CASE("A box shows title and text as they are, in plain text, and its first button is the default") {
  const MessageBox box{"Layout Name", "<b>a</b>  b\r\n\r\nsecond", BoxButtons::OkCancel, BoxIcon::Question};
  const BoxAnswer answer = answerTo(box, [](QMessageBox& shown) {
    CHECK(shown.windowTitle() == "Layout Name");
    CHECK(shown.text() == "<b>a</b>  b\n\nsecond");
    CHECK(shown.textFormat() == Qt::PlainText);
    CHECK(shown.icon() == QMessageBox::Question);
    CHECK(trial::captionsOf(shown) == Lines{"OK", "Cancel"});
    CHECK(shown.windowModality() == Qt::WindowModal);
    QTest::keyClick(&shown, Qt::Key_Return);
  });
  CHECK(answer == BoxAnswer::Ok);
}

TEST_CASE("Each set of buttons has its buttons, and each gives its answer") {
  const auto click = [](int place) { return [place](QMessageBox& box) { trial::buttonsOf(box).at(place)->click(); }; };
  CHECK(answerTo({"t", "x", BoxButtons::Ok, BoxIcon::Information}, click(0)) == BoxAnswer::Ok);
  CHECK(answerTo({"t", "x", BoxButtons::OkCancel, BoxIcon::Information}, click(1)) == BoxAnswer::Cancel);
  CHECK(answerTo({"t", "x", BoxButtons::YesNo, BoxIcon::Information}, click(0)) == BoxAnswer::Yes);
  CHECK(answerTo({"t", "x", BoxButtons::YesNo, BoxIcon::Information}, click(1)) == BoxAnswer::No);
  CHECK(answerTo({"t", "x", BoxButtons::YesNoCancel, BoxIcon::Information}, click(2)) == BoxAnswer::Cancel);
  CHECK(answerTo({"t", "x", BoxButtons::RetryCancel, BoxIcon::Critical}, click(0)) == BoxAnswer::Retry);
  CHECK(answerTo({"t", "x", BoxButtons::RetryCancel, BoxIcon::Critical}, click(1)) == BoxAnswer::Cancel);
}

TEST_CASE("Esc and the close box answer OK, or Cancel where that is harmless, and nothing where no answer is") {
  const auto escape = [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); };
  const auto close = [](QMessageBox& box) { box.close(); };
  CHECK(answerTo({"t", "x", BoxButtons::Ok, BoxIcon::Information}, escape) == BoxAnswer::Ok);
  CHECK(answerTo({"t", "x", BoxButtons::OkCancel, BoxIcon::Information}, escape) == BoxAnswer::Cancel);
  CHECK(answerTo({"t", "x", BoxButtons::YesNoCancel, BoxIcon::Information}, close) == BoxAnswer::Cancel);
  for (const BoxButtons buttons : {BoxButtons::YesNo, BoxButtons::RetryCancel}) {
    const BoxAnswer answer = answerTo({"t", "x", buttons, BoxIcon::Information}, [&](QMessageBox& box) {
      escape(box);
      CHECK(box.isVisible());
      close(box);
      CHECK(box.isVisible());
      trial::buttonsOf(box).at(0)->click();
    });
    CHECK(answer == (buttons == BoxButtons::YesNo ? BoxAnswer::Yes : BoxAnswer::Retry));
  }
}

TEST_CASE("Events posted by other threads run on this one, later and in their order") {
  QtDesk desk;
  QtEventQueue queue(desk);
  Lines order;
  const auto here = std::this_thread::get_id();
  std::thread engine([&] {
    for (const char* name : {"first", "second", "third"})
      queue.post([&order, name, here] {
        CHECK(std::this_thread::get_id() == here);
        order.emplace_back(name);
      });
  });
  engine.join();
  CHECK(order.empty());
  QtEventPump().pumpEvents();
  CHECK(order == Lines{"first", "second", "third"});
}

TEST_CASE(
    "A flood of engine events leaves others their turn, keeps its order, and goes on within a loop of one of them") {
  QtDesk desk;
  QtEventQueue queue(desk);
  std::vector<int> done;
  std::size_t doneAtTurn = 0;
  constexpr std::size_t Flood = 60;
  for (int number = 0; number < static_cast<int>(Flood); ++number)
    queue.post([&done, number] {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      done.push_back(number);
    });
  QTimer::singleShot(0, qApp, [&] { doneAtTurn = done.size(); });
  REQUIRE(comesTrue([&] { return done.size() == Flood; }));
  CHECK(std::is_sorted(done.begin(), done.end()));
  CHECK(doneAtTurn < Flood);

  bool inner = false;
  bool cameWithin = false;
  queue.post([&] { cameWithin = comesTrue([&] { return inner; }); });
  queue.post([&inner] { inner = true; });
  REQUIRE(comesTrue([&] { return inner; }));
  CHECK(cameWithin);
}

TEST_CASE(
    "Small steps that all let events in look at them together, five milliseconds after the last look at the earliest") {
  using std::chrono::milliseconds;
  std::chrono::steady_clock::time_point now;
  QtEventPump pump([&now] { return now; });
  int events = 0;
  const auto post = [&] {
    QMetaObject::invokeMethod(
        qApp, [&] { ++events; }, Qt::QueuedConnection);
  };
  post();
  pump.pumpEvents();
  CHECK(events == 1);
  post();
  now += milliseconds(4);
  pump.pumpEvents();
  CHECK(events == 1);
  now += milliseconds(1);
  pump.pumpEvents();
  CHECK(events == 2);
  // The time that the events themselves took is no rest.
  QMetaObject::invokeMethod(
      qApp, [&] { now += milliseconds(100); }, Qt::QueuedConnection);
  now += milliseconds(5);
  pump.pumpEvents();
  post();
  pump.pumpEvents();
  CHECK(events == 2);
  now += milliseconds(5);
  pump.pumpEvents();
  CHECK(events == 3);
}

TEST_CASE("Posting on the UI thread never runs the event at once, and what it throws goes to the trap") {
  QtDesk desk;
  int trapped = 0;
  desk.setTrap([&](const std::function<void()>& event) {
    try {
      event();
    } catch (const std::runtime_error&) {
      ++trapped;
    }
  });
  QtEventQueue queue(desk);
  queue.post([] { throw std::runtime_error("words"); });
  CHECK(trapped == 0);
  QtEventPump().pumpEvents();
  CHECK(trapped == 1);
}

TEST_CASE("A file to open becomes an address that keeps every byte and cannot be taken for an option") {
  CHECK(desktopAddress("/music/a.mp3").toEncoded() == "file:///music/a.mp3");
  CHECK(desktopAddress("/music/50% \"x\"\n$(y).mp3").toEncoded() == "file:///music/50%25%20%22x%22%0A%24%28y%29.mp3");
  CHECK(desktopAddress("/music/\xFF.mp3").toEncoded() == "file:///music/%FF.mp3");
  CHECK(desktopAddress("-rf").toEncoded().startsWith("file:///"));
  CHECK(desktopAddress("https://example.org/a?b=c#d").toEncoded() == "https://example.org/a?b=c#d");
}

// One test, since all of it locks the one folder of this program, and tests run side by side.
TEST_CASE("The program's folder tells which instance is the first") {
  SECTION("a lock on the program's folder tells a second instance, and the first goes on being the first") {
    LinuxProcess first;
    CHECK_FALSE(first.isSecondInstance());
    CHECK_FALSE(first.isSecondInstance());
    LinuxProcess second;
    CHECK(second.isSecondInstance());
    CHECK(second.isSecondInstance());
    CHECK(QApplication::applicationDirPath().toStdString() == first.executableFolder());
    CHECK_FALSE(locks("/proc/self/exe"));
    CHECK(locks(first.executableFolder()));
  }
  SECTION("the first instance is told once that it is, and a second one is not") {
    int told = 0;
    LinuxProcess first;
    first.whenFirst = [&] { ++told; };
    CHECK(told == 0);
    CHECK_FALSE(first.isSecondInstance());
    CHECK_FALSE(first.isSecondInstance());
    CHECK(told == 1);
    LinuxProcess second;
    second.whenFirst = [&] { told = 99; };
    CHECK(second.isSecondInstance());
    CHECK(told == 1);
  }
  SECTION("a first instance that has gone leaves its place to the next") {
    { CHECK_FALSE(LinuxProcess().isSecondInstance()); }
    CHECK_FALSE(LinuxProcess().isSecondInstance());
  }
}

TEST_CASE("A closed pipe and a limit on the size of files are errors, and end no process") {
  const fakes::TempFolder folder;
  const fakes::ChildProcess child([&] {
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_DFL);
    const LinuxProcess process;
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0 || ::close(pipe[0]) != 0) return 1;
    if (::write(pipe[1], "x", 1) != -1 || errno != EPIPE) return 2;
    fakes::limitFiles(2);
    return fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "file"), "whole"); });
  });
  CHECK(child.status() == RuntimeError::DiskFull);
  CHECK(std::filesystem::is_empty(folder.path()));
}

TEST_CASE("On a dark desktop every text stands out from its ground, disabled ones too") {
  const QPalette palette = darkPalette();
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    CHECK(palette.color(group, QPalette::WindowText).lightness() >
          palette.color(group, QPalette::Window).lightness() + 80);
    CHECK(palette.color(group, QPalette::Text).lightness() > palette.color(group, QPalette::Base).lightness() + 80);
    CHECK(palette.color(group, QPalette::ButtonText).lightness() >
          palette.color(group, QPalette::Button).lightness() + 60);
  }
}

}  // namespace trackloom
