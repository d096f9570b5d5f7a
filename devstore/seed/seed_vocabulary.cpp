#include "seed_vocabulary.h"

namespace devstore::vocabulary {

const std::vector<StoreDefinition> &stores() {
  static const std::vector<StoreDefinition> list = {
      {"de_de", "Deutschland", "EUR", "deu", 1.0},
      {"en_us", "United States", "USD", "eng", 1.1},
      {"uk_ua", "Україна", "UAH", "ukr", 42.0},
  };
  return list;
}

const std::vector<GenreBranch> &genres() {
  static const std::vector<GenreBranch> tree = {
      {{"fiction", "Fiction", "Belletristik"},
       {{"literary", "Literary fiction", "Gegenwartsliteratur"},
        {"historical-fiction", "Historical fiction", "Historische Romane"},
        {"short-stories", "Short stories", "Kurzgeschichten"}}},
      {{"crime", "Crime", "Krimis"},
       {{"detective", "Detective stories", "Detektivgeschichten"},
        {"thriller", "Thrillers", "Thriller"},
        {"noir", "Noir", "Noir"}}},
      {{"fantasy", "Fantasy", "Fantasy"},
       {{"epic-fantasy", "Epic fantasy", "Epische Fantasy"},
        {"urban-fantasy", "Urban fantasy", "Urban Fantasy"},
        {"fairy-tales", "Fairy tales", "Märchen"}}},
      {{"science-fiction", "Science fiction", "Science-Fiction"},
       {{"space-opera", "Space opera", "Space Opera"},
        {"cyberpunk", "Cyberpunk", "Cyberpunk"},
        {"dystopia", "Dystopias", "Dystopien"}}},
      {{"romance", "Romance", "Liebesromane"},
       {{"contemporary-romance", "Contemporary romance", "Moderne Liebesromane"},
        {"regency", "Regency romance", "Regency-Romane"},
        {"romantic-comedy", "Romantic comedy", "Romantische Komödien"}}},
      {{"children", "Children & young adults", "Kinder- & Jugendbücher"},
       {{"picture-books", "Picture books", "Bilderbücher"},
        {"young-adult", "Young adult", "Jugendbücher"},
        {"adventure", "Adventure", "Abenteuer"}}},
      {{"history", "History", "Geschichte"},
       {{"ancient-history", "Ancient history", "Antike"},
        {"medieval-history", "Middle Ages", "Mittelalter"},
        {"modern-history", "Modern history", "Neuzeit"}}},
      {{"science", "Science", "Naturwissenschaften"},
       {{"physics", "Physics", "Physik"},
        {"biology", "Biology", "Biologie"},
        {"astronomy", "Astronomy", "Astronomie"}}},
      {{"biography", "Biographies", "Biografien"},
       {{"memoirs", "Memoirs", "Erinnerungen"},
        {"political-lives", "Political lives", "Politikerbiografien"},
        {"artists-lives", "Artists' lives", "Künstlerbiografien"}}},
      {{"cooking", "Cooking", "Kochen"},
       {{"baking", "Baking", "Backen"},
        {"vegetarian", "Vegetarian", "Vegetarisch"},
        {"world-cuisine", "World cuisine", "Länderküche"}}},
      {{"travel", "Travel", "Reisen"},
       {{"europe", "Europe", "Europa"}, {"asia", "Asia", "Asien"}, {"travel-guides", "Travel guides", "Reiseführer"}}},
      {{"self-help", "Self-help", "Ratgeber"},
       {{"psychology", "Psychology", "Psychologie"},
        {"productivity", "Productivity", "Zeitmanagement"},
        {"health", "Health", "Gesundheit"}}},
  };
  return tree;
}

const std::vector<Language> &languages() {
  static const std::vector<Language> list = {
      {"eng", "English", "English", 50},     {"deu", "German", "Deutsch", 25}, {"fra", "French", "Français", 10},
      {"ukr", "Ukrainian", "Українська", 8}, {"spa", "Spanish", "Español", 7},
  };
  return list;
}

const std::vector<const char *> &firstNames() {
  static const std::vector<const char *> list = {
      "Anna",   "Boris", "Clara", "Daniel", "Elif",  "Frank", "Greta",  "Hugo",   "Ines",  "Jonas",
      "Katja",  "Lars",  "Mira",  "Noah",   "Olena", "Pablo", "Quinn",  "Rosa",   "Sven",  "Tamara",
      "Ulrich", "Vera",  "Walt",  "Xenia",  "Yusuf", "Zoë",   "Amélie", "Bogdan", "Chloé", "Dmytro"};
  return list;
}

const std::vector<const char *> &lastNames() {
  static const std::vector<const char *> list = {
      "Abbott", "Becker",    "Castell", "Dunmore", "Engel",  "Fischer",  "Garnier", "Hartmann",  "Ivanenko", "Jäger",
      "Keller", "Lindqvist", "Moreau",  "Novak",   "O'Hara", "Petrenko", "Quast",   "Rinaldi",   "Schulz",   "Thorne",
      "Umland", "Vogel",     "Winter",  "Young",   "Zimmer", "Müller",   "Ortega",  "Blackwood", "Kowalski", "Ashford"};
  return list;
}

const std::vector<const char *> &adjectives() {
  static const std::vector<const char *> list = {
      "Silent",   "Last",   "Hidden", "Golden",   "Broken", "Distant",   "Forgotten", "Burning", "Quiet",  "Crimson",
      "Endless",  "Secret", "Winter", "Hollow",   "Bright", "Wandering", "Lost",      "Iron",    "Paper",  "Salt",
      "Northern", "Glass",  "Velvet", "Midnight", "Wild",   "Little",    "Restless",  "Second",  "Bitter", "Gentle"};
  return list;
}

const std::vector<const char *> &nouns() {
  static const std::vector<const char *> list = {
      "Garden",  "River",    "Lighthouse", "Letter", "Harbour", "Crown",   "Orchard", "Station",    "Mirror", "Map",
      "Kingdom", "Voyage",   "Promise",    "Bridge", "Forest",  "Archive", "Island",  "Clockmaker", "Winter", "Road",
      "Sister",  "Stranger", "Kitchen",    "Tide",   "Comet",   "Summer",  "Witness", "Border",     "Atlas",  "Song"};
  return list;
}

const std::vector<const char *> &places() {
  static const std::vector<const char *> list = {"Lisbon",     "the North", "Kyiv",        "Hamburg",
                                                 "the Valley", "Venice",    "Alder Creek", "Prague",
                                                 "the Sea",    "Marseille", "Lviv",        "Oslo"};
  return list;
}

const std::vector<const char *> &publishers() {
  static const std::vector<const char *> list = {
      "Lumen House",      "Hart & Sons",  "Nordlicht Verlag", "Blue Quill Press",
      "Éditions du Pont", "Kalyna Books", "Meridian",         "<i>Small</i> Stories Ltd"};
  return list;
}

const std::vector<const char *> &sentences() {
  static const std::vector<const char *> list = {
      "A story about the choices we make when nobody is watching.",
      "Told in alternating voices, it follows two families over three summers.",
      "The author's most personal book so far, and the funniest.",
      "Nothing in the village is quite what it seems — least of all the new café.",
      "An unforgettable journey from Kyiv to Lisbon, with a stop at every station.",
      "Part mystery, part love letter to the sea.",
      "Sharp, warm and surprising to the very last page.",
      "With maps, notes and a glossary for the curious reader.",
      "Winner of the Golden Quill & the Readers' Prize.",
      "Frau Müller keeps a secret that could change everything.",
      "Based on letters found in an attic in 1987.",
      "Every chapter opens with a recipe, and every recipe hides a clue.",
  };
  return list;
}

}  // namespace devstore::vocabulary
