#pragma once

namespace trackloom {

struct Session;
struct WritingForms;

/// Shows what is known about the disc in the drive; without a disc it says so.
void ShowDiscInfo(Session& session, WritingForms& forms);

/// Refuses an empty drive and a closed disc for the writing of an image. A disc that passes stays untouched, since an
/// image must be chosen in a file dialog first, and there is none.
void WriteISOImage(Session& session);

}  // namespace trackloom
