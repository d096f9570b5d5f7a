// A feed's facet links as the rows of a list model: their title, address and whether the list
// shown is theirs. The sort orders and the content languages are both such rows.
#ifndef LUMENPRESS_APP_FACET_LINK_ROWS_H
#define LUMENPRESS_APP_FACET_LINK_ROWS_H

#include <QByteArray>
#include <QHash>
#include <QModelIndex>
#include <QVariant>

#include <memory>
#include <vector>

#include "opds/opds_link.h"

class FacetLinkRows {
public:
  enum Roles { TextRole = Qt::UserRole + 1, UrlRole, ActiveRole };
  using Links = std::vector<std::shared_ptr<lumenpress::opds::OPDS::Link>>;

  static QVariant data(const Links &links, const QModelIndex &index, int role);
  static QHash<int, QByteArray> roleNames();
};

#endif
