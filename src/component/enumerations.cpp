// The published enumerations as data, for callers that do not read C++.
#include "veltgeneral/component.h"
#include "veltgeneral/err_info.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/reporting.h"
#include "veltgeneral/velt_global.h"

namespace veltgeneral {
namespace {

constexpr Enumerator kErrInfoCostant[] = {
    {"eiSUCCESFULL", eiSUCCESFULL},       {"eiABORTED", eiABORTED},
    {"eiNORECORD", eiNORECORD},           {"eiNOVALIDVALUE", eiNOVALIDVALUE},
    {"eiREGISTRYERROR", eiREGISTRYERROR},
};
constexpr Enumerator kTypeInfoCostant[] = {
    {"eiERRORTYPE", eiERRORTYPE},
    {"eiWARNINGTYPE", eiWARNINGTYPE},
    {"eiINFORMATIONTYPE", eiINFORMATIONTYPE},
    {"eiDEBUGTYPE", eiDEBUGTYPE},
};
constexpr Enumerator kFileUtility[] = {{"gcmfileutilityFILENOTFOUND", gcmfileutilityFILENOTFOUND}};
constexpr Enumerator kRegistryUtylity[] = {
    {"gcmregistryutilityKEYNOTFOUND", gcmregistryutilityKEYNOTFOUND}};
constexpr Enumerator kFunzioni[] = {{"gcmfunzioniDATEINVALID", gcmfunzioniDATEINVALID}};
constexpr Enumerator kDataBaseEngine[] = {
    {"dbengineORACLE", dbengineORACLE},
    {"dbengineMSACCESS", dbengineMSACCESS},
    {"dbengineSQLSERVER", dbengineSQLSERVER},
};
constexpr Enumerator kOutputReport[] = {{"torFORM", torFORM}, {"torPRINTER", torPRINTER}};
constexpr Enumerator kExistUniqueObject[] = {
    {"dbeuoUNIQUE", dbeuoUNIQUE}, {"dbeuoMORE", dbeuoMORE}, {"dbeuoNOTFOUND", dbeuoNOTFOUND}};

constexpr Enumeration kEnumerations[] = {
    {"errInfoCostant", kErrInfoCostant}, {"typeInfoCostant", kTypeInfoCostant},
    {"gcmFileUtility", kFileUtility},    {"gcmRegistryUtylity", kRegistryUtylity},
    {"gcmFunzioni", kFunzioni},          {"typeDataBaseEngine", kDataBaseEngine},
    {"typeOutputReport", kOutputReport}, {"typedbExistUniqueObject", kExistUniqueObject},
};

}  // namespace

std::span<const Enumeration> enumerations() noexcept { return kEnumerations; }

}  // namespace veltgeneral
