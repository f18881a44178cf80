#include "desktop/DriveNotice.h"

#include <QAction>
#include <QMessageBox>
#include <QStyle>
#include <QToolBar>

#include "desktop/Make.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

QString asSentence(const std::string& words) {
  QString text = shown(words);
  return text.left(1).toUpper() + text.mid(1) + ".";
}

}  // namespace

void DriveNotice::standIn(QWidget& window) {
  auto* bar = window.findChild<QToolBar*>("StatusBar1");
  if (bar == nullptr) return;
  button_ = &make<QToolButton>(*bar);
  button_->setObjectName("driveNotice");
  button_->setIcon(window.style()->standardIcon(QStyle::SP_MessageBoxWarning));
  button_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  place_ = bar->addWidget(button_);
  QObject::connect(button_, &QToolButton::clicked, &window, [this, &window] { open(window); });
  show();
}

void DriveNotice::tell(const std::vector<std::string>& why) {
  why_.clear();
  for (const std::string& words : why) why_.append(asSentence(words));
  show();
}

void DriveNotice::show() {
  if (!place_ || !button_) return;
  place_->setVisible(!why_.isEmpty());
  button_->setText(why_.size() > 1 ? "Drives cannot be used" : "A drive cannot be used");
  button_->setToolTip(why_.join("\n"));
  button_->setAccessibleDescription(why_.join(" "));
}

void DriveNotice::open(QWidget& before) const {
  auto& box = make<QMessageBox>(before, QMessageBox::Warning, button_->text(), why_.join("\n\n"), QMessageBox::Ok);
  box.setAttribute(Qt::WA_DeleteOnClose);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box.open();
}

}  // namespace trackloom
