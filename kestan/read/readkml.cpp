#include "kestan/read/readkml.h"

#include "kestan/read/kmlhandler.h"

namespace vorrel::kestan {

namespace {

constexpr unsigned kAccess = 2; // what objects have by themselves

RefPtr<SchemaObject> Read(const QString& url, const unsigned char* data, std::size_t size,
                          QString* error, IErrorHandler* errorHandler) {
  KmlHandler handler(url, kAccess, nullptr, nullptr, errorHandler);
  RefPtr<SchemaObject> root = ExpatHandler::LoadXml(handler, data, size);
  if (error)
    *error = handler.GetErrorText();
  return root;
}

} // namespace

RefPtr<SchemaObject> ReadKmlFile(const QString& path, QString* error, IErrorHandler* errorHandler) {
  return Read(path, nullptr, 0, error, errorHandler);
}

RefPtr<SchemaObject> ReadKmlBytes(const QByteArray& bytes, const QString& url, QString* error,
                                  IErrorHandler* errorHandler) {
  return Read(url, reinterpret_cast<const unsigned char*>(bytes.constData()),
              static_cast<std::size_t>(bytes.size()), error, errorHandler);
}

} // namespace vorrel::kestan
