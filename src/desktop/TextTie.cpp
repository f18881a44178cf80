#include "desktop/TextTie.h"

#include <QTimer>
#include <algorithm>
#include <memory>

#include "desktop/EventTap.h"
#include "desktop/Face.h"
#include "desktop/Make.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

/// How many units of the text left of the cursor were not there before.
qsizetype unitsInserted(const QString& before, const QString& now, qsizetype cursor) {
  const auto limit = now.begin() + std::min(cursor, now.size());
  return limit - std::mismatch(now.begin(), limit, before.begin(), before.end()).first;
}

/// Takes back what was inserted beyond `limit` units, and never half a character.
void takeBackExcess(QLineEdit& line, const QString& before, qsizetype limit) {
  QString text = line.text();
  const qsizetype cursor = line.cursorPosition();
  qsizetype excess = std::min(text.size() - limit, unitsInserted(before, text, cursor));
  if (excess <= 0) return;
  if (cursor > excess && text[cursor - excess - 1].isHighSurrogate()) ++excess;
  line.setText(text.remove(cursor - excess, excess));
  line.setCursorPosition(static_cast<int>(cursor - excess));
}

}  // namespace

void tieText(Face& face, QLineEdit& line, TextBox& box) {
  const auto limit = static_cast<qsizetype>(box.maxLength());
  const auto before = std::make_shared<QString>(line.text());
  QObject::connect(&line, &QLineEdit::textEdited, [&line, &box, limit, before, entry = face.entry()] {
    if (limit > 0) takeBackExcess(line, *before, limit);
    *before = line.text();
    entry([&line, &box] { box.edit(entered(line.text())); });
  });
  QObject::connect(&line, &QLineEdit::textChanged, [&line, before](const QString& text) {
    if (!line.isModified()) *before = text;
  });
  make<EventTap>(line, [&box, entry = face.entry()](QEvent& event) {
    if (event.type() == QEvent::FocusIn) entry([&box] { box.focus(); });
    return false;
  });
  // A click that brings the focus still moves the cursor, so selecting waits until the click is over.
  face.keep(box.selectAllRequested.connect([&line] { QTimer::singleShot(0, &line, &QLineEdit::selectAll); }));
}

}  // namespace trackloom
