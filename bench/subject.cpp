#include "bench/subject.h"

#include "kestan/core/library.h"
#include "kestan/core/schema.h"
#include "kestan/read/kmlhandler.h"

#include <cstdio>
#include <cstdlib>

using namespace vorrel;
using namespace vorrel::kestan;

namespace bench {

namespace {

[[noreturn]] void Die(const QString& message) {
  std::fprintf(stderr, "%s\n", message.toUtf8().constData());
  std::exit(1);
}

} // namespace

Subject::Subject() { GInitialize(); }

Subject::~Subject() { GShutdown(); }

Subject::Tree Subject::Read(const std::string& text) const {
  KmlHandler handler(QStringLiteral("bench.kml"), 2, nullptr, nullptr, nullptr);
  const Tree tree = ExpatHandler::LoadXml(
      handler, reinterpret_cast<const unsigned char*>(text.data()), text.size());
  if (!tree) {
    Die(handler.GetErrorText());
  }
  return tree;
}

QByteArray Subject::Write(const Tree& tree) const {
  QByteArray bytes;
  const QString error = tree->WriteKmlString(bytes);
  if (!error.isEmpty()) {
    Die(error);
  }
  return bytes;
}

Subject::Tree Subject::Clone(const Tree& tree) const { return tree->clone(true, nullptr); }

std::size_t Subject::Count(const Tree& tree) const {
  mmvector<SchemaObject*> all;
  tree->FindBySchema(SchemaObject::GetClassSchema(), all);
  return all.size();
}

} // namespace bench
