#pragma once

#include <QFile>

#include <cstddef>

namespace vorrel::kestan {

/// Bytes of a document, read piece by piece.
class XmlSource {
public:
  virtual ~XmlSource() = default;

  /// Reads up to `size` bytes. 0 at the end, -1 on failure.
  virtual int Read(char* buffer, int size) = 0;
  /// Goes back to the start.
  virtual bool Rewind() = 0;
};

/// Bytes that the caller keeps alive.
class MemoryXmlSource final : public XmlSource {
public:
  MemoryXmlSource(const void* data, std::size_t size)
      : data_(static_cast<const char*>(data)), size_(size) {}

  int Read(char* buffer, int size) override;
  bool Rewind() override;

private:
  const char* data_;
  std::size_t size_;
  std::size_t position_ = 0;
};

class FileXmlSource final : public XmlSource {
public:
  explicit FileXmlSource(const QString& path) : file_(path) {}

  bool Open() { return file_.open(QIODevice::ReadOnly); }
  int Read(char* buffer, int size) override;
  bool Rewind() override { return file_.seek(0); }

private:
  QFile file_;
};

} // namespace vorrel::kestan
