#include "veltgeneral/c_ini_file.h"

#include "component/member_row.h"
#include "component/tables/tables.h"

namespace veltgeneral {
namespace {

constexpr Row kRows[] = {
    method<&cInifile::CheckForUnicodeFile>("CheckForUnicodeFile"),
    put<&cInifile::setIsNt>("isNt"),
    get<&cInifile::LastReturnCode>("LastReturnCode"),
    method<&cInifile::SectionExists>("SectionExists", "section"),
    get<&cInifile::Success>("Success"),
    put<&cInifile::setDefault>("Default"),
    get<&cInifile::Default>("Default"),
    put<&cInifile::setPath>("Path"),
    get<&cInifile::Path>("Path"),
    put<&cInifile::setKey>("key"),
    get<&cInifile::key>("key"),
    put<&cInifile::setSection>("section"),
    get<&cInifile::section>("section"),
    get<&cInifile::Value>("Value"),
    put<&cInifile::setValue>("Value"),
    get<&cInifile::isNt>("isNt"),
    method<&cInifile::DeleteKey>("DeleteKey"),
    method<&cInifile::DeleteSection>("DeleteSection"),
    get<&cInifile::INISection>("INISection"),
    put<&cInifile::setINISection>("INISection"),
    get<&cInifile::Sections>("Sections"),
    method<&cInifile::EnumerateCurrentSection>("EnumerateCurrentSection", "sKey", "iCount"),
    method<&cInifile::EnumerateAllSections>("EnumerateAllSections", "sSections", "iCount"),
    method<&cInifile::SaveFormPosition>("SaveFormPosition", "frmThis"),
    method<&cInifile::LoadFormPosition>("LoadFormPosition", "frmThis", optional("lMinWidth", 3000),
                                        optional("lMinHeight", 3000)),
    method<&cInifile::CLngDefault>("CLngDefault", "sString", optional("lDefault")),
};

}  // namespace

template <>
Class describeClass<cInifile>() {
  return {"cInifile", "Settings files of sections and keys, and window placements in them",
          MemberTable<kRows>::kMembers, &makeObject<cInifile>};
}

}  // namespace veltgeneral
