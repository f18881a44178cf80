#pragma once

namespace trackloom {

struct Session;
struct WritingForms;

/// Tests disc, tracks and room, each refusal with its own words, and then takes the user's settings. Leaves
/// RecordConfirmed.
void PrepareRecord(Session& session, WritingForms& forms);

/// Turns the listing into a write order for the engine, and starts the write.
void StartDiscWrite(Session& session, WritingForms& forms);

/// The pause after a test pass is over: the real pass begins.
void startRealWrite(Session& session);

/// The pause after a copy is over: waits for the next disc and writes it, or ends when the user gives up.
void startNextCopy(Session& session, WritingForms& forms);

}  // namespace trackloom
