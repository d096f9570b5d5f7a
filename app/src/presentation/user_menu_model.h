// The rows of the user menu, which depend on whether somebody is signed in, and the colours of
// the user's icon.
#ifndef LUMENPRESS_APP_USER_MENU_MODEL_H
#define LUMENPRESS_APP_USER_MENU_MODEL_H

#include <QAbstractListModel>
#include <QColor>
#include <QPair>
#include <QString>
#include <QVector>

class UserMenuModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(QColor icon_color READ iconColor NOTIFY iconColorChanged)
  Q_PROPERTY(QColor text_color READ textColor NOTIFY iconColorChanged)

public:
  enum MenuElementType {
    LOGIN = 0,
    LOGOUT = 1,
    PURCHASED = 2,
    WISHLIST = 3,
    STORELIST = 4,
    LANGUAGE = 5,
    SETTINGS = 6,
    TITLE = 7
  };
  Q_ENUM(MenuElementType)

  enum Roles {
    UidRole = Qt::UserRole + 1,
    KindRole,
    TextRole,
    UrlRole,
    DisabledRole,
    AlignmentRole,
    CapitalizationRole,
    ActiveRole
  };

  explicit UserMenuModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  QColor iconColor() const { return icon_color_; }
  QColor textColor() const { return text_color_; }

signals:
  void iconColorChanged();
  void updateSavedIcon();

public slots:
  QString getTitleById(int num);
  void handleLoginFinished(bool success);
  void handleUserInfoLoaded();
  void handleStoreLoaded(bool is_loaded);
  void handleLanguageLoaded(bool is_loaded);
  void handlePurchasedBookCountChanged(int num);
  void handleWishlistLoaded(int num);
  QString getIconLocation();

private:
  struct Row {
    MenuElementType id;
    QString kind;
    QString text;
    QString url;
    bool disabled;
    int alignment;
    int capitalization;
  };

  void buildRows();
  void chooseColor();
  void setCountedTitle(MenuElementType id, const QString &title);
  void announceAllRows();

  QVector<Row> rows_;
  QVector<QPair<QColor, QColor>> colors_;
  int color_index_ = 0;
  QColor icon_color_;
  QColor text_color_;
  bool stores_missing_ = true;
  bool languages_missing_ = false;
  QString purchased_title_;
  QString wishlist_title_;
};

#endif
