#include "desktop/ScreenReader.h"

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>
#include <QAccessible>
#include <QCoreApplication>

namespace trackloom::trial {

namespace {

constexpr const char* ToldProperty = "toldToScreenReader";
/// How far from the object it reads on, up and down.
constexpr int Depth = 2;
constexpr int LargestTable = 50;

void readOne(QAccessibleInterface* object) {
  if (object == nullptr || !object->isValid()) return;
  for (const auto text : {QAccessible::Name, QAccessible::Description, QAccessible::Value, QAccessible::Accelerator})
    object->text(text);
  object->state();
  object->role();
  object->rect();
}

void readCells(QAccessibleInterface& object) {
  QAccessibleTableInterface* table = object.tableInterface();
  if (table == nullptr || table->rowCount() > LargestTable) return;
  for (int row = 0; row < table->rowCount(); ++row)
    for (int column = 0; column < table->columnCount(); ++column) readOne(table->cellAt(row, column));
  for (QAccessibleInterface* cell : table->selectedCells()) readOne(cell);
  table->selectedRows();
}

void readDown(QAccessibleInterface* object, int depth) {
  if (object == nullptr || !object->isValid()) return;
  readOne(object);
  readCells(*object);
  if (depth == 0 || object->childCount() > LargestTable) return;
  for (int child = 0; child < object->childCount(); ++child) readDown(object->child(child), depth - 1);
}

void hear(QAccessibleEvent* event) {
  qApp->setProperty(ToldProperty, qApp->property(ToldProperty).toInt() + 1);
  QAccessibleInterface* object = event->accessibleInterface();
  readDown(object, Depth);
  for (int step = 0; step < Depth && object != nullptr && object->isValid(); ++step) {
    readOne(object);
    object = object->parent();
  }
}

/// Without a bus of screen readers, only the toolkit's own interior can say that somebody listens.
void setListening(bool listening) {
  QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(listening);
}

}  // namespace

ScreenReader::ScreenReader() {
  qApp->setProperty(ToldProperty, 0);
  setListening(true);
  QAccessible::installUpdateHandler(hear);
}

ScreenReader::~ScreenReader() {
  QAccessible::installUpdateHandler(nullptr);
  setListening(false);
}

int ScreenReader::told() const {
  return qApp->property(ToldProperty).toInt();
}

}  // namespace trackloom::trial
