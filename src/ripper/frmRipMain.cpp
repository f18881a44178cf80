#include "ripper/frmRipMain.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "ripper/RipperForms.h"
#include "ripper/modWriteMP3.h"
#include "runtime/Numbers.h"
#include "runtime/RuntimeError.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

/// The caption while no disc is in the drive; only from there a disc becomes an unknown one.
const std::string PlainCaption = "Trackloom CD Ripper";
constexpr const char* DatabaseServer = "gnudb.gnudb.org";
constexpr int WebPort = 80;
constexpr int ServerLimit = 30;
constexpr int TrackImage = 1;

std::string withoutFirst(std::string text, char separator) {
  if (const auto place = text.find(separator); place != std::string::npos) text[place] = '-';
  return text;
}

/// A title as the name of a file: a second separator in it stays, and such a file cannot be made.
std::string trackName(const std::string& title) {
  return withoutFirst(withoutFirst(Trim(title), '/'), '\\');
}

}  // namespace

frmRipMain::frmRipMain(Session& session, RipperForms& forms)
    : Form(session.host, "frmRipMain", "CD Ripper"),
      MP31(session.ports.encoders.create()),
      CDRipperX1(session.ports.rippers.create()),
      session_(session),
      forms_(forms) {
  ImageCombo1.Images = &ImageList1;
  chkCDDB.Value = true;
  cmdSelectAll.Enabled = false;
  cmdSelectNone.Enabled = false;
  cmdExtract.Enabled = false;
  cmdExit.Cancel = true;
  cboSpeeds.Click = [this] { skipOnError([this] { CDRipperX1->SetSpeed(ToInt16(cboSpeeds.ItemData())); }); };
  cmdRead.Click = [this] { ReadDisc(); };
  ListView2.ItemCheck = [this](int /*row*/) { allowExtraction(); };
  cmdSelectAll.Click = [this] { checkAll(true); };
  cmdSelectNone.Click = [this] { checkAll(false); };
  cmdExtract.Click = [this] { ExtractSelected(); };
  cmdExit.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, RipMainTopic); };
}

void frmRipMain::Load() {
  takePicture(session_, &frmImages::imgRipper, Image1);
  m_objCDDB = session_.ports.databases.create();
  listDrives();
  if (!ImageCombo1.items().empty()) return ImageCombo1.SetListIndex(0);
  StatusBar1.SetPanelText(1, "No CD Devices could be found...");
  cmdRead.Enabled = false;
}

void frmRipMain::Unload() {
  session_.frmListing().show();
  m_objCDDB.reset();
  m_objEncoder = nullptr;
}

void frmRipMain::listDrives() {
  const std::int16_t drives = CDRipperX1->DeviceCount();
  for (std::int16_t drive = 0; drive < drives; ++drive)
    ImageCombo1.AddItem(Trim(CDRipperX1->DeviceLetter(drive)) + ": " + Trim(CDRipperX1->DeviceVendor(drive)) + " " +
                            Trim(CDRipperX1->DeviceModel(drive)),
                        0, ImageList1.Number("Drive"));
}

void frmRipMain::FillSpeedList() {
  cboSpeeds.Clear();
  cboSpeeds.AddItem("AUTO");
  const std::int32_t most = CDRipperX1->MaxSpeed();
  for (std::int32_t speed = 1; speed <= most; speed += speed > 4 ? 4 : speed)
    cboSpeeds.AddItem(std::to_string(speed) + "X", speed);
  cboSpeeds.SetListIndex(0);
}

void frmRipMain::ReadDisc() {
  const std::int16_t drive = ToInt16(ImageCombo1.ListIndex());
  if (CDRipperX1->SelectRipDrive(drive) && !CDRipperX1->DiscPresent()) return tellNoDisc();
  forms_.frmReading->show();
  session_.ports.pump.pumpEvents();
  try {
    readDrive(drive);
    forms_.frmReading.unload();
  } catch (const RuntimeError& error) {
    forms_.frmReading.unload();
    tellFailure(error);
  }
}

void frmRipMain::tellNoDisc() {
  session_.ask(
      {"No Disc", "There is no disc inserted in the selected drive to read.", BoxButtons::Ok, BoxIcon::Information});
  caption = PlainCaption;
  ListView2.Clear();
  cmdExtract.Enabled = false;
  cmdSelectAll.Enabled = false;
  cmdSelectNone.Enabled = false;
}

void frmRipMain::tellFailure(const RuntimeError& error) {
  session_.ask(
      {"Error", std::string("CD Ripper encountered and error trying to read the contents of the inserted disc.") +
                    ParagraphBreak + "Error# " + std::to_string(error.number()) + " " + error.description()});
}

