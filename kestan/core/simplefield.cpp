#include "kestan/core/simplefield.h"

#include "kestan/core/simplefield_impl.h"

namespace vorrel::kestan {

template class TypedField<int>;
template class TypedField<unsigned int>;
template class TypedField<unsigned short>;
template class TypedField<long long>;
template class TypedField<bool>;
template class TypedField<float>;
template class TypedField<double>;
template class TypedField<QString>;
template class TypedField<Color32>;
template class TypedField<DateTime>;
template class TypedField<Vec3<double>>;
template class TypedField<LegacyScreenVec>;

template class SimpleField<int>;
template class SimpleField<unsigned int>;
template class SimpleField<unsigned short>;
template class SimpleField<long long>;
template class SimpleField<bool>;
template class SimpleField<float>;
template class SimpleField<double>;
template class SimpleField<QString>;
template class SimpleField<Color32>;
template class SimpleField<DateTime>;
template class SimpleField<Vec3<double>>;
template class SimpleField<LegacyScreenVec>;

} // namespace vorrel::kestan
