#pragma once

namespace trackloom {

class Button;
class CheckBox;
class ComboBox;
class DockStudio;
class FolderTreeview;
class Frame;
class Label;
class ListView;
class OptionButton;
class PictureBox;
class ProgressBarEx;
class StatusBar;
class TabStrip;
class TextBox;
class Timer;
class VScrollBar;

/// One visit for each kind of control: what a face implements to tie every control of a form to its widget.
class ControlVisitor {
 public:
  virtual ~ControlVisitor() = default;

  virtual void visit(Button& control) = 0;
  virtual void visit(CheckBox& control) = 0;
  virtual void visit(ComboBox& control) = 0;
  virtual void visit(DockStudio& control) = 0;
  virtual void visit(FolderTreeview& control) = 0;
  virtual void visit(Frame& control) = 0;
  virtual void visit(Label& control) = 0;
  virtual void visit(ListView& control) = 0;
  virtual void visit(OptionButton& control) = 0;
  virtual void visit(PictureBox& control) = 0;
  virtual void visit(ProgressBarEx& control) = 0;
  virtual void visit(StatusBar& control) = 0;
  virtual void visit(TabStrip& control) = 0;
  virtual void visit(TextBox& control) = 0;
  virtual void visit(Timer& control) = 0;
  virtual void visit(VScrollBar& control) = 0;
};

}  // namespace trackloom
