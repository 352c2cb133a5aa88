#pragma once

#include "kestan/core/objectobserver.h"
#include "kestan/read/errorhandler.h"

#include <QString>

#include <memory>

/// Writes a line to standard output, with nothing in it that a terminal would obey.
void Print(const QString& line);
/// Class, id and name of an object.
QString GetTitle(const vorrel::kestan::SchemaObject& object);
/// The values of an object that aren't those of a new one.
QString GetValues(const vorrel::kestan::SchemaObject& object);

/// Prints what changes in a document, for as long as the result lives.
std::unique_ptr<vorrel::kestan::ObjectObserver> LogChanges(vorrel::kestan::SchemaObject& root);
/// Prints what's wrong with documents, and what updates may not do.
vorrel::RefPtr<vorrel::kestan::IErrorHandler> MakeErrorLog();
