#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>
#include <QWidget>

// A round avatar: the person's picture, or their initials on a colour that
// the name always picks the same way.
class QtAvatarView : public QWidget {
  Q_OBJECT

 public:
  QtAvatarView(QString const& name, QString const& picture_path, int size, QWidget* parent = nullptr);

  void SetPerson(QString const& name, QString const& picture_path);
  QString const& initials() const { return initials_; }
  QColor const& background() const { return background_; }
  bool HasPicture() const { return !picture_.isNull(); }

  static QString InitialsOf(QString const& name);
  static QColor ColorOf(QString const& name);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString name_;
  QString initials_;
  QColor background_;
  QPixmap picture_;
};

// Makes and takes back the avatars of the client's lists, so that a list
// recycling its rows keeps a bounded number of them.
class QtAvatarViewFactory {
 public:
  // `picture_path` may be empty or a file that does not exist.
  static QtAvatarView* CreateAvatarView(QWidget* parent, QString const& name, QString const& picture_path,
                                        int size);
  static void RemoveAvatarView(QWidget* avatar);
  // Avatars made and not given back.
  static int LiveCount();
};
