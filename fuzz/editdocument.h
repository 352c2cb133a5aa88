#pragma once

#include "kestan/core/schema.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <functional>
#include <vector>

namespace fuzz {

/// All classes with instances that derive from `schema`.
std::vector<const vorrel::kestan::Schema*> FindClasses(const vorrel::kestan::Schema& schema);

/// A document with an object of some class: values of whatever meaning in whatever field, children
/// of whatever class, several for one place, attributes and elements that no class knows.
/// `number` answers a number below its argument, `text` a value.
QByteArray MakeDocument(const std::function<unsigned(std::size_t)>& number,
                        const std::function<QString()>& text);

} // namespace fuzz
