// The published names of the types that appear in signatures.
#pragma once

#include <string_view>

#include "veltgeneral/err_info.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/reporting.h"

namespace veltgeneral {

// Empty for a type that has no name of its own.
template <class T>
inline constexpr std::string_view kTypeName{};

template <>
inline constexpr std::string_view kTypeName<typeInfoCostant> = "typeInfoCostant";
template <>
inline constexpr std::string_view kTypeName<ErrInfo> = "ErrInfo";
template <>
inline constexpr std::string_view kTypeName<Funzioni> = "Funzioni";
template <>
inline constexpr std::string_view kTypeName<typeDataBaseEngine> = "typeDataBaseEngine";
template <>
inline constexpr std::string_view kTypeName<typeOutputReport> = "typeOutputReport";
template <>
inline constexpr std::string_view kTypeName<structError> = "structError";

}  // namespace veltgeneral
