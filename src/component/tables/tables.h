// The classes of the component, in the order of their introduction. Each has a table of its members
// in a file of this folder.
#pragma once

#include "veltgeneral/c_ini_file.h"
#include "veltgeneral/component.h"
#include "veltgeneral/err_info.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/registry_utility.h"
#include "veltgeneral/reporting.h"
#include "veltgeneral/velt_global.h"
#include "veltgeneral/velt_inet.h"

namespace veltgeneral {

template <class... C>
struct ClassList {};

using Classes = ClassList<ErrInfo, FileUtility, RegistryUtility, Funzioni, cInifile, VeltInet,
                          Reporting, VeltGlobal>;

// Name, summary and rows of C.
template <class C>
Class describeClass();

template <>
Class describeClass<ErrInfo>();
template <>
Class describeClass<FileUtility>();
template <>
Class describeClass<RegistryUtility>();
template <>
Class describeClass<Funzioni>();
template <>
Class describeClass<cInifile>();
template <>
Class describeClass<VeltInet>();
template <>
Class describeClass<Reporting>();
template <>
Class describeClass<VeltGlobal>();

}  // namespace veltgeneral
