#include "layout/TrackDrag.h"

#include <algorithm>
#include <cmath>

#include "model/Layout.h"
#include "model/Session.h"

namespace trackloom {

namespace {

constexpr Colour Red = 255;
/// What the first hover takes off for the head of the list, in twips.
constexpr double HeadHeight = 45;
/// Twips from the upper and the lower end within which the list scrolls.
constexpr double UpperZone = 315;
constexpr double LowerZone = 245;
constexpr int ScrollStep = 10;

/// The rows may have become fewer since the drag began.
void colourDraggedRow(ListingWindow& window, Colour colour) {
  if (window.DragRow >= 1 && window.DragRow <= window.ListView1.Count())
    window.ListView1.SetForeColor(window.DragRow, colour);
}

std::int16_t rowAt(const ListView& listing, double y) {
  const double row = std::clamp(std::floor(y / ListView::DragRowHeight), 1.0, static_cast<double>(listing.Count()));
  return ToInt16(std::min<double>(row + listing.FirstVisibleRow() - 1, listing.Count()));
}

void scrollAtTheEnds(ListView& listing, double y) {
  if (y < UpperZone) listing.ScrollBy(0, -ScrollStep);
  if (y > listing.DragHeight() - LowerZone) listing.ScrollBy(0, ScrollStep);
}

/// Takes a row along with its cells, but without its tag; `to` counts without the row.
void moveRow(ListView& listing, int from, int to) {
  ListItem moved;
  moved.Text = listing.Item(from).Text;
  moved.SubItems = listing.Item(from).SubItems;
  listing.Remove(from);
  listing.Insert(to, std::move(moved));
  listing.SelectRow(to);
}

void moveDraggedRow(ListingWindow& window, double y) {
  if (y > (window.ListView1.Count() - 1) * ListView::DragRowHeight) ++window.HoverRow;
  moveRow(window.ListView1, window.DragRow, window.DragRow > window.HoverRow ? window.HoverRow : window.HoverRow - 1);
}

void forgetDrag(ListingWindow& window) {
  colourDraggedRow(window, WindowTextColour);
  window.DragRow = 0;
}

}  // namespace

void pressOnListing(Session& session, MouseButton button) {
  ListingWindow& window = session.frmListing();
  if (!isAudioLayout(session) || window.ListView1.Count() == 0) return;
  forgetDrag(window);
  if (button == MouseButton::Left) window.ListView1.Drag();
}

void dragOverListing(Session& session, double y) {
  ListingWindow& window = session.frmListing();
  ListView& listing = window.ListView1;
  if (!isAudioLayout(session) || listing.Count() == 0) return;
  if (window.DragRow == 0) y -= HeadHeight;
  window.HoverRow = rowAt(listing, y);
  listing.SelectRow(window.HoverRow);
  if (window.DragRow == 0) window.DragRow = window.HoverRow;
  if (window.DragRow != window.HoverRow) colourDraggedRow(window, Red);
  scrollAtTheEnds(listing, y);
}

void dropOnListing(Session& session, double y) {
  ListingWindow& window = session.frmListing();
  if (!isAudioLayout(session)) return;
  const bool rowsAreThere = std::max(window.DragRow, window.HoverRow) <= window.ListView1.Count();
  if (window.DragRow != window.HoverRow && rowsAreThere) moveDraggedRow(window, y);
  forgetDrag(window);
  window.HoverRow = 0;
}

void moveSelectedRow(Session& session, int rows) {
  ListingWindow& window = session.frmListing();
  ListView& listing = window.ListView1;
  const int from = listing.SelectedRow();
  const int to = from + rows;
  if (!isAudioLayout(session) || from == 0 || to < 1 || to > listing.Count()) return;
  forgetDrag(window);
  moveRow(listing, from, to);
}

}  // namespace trackloom
