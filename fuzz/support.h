#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/refptr.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>

namespace fuzz {

using Tree = vorrel::RefPtr<vorrel::kestan::SchemaObject>;

/// Starts the library, once a process, with recoverable errors reported.
void Start();

/// Null when the document is refused or holds no object. Ends the program when it's refused without
/// a reason.
Tree Read(const std::uint8_t* data, std::size_t size);
/// The same for a text of which the URL can count.
Tree Read(const QByteArray& text,
          const QString& url = QStringLiteral("http://example.com/fuzz.kml"));

/// The tree as KML. Ends the program when it can't be written.
QByteArray Write(const Tree& tree);

/// Ends the program unless what was written and read twice is the same.
void CheckOutput(const Tree& tree);

/// The lines of a text input.
QStringList Lines(const std::uint8_t* data, std::size_t size);

/// Ends the program with a message, as a crash that a fuzzer sees.
[[noreturn]] void Fail(const QString& message);

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
