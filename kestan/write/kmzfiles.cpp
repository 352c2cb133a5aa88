#include "kestan/write/kmzfiles.h"

#include "kestan/host/file.h"
#include "kestan/host/net.h"
#include "kestan/host/tr.h"
#include "kestan/host/url.h"

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
  const auto dot = name.lastIndexOf(QLatin1Char('.'));
  const auto suffix = dot > 0 && name.size() - dot <= kMostSuffix ? name.size() - dot : 0;
  while (name.toUtf8().size() > kMostBytes) {
    // A unit takes at most three bytes, so that this removes no more than is too much.
    const auto excess = name.toUtf8().size() - kMostBytes;
    auto start = name.size() - suffix - std::max<QString::size_type>(1, excess / 3);
    if (name.at(start).isLowSurrogate())
      --start;
    name.remove(start, name.size() - suffix - start);
  }
  return name;
}

QString Describe(const SourceFile& source) {
  return source.innerPath.isNull() ? source.path
                                   : source.path + QLatin1Char('/') + source.innerPath;
}

bool IsLocal(const QString& url) {
  const net::FileNameType type = net::GetFileNameType(url);
  return type == net::kFileNameLocal || type == net::kFileNameLocalUrl ||
         GGetUrlType(url) == kUrlRelative;
}

} // namespace

void KmzFiles::SetHome(const QString& url) {
  QString archive;
  QString inner;
  QString path = url;
  if (path.startsWith(QLatin1String("file:"), Qt::CaseInsensitive))
    path = QUrl(path).toLocalFile();
  const QFileInfo info(path);
  const bool isArchive = info.suffix().compare(QLatin1String("kmz"), Qt::CaseInsensitive) == 0;
  if (net::Fetcher::FindInKmz(url, &archive, &inner))
    home_ = QFileInfo(archive).canonicalFilePath();
  else if (isArchive && info.isFile())
    home_ = info.canonicalFilePath();
  else if (!path.isEmpty() && GGetUrlType(path) != kUrlNetwork)
    home_ = QFileInfo(info.absolutePath()).canonicalFilePath();
  else
    home_ = QString();
  if (!home_->isEmpty() && !QFileInfo(*home_).isFile() && !home_->endsWith(QLatin1Char('/')))
    *home_ += QLatin1Char('/');
}

bool KmzFiles::IsAtHome(const SourceFile& source) const {
  if (!home_)
    return true;
  const QString path = QFileInfo(source.path).canonicalFilePath();
  return home_->endsWith(QLatin1Char('/')) ? path.startsWith(*home_)
                                           : path == *home_ && !source.innerPath.isNull();
}

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
  SourceFile& source = entry.source;
  if (!sources_.Locate(url, source)) {
    if (IsLocal(url))
      unreadable_ += url;
    return kNone;
  }
  const bool inArchive = !source.innerPath.isNull();
  if (!IsAtHome(source)) {
    outside_ += Describe(source);
    return kNone;
  }
  // With its own destination inside, a document would grow with every write.
  if (!inArchive && file::isSame(source.path, destination_))
    return kNone;
  const QString file = QFileInfo(source.path).canonicalFilePath() + QChar(QChar::Null) +
                       source.innerPath.toCaseFolded();
  const auto same = entriesByFile_.constFind(file);
  if (same != entriesByFile_.constEnd())
    return *same;

  const QFileInfo info(inArchive ? source.innerPath : source.path);
  entry.fileName = CreateUniqueKmzDataFileName(MakeSafeName(info.fileName()));
  entry.directory = QLatin1String(kDirectory);
  const int index = static_cast<int>(entries_.size());
  entries_.push_back(entry);
  entriesByFile_.insert(file, index);
  return index;
}

QString KmzFiles::CreateUniqueKmzDataFileName(const QString& fileName) {
  const QFileInfo info(fileName);
  const auto make = [&](int attempt) {
    if (attempt == 0)
      return fileName;
    return info.baseName() + QStringLiteral("_%1.").arg(attempt, 2, 10, QLatin1Char('0')) +
           info.completeSuffix();
  };
  const QString name = freeNames_.Find(fileName.toCaseFolded(), make, [this](const QString& free) {
    return !names_.contains(free.toCaseFolded());
  });
  names_.insert(name.toCaseFolded());
  return name;
}

kmz::Writer::Result KmzFiles::Copy(const KmzDictionaryEntry& entry, kmz::Writer& archive) {
  const QString name = entry.directory + entry.fileName;
  if (entry.source.innerPath.isNull()) {
    QFile file(entry.source.path);
    return SourceFiles::Open(file) ? archive.Add(name, file) : kmz::Writer::kUnreadable;
  }
  // Whether it is damaged shows only at its end: too late to leave it out of the archive.
  const QByteArray bytes = sources_.ReadFromArchive(entry.source);
  if (bytes.isNull())
    return kmz::Writer::kUnreadable;
  return archive.Add(name, bytes.constData(), bytes.size()) ? kmz::Writer::kAdded
                                                            : kmz::Writer::kFailed;
}

QString KmzFiles::Pack(kmz::Writer& archive) {
  for (const KmzDictionaryEntry& entry : entries_) {
    const kmz::Writer::Result result = Copy(entry, archive);
    if (result == kmz::Writer::kUnreadable)
      unreadable_ += Describe(entry.source);
    else if (result == kmz::Writer::kCutShort)
      return tr("Could not read all of \"%1\".", "Unable to add a file to a KMZ file")
          .arg(entry.source.path);
    else if (result == kmz::Writer::kFailed)
      break; // told when the archive is closed
  }
  return QString();
}

} // namespace vorrel::kestan
