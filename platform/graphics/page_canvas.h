// A PDF document that is drawn on with Cairo, a page at a time. Internal to the library.
#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/graphics/missing_boxes.h"
#include "platform/graphics/page_line.h"
#include "platform/graphics/pdf_paper.h"
#include "platform/graphics/picture_label.h"
#include "platform/graphics/picture_store.h"

typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;

namespace kelspar {

class PageCanvas {
 public:
  using Write = std::function<bool(std::string_view)>;

  PageCanvas(const PDFPaper& paper, const std::string& title, bool hasLinks, Write write);
  ~PageCanvas();
  PageCanvas(const PageCanvas&) = delete;

  // What of the line lies between the page's ends.
  void draw(const PageLine& line, double pageTop, double pageEnd);
  void turnPage(bool isLast);
  [[nodiscard]] bool isBroken() const;
  // Ends the document. Raises what `write` has raised, which ends the document as a "no" does.
  void finish();

 private:
  [[nodiscard]] bool writePiece(std::string_view piece) noexcept;
  // `y` is that of the line's top on the page.
  void fill(const Fill& area, double y, double pageHeight);
  void show(const GlyphRun& run, double y, bool asText);
  void show(const Picture& picture, double y);
  void gather(const GlyphRun& run, double y);
  void showGathered();
  void showBitmap(const GlyphRun& run);
  void showHidden();
  void showText(GlyphRun& run);
  void hide(const GlyphRun& run, const PageGlyph& place);
  void link(const LinkArea& area, double y, double height);
  void setColor(NSColor color);

  Write write_;
  std::exception_ptr failure_;  // of `write_`, while Cairo's frames are on the stack
  cairo_surface_t* surface_;
  cairo_t* cairo_;
  PictureStore pictures_;
  std::vector<const cairo_surface_t*> painted_;  // on the page
  bool hasLinks_;
  cairo_scaled_font_t* plainFont_;
  struct {
    unsigned long index = 0;
    double width = 1;  // in ems
  } dash_;
  std::optional<MissingBoxes> boxes_;  // of the page
  LabelWriter labels_;
  std::vector<PageGlyph> moved_;
  GlyphRun gathered_, hidden_;  // on the page, not drawn yet
  double hiddenSize_ = 0;
};

}  // namespace kelspar
