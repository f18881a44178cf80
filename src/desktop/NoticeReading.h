#pragma once

class QWidget;

namespace trackloom {

/// Lets screen readers read each label or text with the property "told" as a notification, which is what they say
/// aloud when it comes into sight, wherever the focus is. The words of other labels they leave for the user to look up.
void letNoticesBeRead();

/// Lets them hear the words of such a widget. To be called behind each new text, unless the widget comes into sight
/// with it, of which they hear anyway.
void tellNotice(QWidget& widget);

}  // namespace trackloom
