#include "host/writers/html_page.h"

#include <nettle/base64.h>
#include <nettle/sha2.h>

#include <string>

#include "host/languages/translation.h"
#include "host/writers/page/page_parts.h"

namespace px {
namespace {

// What a policy allows a text in the page by.
std::string hashSource(std::string_view text) {
  sha256_ctx context;
  sha256_init(&context);
  sha256_update(&context, text.size(), reinterpret_cast<const uint8_t *>(text.data()));
  uint8_t digest[SHA256_DIGEST_SIZE];
  sha256_digest(&context, sizeof digest, digest);
  std::string encoded(BASE64_ENCODE_RAW_LENGTH(sizeof digest), '\0');
  base64_encode_raw(encoded.data(), sizeof digest, digest);
  return "'sha256-" + encoded + "'";
}

}  // namespace

void putPageBegin(std::string_view title, HtmlStream *html) {
  html->put("<!DOCTYPE html>\n<html lang=\"" + language() + "\" dir=\"");
  html->putText(trIn("direction of writing: ltr or rtl", "ltr"));
  html->put(
      "\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
      "img-src data:; media-src data:; base-uri 'none'; form-action 'none'; style-src ");
  html->put(hashSource(pageStyle));
  html->put("; script-src ");
  html->put(hashSource(pageScript));
  html->put(
      "\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"color-scheme\" content=\"light dark\">\n"
      "<meta name=\"referrer\" content=\"no-referrer\">\n<title>");
  html->putText(title);
  html->put("</title>\n<style>");
  html->put(pageStyle);
  html->put("</style>\n</head>\n<body>\n<header class=\"top\"><div class=\"top-line\">\n<h1>");
  html->put("<bdi>");
  html->putText(title);
  const std::string filter = asHtml(tr("Filter"));
  html->put(
      "</bdi></h1>\n<div class=\"tools\" id=\"tools\" role=\"search\" hidden>\n"
      "<input type=\"search\" id=\"filter\" aria-label=\"" +
      filter + "\" placeholder=\"" + filter +
      "\" autocomplete=\"off\" spellcheck=\"false\">\n"
      "<output id=\"count\" for=\"filter\"></output>\n"
      "<label><input type=\"checkbox\" id=\"details\" checked> " +
      asHtml(tr("Details")) + "</label>\n</div>\n</div></header>\n<main>\n");
}

void putPageEnd(HtmlStream *html) {
  html->put("</main>\n<script>");
  html->put(pageScript);
  html->put("</script>\n</body>\n</html>\n");
}

}  // namespace px
