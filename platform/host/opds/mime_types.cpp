#include "mime_types.h"

namespace lumenpress::opds {

namespace {

struct Extension {
  std::string_view mime;
  std::string_view extension;
  // A page is a file with an extension, but no format a book comes in.
  bool book = true;
};

// Several names of one type are in use by catalogues; each is listed.
constexpr Extension kExtensions[] = {
    {"application/epub+zip", "epub"},
    {"application/pdf", "pdf"},
    {"application/x-pdf", "pdf"},
    {"application/fb2", "fb2"},
    {"application/x-fb2", "fb2"},
    {"application/x-fictionbook", "fb2"},
    {"application/x-fictionbook+xml", "fb2"},
    {"text/fb2+xml", "fb2"},
    {"application/fb2+zip", "fb2.zip"},
    {"application/x-fictionbook+zip", "fb2.zip"},
    {"application/x-zip-compressed-fb2", "fb2.zip"},
    {"application/x-mobipocket-ebook", "mobi"},
    {"image/vnd.djvu", "djvu"},
    {"image/x-djvu", "djvu"},
    {"application/djvu", "djvu"},
    {"audio/mpeg", "mp3"},
    {"audio/mp3", "mp3"},
    {"audio/mp4", "m4b"},
    {"audio/m4b", "m4b"},
    {"audio/x-m4b", "m4b"},
    {"application/zip", "zip"},
    {"application/x-zip", "zip"},
    {"application/x-zip-compressed", "zip"},
    {"application/vnd.adobe.adept+xml", "acsm"},
    {"application/vnd.adobe/adept+xml", "acsm"},
    {"vnd.adobe/adept+xml", "acsm"},
    // A store's error page in place of a book; the program must be able to tell.
    {"text/html", "html", false},
    {"application/xhtml+xml", "xhtml", false},
};

// The type without its parameters and surrounding blanks; feeds parse links by the thousand, so nothing is copied.
std::string_view Essence(std::string_view mime) {
  mime = mime.substr(0, mime.find(';'));
  const size_t first = mime.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return mime.substr(first, mime.find_last_not_of(" \t\r\n") - first + 1);
}

// base is in lower case; media types are ASCII, so the locale has no say.
bool SameIgnoringCase(std::string_view text, std::string_view base) {
  if (text.size() != base.size()) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] - 'A' + 'a') : text[i];
    if (c != base[i]) return false;
  }
  return true;
}

const Extension *Find(const std::string &mime) {
  const std::string_view essence = Essence(mime);
  for (const Extension &known : kExtensions) {
    if (SameIgnoringCase(essence, known.mime)) return &known;
  }
  return nullptr;
}

}  // namespace

bool MimeTypes::HasBaseType(const std::string &mime, std::string_view base) {
  return SameIgnoringCase(Essence(mime), base);
}

bool MimeTypes::IsAtom(const std::string &mime) {
  return HasBaseType(mime, "application/atom+xml");
}

std::string MimeTypes::GetExtensionByMime(const std::string &mime) {
  const Extension *known = Find(mime);
  return std::string(known ? known->extension : kUnsupported);
}

std::string MimeTypes::MimeToFormat(const std::string &mime) {
  const Extension *known = Find(mime);
  if (!known || !known->book) return std::string(kUnsupported);
  return std::string(known->extension.substr(0, known->extension.find('.')));
}

}  // namespace lumenpress::opds
