#include "kestan/core/schemaobject.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/path.h"
#include "kestan/host/url.h"

#include <QRegularExpression>

#include <atomic>

namespace vorrel::kestan {

namespace {

std::atomic<unsigned> s_runtime_id_counter{0};

} // namespace

QString SchemaObject::MakeAbsoluteUrl(const QString& base, const QString& url) {
  // Threads that build no objects ask too; they have no memory of the last answer.
  ThreadContext* const context = ThreadContext::GetCurrent();
  if (context && url == context->lastUrl && base == context->lastUrlBase)
    return context->lastAbsoluteUrl;
  const QString absolute = ResolveUrl(base, url);
  if (context) {
    context->lastUrl = url;
    context->lastUrlBase = base;
    context->lastAbsoluteUrl = absolute;
  }
  return absolute;
}

KmlId SchemaObject::MakeAbsoluteId(const QString& base, const QString& id) {
  // The usual reference, to an object of the document itself, is worth no cache.
  if (!base.isEmpty() && id.startsWith(QLatin1Char('#')))
    return KmlId(id.mid(1), base);
  ThreadContext* const context = ThreadContext::GetCurrent();
  if (context && id == context->lastId && base == context->lastIdBase)
    return context->lastAbsoluteId;

  const auto resolve = [&base, &id] {
    const UrlType type = GGetUrlType(id);
    const bool isRelative = !base.isEmpty() && (type == kUrlRelative || type == kUrlFragment);
    const int hash = FindFragment(isRelative ? base : QString(), id);
    const QString name = id.mid(hash < 0 ? id.size() : hash + 1);
    if (!isRelative)
      return KmlId(name, file::Cleaned(id.left(hash)));
    if (hash < 0)
      return KmlId(id, base);
    return KmlId(name, hash > 0 ? MakeAbsoluteUrl(base, id.left(hash)) : base);
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
  unsigned& number = ThreadContext::GetCurrent()->runtimeNumber;
  for (;;) {
    const KmlId id(given.id, QLatin1String("runtime://clone") + QString::number(number));
    if (number != 0 && !find(id))
      return id;
    number = ++s_runtime_id_counter;
  }
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
