#include "model/Batch.h"

#include "model/CommandStates.h"
#include "model/Session.h"

namespace trackloom {

Batch::Batch(Session& session, Source source)
    : session_(session), source_(source), layout_(session.batches.layoutsClosed) {
  if (int* count = running()) ++*count;
}

Batch::~Batch() {
  if (int* count = running()) --*count;
}

int* Batch::running() const {
  if (source_ == Source::Dialog) return nullptr;
  return source_ == Source::Drop ? &session_.batches.drops : &session_.batches.openings;
}

bool Batch::goesOn() const {
  return session_.mod.LayoutOpen && session_.batches.layoutsClosed == layout_;
}

void Batch::rowAdded() const {
  if (source_ != Source::LayoutFile) session_.mod.LayoutSaved = false;
}

void Batch::finish() const {
  if (!goesOn() || session_.frmListing().ListView1.Count() == 0) return;
  session_.mod.LayoutSaved = false;
  UpdateCommandStates(session_);
}

}  // namespace trackloom
