// Suggestions for the search field, asked of the store for every changed term: words to search
// for and books to open.
#ifndef LUMENPRESS_APP_SEARCH_HINT_MODEL_H
#define LUMENPRESS_APP_SEARCH_HINT_MODEL_H

#include <QAbstractListModel>
#include <QFutureWatcher>
#include <QString>

#include <memory>
#include <string>
#include <vector>

#include "bookstore_api.h"

class SearchHintModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY isLoadingChanged)

public:
  enum Roles { TermRole = Qt::UserRole + 1, TitleRole, AuthorRole, CoverUrlRole, UrlRole };

  // What a worker brings back: the suggestions and the term they answer.
  struct Result {
    std::shared_ptr<std::vector<BookstoreApi::SearchSuggestionInfo>> results;
    QString term;
  };

  explicit SearchHintModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  bool isLoaded() const { return !watcher_.isRunning(); }

signals:
  void isLoadingChanged(bool isLoading);

public slots:
  void updateSearchStr(QString str);
  void handleFinished();
  void setBaseUrl(std::string base_url);
  void resetSuggestion();
  QString addHtmpBackgroundColorTag(QString repl_str1);

private:
  BookstoreApi api_;
  QFutureWatcher<Result> watcher_;
  std::string search_str_;
  std::shared_ptr<std::vector<BookstoreApi::SearchSuggestionInfo>> results_;
  QString highlight_str_;
};

#endif
