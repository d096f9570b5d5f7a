// The composition root: holds the QML engine and the models, wires them together and
// publishes them to the screens.
#ifndef LUMENPRESS_APP_STORE_MANAGER_H
#define LUMENPRESS_APP_STORE_MANAGER_H

#include <QObject>
#include <QQmlApplicationEngine>
#include <QString>

#include <ctime>
#include <string>

#include "opds_list_data_model.h"
#include "purchase_books_col.h"
#include "start_view.h"

class StoreManager : public QObject {
  Q_OBJECT
  Q_PROPERTY(StartView::EnStartView startView READ startView WRITE setStartView NOTIFY startViewChanged)

public:
  explicit StoreManager(QObject *parent = nullptr);

  // 0 when the root QML object exists, -1 when it could not be made.
  int Init(int argc, char **argv);
  QString opdsBaseUrl();

  StartView::EnStartView startView() const { return start_view_; }
  void setStartView(StartView::EnStartView startView);

signals:
  void startViewChanged(StartView::EnStartView startView);

public slots:
  void loadHomeModels();
  void writeToLog(QString s);

private:
  void readStoreSettings();
  void publishToScreens();

  // The start request of the command line and what it names.
  int custom_open_ = 0;
  std::string book_id_;
  std::string url_;
  std::string search_string_;
  std::string promotions_id_;
  bool is_search_mode_ = false;
  QQmlApplicationEngine engine_;
  OpdsListDataModel root_model_;
  OpdsListDataModel acquisition_model_;
  OpdsListDataModel audio_model_;
  // Lists of the root feed that the command line can ask for by name.
  std::string bestseller_url_;
  std::string new_url_;
  // The books of the running purchase.
  lumenpress::bookstore::PurchaseBooksCol purchase_col_;
  StartView::EnStartView start_view_ = StartView::Home;
  // The store in use, until the list of stores holds it.
  std::string store_url_;
};

#endif
