// Bytes to URLs: whatever the texts, the rules answer, and what they made absolute stays as it is.
//
// Lines of the input: the base, the reference, then a link's query and view format.

#include "fuzz/support.h"

#include "kestan/core/kmlid.h"
#include "kestan/host/net.h"
#include "kestan/host/path.h"
#include "kestan/host/url.h"
#include "kestan/link/abstractlinkschema.h"
#include "kestan/link/link.h"
#include "kestan/link/viewparams.h"

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

void Expect(bool holds, const char* what, const QString& a, const QString& b) {
  if (!holds) {
    fuzz::Fail(QStringLiteral("%1: \"%2\", \"%3\"").arg(QLatin1String(what), a, b));
  }
}

void CheckTypes(const QString& url, const QString& base) {
  const UrlType type = GGetUrlType(url);
  Expect(type >= kUrlRelative && type <= kUrlRoot, "type out of range", url, base);
  Expect(GIsUrlAbsolute(url) == (!url.isEmpty() && type >= kUrlNetwork), "absolute", url, base);
  const UrlType relative = GetRelativeUrlType(url, base);
  Expect(relative == type || (type == kUrlLocal && relative == kUrlRelative), "relative type", url,
         base);
}

void CheckCleanup(const QString& path) {
  QString once = path;
  file::CleanupPathname(once);
  QString whole = path;
  file::CleanupWholePathname(whole);
  QString wholeTwice = whole;
  file::CleanupWholePathname(wholeTwice);
  const bool isSameKind = GGetUrlType(whole) == GGetUrlType(path);
  Expect(!isSameKind || whole == wholeTwice, "cleaned again as a whole", whole, wholeTwice);
  Expect(once.size() <= path.size() + 2 && whole.size() <= path.size() + 2, "cleaned to more", path,
         once);
  if (GGetUrlType(once) != GGetUrlType(path)) {
    return; // what followed "a/../" looks like a scheme
  }
  QString twice = once;
  file::CleanupPathname(twice);
  Expect(once == twice, "cleaned again", once, twice);
}

void CheckArchive(const QString& url) {
  QString archive;
  QString inner;
  const bool found = net::Fetcher::FindInKmz(url, &archive, &inner);
  Expect(found == !inner.isEmpty() && found == !archive.isEmpty(), "archive", archive, inner);
  if (found && net::ServerInfo::IsHttp(url, false)) {
    const int size = static_cast<int>(archive.size());
    Expect(url.startsWith(archive) && QStringView(url).mid(size + 1).startsWith(inner),
           "archive's path", archive, inner);
  }
}

void CheckAbsolute(const QString& base, const QString& url) {
  const QString absolute = SchemaObject::MakeAbsoluteUrl(base, url);
  SchemaObject::MakeAbsoluteUrl(url, base); // another pair takes the place in the cache
  Expect(SchemaObject::MakeAbsoluteUrl(base, url) == absolute, "not the same answer", base, url);
  Expect(!base.isEmpty() || GIsUrlAbsolute(url) || absolute.isEmpty(), "made of nothing", url,
         absolute);
  const int server = net::ServerInfo::IsHttp(base, false) ? file::GetServerEnd(base) : 0;
  const bool isRelative = GetRelativeUrlType(url, base) < kUrlNetwork;
  Expect(server == 0 || !isRelative || absolute.startsWith(QStringView(base).left(server)),
         "another server", base, absolute);
  const int hash = FindFragment(base, url);
  Expect(hash == -1 || (hash < url.size() && url[hash] == QLatin1Char('#')), "fragment", base, url);
  Expect((hash < 0) <= !url.startsWith(QLatin1Char('#')), "no fragment", base, url);
  const bool isPlace = net::GetFileNameType(base) != net::kFileNameOther;
  if (isPlace && GetRelativeUrlType(absolute, base) >= kUrlNetwork) {
    const QString again = SchemaObject::MakeAbsoluteUrl(base, absolute);
    Expect(again == absolute, "made absolute again", absolute, again);
  }
  CheckTypes(absolute, base);
}

void CheckIds(const QString& base, const QString& text) {
  const KmlId id = SchemaObject::MakeAbsoluteId(base, text);
  SchemaObject::MakeAbsoluteId(text, base);
  Expect(SchemaObject::MakeAbsoluteId(base, text) == id, "not the same id", id.url, id.id);
  if (!id.url.contains(QLatin1Char('#')) && !id.id.isEmpty()) {
    const KmlId again(id.url + QLatin1Char('#') + id.id);
    Expect(again == id, "split again", id.url, id.id);
  }
  const QString runtime = SchemaObject::MakeRuntimeUrl(text);
  Expect(SchemaObject::MakeRuntimeUrl(runtime) == runtime, "runtime URL", text, runtime);
  Expect(text.isEmpty() || GGetUrlType(runtime) != kUrlRoot, "still built in", text, runtime);
}

ViewParams View() {
  ViewParams view;
  view.north = 0.25;
  view.south = -0.125;
  view.east = 0.5;
  view.west = -0.5;
  return view;
}

void CheckLink(const QString& base, const QString& href, const QString& query,
               const QString& format) {
  const AbstractLinkSchema& fields = AbstractLinkSchema::GetSingleton();
  const RefPtr<Link> link(new Link(KmlId(QString(), base), base));
  link->SetHref(href);
  Expect(link->GetAbsoluteUrl() == link->GetResourceUrl(), "a query that nobody asked for",
         link->GetAbsoluteUrl(), link->GetResourceUrl());
  fields.httpQuery.SetTypedObject(*link, query);
  link->SetViewFormat(format);
  link->setViewParams(View());
  const QString& absolute = link->GetAbsoluteUrl();
  const QString resource = link->GetResourceUrl();
  const auto hash = GGetUrlType(resource) == kUrlNetwork ? resource.indexOf(QLatin1Char('#')) : -1;
  const QString fragment = hash < 0 ? QString() : resource.mid(hash);
  Expect(absolute.startsWith(resource.left(hash)) && absolute.endsWith(fragment),
         "the query stands between path and fragment", absolute, href);
  Expect(link->GetHref() == href, "the reference has changed", link->GetHref(), href);
  const RefPtr<SchemaObject> copy = link->clone(true, nullptr);
  Expect(static_cast<Link&>(*copy).GetAbsoluteUrl() == absolute, "a copy leads elsewhere",
         static_cast<Link&>(*copy).GetAbsoluteUrl(), absolute);
  fuzz::Write(fuzz::Tree(link.get()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
  const QStringList lines = fuzz::Lines(data, size);
  const QString base = lines.value(0);
  const QString url = lines.value(1);
  CheckTypes(url, base);
  CheckTypes(base, url);
  CheckCleanup(url);
  CheckArchive(url);
  CheckAbsolute(base, url);
  CheckIds(base, url);
  CheckLink(base, url, lines.value(2), lines.value(3));
  return 0;
}
