// Any text as URLs: its first line as a base, the rest as a link read against it, each also parsed as a Url.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "url.h"
#include "url_resolver.h"

using lumenpress::opds::UrlResolver;
using lumenpress::utilities::Url;

namespace {

void Parse(const std::string &text) {
  const Url url(text);
  if (url.isValid() && (url.scheme().empty() || url.port() < -1 || url.port() > 65535)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string text(reinterpret_cast<const char *>(data), size);
  const auto line_end = text.find('\n');
  const std::string base = text.substr(0, line_end);
  const std::string href = line_end == std::string::npos ? std::string() : text.substr(line_end + 1);
  const std::string resolved = UrlResolver::Resolve(base, href);
  Parse(base);
  Parse(href);
  Parse(resolved);
  return 0;
}
