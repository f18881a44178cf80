#include "desktop/QtFileDialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include "desktop/QtDesk.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

/// "ISO Images (*.iso)|*.iso" as the toolkit has it; it reads the pattern in the brackets, and so does the user.
QStringList toolkitFilters(const std::string& filter) {
  QStringList filters;
  const QStringList parts = shown(filter).split('|');
  for (qsizetype part = 0; part + 1 < parts.size(); part += 2) {
    const QString words = parts[part].section(" (", 0, 0);
    filters << words + " (" + QString(parts[part + 1]).replace(';', ' ') + ")";
  }
  return filters;
}

class Chooser final : public QFileDialog {
 public:
  Chooser(const FileDialog& wanted, QWidget* before) : QFileDialog(before), flags_(wanted.flags) {
    const bool opens = wanted.mode == FileDialog::Mode::Open;
    setWindowModality(Qt::WindowModal);
    setOption(DontUseNativeDialog);
    setOption(DontConfirmOverwrite, !wanted.flags.overwritePrompt);
    setAcceptMode(opens ? AcceptOpen : AcceptSave);
    setFileMode(wanted.flags.fileMustExist ? ExistingFile : AnyFile);
    setNameFilters(toolkitFilters(wanted.filter));
    if (!wanted.fileName.empty()) selectFile(shown(wanted.fileName));
  }

 protected:
  void accept() override {
    const QDir folder = QFileInfo(selectedFiles().value(0)).dir();
    if (!flags_.pathMustExist || folder.exists()) return QFileDialog::accept();
    QMessageBox::warning(this, windowTitle(), tr("%1\nThis folder does not exist.").arg(folder.path()));
  }

 private:
  const FileDialogFlags flags_;
};

}  // namespace

std::optional<HostPath> QtFileDialogs::choose(const FileDialog& dialog) {
  QWidget* before = desk_.frontWindow();
  Chooser chooser(dialog, before);
  return run(chooser, before);
}

std::optional<HostPath> QtFileDialogs::browseForFolder(const std::string& prompt) {
  QWidget* before = desk_.frontWindow();
  QFileDialog browser(before, shown(prompt));
  browser.setWindowModality(Qt::WindowModal);
  browser.setOption(QFileDialog::DontUseNativeDialog);
  browser.setOption(QFileDialog::ShowDirsOnly);
  browser.setFileMode(QFileDialog::Directory);
  return run(browser, before);
}

std::optional<HostPath> QtFileDialogs::run(QFileDialog& dialog, QWidget* before) {
  desk_.family().join(dialog, before);
  const Family::Turn turn(desk_.family(), dialog, before);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return HostPath(entered(dialog.selectedFiles().value(0)));
}

}  // namespace trackloom
