// Tells from outside how long a program's window stands still: sends each 10 ms the window system's question whether it
// is alive, and times the answers. A line on standard input ends a phase: its name and its longest silence are printed.
// Usage: stall-watch <process>
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds Beat{10};

template <class T>
using Answer = std::unique_ptr<T, decltype(&std::free)>;

template <class T>
Answer<T> held(T* answer) {
  return {answer, &std::free};
}

class Watch {
 public:
  explicit Watch(std::uint32_t process) : process_(process) {
    if (xcb_connection_has_error(screen_) != 0) std::exit(2);
    // The answers are sent to whoever watches the root window, by some toolkits to whoever watches its children.
    const std::uint32_t watched = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(screen_, root_, XCB_CW_EVENT_MASK, &watched);
  }

  /// Asks and listens for one beat.
  void beat() {
    if (window_ == XCB_NONE) window_ = windowUnder(root_);
    if (window_ != XCB_NONE) ask();
    listenUntil(Clock::now() + Beat);
  }
  /// The longest silence since the last call, in milliseconds; waits for what is not answered yet. Without any answer
  /// the watch is over.
  double longest() {
    const std::uint32_t last = count_;
    while (!asked_.empty() && asked_.begin()->first <= last) beat();
    if (longest_ == 0) std::exit(1);
    return std::exchange(longest_, 0);
  }

 private:
  xcb_atom_t atom(const std::string& name) {
    const auto cookie = xcb_intern_atom(screen_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    return held(xcb_intern_atom_reply(screen_, cookie, nullptr))->atom;
  }
  /// The values of 32 bits that a window has under a name.
  std::vector<std::uint32_t> valuesOf(xcb_window_t window, xcb_atom_t name) {
    const auto cookie = xcb_get_property(screen_, 0, window, name, XCB_ATOM_ANY, 0, 32);
    const auto reply = held(xcb_get_property_reply(screen_, cookie, nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
  }
  bool answers(xcb_window_t window) {
    const auto owner = valuesOf(window, pid_);
    const auto protocols = valuesOf(window, protocols_);
    return owner == std::vector{process_} && std::ranges::find(protocols, ping_) != protocols.end();
  }
  /// A window of the process that can be asked; a window manager puts it into one of its own.
  xcb_window_t windowUnder(xcb_window_t parent) {
    const auto tree = held(xcb_query_tree_reply(screen_, xcb_query_tree(screen_, parent), nullptr));
    if (!tree) return XCB_NONE;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
      if (answers(children[i])) return children[i];
      if (const xcb_window_t below = windowUnder(children[i]); below != XCB_NONE) return below;
    }
    return XCB_NONE;
  }

  void ask() {
    const auto now = Clock::now();
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count();
    xcb_client_message_event_t question{};
    question.response_type = XCB_CLIENT_MESSAGE;
    question.format = 32;
    question.window = window_;
    question.type = protocols_;
    question.data.data32[0] = ping_;
    question.data.data32[1] = static_cast<std::uint32_t>(time);
    question.data.data32[2] = window_;
    question.data.data32[3] = ++count_;
    asked_.emplace(count_, now);
    xcb_send_event(screen_, 0, window_, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&question));
    xcb_flush(screen_);
  }

  void listenUntil(Clock::time_point end) {
    for (;;) {
      while (const auto event = held(xcb_poll_for_event(screen_))) hear(*event);
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
      if (left <= 0) return;
      pollfd descriptor{xcb_get_file_descriptor(screen_), POLLIN, 0};
      poll(&descriptor, 1, static_cast<int>(left));
    }
  }
  void hear(const xcb_generic_event_t& event) {
    constexpr std::uint8_t Sent = 0x80;
    if (event.response_type == 0) return forgetWindow();
    if ((event.response_type & ~Sent) != XCB_CLIENT_MESSAGE) return;
    const auto& answer = reinterpret_cast<const xcb_client_message_event_t&>(event);
    if (answer.type != protocols_ || answer.data.data32[0] != ping_) return;
    const auto question = asked_.find(answer.data.data32[3]);
    if (question == asked_.end()) return;
    const std::chrono::duration<double, std::milli> silence = Clock::now() - question->second;
    longest_ = std::max(longest_, silence.count());
    asked_.erase(question);
  }
  /// The window has gone, with the questions to it; another one is asked from now on.
  void forgetWindow() {
    window_ = XCB_NONE;
    asked_.clear();
  }

  std::uint32_t process_;
  xcb_connection_t* screen_ = xcb_connect(nullptr, nullptr);
  xcb_window_t root_ = xcb_setup_roots_iterator(xcb_get_setup(screen_)).data->root;
  xcb_atom_t protocols_ = atom("WM_PROTOCOLS");
  xcb_atom_t ping_ = atom("_NET_WM_PING");
  xcb_atom_t pid_ = atom("_NET_WM_PID");
  xcb_window_t window_ = XCB_NONE;
  std::uint32_t count_ = 0;
  std::map<std::uint32_t, Clock::time_point> asked_;
  double longest_ = 0;
};

bool lineWaits() {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  return poll(&input, 1, 0) == 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  Watch watch(static_cast<std::uint32_t>(std::stoul(argv[1])));
  for (;;) {
    watch.beat();
    if (!lineWaits()) continue;
    std::string phase;
    if (!std::getline(std::cin, phase)) return 0;
    std::printf("Longest stall of the window, %s\t%.1f\tms\n", phase.c_str(), watch.longest());
    std::fflush(stdout);
  }
}
