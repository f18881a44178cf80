#include "desktop/BarParts.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>

#include "desktop/Face.h"
#include "desktop/Make.h"
#include "desktop/Meter.h"
#include "desktop/PictureView.h"
#include "desktop/Shown.h"
#include "desktop/Wheel.h"

namespace trackloom {

namespace {

constexpr int ComboIconPixels = 22;
constexpr int ComboCharacters = 38;
constexpr QMargins RowMargins(6, 3, 6, 3);

/// A line of text that gives way when the window is narrow; the whole of it is then still in its tool tip.
QWidget& makePanel(Face& face, QWidget& row, Tool& tool) {
  auto& label = make<QLabel>(row);
  label.setTextFormat(Qt::PlainText);
  label.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  label.setMinimumWidth(1);
  const auto follow = [&label, &tool] {
    label.setText(shown(tool.Text.get()));
    label.setToolTip(label.fontMetrics().horizontalAdvance(label.text()) > label.width() ? label.text() : QString());
  };
  follow();
  face.keep(tool.changed.connect(follow));
  return label;
}

QWidget& makeMeter(Face& face, QWidget& row, Tool& tool) {
  auto& meter = make<Meter>(row);
  meter.setAccessibleName("Disc space used");
  const auto follow = [&meter, &tool] { meter.show(shown(tool.Text.get()), tool.Value, tool.Maximum); };
  follow();
  face.keep(tool.changed.connect(follow));
  return meter;
}

QWidget& makeDivider(QWidget& row) {
  auto& line = make<QFrame>(row);
  line.setFrameStyle(QFrame::VLine | QFrame::Plain);
  line.setForegroundRole(QPalette::Mid);
  return line;
}

void showEntries(QComboBox& combo, const Tool& tool) {
  for (auto at = static_cast<std::size_t>(combo.count()); at < tool.entries().size(); ++at)
    combo.addItem(shown(tool.entries()[at].Text));
  combo.setCurrentIndex(tool.SelectedEntry() - 1);
  combo.setEnabled(tool.Enabled);
}

}  // namespace

QWidget& makeComboTool(Face& face, QWidget& bar, DockStudio& dock, Tool& tool) {
  auto& part = make<QWidget>(bar);
  auto& row = make<QHBoxLayout>(part);
  row.setContentsMargins(RowMargins);
  auto& picture = make<PictureView>(part);
  picture.setPicture(iconNamed(tool.design.picture));
  picture.setFixedSize(ComboIconPixels, ComboIconPixels);
  auto& caption = make<QLabel>(part, foldCaption(tool.design.caption));
  auto& combo = make<QComboBox>(part);
  combo.setObjectName(shown(tool.Name()));
  combo.setAccessibleName(caption.text());
  combo.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  combo.setMinimumContentsLength(ComboCharacters);
  keepStrayWheelFrom(combo);
  for (QWidget* piece :
       {static_cast<QWidget*>(&picture), static_cast<QWidget*>(&caption), static_cast<QWidget*>(&combo)})
    row.addWidget(piece);
  showEntries(combo, tool);
  face.keep(tool.changed.connect([&combo, &tool] { showEntries(combo, tool); }));
  QObject::connect(&combo, &QComboBox::activated, [&dock, name = tool.Name(), entry = face.entry()](int index) {
    entry([&] { dock.chooseEntry(name, index + 1); });
  });
  return part;
}

QWidget& makeStatusRow(Face& face, QWidget& bar, const std::vector<Tool*>& tools) {
  auto& part = make<QWidget>(bar);
  part.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  auto& row = make<QHBoxLayout>(part);
  row.setContentsMargins(RowMargins);
  for (Tool* tool : tools) {
    if (row.count() > 0) row.addWidget(&makeDivider(part));
    const bool meter = tool->design.kind == ToolKind::Progress;
    row.addWidget(&(meter ? makeMeter(face, part, *tool) : makePanel(face, part, *tool)));
  }
  return part;
}

}  // namespace trackloom
