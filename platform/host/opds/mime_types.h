// What the catalogue knows of the media types of its links.
#ifndef LUMENPRESS_OPDS_MIME_TYPES_H
#define LUMENPRESS_OPDS_MIME_TYPES_H

#include <string>
#include <string_view>

namespace lumenpress::opds {

class MimeTypes {
public:
  static constexpr char kUnsupported[] = "unsupported";

  // Whether mime, whatever its parameters, spacing or case, is the type base ("text/html" ...).
  static bool HasBaseType(const std::string &mime, std::string_view base);
  static bool IsAtom(const std::string &mime);
  // File extension of a book or audio book of that type ("fb2.zip", "acsm" ...), or "unsupported".
  static std::string GetExtensionByMime(const std::string &mime);
  // Short name of the format ("fb2" for a zipped FB2), or "unsupported".
  static std::string MimeToFormat(const std::string &mime);
};

}  // namespace lumenpress::opds

#endif
