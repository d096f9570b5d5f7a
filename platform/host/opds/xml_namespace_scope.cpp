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

XmlNamespaceScope::XmlNamespaceScope() : nodes_(1) {
  Bind("", XmlVocabulary::kAtom);
}

size_t XmlNamespaceScope::Enter(const pugi::xml_node &element) {
  size_t declared = 0;
  for (pugi::xml_attribute attribute = element.first_attribute(); attribute; attribute = attribute.next_attribute()) {
    const char *name = attribute.name();
    if (name[0] != 'x' || std::strncmp(name, kXmlns, kXmlnsLength) != 0) continue;
    if (name[kXmlnsLength] == '\0') {
      Bind("", VocabularyOf(attribute.value()));
    } else if (name[kXmlnsLength] == ':') {
      Bind(name + kXmlnsLength + 1, VocabularyOf(attribute.value()));
    } else {
      continue;
    }
    ++declared;
  }
  return declared;
}

void XmlNamespaceScope::Leave(size_t declared) {
  for (; declared > 0; --declared) {
    const Binding &innermost = bindings_.back();
    nodes_[innermost.node].binding = innermost.shadowed;
    bindings_.pop_back();
  }
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

void XmlNamespaceScope::Bind(std::string_view prefix, XmlVocabulary vocabulary) {
  uint32_t node = 0;
  for (const char byte : prefix) {
    uint32_t child = Child(node, byte);
    if (child == 0) {
      child = static_cast<uint32_t>(nodes_.size());
      nodes_.push_back({0, nodes_[node].first_child, 0, byte});
      nodes_[node].first_child = child;
    }
    node = child;
  }
  bindings_.push_back({node, nodes_[node].binding, vocabulary});
  nodes_[node].binding = static_cast<uint32_t>(bindings_.size());
}

XmlVocabulary XmlNamespaceScope::Lookup(std::string_view prefix) const {
  uint32_t node = 0;
  for (const char byte : prefix) {
    node = Child(node, byte);
    if (node == 0) return XmlVocabulary::kOther;
  }
  const uint32_t binding = nodes_[node].binding;
  return binding == 0 ? XmlVocabulary::kOther : bindings_[binding - 1].vocabulary;
}

uint32_t XmlNamespaceScope::Child(uint32_t parent, char byte) const {
  uint32_t child = nodes_[parent].first_child;
  for (; child != 0 && nodes_[child].byte != byte; child = nodes_[child].next_sibling) ++steps_;
  ++steps_;
  return child;
}

}  // namespace lumenpress::opds
