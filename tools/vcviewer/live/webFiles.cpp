#include "webFiles.h"

// The page's files are built into the program, so that the page works with no network
// and wherever vcviewer was installed; the assembler copies each file in at build time.
#define VC_EMBED(symbol, file)                                                            \
  __asm__(".pushsection .rodata\n.balign 16\n.global " #symbol "_begin\n.hidden " #symbol \
          "_begin\n" #symbol "_begin:\n.incbin \"" file "\"\n.global " #symbol            \
          "_end\n.hidden " #symbol "_end\n" #symbol "_end:\n.popsection\n");              \
  extern "C" const char symbol##_begin[];                                                 \
  extern "C" const char symbol##_end[];

VC_EMBED(vc_page_html, VC_WEB_DIR "/index.html")
VC_EMBED(vc_page_css, VC_WEB_DIR "/page.css")
VC_EMBED(vc_page_js, VC_WEB_DIR "/page.js")
VC_EMBED(vc_view3d_js, VC_WEB_DIR "/view3d.js")
VC_EMBED(vc_three_js, VC_THREE_DIR "/three.min.js")
VC_EMBED(vc_orbit_js, VC_THREE_DIR "/examples/js/controls/OrbitControls.js")

namespace vcviewer {

namespace {

std::string_view span(const char* begin, const char* end) {
  return std::string_view(begin, static_cast<size_t>(end - begin));
}

}  // namespace

std::vector<WebFile> pageFiles() {
  const char* js = "text/javascript; charset=utf-8";
  return {
      {"/", "text/html; charset=utf-8", span(vc_page_html_begin, vc_page_html_end)},
      {"/index.html", "text/html; charset=utf-8", span(vc_page_html_begin, vc_page_html_end)},
      {"/page.css", "text/css; charset=utf-8", span(vc_page_css_begin, vc_page_css_end)},
      {"/page.js", js, span(vc_page_js_begin, vc_page_js_end)},
      {"/view3d.js", js, span(vc_view3d_js_begin, vc_view3d_js_end)},
      {"/three.min.js", js, span(vc_three_js_begin, vc_three_js_end)},
      {"/OrbitControls.js", js, span(vc_orbit_js_begin, vc_orbit_js_end)},
  };
}

}  // namespace vcviewer
