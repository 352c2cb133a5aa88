#include "kestan/host/net.h"
#include "kestan/host/url.h"
#include "kestan/link/abstractlink.h" // what a link tells of its target
#include "kestan/write/writestate.h"

#include <QFile>
#include <QFileInfo>

namespace vorrel::kestan {

namespace {

bool MayLieInArchive(UrlType type) {
  return type == kUrlRelative || type == kUrlFragment || type == kUrlLocal;
}

} // namespace

QString WriteState::GetRelativeUrl(const QString& url) const {
  const bool isBelow = !baseDir_.isEmpty() && url.startsWith(baseDir_, Qt::CaseInsensitive);
  if (!isBelow)
    return url;
  const QString path = url.mid(baseDir_.size());
  // A reader takes the archive for a folder: what lies beside it is one level up.
  return mode_ == kWriteKmzFile ? QLatin1String("../") + path : path;
}

QString WriteState::RegisterUrl(const QString& url, const QString& absoluteUrl, bool embed,
                                const SchemaObject* owner) {
  if (url.isEmpty())
    return QString();
  // What can't be made absolute means nothing elsewhere either; at least its text is kept.
  if (absoluteUrl.isEmpty())
    return url;
  const UrlType type = GGetUrlType(absoluteUrl);
  if (mode_ == kWriteKmzFile) {
    const QString copy =
        embed && MayLieInArchive(type) ? kmzFiles_.Register(absoluteUrl) : QString();
    return copy.isEmpty() ? GetReadableUrl(url, absoluteUrl) : copy;
  }
  if (keepRelativeUrls_ && !(owner && ComesFromElsewhere(owner->GetBaseUrl())))
    return url;
  if (mode_ == kWriteKmlFile && type != kUrlNetwork) {
    const QString extracted = Extract(absoluteUrl);
    if (!extracted.isEmpty())
      return extracted;
  }
  return GetReadableUrl(url, absoluteUrl);
}

/// A reader drops the blanks around a text, so that a form with such blanks would lead elsewhere.
QString WriteState::GetReadableUrl(const QString& url, const QString& absoluteUrl) const {
  for (const QString& form : {GetRelativeUrl(absoluteUrl), absoluteUrl}) {
    if (form.trimmed() == form)
      return form;
  }
  return url;
}

bool WriteState::ComesFromElsewhere(const QString& url) const {
  return rootUrl_ && !url.isEmpty() && url != *rootUrl_;
}

QString WriteState::GetReferenceUrl(const SchemaObject& owner, const QString& url) const {
  const UrlType type = GGetUrlType(url);
  if (type != kUrlRelative && type != kUrlFragment)
    return url;
  const bool goesElsewhere =
      mode_ == kWriteKmzFile || (mode_ == kWriteKmlFile && !keepRelativeUrls_);
  const bool leadsOut = type == kUrlRelative && url.contains(QLatin1Char('#'));
  if (!(goesElsewhere && leadsOut) && !ComesFromElsewhere(owner.GetBaseUrl()))
    return url;
  const KmlId target = SchemaObject::MakeAbsoluteId(owner.GetBaseUrl(), url);
  return target.url.isEmpty() ? url : target.url + QLatin1Char('#') + target.id;
}

QString WriteState::RegisterLink(const AbstractLink& link) {
  return RegisterUrl(link.GetHref(), link.GetResourceUrl(), link.GetEmbedInKmz(), &link);
}

void WriteState::AddResourceMapEntry(const QString& name, const QString& value,
                                     const QString& object) {
  resourceDictionary_.Insert(name, object, value);
}

/// Brings a file that lies in an archive out beside the document, under a name that is free there.
/// Answers the reference to it; a null text when there's nothing to bring out, or it fails.
QString WriteState::Extract(const QString& absoluteUrl) {
  QString archive;
  QString inner;
  if (!net::Fetcher::FindInKmz(absoluteUrl, &archive, &inner))
    return QString();
  const auto known = extractedFiles_.constFind(absoluteUrl);
  if (known != extractedFiles_.constEnd())
    return *known;
  SourceFile source;
  const QByteArray bytes =
      sources_.Locate(absoluteUrl, source) ? sources_.ReadFromArchive(source) : QByteArray();
  if (bytes.isEmpty())
    return QString();

  const QFileInfo innerInfo(inner);
  const QString folder = QFileInfo(fileName_).absolutePath() + QLatin1Char('/');
  QString name = innerInfo.fileName();
  // Names that were taken before are so still.
  for (int& next = nextExtracts_[name]; QFileInfo::exists(folder + name); ++next)
    name = innerInfo.baseName() + QLatin1Char('_') + QString::number(next) + QLatin1Char('.') +
           innerInfo.completeSuffix();

  QFile file(folder + name);
  if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
    return QString();
  if (file.write(bytes) != bytes.size() || !file.flush()) {
    file.remove();
    return QString();
  }
  return extractedFiles_[absoluteUrl] = GetRelativeUrl(folder + name);
}

} // namespace vorrel::kestan
