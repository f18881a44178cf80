#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace trackloom {

/// A font of the print control. An empty name leaves the control's own one.
class PrinterFont {
 public:
  virtual ~PrinterFont() = default;
  virtual void SetName(const std::string& name) = 0;
  /// Points.
  virtual void SetSize(std::int16_t size) = 0;
};

/// The print control: takes a document between StartDoc and EndDoc, lays it out on pages and shows them, with a bar of
/// its own to turn pages and to print. All lengths are twips. To be called on the window's thread.
class VSPrinter {
 public:
  virtual ~VSPrinter() = default;

  /// The font of the body, and that of header and footer.
  virtual PrinterFont& Font() = 0;
  virtual PrinterFont& HeaderFont() = 0;
  // Both stand on every page of the document, whenever they are given before EndDoc; "|" parts the left, the centred
  // and the right part, and "%d" in the footer is the number of the page.
  virtual void SetHeaderText(const std::string& text) = 0;
  virtual void SetFooterText(const std::string& text) = 0;
  /// The left, the top and the right margin; the control has its own where none is set.
  virtual void SetMarginA(std::int16_t twips) = 0;
  virtual void SetMarginB(std::int16_t twips) = 0;
  virtual void SetMarginC(std::int16_t twips) = 0;
  /// The whole page, margins included: 12240 whatever paper its user chooses in the bar.
  virtual double PageWidth() = 0;

  virtual void StartDoc() = 0;
  /// Adds rows to the table, which begins with the first call: with its header, filled with the colour (0xBBGGRR).
  /// `format` has for each column a mark, `+` for centred or `>` for right-aligned, and its width; columns and cells
  /// are parted by "|" and a row ends with ";". `appended` rows go on with the table that stands.
  virtual void AddTable(const std::string& format, const std::string& header, const std::string& rows,
                        std::int32_t headerColour, std::optional<std::int32_t> missing = std::nullopt,
                        bool appended = false) = 0;
  virtual void EndDoc() = 0;

  /// The scale of the preview in percent.
  virtual void SetZoom(double percent) = 0;
  virtual void SetWidth(double twips) = 0;
  virtual void SetHeight(double twips) = 0;
};

/// Makes print controls, one for each window that asks for one.
class PrintControls {
 public:
  virtual ~PrintControls() = default;
  virtual std::unique_ptr<VSPrinter> create() = 0;
  /// The names of every font of the screen.
  virtual std::vector<std::string> ScreenFonts() = 0;
};

}  // namespace trackloom
