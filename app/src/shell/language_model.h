// The content languages a store offers, from the facet links of its home feed; the chosen one is
// a query appended to every feed URL.
#ifndef LUMENPRESS_APP_LANGUAGE_MODEL_H
#define LUMENPRESS_APP_LANGUAGE_MODEL_H

#include <QAbstractListModel>
#include <QString>

#include <memory>
#include <string>
#include <vector>

#include "opds/items_list.h"

class LanguageModel : public QAbstractListModel {
  Q_OBJECT

public:
  enum Roles { TextRole = Qt::UserRole + 1, UrlRole, ActiveRole };

  explicit LanguageModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  void setModelToUrl(QString url);
  Q_INVOKABLE void setModelToIndex(int index);
  Q_INVOKABLE QString getElementText(int index);
  void resetContent();
  const std::string &content() const { return content_; }
  void setContent(const std::string &content) { content_ = content; }
  const std::string &storeSuffix() const { return store_suffix_; }

public slots:
  void feedChanged(QString url);

signals:
  void preferablyLanguageChanged();
  void languageLoaded(bool);

private:
  void takeLanguageLinks();

  std::shared_ptr<lumenpress::opds::ItemsList> list_;
  std::vector<std::shared_ptr<lumenpress::opds::OPDS::Link>> languages_;
  std::vector<std::shared_ptr<lumenpress::opds::OPDS::Link>> other_languages_;
  std::string link_;
  std::string store_suffix_;
  std::string content_;
};

#endif
