// Attributed text as PDF, and messages put together; beside the first the plain way: a layout a
// paragraph, drawn line by line with Pango's own means.
#include <benchmark/benchmark.h>
#include <cairo-pdf.h>
#include <pango/pangocairo.h>

#include <atomic>
#include <map>

#include "EmailUtilities/EmailUtilities.h"
#include "bench/material.h"
#include "platform/dispatch/dispatch.h"
#include "platform/graphics/pango_fonts.h"
#include "platform/graphics/pdf_pages.h"

namespace kelspar {
namespace {

const NSAttributedString& text(size_t bytes) {
  static std::map<size_t, NSAttributedString> made;
  NSAttributedString& document = made[bytes];
  if (!document) document = NSAttributedString::initWithRTF(NSData(bench::formattedRTF(bytes)));
  return document;
}

void BM_PDF(benchmark::State& state) {
  const NSAttributedString& document = text(static_cast<size_t>(state.range(0)));
  size_t written = 0;
  for (auto _ : state) {
    writePDF(document, {}, [&written](std::string_view piece) {
      written += piece.size();
      return true;
    });
  }
  benchmark::DoNotOptimize(written);
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

cairo_status_t countPiece(void* closure, const unsigned char*, unsigned int length) {
  *static_cast<size_t*>(closure) += length;
  return CAIRO_STATUS_SUCCESS;
}

// The reference: fonts and colours as Pango's attributes, nothing else.
PangoAttrList* attributesOf(const NSAttributedString& paragraph) {
  PangoAttrList* list = pango_attr_list_new();
  guint start = 0;
  std::string utf8;
  size_t at = 0;
  for (const NSTextRun& run : paragraph.runs()) {
    utf8 += NSString(paragraph.string().view().substr(at, run.length)).utf8();
    at += run.length;
    const auto end = static_cast<guint>(utf8.size());
    PangoFontDescription* font = fontDescription(*run.attributes);
    const NSColor color = run.attributes->foreground.value_or(NSColor());
    for (PangoAttribute* attribute :
         {pango_attr_font_desc_new(font),
          pango_attr_foreground_new(color.red * 257, color.green * 257, color.blue * 257),
          pango_attr_underline_new(run.attributes->underline ? PANGO_UNDERLINE_SINGLE
                                                             : PANGO_UNDERLINE_NONE)}) {
      attribute->start_index = start;
      attribute->end_index = end;
      pango_attr_list_insert(list, attribute);
    }
    pango_font_description_free(font);
    start = end;
  }
  return list;
}

void drawPlainly(const NSAttributedString& document, size_t* written) {
  cairo_surface_t* surface = cairo_pdf_surface_create_for_stream(countPiece, written, 550, 715);
  cairo_t* cairo = cairo_create(surface);
  PangoContext* context = newPointContext();
  PangoLayout* layout = pango_layout_new(context);
  pango_layout_set_width(layout, 550 * PANGO_SCALE);
  const NSString string = document.string();
  double y = 0;
  for (size_t at = 0; at < string.length();) {
    const size_t end = std::min(string.view().find(u'\n', at), string.length());
    const NSAttributedString paragraph = document.attributedSubstring({at, end - at});
    pango_layout_set_text(layout, paragraph.string().utf8().c_str(), -1);
    PangoAttrList* attributes = attributesOf(paragraph);
    pango_layout_set_attributes(layout, attributes);
    pango_attr_list_unref(attributes);
    for (int i = 0; i < pango_layout_get_line_count(layout); ++i) {
      PangoLayoutLine* line = pango_layout_get_line_readonly(layout, i);
      PangoRectangle box;
      pango_layout_line_get_extents(line, nullptr, &box);
      y += pango_units_to_double(box.height);
      if (y > 715) {
        cairo_show_page(cairo);
        y = pango_units_to_double(box.height);
      }
      cairo_move_to(cairo, 0, y);
      pango_cairo_show_layout_line(cairo, line);
    }
    at = end + 1;
  }
  cairo_surface_finish(surface);
  g_object_unref(layout);
  g_object_unref(context);
  cairo_destroy(cairo);
  cairo_surface_destroy(surface);
}

void BM_PDFPlainly(benchmark::State& state) {
  const NSAttributedString& document = text(static_cast<size_t>(state.range(0)));
  size_t written = 0;
  for (auto _ : state) drawPlainly(document, &written);
  benchmark::DoNotOptimize(written);
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_PDF)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_PDFPlainly)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// So many paragraphs, an image in every fiftieth.
std::string bodyWithImages(int64_t paragraphs) {
  std::mt19937 random(7);
  std::string rtf = "{\\rtf1\\ansi\\fromhtml1{\\fonttbl{\\f0 Arial;}}\n";
  for (int64_t i = 0; i < paragraphs; ++i) {
    rtf += "{\\*\\htmltag64 <p>}" + bench::words(random, 12);
    if (i % 50 == 0) {
      rtf += "{\\*\\htmltag84 <img src=\"cid:image" + std::to_string(i / 50) + "\">}";
    }
    rtf += "\\htmlrtf\\par\\htmlrtf0 {\\*\\htmltag72 </p>}\n";
  }
  return rtf + "}";
}

NSArray imagesFor(int64_t paragraphs) {
  static constexpr uint8_t kDot[] = {'G', 'I', 'F', '8', '9', 'a', 1,   0,    1, 0, 0x80, 0,
                                     0,   0,   0,   0,   255, 255, 255, 0x2C, 0, 0, 0,    0,
                                     1,   0,   1,   0,   0,   2,   2,   0x44, 1, 0, 0x3B};
  std::vector<id> records;
  for (int64_t i = 0; i < paragraphs / 50; ++i) {
    records.push_back(NSDictionary{{u"AttachContentID"_ns, NSString("image" + std::to_string(i))},
                                   {u"data"_ns, NSData(kDot, sizeof kDot)}});
  }
  return NSArray(std::move(records));
}

void BM_Assembly(benchmark::State& state) {
  const NSData rtf(bodyWithImages(state.range(0)));
  const NSArray images = imagesFor(state.range(0));
  size_t length = 0;
  for (auto _ : state) {
    std::atomic<bool> isDone = false;
    EmailUtilities::buildRTFMessageContent(rtf, images, [&](const NSAttributedString& content) {
      length = content.length();
      isDone = true;
    });
    while (!isDone) dispatch::drainMain(1);
  }
  benchmark::DoNotOptimize(length);
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_Assembly)
    ->Arg(1'250)
    ->Arg(2'500)
    ->Arg(5'000)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Complexity();

}  // namespace
}  // namespace kelspar
