#include "xml_namespace_scope.h"

#include <cstring>

#include "opds/opds_names.h"

namespace lumenpress::opds {

namespace {

struct Namespace {
  const char *uri;
  XmlVocabulary vocabulary;
};

// Feeds in the wild also use the Atom URI with https, and no namespace at all.
constexpr Namespace kNamespaces[] = {
    {"http://www.w3.org/2005/Atom", XmlVocabulary::kAtom},
    {"https://www.w3.org/2005/Atom", XmlVocabulary::kAtom},
    {"", XmlVocabulary::kAtom},
    {"http://opds-spec.org/2010/catalog", XmlVocabulary::kOpds},
    {"http://a9.com/-/spec/opensearch/1.1/", XmlVocabulary::kOpenSearch},
    {"http://purl.org/dc/terms/", XmlVocabulary::kDublinCore},
    {"http://purl.org/dc/elements/1.1/", XmlVocabulary::kDublinCore},
    {names::kNamespace, XmlVocabulary::kStore},
};

XmlVocabulary VocabularyOf(const char *uri) {
  for (const Namespace &known : kNamespaces) {
    if (std::strcmp(uri, known.uri) == 0) return known.vocabulary;
  }
  return XmlVocabulary::kOther;
}

constexpr char kXmlns[] = "xmlns";
constexpr size_t kXmlnsLength = sizeof(kXmlns) - 1;

}  // namespace

XmlNamespaceScope::XmlNamespaceScope() : bindings_{{"", XmlVocabulary::kAtom}} {}

size_t XmlNamespaceScope::Enter(const pugi::xml_node &element) {
  size_t declared = 0;
  for (pugi::xml_attribute attribute = element.first_attribute(); attribute; attribute = attribute.next_attribute()) {
    const char *name = attribute.name();
    if (name[0] != 'x' || std::strncmp(name, kXmlns, kXmlnsLength) != 0) continue;
    if (name[kXmlnsLength] == '\0') {
      bindings_.push_back({"", VocabularyOf(attribute.value())});
    } else if (name[kXmlnsLength] == ':') {
      bindings_.push_back({name + kXmlnsLength + 1, VocabularyOf(attribute.value())});
    } else {
      continue;
    }
    ++declared;
  }
  return declared;
}

void XmlNamespaceScope::Leave(size_t declared) {
  bindings_.resize(bindings_.size() - declared);
}

XmlVocabulary XmlNamespaceScope::Resolve(const char *qualified_name, const char **local_name) const {
  const char *colon = std::strchr(qualified_name, ':');
  if (!colon) {
    *local_name = qualified_name;
    return Lookup("");
  }
  *local_name = colon + 1;
  return Lookup(std::string_view(qualified_name, colon - qualified_name));
}

XmlVocabulary XmlNamespaceScope::Lookup(std::string_view prefix) const {
  for (auto binding = bindings_.rbegin(); binding != bindings_.rend(); ++binding) {
    if (binding->prefix == prefix) return binding->vocabulary;
  }
  return XmlVocabulary::kOther;
}

}  // namespace lumenpress::opds
