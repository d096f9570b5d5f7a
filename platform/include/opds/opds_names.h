// Names of the store's own OPDS extensions, shared by the catalogue library and the local store.
#ifndef LUMENPRESS_OPDS_NAMES_H
#define LUMENPRESS_OPDS_NAMES_H

namespace lumenpress::opds::names {

constexpr const char kNamespace[] = "urn:lumenpress:opds";
constexpr const char kSeriesRel[] = "urn:lumenpress:series";
// The genres of one book: a list of genres, not of books.
constexpr const char kGenresRel[] = "urn:lumenpress:genres";

// Elements of an entry in the store's namespace.
constexpr const char kKind[] = "kind";
constexpr const char kStock[] = "stock";
constexpr const char kRating[] = "rating";
constexpr const char kGroupedImages[] = "groupedImages";
constexpr const char kGroupedImage[] = "image";

// Attributes of opds:price in the store's namespace.
constexpr const char kOldPrice[] = "oldPrice";
constexpr const char kMinBooks[] = "minBooks";
constexpr const char kDiscount[] = "discount";

}  // namespace lumenpress::opds::names

#endif
