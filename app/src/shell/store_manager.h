// The composition root: holds the QML engine and the models, wires them together and
// publishes them to the screens.
#ifndef LUMENPRESS_APP_STORE_MANAGER_H
#define LUMENPRESS_APP_STORE_MANAGER_H

#include <QObject>
#include <QQmlApplicationEngine>
#include <QString>

#include <string>

#include "message_meneger.h"
#include "opds_list_data_model.h"
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
  void writeToLog(QString s);
  void requireHQUpdate();
  void loadHomeModels();
  void allowRedraw();

private:
  void readStoreSettings();
  void publishToScreens();

  MessageMeneger *download_messenger_;
  QQmlApplicationEngine engine_;
  OpdsListDataModel root_model_;
  OpdsListDataModel acquisition_model_;
  OpdsListDataModel audio_model_;
  StartView::EnStartView start_view_ = StartView::Home;
  // The store in use, until the list of stores holds it.
  std::string store_url_;
};

#endif
