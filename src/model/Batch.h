#pragma once

namespace trackloom {

struct Session;

/// What is known of the batches that run with the main window open, and so can meet a command.
struct RunningBatches {
  int drops = 0;
  int openings = 0;
  /// Counts the layouts that were closed, so that what began with one is not taken on to the next.
  int layoutsClosed = 0;

  bool any() const { return drops + openings > 0; }
};

/// Tracks that come into the open layout one by one, with window events let in between. A batch belongs to the layout
/// with which it began: once that one is closed, nothing more of it happens, neither a row nor what comes at its end.
class Batch {
 public:
  /// Where the tracks come from: a dialog keeps the main window from input while its batch runs.
  enum class Source { Dialog, Drop, LayoutFile };

  Batch(Session& session, Source source);
  ~Batch();
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;

  Session& session() const { return session_; }
  /// The layout with which it began is still open.
  bool goesOn() const;

  /// A row has come: unless it was read from the layout's own file, the layout wants saving from this moment.
  void rowAdded() const;
  /// The end of every batch that changes a layout: a listing with rows counts as changed, whether or not any came.
  void finish() const;

 private:
  int* running() const;

  Session& session_;
  Source source_;
  int layout_;
};

}  // namespace trackloom
