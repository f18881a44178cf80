#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "ports/CDWriterXP.h"
#include "runtime/Paths.h"

namespace trackloom {

/// One disc of a recorder that is a folder, at the moment of a look. Lengths are blocks of 1/75 second.
struct ShelfDisc {
  /// Spoilt: a write or an erase did not end. Damaged: nobody can make sense of it, and `trouble` says why.
  enum class State { Blank, Open, Closed, AtWork, Spoilt, Damaged };

  /// The name of its folder, in the host's bytes.
  std::string name;
  State state = State::Damaged;
  std::string trouble;
  bool rewritable = false;
  std::int32_t size = 0;
  std::int32_t used = 0;
  /// Room for more of what it holds.
  std::int32_t free = 0;
  /// Nothing: it holds no track.
  std::optional<BlockKind> kind;
  std::int32_t tracks = 0;
  /// When its content changed last, in seconds since 1970.
  std::int64_t changed = 0;

  bool operator==(const ShelfDisc&) const = default;
};

/// A recorder that is a folder, at one moment.
struct ShelfView {
  /// False: there is no such folder, and no disc in it.
  bool present = false;
  /// An operation has the recorder, in this program or in another.
  bool busy = false;
  /// At most one, but where somebody put more than one disc there; then the recorder takes none of them.
  std::vector<ShelfDisc> tray;
  /// In the order of their names.
  std::vector<ShelfDisc> shelf;

  bool operator==(const ShelfView&) const = default;
};

/// Says in a sentence for the user why a disc stays as it is.
class ShelfRefusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class BlankDisc { CdR74, CdR80, CdRw80 };

/// The tray and the shelf of a recorder that is a folder, as the hands of a user reach them. All calls but the first
/// two wait for the folder's disk, however long that takes, so they belong on a thread that may wait; they are safe
/// from any. Those that change something throw ShelfRefusal, and then nothing is lost.
class DiscShelf {
 public:
  DiscShelf() = default;
  DiscShelf(const DiscShelf&) = delete;
  DiscShelf& operator=(const DiscShelf&) = delete;
  virtual ~DiscShelf() = default;

  virtual std::string name() const = 0;
  virtual HostPath folder() const = 0;

  virtual bool present() = 0;
  virtual ShelfView look() = 0;

  /// As the recorder's own button: the disc goes to the shelf, and a blank one may take its place.
  virtual void eject() = 0;
  /// The disc of that name goes from the shelf into the tray, and what lies there goes to the shelf.
  virtual void insert(const std::string& disc) = 0;
  virtual void addBlank(BlankDisc kind) = 0;
  virtual void rename(const std::string& disc, const std::string& newName) = 0;
  /// For good. Only what makes up a disc is ever deleted: a folder that holds anything else stays as it is.
  virtual void remove(const std::string& disc) = 0;
};

}  // namespace trackloom
