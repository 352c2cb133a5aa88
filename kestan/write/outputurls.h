#pragma once

#include "kestan/host/resourcedictionary.h"
#include "kestan/write/extractedfiles.h"
#include "kestan/write/kmzfiles.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace vorrel::kestan {

class Destination;
class SchemaObject;

/// What becomes of URLs in one output, and the files that come along with it.
class OutputUrls {
public:
  /// With `keepRelativeUrls`, URLs keep their text, except in an archive.
  OutputUrls(const Destination& destination, bool keepRelativeUrls);

  /// Where references of the whole output lead from: the base URL of its root. Without one, all
  /// that is written counts as of one document.
  void SetRootUrl(const QString& url) { rootUrl_ = url; }
  void SetKeepRelativeUrls(bool keep) { keepRelativeUrls_ = keep; }
  /// Files travel in an archive only from the folder or the archive that the root is from.
  void PackOwnFilesOnly() { kmzFiles_.SetHome(rootUrl_.value_or(QString())); }
  /// True for what is of another document than the root.
  bool ComesFromElsewhere(const QString& baseUrl) const {
    return rootUrl_ && !baseUrl.isEmpty() && baseUrl != *rootUrl_;
  }
  bool IsRootUrl(const QString& baseUrl) const { return rootUrl_ == baseUrl; }

  /// The text of a URL as `WriteState::RegisterUrl` tells.
  QString Register(const QString& url, const QString& absoluteUrl, bool embed,
                   const SchemaObject* owner);
  /// The text of a reference of `owner` to another object. It comes absolute where it would lead
  /// elsewhere out of this output: the owner is from another document, or the output is a file that
  /// may lie no longer beside the one that is referred to.
  QString GetReferenceUrl(const SchemaObject& owner, const QString& url) const;
  /// What lies at or below the destination's folder, from there on; other URLs as they are.
  QString GetRelativeUrl(const QString& url) const;

  void AddResourceMapEntry(const QString& name, const QString& value, const QString& object) {
    resourceDictionary_.Insert(name, object, value);
  }
  /// Adds the files that travel with the document. Answers the failure text.
  QString Pack(kmz::Writer& archive);
  const QStringList& GetUnreadableFiles() const { return kmzFiles_.GetUnreadable(); }
  const QStringList& GetOutsideFiles() const { return kmzFiles_.GetOutside(); }
  /// Removes the files that came along: nothing has become of the document.
  void Discard() { extractedFiles_.Discard(); }

private:
  QString GetReadableUrl(const QString& url, const QString& absoluteUrl) const;

  const Destination& destination_;
  bool keepRelativeUrls_;
  std::optional<QString> rootUrl_;
  KmzFiles kmzFiles_;
  ExtractedFiles extractedFiles_;
  ResourceDictionary resourceDictionary_;
};

} // namespace vorrel::kestan
