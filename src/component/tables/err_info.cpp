#include "veltgeneral/err_info.h"

#include "component/member_row.h"
#include "component/tables/tables.h"

namespace veltgeneral {

namespace {

constexpr Row kRows[] = {
    method<&ErrInfo::fill>("ErrInfo", "lNumberInfo", "sDescriptionInfo", "iTypeInfo",
                           "sLocationInfo", optional("vntClassInfo"), optional("vntProcessInfo"),
                           optional("vntStepInfo")),
    method<&ErrInfo::ErrInfoNew>("ErrInfoNew", "structErrInfo"),
    method<&ErrInfo::getAttrEqualValue>("getAttrEqualValue"),
    method<&ErrInfo::clone>("clone", "oObject"),
    method<&ErrInfo::getInfo>("getInfo", "lNumberInfo", "sDescriptionInfo", "iTypeInfo",
                              "sLocationInfo", optional("vntClassInfo"), optional("vntProcessInfo"),
                              optional("vntStepInfo")),
    method<&ErrInfo::runInitialize>("runInitialize"),
    get<&ErrInfo::numberInfo>("numberInfo"),
    get<&ErrInfo::descriptionInfo>("descriptionInfo"),
    get<&ErrInfo::typeInfo>("typeInfo"),
    get<&ErrInfo::locationInfo>("locationInfo"),
    get<&ErrInfo::processInfo>("processInfo"),
    get<&ErrInfo::classInfo>("classInfo"),
    method<&ErrInfo::getInfoForLogSystem>("getInfoForLogSystem", "sLogPath", "iTrace",
                                          "lByteSwitch"),
    get<&ErrInfo::stepInfo>("stepInfo"),
    method<&ErrInfo::clear>("clear"),
    method<&ErrInfo::isSuccess>("isSuccess"),
    method<&ErrInfo::writeLog>("writeLog", optional("sErrLogName")),
};

}  // namespace

template <>
Class describeClass<ErrInfo>() {
  return {"ErrInfo", "The result of an operation", MemberTable<kRows>::kMembers,
          &makeObject<ErrInfo>};
}

}  // namespace veltgeneral
