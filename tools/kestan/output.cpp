#include "tools/kestan/output.h"

#include "tools/kestan/commands.h"

#include <cstdio>

namespace tool {

namespace {

constexpr int kPieceSize = 65536;

} // namespace

void PrintLine(const QString& line) {
  std::fprintf(stderr, "%s\n", Harmless(line).toUtf8().constData());
}

void Complain(const QString& message) { PrintLine(QStringLiteral("kestan: ") + message); }

bool Print(const QByteArray& bytes) {
  const auto size = static_cast<std::size_t>(bytes.size());
  if (std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0) {
    return true;
  }
  Complain(QStringLiteral("can't write to standard output"));
  return false;
}

QString Harmless(QString text) {
  for (QChar& character : text) {
    if (!character.isPrint() && !character.isSurrogate()) {
      character = QChar::ReplacementCharacter;
    }
  }
  return text;
}

QString Printable(const QString& text) { return Harmless(text.simplified()); }

bool Output::Write(const QByteArray& bytes) {
  if (!failed_) {
    pending_ += bytes;
  }
  return pending_.size() < kPieceSize ? !failed_ : Flush();
}

bool Output::Flush() {
  failed_ = failed_ || !Print(pending_);
  pending_.clear();
  return !failed_;
}

int Output::Finish(int status) { return Flush() ? status : kNoOutput; }

} // namespace tool
