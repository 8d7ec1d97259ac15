// New, empty folders in the place of what has their names. What was there stands aside until all is done, and comes
// back when it is not. Failures as those of folders.h.
#pragma once
#include <QStringList>
#include <vector>

class folder_exchange {
public:
    explicit folder_exchange(const QString &folder) : in(folder) {}
    ~folder_exchange(); // all is as before unless finish was called
    folder_exchange(const folder_exchange &) = delete;
    folder_exchange &operator=(const folder_exchange &) = delete;

    // Puts what has the names aside first, then makes the folders.
    void exchange(const QStringList &names);
    // Deletes what stands aside; what could not be deleted stays there, under a last name, and is given back.
    QStringList finish();

    // What an exchange that was killed left aside in the folder comes back where its place is free or an empty folder.
    // What has to stay aside is given back.
    static QStringList bring_back(const QString &folder, const QStringList &names);

private:
    struct moved {
        QString place, aside;
    };
    void put_aside(const QString &name);
    QString path_of(const QString &name) const;

    const QString in;
    std::vector<moved> former;
    QStringList made;
};
