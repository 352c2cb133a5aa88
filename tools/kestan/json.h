#pragma once

#include <QByteArray>
#include <QString>

namespace tool {

/// A text as a JSON string. Half a surrogate pair, which no JSON text may hold, becomes U+FFFD.
QByteArray JsonText(const QString& text);

/// A JSON object as it's put together, on one line.
class JsonObject {
public:
  /// `value` is JSON already. Each key comes once.
  JsonObject& Add(const QByteArray& quotedKey, const QByteArray& value);
  JsonObject& Add(const char* key, const QByteArray& value);
  JsonObject& Add(const char* key, const QString& value) { return Add(key, JsonText(value)); }

  QByteArray Get() const { return text_ + '}'; }

private:
  QByteArray text_ = "{";
};

} // namespace tool
