#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/refptr.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

namespace fuzz {

using Tree = vorrel::RefPtr<vorrel::kestan::SchemaObject>;

/// Starts the library, once a process, with recoverable errors reported.
void Start();

/// Null when the document is refused or holds no object. Ends the program when it's refused without
/// a reason.
Tree Read(const std::uint8_t* data, std::size_t size);

/// The tree as KML. Ends the program when it can't be written.
QByteArray Write(const Tree& tree);

/// Ends the program with a message, as a crash that a fuzzer sees.
[[noreturn]] void Fail(const QString& message);

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
