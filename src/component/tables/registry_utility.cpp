#include "veltgeneral/registry_utility.h"

#include "component/member_row.h"
#include "component/tables/tables.h"

namespace veltgeneral {
namespace {

constexpr Row kRows[] = {
    method<&RegistryUtility::getKeyValue>("getKeyValue", "KeyRoot", "KeyName", "SubKeyRef"),
    method<&RegistryUtility::getInfoForConnection>("getInfoForConnection", "sApplicationName",
                                                   "sConnectionDbName", "sConnectionUser",
                                                   "sConnectionPassword"),
    method<&RegistryUtility::saveInfoForConnection>("saveInfoForConnection", "sApplicationName",
                                                    "sConnectionDbName", "sConnectionUser",
                                                    "sConnectionPassword"),
    method<&RegistryUtility::isRegistryInWritePermission>("isRegistryInWritePermission"),
    method<&RegistryUtility::getTarnviewConfValue>("getTarnviewConfValue", "sSection", "sKeyName",
                                                   "sValue"),
    method<&RegistryUtility::setTarnviewConfValue>("setTarnviewConfValue", "sSection", "sKeyName",
                                                   "sValue"),
    method<&RegistryUtility::setTarnviewDatFileValue>("setTarnviewDatFileValue", "sCustomValue"),
    method<&RegistryUtility::isTarnviewDatInWritePermission>("isTarnviewDatInWritePermission"),
};

}  // namespace

template <>
Class describeClass<RegistryUtility>() {
  return {"RegistryUtility", "Registry values, connection settings and the settings file",
          MemberTable<kRows>::kMembers, &makeObject<RegistryUtility>};
}

}  // namespace veltgeneral
