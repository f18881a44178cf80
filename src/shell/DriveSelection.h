#pragma once

#include "controls/Tool.h"

namespace trackloom {

struct Session;
struct ShellForms;

/// Fills the drive list and takes the remembered drive into use; what an engine fails to do is skipped. Without any
/// drive it shows frmNOCD and never comes back.
void InitDrives(Session& session, ShellForms& forms);

/// The user's or the program's choice in the drive list; ignored while the window is loading.
void driveChosen(Session& session, const Tool& tool, const ComboEntry& entry);

/// Takes the drive of the first entry of that text into use.
void ChangeDrive(Session& session, const ComboEntry& entry);

}  // namespace trackloom
