// Reads a document, gives it another name, and saves it.
//
//   kestan-rename IN NAME OUT

#include "kestan/core/library.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/read/readkml.h"

#include <cstdio>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

/// Answers what went wrong; an empty text when nothing did.
QString Rename(const QString& in, const QString& name, const QString& out) {
  QString error;
  const RefPtr<SchemaObject> root = ReadKmlFile(in, &error);
  if (!root)
    return error;
  if (!root->isOfType(AbstractFeature::GetClassSchema()))
    return "the document has no feature";
  static_cast<AbstractFeature&>(*root).SetName(name);
  return root->WriteKmlFile(out, 0); // an archive, if the name ends in ".kmz"
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: kestan-rename IN NAME OUT\n", stderr);
    return 2;
  }
  GInitialize(); // on the main thread, before any object is made
  const QString error = Rename(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]),
                               QString::fromLocal8Bit(argv[3]));
  GShutdown(); // when all objects are gone
  if (!error.isEmpty())
    std::fprintf(stderr, "%s\n", qUtf8Printable(error));
  return error.isEmpty() ? 0 : 1;
}
