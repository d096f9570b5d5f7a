// The books that one purchase, check or wish-list removal works on, in the order given.
#ifndef LUMENPRESS_PURCHASE_BOOKS_COL_H
#define LUMENPRESS_PURCHASE_BOOKS_COL_H

#include <QString>
#include <QVector>

namespace lumenpress::bookstore {

struct BookPurchaseInfo {
  QString id;
  QString sku;
};

using PurchaseBooksCol = QVector<BookPurchaseInfo>;

}  // namespace lumenpress::bookstore

#endif
