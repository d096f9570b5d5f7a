// The words the seed builds its catalogue from. Fixed lists, so every seed is the same.
#ifndef DEVSTORE_SEED_VOCABULARY_H
#define DEVSTORE_SEED_VOCABULARY_H

#include <vector>

namespace devstore::vocabulary {

struct GenreName {
  const char *slug;
  const char *english;
  const char *german;
};

struct GenreBranch {
  GenreName genre;
  std::vector<GenreName> children;
};

struct StoreDefinition {
  const char *code;
  const char *name;
  const char *currency;
  const char *language;
  // What one euro of the base price comes to in the store's currency.
  double rate;
};

struct Language {
  const char *code;
  const char *english;
  const char *own;
  // Out of 100 books.
  int share;
};

const std::vector<StoreDefinition> &stores();
const std::vector<GenreBranch> &genres();
const std::vector<Language> &languages();
const std::vector<const char *> &firstNames();
const std::vector<const char *> &lastNames();
const std::vector<const char *> &adjectives();
const std::vector<const char *> &nouns();
const std::vector<const char *> &places();
const std::vector<const char *> &publishers();
const std::vector<const char *> &sentences();

}  // namespace devstore::vocabulary

#endif
