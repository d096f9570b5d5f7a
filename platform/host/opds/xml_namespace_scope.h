// The namespace declarations in force while a feed is walked, so that names match by URI and not by prefix.
#ifndef LUMENPRESS_OPDS_XML_NAMESPACE_SCOPE_H
#define LUMENPRESS_OPDS_XML_NAMESPACE_SCOPE_H

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

private:
  struct Binding {
    std::string_view prefix;
    XmlVocabulary vocabulary;
  };

  XmlVocabulary Lookup(std::string_view prefix) const;

  std::vector<Binding> bindings_;
};

}  // namespace lumenpress::opds

#endif
