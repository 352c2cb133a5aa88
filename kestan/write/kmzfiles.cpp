#include "kestan/write/kmzfiles.h"

#include "kestan/host/file.h"
#include "kestan/host/kmz.h"
#include "kestan/host/kmzarchive.h"
#include "kestan/host/kmzwriter.h"
#include "kestan/host/net.h"
#include "kestan/host/tr.h"
#include "kestan/link/url.h" // what is no file of this machine

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>

namespace vorrel::kestan {

namespace {

const char kDirectory[] = "files/";
constexpr int kNone = -1;

bool IsUnsafe(QChar c) {
  return c.unicode() < 0x20 || c.unicode() == 0x7F || c == QChar::ReplacementCharacter ||
         c.isNonCharacter() || QLatin1String("\"#%&'*/:<>?\\|").contains(c);
}

/// A file's name in a form that stands unescaped in a reference, in markup too, and that every file
/// system takes when the archive is unpacked.
QString MakeSafeName(const QString& fileName) {
  constexpr int kMostBytes = 200;
  constexpr int kMostSuffix = 16;
  QString name = fileName;
  for (QChar* c = name.begin(); c != name.end(); ++c) {
    if (c->isHighSurrogate() && c + 1 != name.end() && c[1].isLowSurrogate())
      ++c;
    else if (c->isSurrogate() || IsUnsafe(*c))
      *c = QLatin1Char('_');
  }
  name = name.trimmed();
  if (name.count(QLatin1Char('.')) == name.size())
    return QStringLiteral("file");
  const int dot = name.lastIndexOf(QLatin1Char('.'));
  const int suffix = dot > 0 && name.size() - dot <= kMostSuffix ? name.size() - dot : 0;
  while (name.toUtf8().size() > kMostBytes) {
    // A unit takes at most three bytes, so that this removes no more than is too much.
    const int excess = name.toUtf8().size() - kMostBytes;
    int start = name.size() - suffix - std::max(1, excess / 3);
    if (name.at(start).isLowSurrogate())
      --start;
    name.remove(start, name.size() - suffix - start);
  }
  return name;
}

QString Clean(QString path) {
  file::CleanupPathname(path);
  return path;
}

/// The path that `text` stands for, escaped as references often are. Null for one that only
/// unescaping leads upwards: it isn't what the document's rules allowed.
QString Unescaped(const QString& text) {
  const QString path = QUrl::fromPercentEncoding(text.toUtf8());
  return Clean(path) == path && !path.contains(QChar(QChar::Null)) ? path : QString();
}

QString Describe(const KmzDictionaryEntry& entry) {
  return entry.innerPath.isNull() ? entry.sourceUrl
                                  : entry.sourceUrl + QLatin1Char('/') + entry.innerPath;
}

bool IsLocal(const QString& url) {
  const net::FileNameType type = net::GetFileNameType(url);
  return type == net::kFileNameLocal || type == net::kFileNameLocalUrl ||
         GGetUrlType(url) == kUrlRelative;
}

bool IsReadableFile(const QString& path) {
  // Only a plain file is opened: a pipe would block, a device may have no end.
  const QFileInfo info(path);
  return info.isFile() && info.isReadable();
}

QFile& Opened(QFile& file) {
  file.open(QIODevice::ReadOnly);
  return file;
}

} // namespace

/// The archive that was used last. Nearly always it's the only one: that of the document.
struct KmzFiles::OpenArchive {
  explicit OpenArchive(const QString& path) : file(path), contents(Opened(file)) {}

