// One genre feed as a tree, flattened in feed order: the top level first, a genre's children
// inserted below it when it is opened. An entry's level comes from its id.
#ifndef LUMENPRESS_APP_CATEGORY_TREE_LIST_MODEL_H
#define LUMENPRESS_APP_CATEGORY_TREE_LIST_MODEL_H

#include <QAbstractListModel>
#include <QString>

#include <memory>
#include <vector>

#include "opds/items_list.h"

class CategoryTreeListModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(QString listName READ listName NOTIFY listNameChanged)
  Q_PROPERTY(bool isListLoading READ isListLoading NOTIFY listNameChanged)

public:
  enum Roles { TitleRole = Qt::UserRole + 1, UrlRole, OpenedRole, HasChildrenRole, LevelRole };

  explicit CategoryTreeListModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  QString listName() const;
  bool isListLoading() const { return is_list_loading_; }
  // ":genres::<top>" is 1, each further "::" one more; 0 without the mark.
  static int levelOf(const std::string &id);

signals:
  void listNameChanged();

public slots:
  void feedChanged(QString url);
  void setModelToUrl(QString url);
  void openSublist(int index);
  void closeSublist(int index);
  QString getTabListUrl();
  QString getListType();

private:
  struct Row {
    std::shared_ptr<lumenpress::opds::OPDS::Entry> entry;
    int index;
    bool has_children;
    bool is_opened;
    int level;
  };

  std::shared_ptr<lumenpress::opds::ItemsList> list_;
  std::vector<Row> rows_;
  int processed_ = 0;
  bool is_list_loading_ = false;
};

#endif
