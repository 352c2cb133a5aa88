#pragma once

// What nearly every test reads.
#include "kestan/feature/document.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/geometry/point.h"
#include "kestan/read/errorhandler.h"
#include "kestan/style/style.h"
#include "tests/support/printers.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <stdexcept>

namespace vorrel::kestan {

class KmlHandler;

/// Starts and stops the library around each test, and turns KML into objects and back.
class KmlTest : public testing::Test {
protected:
  KmlTest();
  ~KmlTest() override;

  /// Reads a document, or a single element without its `kml` root, as a KML file under
  /// `GetDocumentUrl()`. Null when it's refused (see `error()`).
  RefPtr<SchemaObject> ReadObject(const QByteArray& text);
  RefPtr<SchemaObject> ReadObject(const QString& text) { return ReadObject(text.toUtf8()); }

  /// The same for a document of which the class is known: without such an object the test ends.
  template <class T> RefPtr<T> Read(const QByteArray& text) {
    return Cast<T>(ReadObject(text).get(), error());
  }
  template <class T> RefPtr<T> Read(const QString& text) { return Read<T>(text.toUtf8()); }
  template <class T> RefPtr<T> Read(const char* text) { return Read<T>(QByteArray(text)); }

  /// The object as one of its class; if it's none, the test ends with this word on it.
  template <class T> static RefPtr<T> Cast(SchemaObject* object, const QString& text) {
    if (!object || !object->isOfType(T::GetClassSchema()))
      throw std::runtime_error("not an object of the class: " + text.toStdString());
    return RefPtr<T>(static_cast<T*>(object));
  }

  /// Reads a document under a URL of its own; a refused one ends the test. Any thread.
  static RefPtr<SchemaObject> ReadAt(const QString& url, const QString& text);

  /// The object as a KML document; a failure fails the test.
  QString Write(const SchemaObject& object, unsigned flags = 0) const;

  /// The written form of a document. It has to be well-formed, also for a parser with namespaces,
  /// and a second round has to give the same.
  QString RoundTrip(const QByteArray& text);
  QString RoundTrip(const QString& text) { return RoundTrip(text.toUtf8()); }
  QString RoundTrip(const char* text) { return RoundTrip(QByteArray(text)); }

  /// What the reader reported on the last document, one text an error, without the place.
  const QStringList& messages() const { return messages_; }
  /// Why the last document was refused; empty when it wasn't.
  const QString& error() const { return error_; }

  /// The object of this id in the document that was read.
  template <class T = SchemaObject> static T* ById(const QString& id) {
    return static_cast<T*>(SchemaObject::find(GetDocumentUrl(), id));
  }
  /// The text without line ends and indentation.
  static QString Squeezed(QString text) { return text.remove('\n').remove('\t'); }

  static QString GetDocumentUrl() { return QStringLiteral("http://example.com/dir/doc.kml"); }
  /// Contents of a file in `tests/data`.
  static QByteArray ReadData(const QString& name);

private:
  class Listener;

  QStringList messages_;
  QString error_;
};

/// Has the handler read the text.
RefPtr<SchemaObject> Load(KmlHandler& handler, const QByteArray& text);

/// The first element of this name in `xml`, tags included; empty when there's none.
QString Element(const QString& xml, const QString& name);

} // namespace vorrel::kestan
