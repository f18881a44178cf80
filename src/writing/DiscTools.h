#pragma once

namespace trackloom {

struct Session;
struct WritingForms;

/// Shows what is known about the disc in the drive; without a disc it says so.
void ShowDiscInfo(Session& session, WritingForms& forms);

/// Lets the user choose an image file and writes it onto the disc, which is closed behind it. Refuses an empty drive
/// and a closed disc first. `TestMode`, `WritePhase` and `DiscCloseActive` are taken as the last operation left them.
void WriteISOImage(Session& session, WritingForms& forms);

/// A session or a disc has been closed: takes the dialog away, says so, and ejects the disc.
void finishDiscClose(Session& session, WritingForms& forms);

}  // namespace trackloom
