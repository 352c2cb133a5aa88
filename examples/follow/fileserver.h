#pragma once

#include <QByteArray>
#include <QString>

#include <map>

/// Answers fetches from local files, in the place of a server: those below `folder`, which ends in
/// a "/", have the URLs that begin with `url`. What a file says may change: the n-th fetch of
/// `name.kml` gets the file `name.n.kml` where there is one. No query is part of a file's name.
struct FileServer {
  struct Answer {
    QString file; ///< The name without folders; null when there's no answer.
    QByteArray bytes;
  };

  Answer Fetch(const QString& address);
  QString FindFile(const QString& address) const;

  QString url; ///< Empty for local files by their own names.
  QString folder;
  std::map<QString, int> fetches;
};
