#include "facet_link_rows.h"

#include <QString>

QVariant FacetLinkRows::data(const Links &links, const QModelIndex &index, int role) {
  if (!index.isValid() || index.row() >= static_cast<int>(links.size())) return QVariant();
  const lumenpress::opds::OPDS::Link &link = *links[static_cast<size_t>(index.row())];
  switch (role) {
    case TextRole:
      return QString::fromStdString(link.title);
    case UrlRole:
      return QString::fromStdString(link.href);
    case ActiveRole:
      return link.active;
    default:
      return QVariant();
  }
}

QHash<int, QByteArray> FacetLinkRows::roleNames() {
  return {{TextRole, "text_"}, {UrlRole, "url"}, {ActiveRole, "is_active"}};
}
