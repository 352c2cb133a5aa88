// Bytes to tree to text to tree to text: the reader takes what the writer makes, the text is a
// fixed point, and the trees are equal. No document begins with "R": behind it, the bytes choose a
// document that binds prefixes anew.

#include "fuzz/support.h"
#include "kestan/feature/abstractfeature.h"
#include "tests/support/rebinding.h"
#include "tests/support/treecompare.h"
#include "tests/support/xml.h"

using namespace vorrel::kestan;

namespace {

fuzz::Tree ReadBack(const QByteArray& text) {
  const fuzz::Tree tree = fuzz::Read(reinterpret_cast<const std::uint8_t*>(text.constData()),
                                     static_cast<std::size_t>(text.size()));
  if (!tree) {
    fuzz::Fail(QStringLiteral("the reader refuses what was written: ") + QString::fromUtf8(text));
  }
  return tree;
}

void ExpectSame(const QByteArray& a, const QByteArray& b) {
  if (a != b) {
    fuzz::Fail(
        QStringLiteral("no fixed point:\n%1\n%2").arg(QString::fromUtf8(a), QString::fromUtf8(b)));
  }
}

/// Takes the bytes as choices for a document that binds its prefixes in many ways.
void TryRebinding(const std::uint8_t* data, std::size_t size) {
  std::size_t next = 0;
  const QByteArray document =
      MakeRebindingDocument([&](unsigned count) { return next < size ? data[next++] % count : 0; });
  const QByteArray first = fuzz::Write(ReadBack(document));
  ExpectSame(first, fuzz::Write(ReadBack(first)));
  if (GetForeignNames(document) != GetForeignNames(first)) {
    fuzz::Fail(QStringLiteral("names have another meaning:\n%1\n%2")
                   .arg(QString::fromUtf8(document), QString::fromUtf8(first)));
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
  if (size > 0 && data[0] == 'R') {
    TryRebinding(data + 1, size - 1);
    return 0;
  }
  const fuzz::Tree tree = fuzz::Read(data, size);
  if (!tree || !tree->isOfType(AbstractFeature::GetClassSchema())) {
    return 0; // only a feature can stand in the root that is written around it
  }
  const QByteArray first = fuzz::Write(tree);
  const fuzz::Tree secondTree = ReadBack(first);
  const QByteArray second = fuzz::Write(secondTree);

  // A document with an undeclared prefix only gets its meaning by being written.
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
  if (FindXmlError(bytes).isEmpty()) {
    ExpectSame(first, second);
    const QString error = FindXmlError(first);
    if (!error.isEmpty()) {
      fuzz::Fail(QStringLiteral("not well-formed: %1\n%2").arg(error, QString::fromUtf8(first)));
    }
    const QString difference = FindDifference(*tree, *secondTree);
    if (!difference.isEmpty()) {
      fuzz::Fail(difference);
    }
  } else {
    ExpectSame(second, fuzz::Write(ReadBack(second)));
  }
  return 0;
}
