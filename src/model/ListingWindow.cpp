#include "model/ListingWindow.h"

#include "model/MainBars.h"

namespace trackloom {

ListingWindow::ListingWindow(FormHost& host, WriterEngines& engines, CDWriterEvents& writeEvents)
    : Form(host, "frmListing", "Trackloom"),
      DockStudio1(*this, "DockStudio1", mainBars(), mainTools()),
      ListView1(*this, "ListView1",
                {{"Track Name", "Track Name"}, {"Track Location", "Track Location"}, {"Track Time", "Track Time"}}),
      CDR1(engines.create(writeEvents)),
      CDR2(engines.create(silent_)),
      panel1(DockStudio1.tool("panel1")),
      panel2(DockStudio1.tool("panel2")),
      panel3(DockStudio1.tool("panel3")),
      Progress1(DockStudio1.tool("Progress1")),
      cboMainDrive(DockStudio1.tool("cboMainDrive")) {
  panel1.Text = panel1.design.caption;
  ListView1.Enabled = false;
}

}  // namespace trackloom
