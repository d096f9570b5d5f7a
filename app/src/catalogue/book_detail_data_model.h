// The model of a book's page: row 0 is the book, each further row a list related to it with a
// list model of its own. Builds the buy button's text, refreshes the price before buying and
// starts the download of a sample. One in the process.
#ifndef LUMENPRESS_APP_BOOK_DETAIL_DATA_MODEL_H
#define LUMENPRESS_APP_BOOK_DETAIL_DATA_MODEL_H

#include <QAbstractListModel>
#include <QString>

#include <memory>
#include <string>
#include <vector>

#include "book_details_model.h"
#include "opds/items_list.h"
#include "opds_list_data_model.h"

class BookDetailDataModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(QString book_type READ bookType NOTIFY bookTypeChanged)
  Q_PROPERTY(double buy_bttn_pos READ buyBttnPos NOTIFY buyBttnPosChanged)
  Q_PROPERTY(bool detail_reloading READ detailReloading NOTIFY detailReloadChanged)
  Q_PROPERTY(bool ListLoading READ listLoading NOTIFY LoadingChanged)

public:
  enum Roles {
    ElemTypeRole = Qt::UserRole + 1,
    TitleRole,
    ElementModelRole,
    CoverUrlRole,
    AuthorRole,
    DescriptionRole,
    BookRatingRole,
    NumReviewsRole,
    HasSampleRole,
    PriceRole,
    PriceOldRole,
    BookIdRole,
    BookTypeRole,
    GroupedRole,
    AlternateBookRole,
    IsFreeRole,
    BookFormatRole,
    NativeStoreRole,
    GroupedUrlListRole,
    DetailsSubmodelRole,
    InStockRole
  };

  static BookDetailDataModel &Instance();
  static BookDetailDataModel &instance() { return Instance(); }

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  QString bookType() const { return book_type_; }
  double buyBttnPos() const { return buy_bttn_pos_; }
  bool detailReloading() const { return detail_reloading_; }
  bool listLoading() const { return list_loading_; }

signals:
  void bookDownloadedSl(QString downloaded_id);
  void bookTypeChanged();
  void detailModelChanged();
  void openSeries(QString url);
  void buyBttnPosChanged();
  void detailReloadChanged();
  void reloadFailed();
  void detailReloadFinished(bool val);
  void LoadingChanged();

public slots:
  bool isFree();
  QString getTitle();
  void setEntry(std::shared_ptr<lumenpress::opds::ItemsList> items_list, int item_num);
  void setEntry(QString url, int item_num);
  void setEntryUrl(QString url);
  void setRating() {}
  QString getBookId();
  void reloadList();
  QObject *getGenresModel();
  QString getId();
  QString getSku();
  QString getPrice(bool to_double);
  QString getPrice();
  QString getPriceWithCode();
  QString getCurrencyCode();
  QString getAuthorFeedUrl(int index);
  QString getAuthorFeedUrl();
  bool isGroupedBook();
  QString GetDiscountCount();
  QString GetMinimumBookInSeries();
  QString GenerateBuyStr();
  void updateBuyBttnPos(double pos);
  void feedChanged(QString url);
  void downloadSample(int item_num);
  void onBookDownloaded(QString filename, QString book_id, QString title, QString author);
  int getDownloadedProgress(int it_num);

private:
  BookDetailDataModel();

  void forgetBook();
  void takeLinks(const std::shared_ptr<lumenpress::opds::ItemsList> &items_list);
  QVariant bookData(int role) const;
  QString bookFormat() const;
  const lumenpress::opds::OPDS::Price *buyPrice() const;
  QString symbol() const;

  std::string list_url_;
  BookDetailsModel *details_;
  int item_num_ = 0;
  std::shared_ptr<lumenpress::opds::OPDS::Entry> entry_;
  std::vector<std::shared_ptr<lumenpress::opds::OPDS::Link>> related_links_;
  std::vector<std::shared_ptr<OpdsListDataModel>> submodels_;
  std::shared_ptr<OpdsListDataModel> genres_model_;
  QString series_url_;
  QString book_type_;
  std::string old_price_;
  bool is_grouped_ = false;
  bool detail_reloading_ = false;
  std::string reload_url_;
  double buy_bttn_pos_ = 0;
  bool list_loading_ = false;
};

#endif
