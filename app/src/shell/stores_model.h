// The stores of the storefront, and which one is in use: the REST base is its URL, the catalogue
// lies below it.
#ifndef LUMENPRESS_APP_STORES_MODEL_H
#define LUMENPRESS_APP_STORES_MODEL_H

#include <QAbstractListModel>
#include <QString>

#include <string>
#include <vector>

#include "bookstore_api.h"

class StoresModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(int current_index READ getCurrentIndex NOTIFY currentIndexChanged)
  Q_PROPERTY(int isDisabled READ isDisabled NOTIFY currentIndexChanged)
  Q_PROPERTY(QString curr_store_acr READ currentStoreAcr NOTIFY currentStoreAcrChanged)

public:
  enum Roles { TextRole = Qt::UserRole + 1, UrlRole, ActiveRole };

  explicit StoresModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  void setStores(std::vector<BookstoreApi::StoreInfo> stores);
  void setCurrentUrl(std::string url);
  const std::string &currentUrl() const { return current_url_; }
  // Empty when there are no rows.
  std::string firstStoreUrl() const;
  int isDisabled() const;
  void setFallbackUrl(const std::string &url) { fallback_url_ = url; }
  QString currentStoreAcr() const;

  Q_INVOKABLE QString getElementText(int index);
  Q_INVOKABLE bool isNeedAutoLogout(int index);
  // Asks the owner for consent to the store's documents where it is missing; blocks until answered.
  Q_INVOKABLE bool isLegalAccepted(int index, QString email);
  Q_INVOKABLE void setModelToIndex(int index, bool save);
  Q_INVOKABLE void setModelToIndex(int index);
  Q_INVOKABLE int getCurrentIndex() const { return current_index_; }
  void updateStoresUrl(std::string item_url);

signals:
  void storesChanged(QString store_url);
  void storeLangCodeChanged(QString store_lang_code);
  void storesLoaded(bool);
  void currentIndexChanged();
  void currentStoreAcrChanged();

private:
  bool inRange(int index) const { return index >= 0 && index < static_cast<int>(stores_.size()); }
  QString currentLangCode() const;
  bool findCurrentRow();

  std::vector<BookstoreApi::StoreInfo> stores_;
  std::string current_url_;
  int current_index_ = 0;
  std::string fallback_url_;
  bool using_fallback_ = false;
  bool user_selected_ = false;
};

#endif
