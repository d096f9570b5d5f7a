#include "xml_namespace_scope.h"

#include <gtest/gtest.h>

#include <string>

using lumenpress::opds::XmlNamespaceScope;
using lumenpress::opds::XmlVocabulary;

namespace {

XmlVocabulary Resolved(const XmlNamespaceScope &scope, const char *name) {
  const char *local_name = nullptr;
  return scope.Resolve(name, &local_name);
}

// The steps that resolving the same names takes under a root that declares `extra` namespaces besides its own.
size_t StepsUnder(int extra) {
  std::string xml = "<feed xmlns='http://www.w3.org/2005/Atom' xmlns:opds='http://opds-spec.org/2010/catalog'";
  for (int i = 0; i < extra; ++i) xml += " xmlns:p" + std::to_string(i) + "='urn:x:" + std::to_string(i) + "'";
  xml += "/>";
  pugi::xml_document document;
  EXPECT_TRUE(document.load_string(xml.c_str()));
  XmlNamespaceScope scope;
  scope.Enter(document.document_element());
  const size_t declaring = scope.steps();
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(Resolved(scope, "entry"), XmlVocabulary::kAtom);
    EXPECT_EQ(Resolved(scope, "opds:price"), XmlVocabulary::kOpds);
    EXPECT_EQ(Resolved(scope, "p0:x"), XmlVocabulary::kOther);
  }
  return scope.steps() - declaring;
}

}  // namespace

TEST(XmlNamespaceScope, InnerDeclarationsShadowOuterOnesUntilLeft) {
  pugi::xml_document document;
  ASSERT_TRUE(
      document.load_string("<f xmlns:o='http://opds-spec.org/2010/catalog' xmlns:d='http://purl.org/dc/terms/'>"
                           "<e xmlns='urn:other' xmlns:o='urn:other' xmlns:op='http://opds-spec.org/2010/catalog'>"
                           "<i xmlns:o='urn:lumenpress:opds' xmlns='http://www.w3.org/2005/Atom'/></e></f>"));
  const pugi::xml_node outer = document.document_element();
  const pugi::xml_node middle = outer.first_child();
  XmlNamespaceScope scope;
  scope.Enter(outer);
  const size_t declared = scope.Enter(middle);
  EXPECT_EQ(declared, 3u);
  EXPECT_EQ(Resolved(scope, "entry"), XmlVocabulary::kOther);
  EXPECT_EQ(Resolved(scope, "o:price"), XmlVocabulary::kOther);
  EXPECT_EQ(Resolved(scope, "op:price"), XmlVocabulary::kOpds);
  EXPECT_EQ(Resolved(scope, "d:extent"), XmlVocabulary::kDublinCore);

  const size_t inner = scope.Enter(middle.first_child());
  EXPECT_EQ(Resolved(scope, "o:kind"), XmlVocabulary::kStore);
  EXPECT_EQ(Resolved(scope, "entry"), XmlVocabulary::kAtom);
  scope.Leave(inner);
  EXPECT_EQ(Resolved(scope, "o:price"), XmlVocabulary::kOther);
  scope.Leave(declared);
  EXPECT_EQ(Resolved(scope, "o:price"), XmlVocabulary::kOpds);
  EXPECT_EQ(Resolved(scope, "op:price"), XmlVocabulary::kOther) << "no longer declared";
  EXPECT_EQ(Resolved(scope, "entry"), XmlVocabulary::kAtom) << "a feed without a default namespace is Atom";
  EXPECT_EQ(Resolved(scope, "o"), XmlVocabulary::kAtom) << "a name without a colon has no prefix";
}

TEST(XmlNamespaceScope, LookupDoesNotGrowWithTheDeclarationsInForce) {
  EXPECT_EQ(StepsUnder(10000), StepsUnder(10));
}