  QFile file;
  kmz::Archive contents;
};

KmzFiles::KmzFiles() = default;

KmzFiles::~KmzFiles() = default;

QString KmzFiles::Register(const QString& url) {
  auto known = entriesByUrl_.constFind(url);
  if (known == entriesByUrl_.constEnd())
    known = entriesByUrl_.insert(url, Add(url));
  if (*known == kNone)
    return QString();
  const KmzDictionaryEntry& entry = entries_[static_cast<std::size_t>(*known)];
  return entry.directory + entry.fileName;
}

int KmzFiles::Add(const QString& url) {
  KmzDictionaryEntry entry;
  if (!Locate(url, entry)) {
    if (IsLocal(url))
      unreadable_ += url;
    return kNone;
  }
  const bool inArchive = !entry.innerPath.isNull();
  // With its own destination inside, a document would grow with every write.
  if (!inArchive && file::isSame(entry.sourceUrl, destination_))
    return kNone;
  const QString file = QFileInfo(entry.sourceUrl).canonicalFilePath() + QChar(QChar::Null) +
                       entry.innerPath.toCaseFolded();
  const auto same = entriesByFile_.constFind(file);
  if (same != entriesByFile_.constEnd())
    return *same;

  const QFileInfo source(inArchive ? entry.innerPath : entry.sourceUrl);
  entry.fileName = CreateUniqueKmzDataFileName(MakeSafeName(source.fileName()));
  entry.directory = QLatin1String(kDirectory);
  const int index = static_cast<int>(entries_.size());
  entries_.push_back(entry);
  entriesByFile_.insert(file, index);
  return index;
}

bool KmzFiles::Locate(const QString& url, KmzDictionaryEntry& entry) {
  QString archive;
  QString inner;
  if (net::Fetcher::FindInKmz(url, &archive, &inner)) {
    for (const QString& path : {inner, Unescaped(inner)}) {
      QString reason;
      kmz::Archive& contents = Open(archive).contents;
      if (path.isEmpty() || !contents.Find(path) || !contents.IsReadable(kmz::GetLimits(), reason))
        continue;
      entry.sourceUrl = archive;
      entry.innerPath = path;
      return true;
    }
    return false;
  }
  const bool isFileUrl = url.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
  const QString literal = isFileUrl ? Clean(QUrl(url).toLocalFile()) : url;
  for (const QString& path : {literal, Unescaped(literal)}) {
    if (!path.isEmpty() && IsReadableFile(path)) {
      entry.sourceUrl = path;
      return true;
    }
  }
  return false;
}

KmzFiles::OpenArchive& KmzFiles::Open(const QString& path) {
  if (!archive_ || archive_->file.fileName() != path)
    archive_ = std::make_unique<OpenArchive>(path);
  return *archive_;
}

QByteArray KmzFiles::ReadFromArchive(const KmzDictionaryEntry& entry) {
  kmz::Archive& contents = Open(entry.sourceUrl).contents;
  QString reason;
  return contents.Find(entry.innerPath) ? contents.Read(kmz::GetLimits(), reason) : QByteArray();
}

QString KmzFiles::CreateUniqueKmzDataFileName(const QString& fileName) {
  const QFileInfo info(fileName);
  // Names are never given back, so that those tried before are in use still.
  int& attempt = nextAttempts_[fileName.toCaseFolded()];
  for (;;) {
    QString name = fileName;
    if (attempt > 0)
      name = info.baseName() + QStringLiteral("_%1.").arg(attempt, 2, 10, QLatin1Char('0')) +
             info.completeSuffix();
    ++attempt;
    const QString key = name.toCaseFolded();
    if (names_.contains(key))
      continue;
    names_.insert(key);
    return name;
  }
}

QString KmzFiles::Pack(kmz::Writer& archive) {
  for (const KmzDictionaryEntry& entry : entries_) {
    const QString name = entry.directory + entry.fileName;
    kmz::Writer::Result result = kmz::Writer::kUnreadable;
    if (!entry.innerPath.isNull()) {
      // Whether it is damaged shows only at its end: too late to leave it out of the archive.
      const QByteArray bytes = ReadFromArchive(entry);
      if (!bytes.isNull())
        result = archive.Add(name, bytes.constData(), bytes.size()) ? kmz::Writer::kAdded
                                                                    : kmz::Writer::kFailed;
    } else if (IsReadableFile(entry.sourceUrl)) {
      QFile file(entry.sourceUrl);
      if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        result = archive.Add(name, file);
    }
    switch (result) {
    case kmz::Writer::kAdded:
      break;
    case kmz::Writer::kUnreadable:
      unreadable_ += Describe(entry);
      break;
    case kmz::Writer::kCutShort:
      return tr("Could not read all of \"%1\".", "Unable to add a file to a KMZ file")
          .arg(entry.sourceUrl);
    case kmz::Writer::kFailed:
      return QString(); // told when the archive is closed
    }
  }
  return QString();
}

} // namespace vorrel::kestan
