#include "kestan/write/outputurls.h"

#include "kestan/core/schemaobject.h"
#include "kestan/host/file.h"
#include "kestan/host/url.h"
#include "kestan/write/destination.h"

namespace vorrel::kestan {

namespace {

bool MayLieInArchive(UrlType type) {
  return type == kUrlRelative || type == kUrlFragment || type == kUrlLocal;
}

/// Two folders may differ in nothing but the case of their names.
bool BeginsWithFolder(const QString& url, const QString& folder) {
  return url.startsWith(folder) || (url.startsWith(folder, Qt::CaseInsensitive) &&
                                    file::isSame(url.left(folder.size()), folder));
}

} // namespace

OutputUrls::OutputUrls(const Destination& destination, bool keepRelativeUrls)
    : destination_(destination), keepRelativeUrls_(keepRelativeUrls),
      kmzFiles_(destination.fileName()), extractedFiles_(destination.fileName()) {}

QString OutputUrls::GetRelativeUrl(const QString& url) const {
  const QString& folder = destination_.folder();
  if (folder.isEmpty() || !BeginsWithFolder(url, folder))
    return url;
  const QString path = url.mid(folder.size());
  // A reader takes the archive for a folder: what lies beside it is one level up.
  return destination_.mode() == WriteState::kWriteKmzFile ? QLatin1String("../") + path : path;
}

QString OutputUrls::Register(const QString& url, const QString& absoluteUrl, bool embed,
                             const SchemaObject* owner) {
  if (url.isEmpty())
    return QString();
  // What can't be made absolute means nothing elsewhere either; at least its text is kept.
  if (absoluteUrl.isEmpty())
    return url;
  const UrlType type = GGetUrlType(absoluteUrl);
  if (destination_.mode() == WriteState::kWriteKmzFile) {
    const QString copy =
        embed && MayLieInArchive(type) ? kmzFiles_.Register(absoluteUrl) : QString();
    return copy.isEmpty() ? GetReadableUrl(url, absoluteUrl) : copy;
  }
  if (keepRelativeUrls_ && !(owner && ComesFromElsewhere(owner->GetBaseUrl())))
    return url;
  if (destination_.mode() == WriteState::kWriteKmlFile && type != kUrlNetwork) {
    const QString path = extractedFiles_.Extract(absoluteUrl);
    if (!path.isEmpty())
      return GetRelativeUrl(path);
  }
  return GetReadableUrl(url, absoluteUrl);
}

/// A reader drops the blanks around a text, so that a form with such blanks would lead elsewhere.
QString OutputUrls::GetReadableUrl(const QString& url, const QString& absoluteUrl) const {
  for (const QString& form : {GetRelativeUrl(absoluteUrl), absoluteUrl}) {
    if (form.trimmed() == form)
      return form;
  }
  return url;
}

QString OutputUrls::GetReferenceUrl(const SchemaObject& owner, const QString& url) const {
  const UrlType type = GGetUrlType(url);
  if (type != kUrlRelative && type != kUrlFragment)
    return url;
  const WriteState::WriteMode mode = destination_.mode();
  const bool goesElsewhere = mode == WriteState::kWriteKmzFile ||
                             (mode == WriteState::kWriteKmlFile && !keepRelativeUrls_);
  const bool leadsOut = type == kUrlRelative && url.contains(QLatin1Char('#'));
  if (!(goesElsewhere && leadsOut) && !ComesFromElsewhere(owner.GetBaseUrl()))
    return url;
  const KmlId target = SchemaObject::MakeAbsoluteId(owner.GetBaseUrl(), url);
  return target.url.isEmpty() ? url : target.url + QLatin1Char('#') + target.id;
}

QString OutputUrls::Pack(kmz::Writer& archive) {
  if (!resourceDictionary_.IsEmpty()) {
    const QByteArray text = resourceDictionary_.ExportToString().toUtf8();
    archive.Add(QStringLiteral("textures.txt"), text.constData(), text.size());
  }
  return kmzFiles_.Pack(archive);
}

} // namespace vorrel::kestan
