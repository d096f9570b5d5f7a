// The table under a book: release date, language, pages, publisher, ISBN.
#ifndef LUMENPRESS_APP_BOOK_DETAILS_MODEL_H
#define LUMENPRESS_APP_BOOK_DETAILS_MODEL_H

#include <QAbstractListModel>
#include <QPair>
#include <QString>
#include <QVector>

#include <memory>

#include "opds/opds_entry.h"

class BookDetailsModel : public QAbstractListModel {
  Q_OBJECT

public:
  enum Roles { NameRole = Qt::UserRole + 1, ValueRole };

  explicit BookDetailsModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

public slots:
  void SetEntry(std::shared_ptr<lumenpress::opds::OPDS::Entry> entry);

private:
  static QString releaseDate(const std::string &published);
  static QString pages(const std::string &extent);
  static QString isbn(const std::string &identifier);

  std::shared_ptr<lumenpress::opds::OPDS::Entry> entry_;
  QVector<QPair<QString, QString>> rows_;
};

#endif
