#include "kestan/core/schemaobject.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/file.h"
#include "kestan/host/net.h"
#include "kestan/host/system.h"
#include "kestan/host/versioninfo.h"
#include "kestan/link/url.h" // the rules by which references resolve

#include <QRegularExpression>

#include <atomic>

namespace vorrel::kestan {

namespace {

std::atomic<unsigned> s_runtime_id_counter{0};

/// Up to the last slash.
QString CutToDirectory(const QString& path) {
  int end = static_cast<int>(path.lastIndexOf(QLatin1Char('/')));
  if (end < 0)
    end = static_cast<int>(path.lastIndexOf(QLatin1Char('\\')));
  return end < 0 ? QStringLiteral("./") : path.left(end + 1);
}

/// Joins as if the base were a directory or an archive.
QString JoinToPath(const QString& base, const QString& url) {
  if (base.endsWith(QLatin1String(".kml"), Qt::CaseInsensitive))
    return CutToDirectory(base) + url;
  return base.endsWith(QLatin1Char('/')) ? base + url : base + QLatin1Char('/') + url;
}

/// Joins to the directory in which the document at `base` lies.
QString JoinToDocument(const QString& base, const QString& url) {
  return CutToDirectory(base.section(QLatin1Char('?'), 0, 0)) + url;
}

QString Clean(QString path) {
  file::CleanupPathname(path);
  return path;
}

bool IsInside(const QString& path, const QString& directory) {
  const QString prefix = Clean(directory);
  if (prefix.isEmpty() || !path.startsWith(prefix, Qt::CaseInsensitive))
    return false;
  return prefix.endsWith(QLatin1Char('/')) || path.size() == prefix.size() ||
         path[prefix.size()] == QLatin1Char('/');
}

/// A client may keep documents away from local files that aren't its own.
bool IsForbidden(const QString& url) {
  if (VersionInfo::AllowLocalFilesOutsideInstallation())
    return false;
  const net::FileNameType type = net::GetFileNameType(url);
  return (type == net::kFileNameLocal || type == net::kFileNameLocalUrl) &&
         !IsInside(url, System::GetInstallPath()) && !IsInside(url, System::GetResourceDirectory());
}

QString Resolve(const QString& base, const QString& url) {
  const UrlType type = GetRelativeUrlType(url, base);
  if (type >= kUrlNetwork)
    return url;
  if (base.isEmpty())
    return QString();
  const bool isFragment = type == kUrlFragment;
  const QString attempt = isFragment ? base : JoinToPath(base, url);
  QString kmzPath;
  QString innerPath;
  if (net::Fetcher::FindInKmz(attempt, &kmzPath, &innerPath) ||
      (kmzPath != base && !innerPath.isEmpty()))
    return isFragment ? attempt + url : attempt;
  return isFragment ? base + url : JoinToDocument(base, url);
}

} // namespace

QString SchemaObject::MakeAbsoluteUrl(const QString& base, const QString& url) {
  // Threads that build no objects ask too; they have no memory of the last answer.
  ThreadContext* const context = ThreadContext::GetCurrent();
  if (context && url == context->lastUrl && base == context->lastUrlBase)
    return context->lastAbsoluteUrl;
  QString absolute = Clean(Resolve(base, url));
  if (IsForbidden(absolute))
    absolute = QString();
  if (context) {
    context->lastUrl = url;
    context->lastUrlBase = base;
    context->lastAbsoluteUrl = absolute;
  }
  return absolute;
}

KmlId SchemaObject::MakeAbsoluteId(const QString& base, const QString& id) {
  ThreadContext* const context = ThreadContext::GetCurrent();
  if (context && id == context->lastId && base == context->lastIdBase)
    return context->lastAbsoluteId;

  const auto resolve = [&base, &id] {
    const UrlType type = GGetUrlType(id);
    if (base.isEmpty() || (type != kUrlRelative && type != kUrlFragment))
      return KmlId(Clean(id));
    const int hash = static_cast<int>(id.lastIndexOf(QLatin1Char('#')));
    if (hash <= 0)
      return KmlId(id.mid(hash + 1), base);
    const QString url = MakeAbsoluteUrl(base, id.left(hash));
    return KmlId(Clean(url + id.mid(hash)));
  };
  const KmlId absolute = resolve();
  if (context) {
    context->lastId = id;
    context->lastIdBase = base;
    context->lastAbsoluteId = absolute;
  }
  return absolute;
}

QString SchemaObject::MakeRuntimeUrl(const QString& url) {
  const QLatin1String root("root://");
  if (!url.startsWith(root, Qt::CaseInsensitive))
    return url;
  return QLatin1String("runtime://") + url.mid(static_cast<int>(root.size()));
}

KmlId SchemaObject::GetUniqueRuntimeId(const KmlId& given) {
  const auto make = [&given](unsigned number) {
    return KmlId(given.id, QLatin1String("runtime://clone") + QString::number(number));
  };
  KmlId id = make(s_runtime_id_counter);
  while (find(id))
    id = make(++s_runtime_id_counter);
  return id;
}

void SchemaObject::AssignPermanentUniqueId(const QString& stem) {
  if (!id_.isEmpty())
    return;
  static const QRegularExpression nonWord(QStringLiteral("\\W+"),
                                          QRegularExpression::UseUnicodePropertiesOption);
  const QString clean = QString(stem).remove(nonWord);
  QString candidate = clean;
  for (int n = 0; candidate.isEmpty() || find(KmlId(candidate, url_)); ++n)
    candidate = clean + QLatin1Char('_') + QString::number(n);
  id_ = candidate;
  AddToObjectHash(hash<KmlId>()(GetKmlId()));
}

} // namespace vorrel::kestan
