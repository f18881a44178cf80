#include "desktop/NoticeReading.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLabel>
#include <QTextEdit>
#include <memory>

namespace trackloom {

namespace {

bool isNotice(const QObject& object) {
  return object.property("told").toBool();
}

QString wordsOf(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) return label->text();
  const auto* text = qobject_cast<const QTextEdit*>(&widget);
  return text == nullptr ? QString() : text->toPlainText();
}

class NoticeReading final : public QAccessibleWidget {
 public:
  explicit NoticeReading(QWidget& notice) : QAccessibleWidget(&notice, QAccessible::Notification) {}

  /// The title of a group around it is no name of what has happened.
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? wordsOf(*widget()) : QAccessibleWidget::text(kind);
  }
};

QAccessibleInterface* readingOf(const QString& /*kind*/, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr || !isNotice(*widget)) return nullptr;
  return std::make_unique<NoticeReading>(*widget).release();
}

}  // namespace

void letNoticesBeRead() {
  QAccessible::installFactory(readingOf);
}

void tellNotice(QWidget& widget) {
  if (!isNotice(widget) || wordsOf(widget).isEmpty()) return;
  QAccessibleEvent shows(&widget, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shows);
}

}  // namespace trackloom
