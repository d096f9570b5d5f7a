#include "url_resolver.h"

#include <cctype>
#include <vector>

namespace lumenpress::opds {

namespace {

bool IsScheme(std::string_view text) {
  if (text.empty() || !std::isalpha(static_cast<unsigned char>(text[0]))) return false;
  for (unsigned char c : text) {
    if (!std::isalnum(c) && c != '+' && c != '-' && c != '.') return false;
  }
  return true;
}

bool IsDataUri(const std::string &uri) {
  static constexpr char kData[] = "data:";
  if (uri.size() < sizeof(kData) - 1) return false;
  for (size_t i = 0; i + 1 < sizeof(kData); ++i) {
    if (std::tolower(static_cast<unsigned char>(uri[i])) != kData[i]) return false;
  }
  return true;
}

}  // namespace

std::string UrlResolver::Resolve(const std::string &base, const std::string &href) {
  if (IsDataUri(href)) return href;
  const Parts reference = Split(href);
  const Parts from = Split(base);
  Parts target;
  std::string path;
  if (reference.has_scheme) {
    target = reference;
    path = RemoveDotSegments(reference.path);
  } else {
    target.scheme = from.scheme;
    target.has_scheme = from.has_scheme;
    if (reference.has_authority) {
      target.authority = reference.authority;
      target.has_authority = true;
      path = RemoveDotSegments(reference.path);
      target.query = reference.query;
      target.has_query = reference.has_query;
    } else {
      target.authority = from.authority;
      target.has_authority = from.has_authority;
      if (reference.path.empty()) {
        path = std::string(from.path);
        target.query = reference.has_query ? reference.query : from.query;
        target.has_query = reference.has_query || from.has_query;
      } else {
        path = reference.path[0] == '/' ? RemoveDotSegments(reference.path)
                                        : RemoveDotSegments(Merge(from, reference.path));
        target.query = reference.query;
        target.has_query = reference.has_query;
      }
    }
    target.fragment = reference.fragment;
    target.has_fragment = reference.has_fragment;
  }

  std::string result;
  result.reserve(base.size() + href.size());
  if (target.has_scheme) result.append(target.scheme).append(":");
  if (target.has_authority) result.append("//").append(target.authority);
  result += path;
  if (target.has_query) result.append("?").append(target.query);
  if (target.has_fragment) result.append("#").append(target.fragment);
  return result;
}

// The split of RFC 3986 appendix B.
UrlResolver::Parts UrlResolver::Split(std::string_view uri) {
  Parts parts;
  const size_t colon = uri.find_first_of(":/?#");
  if (colon != std::string_view::npos && uri[colon] == ':' && IsScheme(uri.substr(0, colon))) {
    parts.scheme = uri.substr(0, colon);
    parts.has_scheme = true;
    uri.remove_prefix(colon + 1);
  }
  if (uri.substr(0, 2) == "//") {
    uri.remove_prefix(2);
    const size_t end = uri.find_first_of("/?#");
    parts.authority = uri.substr(0, end);
    parts.has_authority = true;
    uri.remove_prefix(parts.authority.size());
  }
  const size_t hash = uri.find('#');
  if (hash != std::string_view::npos) {
    parts.fragment = uri.substr(hash + 1);
    parts.has_fragment = true;
    uri = uri.substr(0, hash);
  }
  const size_t question = uri.find('?');
  if (question != std::string_view::npos) {
    parts.query = uri.substr(question + 1);
    parts.has_query = true;
    uri = uri.substr(0, question);
  }
  parts.path = uri;
  return parts;
}

std::string UrlResolver::Merge(const Parts &base, std::string_view path) {
  if (base.has_authority && base.path.empty()) return "/" + std::string(path);
  const size_t slash = base.path.rfind('/');
  if (slash == std::string_view::npos) return std::string(path);
  return std::string(base.path.substr(0, slash + 1)).append(path);
}

std::string UrlResolver::RemoveDotSegments(std::string_view path) {
  const bool absolute = !path.empty() && path[0] == '/';
  if (absolute) path.remove_prefix(1);
  std::vector<std::string_view> segments;
  while (true) {
    const size_t slash = path.find('/');
    const std::string_view segment = path.substr(0, slash);
    const bool last = slash == std::string_view::npos;
    if (segment == "..") {
      if (!segments.empty()) segments.pop_back();
      if (last) segments.emplace_back();
    } else if (segment == ".") {
      if (last) segments.emplace_back();
    } else {
      segments.push_back(segment);
    }
    if (last) break;
    path.remove_prefix(slash + 1);
  }
  std::string result = absolute ? "/" : "";
  for (size_t i = 0; i < segments.size(); ++i) {
    if (i > 0) result += '/';
    result.append(segments[i]);
  }
  return result;
}

}  // namespace lumenpress::opds
