// Reads each KML and KMZ file of some folders, writes it, reads the result and writes that again.
// The two texts have to be the same bytes and the two trees equal; a file that can't be read has
// to say why. The same with an archive, which has to hold equal copies of the local files that are
// referred to. Folders are given as arguments, and in the environment variable KESTAN_CORPUS.
// Exit status: 0 fine, 1 a file that doesn't come back, 2 no folder given or no file in them.

#include "kestan/core/library.h"
#include "kestan/host/kmz.h"
#include "kestan/read/kmlhandler.h"
#include "tests/support/treecompare.h"
#include "tests/support/xml.h"

#include <QDirIterator>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdio>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

struct Outcome {
  enum Kind { kRead, kEmpty, kRefused, kUnequal };
  Kind kind = kRead;
  QString text;       ///< Why it was refused, or what differs.
  int packed = 0;     ///< Files in its archive, without the document.
  int unreadable = 0; ///< Files that it refers to and that aren't there.
};

struct Document {
  RefPtr<SchemaObject> tree;
  bool empty = false; ///< Well read, but there's no feature in it.
  QString error;
};

/// `bytes` null: reads the file that `path` names.
Document Read(const QString& path, const QByteArray& bytes = QByteArray()) {
  KmlHandler handler(path, 2, nullptr, nullptr, nullptr);
  const auto* data =
      bytes.isNull() ? nullptr : reinterpret_cast<const unsigned char*>(bytes.data());
  Document document;
  document.tree = ExpatHandler::LoadXml(handler, data, static_cast<std::size_t>(bytes.size()));
  document.error = handler.GetErrorText();
  document.empty = !document.tree && document.error.isEmpty() && handler.GetRoot();
  return document;
}

Outcome Unequal(const QString& text) { return {Outcome::kUnequal, text}; }

QString FirstDifferentLine(const QByteArray& a, const QByteArray& b) {
  const QList<QByteArray> left = a.split('\n');
  const QList<QByteArray> right = b.split('\n');
  int line = 0;
  while (line < left.size() && line < right.size() && left[line] == right[line]) {
    ++line;
  }
  return QStringLiteral("line %1: \"%2\" against \"%3\"")
      .arg(QString::number(line + 1), QString::fromUtf8(left.value(line).left(500)),
           QString::fromUtf8(right.value(line).left(500)));
}

/// Writes `tree`, checks that the text is well-formed, and reads it again.
struct Copy {
  QByteArray text;
  Document document;
  QString error;

  Copy(const SchemaObject& tree, const QString& path) {
    error = tree.WriteKmlString(text);
    if (error.isEmpty()) {
      error = FindXmlError(text);
    }
    if (error.isEmpty()) {
      document = Read(path, text);
      error = document.error;
    }
  }
};

/// True for a document that uses a prefix without declaring it. What it means only shows once it
/// has been written, so that it's stable from the second text on.
bool LacksDeclaration(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) &&
         FindXmlError(file.readAll()).contains(QLatin1String("unbound prefix"));
}

QByteArray Contents(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Packs `tree` twice, and packs what it reads from the first archive.
Outcome PackAndRead(const SchemaObject& tree) {
  const QTemporaryDir folder;
  const QString first = folder.filePath(QStringLiteral("first.kmz"));
  const QString again = folder.filePath(QStringLiteral("again.kmz"));
  QStringList unreadable;
  QString error = tree.WriteKmlFile(first, 0, &unreadable);
  if (error.isEmpty()) {
    error = tree.WriteKmlFile(again);
  }
  if (!error.isEmpty()) {
    return Unequal(QStringLiteral("archive: ") + error);
  }
  if (Contents(first) != Contents(again)) {
    return Unequal(QStringLiteral("two archives of one tree differ"));
  }
  const Document copy = Read(first);
  if (!copy.tree) {
    return Unequal(QStringLiteral("archive: ") + copy.error);
  }
  QString difference = FindDifference(tree, *copy.tree);
  if (difference.isEmpty()) {
    const QString second = folder.filePath(QStringLiteral("second.kmz"));
    difference = copy.tree->WriteKmlFile(second);
    if (difference.isEmpty() && Contents(first) != Contents(second)) {
      difference =
          QStringLiteral("its own archive differs: ") +
          FirstDifferentLine(kmz::UnzipFile(first, QString()), kmz::UnzipFile(second, QString()));
    }
  }
  Outcome outcome =
      difference.isEmpty() ? Outcome{} : Unequal(QStringLiteral("archive: ") + difference);
  outcome.packed = static_cast<int>(kmz::ListFileEntries(first).size()) - 1;
  outcome.unreadable = static_cast<int>(unreadable.size());
  return outcome;
}

Outcome RoundTrip(const QString& path) {
  const Document original = Read(path);
  if (original.empty) {
    return {Outcome::kEmpty, QString()};
  }
  if (!original.tree) {
    return original.error.isEmpty() ? Unequal(QStringLiteral("refused without a reason"))
                                    : Outcome{Outcome::kRefused, original.error.simplified()};
  }
  const Copy first(*original.tree, path);
  if (!first.document.tree) {
    return Unequal(QStringLiteral("first text: ") + first.error);
  }
  const Copy second(*first.document.tree, path);
  if (!second.document.tree) {
    return Unequal(QStringLiteral("second text: ") + second.error);
  }
  if (first.text == second.text) {
    const QString difference = FindDifference(*original.tree, *first.document.tree);
    return difference.isEmpty() ? PackAndRead(*original.tree) : Unequal(difference);
  }
  if (LacksDeclaration(path)) {
    const Copy third(*second.document.tree, path);
    if (second.text == third.text) {
      return {};
    }
  }
  return Unequal(FirstDifferentLine(first.text, second.text));
}

QStringList FindFiles(const QStringList& folders) {
  QStringList files;
  for (const QString& folder : folders) {
    QDirIterator entries(folder, {QStringLiteral("*.kml"), QStringLiteral("*.kmz")}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
      files += entries.next();
    }
  }
  files.sort();
  return files;
}

} // namespace

int main(int argc, char** argv) {
  QStringList folders;
  for (int i = 1; i < argc; ++i) {
    folders += QFile::decodeName(argv[i]);
  }
  if (qEnvironmentVariableIsSet("KESTAN_CORPUS")) {
    folders += QFile::decodeName(qgetenv("KESTAN_CORPUS"));
  }
  const QStringList files = FindFiles(folders);
  if (files.isEmpty()) {
    std::fputs("usage: kestan-roundtrip FOLDER...\n", stderr);
    return 2;
  }

  GInitialize();
  int counts[4] = {};
  int packed = 0;
  int unreadable = 0;
  for (const QString& file : files) {
    const Outcome outcome = RoundTrip(file);
    ++counts[outcome.kind];
    packed += outcome.packed;
    unreadable += outcome.unreadable;
    if (!outcome.text.isEmpty()) {
      std::printf("%s %s\n    %s\n", outcome.kind == Outcome::kRefused ? "refused" : "UNEQUAL",
                  qPrintable(file), outcome.text.toUtf8().constData());
    }
  }
  std::printf("read %d, without a feature %d, refused %d, unequal %d\n", counts[Outcome::kRead],
              counts[Outcome::kEmpty], counts[Outcome::kRefused], counts[Outcome::kUnequal]);
  std::printf("files packed %d, not there %d\n", packed, unreadable);
  GShutdown();
  return counts[Outcome::kUnequal] == 0 ? 0 : 1;
}
