// The namespace declarations in force while a feed is walked, so that names match by URI and not by prefix.
#ifndef LUMENPRESS_OPDS_XML_NAMESPACE_SCOPE_H
#define LUMENPRESS_OPDS_XML_NAMESPACE_SCOPE_H

#include <cstdint>
#include <cstring>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

namespace lumenpress::opds {

// The vocabularies the catalogue reads; names of any other are skipped. An attribute without a prefix is
// kUnqualified: the default namespace does not apply to attributes.
enum class XmlVocabulary { kOther, kUnqualified, kAtom, kOpds, kOpenSearch, kDublinCore, kStore };

class XmlNamespaceScope {
public:
  XmlNamespaceScope();

  // Calls visit(child, vocabulary, local_name) for every child element, with the child's own declarations in force.
  template <typename Visit>
  void ForEachChild(const pugi::xml_node &parent, Visit &&visit) {
    for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling()) {
      if (child.type() != pugi::node_element) continue;
      const size_t declared = Enter(child);
      const char *local_name = nullptr;
      const XmlVocabulary vocabulary = Resolve(child.name(), &local_name);
      visit(child, vocabulary, local_name);
      Leave(declared);
    }
  }

  // Calls visit(attribute, vocabulary, local_name) for every attribute of element.
  template <typename Visit>
  void ForEachAttribute(const pugi::xml_node &element, Visit &&visit) const {
    for (pugi::xml_attribute attribute = element.first_attribute(); attribute; attribute = attribute.next_attribute()) {
      const char *name = attribute.name();
      const char *colon = std::strchr(name, ':');
      if (colon) {
        visit(attribute, Lookup(std::string_view(name, colon - name)), colon + 1);
      } else {
        visit(attribute, XmlVocabulary::kUnqualified, name);
      }
    }
  }

  // Brings the declarations of an element into force; Leave() takes back the number it returns.
  size_t Enter(const pugi::xml_node &element);
  void Leave(size_t declared);
  // The vocabulary of an element's qualified name; local_name points into it.
  XmlVocabulary Resolve(const char *qualified_name, const char **local_name) const;
  // Nodes walked so far, by declarations and lookups: for the test that keeps lookups apart from the declarations
  // in force.
  size_t steps() const { return steps_; }

private:
  // Prefixes are kept in a tree of their bytes, so that finding one takes a step per byte (and per sibling byte, at
  // most the 256 values of a byte) however many prefixes are declared. A node is bound while a declaration of its
  // prefix is in force.
  struct Node {
    uint32_t first_child = 0;
    uint32_t next_sibling = 0;
    // 1 + the index in bindings_ of the innermost declaration of this prefix; 0 while none is in force.
    uint32_t binding = 0;
    char byte = 0;
  };
  struct Binding {
    uint32_t node;
    uint32_t shadowed;
    XmlVocabulary vocabulary;
  };

  void Bind(std::string_view prefix, XmlVocabulary vocabulary);
  XmlVocabulary Lookup(std::string_view prefix) const;
  // The child of `parent` for `byte`, or 0.
  uint32_t Child(uint32_t parent, char byte) const;

  // nodes_[0] is the empty prefix, the default namespace; it is nobody's child, so 0 also means none.
  std::vector<Node> nodes_;
  std::vector<Binding> bindings_;
  mutable size_t steps_ = 0;
};

}  // namespace lumenpress::opds

#endif
