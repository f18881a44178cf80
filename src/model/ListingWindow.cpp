#include "model/ListingWindow.h"

#include "model/MainBars.h"
#include "model/Ports.h"

namespace trackloom {

ListingWindow::ListingWindow(FormHost& host, Ports& ports, CDWriterEvents& writeEvents)
    : Form(host, "frmListing", "Trackloom"),
      DockStudio1(*this, "DockStudio1", mainBars(), mainTools()),
      ListView1(*this, "ListView1",
                {{"Track Name", "Track Name"}, {"Track Location", "Track Location"}, {"Track Time", "Track Time"}}),
      CD1(*this, "CD1", ports.files),
      CDR1(ports.writers.create(writeEvents)),
      CDR2(ports.writers.create(silent_)),
      panel1(DockStudio1.tool("panel1")),
      panel2(DockStudio1.tool("panel2")),
      panel3(DockStudio1.tool("panel3")),
      Progress1(DockStudio1.tool("Progress1")),
      cboMainDrive(DockStudio1.tool("cboMainDrive")) {
  panel1.Text = panel1.design.caption;
  ListView1.Enabled = false;
  ListView1.SmallIcons = &ImageList1;
}

}  // namespace trackloom
