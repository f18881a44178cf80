#pragma once

#include "ports/MessageBoxes.h"

namespace trackloom {

class ListingWindow;
struct LayoutForms;
struct Session;

/// The close question: asks for saving only where the user's option wants to be asked.
void closeQuestion(Session& session, LayoutForms& forms);

/// Asks whether to save the open layout, and saves it; does nothing where there is nothing to save.
void PromptSaveLayout(Session& session, LayoutForms& forms);

/// The question that New, Open, Close and the exit have in common; each with its own buttons.
BoxAnswer askToSave(Session& session, BoxButtons buttons);

/// Empties the window and the queues. Whether the layout counts as saved is the caller's affair.
void CloseLayout(Session& session);

/// Takes what the status bars tell of a layout away.
void blankStatus(ListingWindow& window);

/// Saves at once where the layout has a file, else shows frmSave.
void saveOrAskName(Session& session, LayoutForms& forms);

}  // namespace trackloom
