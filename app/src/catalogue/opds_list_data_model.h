// One catalogue feed as a list for the screens: the home page (with a submodel per row),
// book lists, search results, related lists and the rows of a grouped list.
#ifndef LUMENPRESS_APP_OPDS_LIST_DATA_MODEL_H
#define LUMENPRESS_APP_OPDS_LIST_DATA_MODEL_H

#include <QAbstractListModel>
#include <QString>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "opds/items_list.h"

class OpdsListDataModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(bool isListLoading READ isListLoading NOTIFY isListLoadingChanged)
  Q_PROPERTY(QString listName READ listName)
  Q_PROPERTY(QString totalResults READ totalResults)
  Q_PROPERTY(int totalRowCount READ getRowCount)
  Q_PROPERTY(bool noNextPage READ noNextPage NOTIFY noNextPageChanged)
  Q_PROPERTY(bool isReloading READ isReloading NOTIFY isReloadingChanged)
  // The last load of the list failed (no network, an error of the store): the screens offer to try again.
  Q_PROPERTY(bool loadFailed READ loadFailed NOTIFY loadFailedChanged)

public:
  using ItemsList = lumenpress::opds::ItemsList;

  enum Roles {
    ElemTypeRole = Qt::UserRole + 1,
    TitleRole,
    ElementModelRole,
    CoverUrlRole,
    AuthorRole,
    DescriptionRole,
    AuthorUrlRole,
    PriceRole,
    PriceWithCodeRole,
    PriceOldRole,
    OldPriceWithCodeRole,
    UrlRole,
    BannerRole,
    GenresRole,
    BookIdRole,
    BookFormatRole,
    RatingRole,
    BookTypeRole,
    GroupedRole,
    GroupedUrlListRole,
    InStockRole,
  };

  explicit OpdsListDataModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
  QHash<int, QByteArray> roleNames() const override;

  bool isListLoading() const { return is_list_loading_; }
  QString listName() const;
  QString totalResults() const;
  bool noNextPage() const { return no_next_page_; }
  bool isReloading() const { return is_reloading_; }
  bool loadFailed() const { return load_failed_; }

  // The currency symbol of a three-letter code; empty for one the table lacks.
  static QString currencySymbol(const std::string &code);

signals:
  void isReloadingChanged();
  void isListLoadingChanged(bool isListLoading);
  void bookDownloadedSl(QString downloaded_id);
  void noNextPageChanged();
  void loadFailedChanged();

public slots:
  int getRowCount() const;
  void setSearchString(QString search_string);
  void feedChanged(QString url);
  void setLoadSubmodels(bool value) { load_submodels_ = value; }
  void setLoadFeaturedLinks(bool value) { load_featured_links_ = value; }
  void setRowLimit(int limit) { row_limit_ = limit; }
  void setLoadSeriesSubmodel(bool val) { load_series_submodel_ = val; }
  void setItemList(std::shared_ptr<ItemsList> l);
  void setModelToUrl(QString url);
  void setDetailModelTo(int num);
  void setDetailModelTo(int num, QString url);
  QString getUrl() const;
  void loadNext();
  void reload();
  void forceListLoadingChanged();
  std::shared_ptr<std::set<std::string>> getBooksIds() const;
  QString getListType() const;
  bool isGrouped() const;
  std::vector<std::shared_ptr<lumenpress::opds::OPDS::Link>> getLinks() const;

private:
  const std::vector<std::shared_ptr<lumenpress::opds::OPDS::Entry>> &entries() const;
  QString rowUrl(int row) const;
  QString price(const lumenpress::opds::OPDS::Entry &entry, bool withSymbol) const;
  QVariant oldPrice(const lumenpress::opds::OPDS::Entry &entry) const;
  QVariant entryData(const lumenpress::opds::OPDS::Entry &entry, int row, int role) const;
  QVariant description(int row) const;
  QVariant linkData(const lumenpress::opds::OPDS::Entry &entry, int row, int role) const;
  void loadSubmodels();
  void loadSeriesSubmodel();
  void announceRows();
  std::shared_ptr<OpdsListDataModel> makeSubmodel(const std::string &url);
  void setLoadFailed(bool failed);

  // The plain text of a row's description, made from its HTML once per entry. The entry is held
  // so that a new entry at the same row, or at the same address, is never taken for it.
  class Description {
  public:
    std::shared_ptr<const lumenpress::opds::OPDS::Entry> entry;
    QVariant text;
  };

  std::shared_ptr<ItemsList> list_;
  mutable std::vector<Description> descriptions_;
  std::vector<std::shared_ptr<OpdsListDataModel>> submodels_;
  bool load_featured_links_ = false;
  bool load_submodels_ = false;
  bool load_series_submodel_ = false;
  int row_limit_ = 0;
  bool is_list_loading_ = false;
  bool force_load_ = false;
  bool no_next_page_ = false;
  bool is_reloading_ = false;
  bool load_failed_ = false;
};

#endif