void frmRipMain::readDrive(std::int16_t drive) {
  ListView2.Clear();
  cmdExtract.Enabled = false;
  cmdSelectAll.Enabled = false;
  cmdSelectNone.Enabled = false;
  forms_.mod.DiscArtist = "";
  if (CDRipperX1->SelectRipDrive(drive))
    readContents();
  else
    CDRipperX1->LastDriveError();
  if (ListView2.Count() == 0) return;
  cmdSelectAll.Enabled = true;
  cmdSelectNone.Enabled = true;
}

void frmRipMain::readContents() {
  const Names names = chkCDDB.Value ? lookUpNames() : Names();
  FillSpeedList();
  if (CDRipperX1->ReadTOC())
    listTracks(names);
  else
    StatusBar1.SetPanelText(1, "No CD in the selected drive to read...");
}

frmRipMain::Names frmRipMain::lookUpNames() {
  const std::vector<DiscRecord> matches = askDatabase();
  const Names names = matches.empty() ? Names() : takeNames(matches.front());
  if (caption == PlainCaption) caption = PlainCaption + " (Unknown Disc)";
  return names;
}

std::vector<DiscRecord> frmRipMain::askDatabase() {
  bool present = true;
  skipOnError([&] { present = CDRipperX1->DiscPresent(); });
  if (!present) return {};
  skipOnError([&] { database().ConfigureServer(DatabaseServer, WebPort, ServerLimit, "", WebPort, "", ""); });
  skipOnError([&] { database().QueryDrive(1, Left(ImageCombo1.Text(), 1), "", ""); });
  std::vector<DiscRecord> matches;
  skipOnError([&] { matches = database().Matches(); });
  return matches;
}

DiscDatabase& frmRipMain::database() {
  // The window can be closed in the one pump of a read, and lets go of the database.
  if (!m_objCDDB) throw RuntimeError(RuntimeError::ObjectNotSet);
  return *m_objCDDB;
}

frmRipMain::Names frmRipMain::takeNames(const DiscRecord& disc) {
  caption = PlainCaption + " (" + Trim(disc.Artist) + " - " + Trim(disc.Title) + ")";
  CDRipperMod1& mod = forms_.mod;
  mod.DiscArtist = Trim(disc.Artist);
  mod.DiscAlbum = Trim(disc.Title);
  mod.DiscYear = Trim(disc.Year);
  // A disc of no genre counts as one of the first.
  mod.DiscGenre = disc.Genre.empty() ? std::uint8_t{0} : GenreIndexFromName(disc.Genre);
  Names names;
  for (const DiscTrackRecord& track : disc.Tracks) names.push_back(trackName(track.Title));
  return names;
}

void frmRipMain::listTracks(const Names& names) {
  CDRipperX& engine = *CDRipperX1;
  const std::int16_t tracks = engine.TrackCount();
  for (std::int32_t number = 1; number <= tracks; ++number) {
    const std::int16_t track = ToInt16(number);
    const std::int32_t start = engine.TrackStart(track);
    const std::int32_t length = engine.TrackLength(track);
    if (!engine.TrackIsAudio(track)) continue;
    const auto known = static_cast<std::size_t>(number);
    const std::int32_t end = ToInt32(std::int64_t{start} + length);
    ListView2.Add({known <= names.size() ? names[known - 1] : FormatTwoDigits(number),
                   {engine.SectorsToTime(start), engine.SectorsToTime(end), engine.SectorsToTime(length)},
                   TrackImage});
  }
  StatusBar1.SetPanelText(1, "Contents of current inserted CD listed...");
}

void frmRipMain::checkAll(bool checked) {
  for (int row = 1; row <= ListView2.Count(); ++row) ListView2.SetChecked(row, checked);
  cmdExtract.Enabled = checked;
}

void frmRipMain::allowExtraction() {
  bool any = false;
  for (int row = 1; row <= ListView2.Count() && !any; ++row)
    any = ListView2.Item(row).Checked && ListView2.Item(row).SmallIcon == TrackImage;
  cmdExtract.Enabled = any;
}

void frmRipMain::ExtractSelected() {
  const CDRipperMod1& mod = forms_.mod;
  forms_.mod.RipFolder.clear();
  forms_.frmRipOptions->showModal(this);
  if (mod.RipFolder.empty()) return;
  if (mod.RipToMP3) {
    m_objEncoder = &MP31->Encoder();
    CDRipperX1->AttachEncoder(*m_objEncoder);
    CDRipperX1->SetUseEncoder(true);
    MP31->SetBitRate(mod.RipBitRate);
  } else {
    CDRipperX1->SetUseEncoder(false);
  }
  forms_.frmRipStatus->StartRipSession(*CDRipperX1);
}

}  // namespace trackloom
