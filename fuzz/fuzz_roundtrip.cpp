// Bytes to tree to text to tree to text: the reader takes what the writer makes, the text is a
// fixed point, and the trees are equal.

#include "fuzz/support.h"
#include "kestan/feature/abstractfeature.h"
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
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
